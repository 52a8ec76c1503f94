// What the desktop shows of drives and folders.
#pragma once

#include <string>

#include "hosts/windows/system_headers.h"

#include <commctrl.h>

#include "platform/files.h"

namespace tarnvale {

// Name and icon of a drive take what is in it: for one that answers at once.

/// "Local Disk (C:)".
std::wstring DriveName(const Path& root);
int IconOfDrive(const Path& root, int otherwise);

/// The desktop's small icons, which nobody destroys, and numbers in it.
struct DesktopIcons {
  HIMAGELIST list = nullptr;
  int folder = 0;
};
DesktopIcons SmallIcons();

}  // namespace tarnvale
