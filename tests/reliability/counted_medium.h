// A small medium where none can be mounted.
#pragma once

#include <cstdint>
#include <filesystem>

namespace tarnvale::reliability {

/// From now on, and for good, the files in `folder` can't take more than
/// `room_bytes` together: what the program uses of the system in this process ends
/// in ENOSPC then, with the part written that still fits.
void LimitRoom(const std::filesystem::path& folder, std::uint64_t room_bytes);

}  // namespace tarnvale::reliability
