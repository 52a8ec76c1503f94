// The drives of this machine, as a tree shows them.
#pragma once

#include <string>
#include <vector>

#include "hosts/windows/system_headers.h"

#include <commctrl.h>

#include "platform/files.h"

namespace tarnvale {

/// The root folders, by their letters. No medium is looked at.
std::vector<Path> DriveRoots();

/// Asking it for anything neither spins a floppy up nor hangs on a network that is away.
bool AnswersAtOnce(const Path& root);

/// What the desktop calls a drive: "Local Disk (C:)"; the letter of one that may not
/// answer.
std::wstring DriveName(const Path& root);

/// The desktop's small icons, which nobody destroys, and numbers in it.
struct DesktopIcons {
  HIMAGELIST list = nullptr;
  int folder = 0;
};
DesktopIcons SmallIcons();
int IconOfDrive(const Path& root, int otherwise);

}  // namespace tarnvale
