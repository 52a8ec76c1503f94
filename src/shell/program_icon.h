// The program's icon.
#pragma once

#include <string_view>

#include "ui/window.h"

namespace tarnvale {

/// Gives a window an icon resource in all its sizes, and with it the boxes and
/// dialogs that it owns. "AAA" is the program's own and the only one; any other
/// name raises 326.
void SetWindowIcon(Window& window, std::string_view resource);

}  // namespace tarnvale
