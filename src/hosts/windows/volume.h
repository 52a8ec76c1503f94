// What lies under a folder: a drive, or one that is found in a folder.
#pragma once

#include <windows.h>

#include <string>

namespace tarnvale {

struct Volume {
  std::wstring root;  ///< ends in a backslash; empty when it isn't known
  /// A drive of this machine that isn't meant to be carried about. Some that are count as
  /// such all the same.
  bool is_fixed = false;
  /// What its format can do, as the system has it; 0 when that isn't known.
  DWORD features = 0;
  std::wstring format;  ///< "NTFS", "FAT32"

  /// Keeps no journal, and but for exFAT local times.
  bool IsFat() const { return HoldsLocalTimes() || format == L"exFAT"; }
  bool HoldsLocalTimes() const { return format.substr(0, 3) == L"FAT"; }
};

Volume VolumeOf(const std::wstring& native_folder);

/// False only where both are known to lie on different media. Of two that are copies of
/// each other all numbers are the same.
bool MayBeOneMedium(const std::wstring& native_folder, const std::wstring& other);

}  // namespace tarnvale
