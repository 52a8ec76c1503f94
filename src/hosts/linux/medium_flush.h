// Flushing a medium in a process of its own.
//
// Nothing gets a thread out of a flush, not even the end of its process, which would stay
// and keep all that it holds until the medium has everything.
#pragma once

#include <memory>

#include "hosts/linux/descriptor.h"
#include "platform/files.h"

namespace tarnvale {

/// Begins to flush the medium that holds an open folder. Raises 57.
std::unique_ptr<MediumFlush> StartFlush(Descriptor folder);

}  // namespace tarnvale
