// Copies that may not have reached their medium when it went away, or the power did.
#pragma once

#include <cstdint>
#include <optional>

#include "hosts/linux/atomic_copy.h"

namespace tarnvale {

/// FileSystem::BeginCopies and EndCopies, in an open folder.
std::optional<std::int64_t> BeginCopies(int folder_fd);
void EndCopies(int folder_fd);

/// FileSystem::Mistrust.
bool Mistrust(NativeSpot source, NativeSpot copy, std::int64_t since_s);

}  // namespace tarnvale
