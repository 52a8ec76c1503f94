// What the screens of the main window share.
#pragma once

#include "ui/geometry.h"
#include "ui/window.h"

namespace tarnvale {

/// All screens have the same size and the same place.
inline constexpr Rect kScreen{236, 10, 648, 546};

/// The look of every push button of the main window.
inline constexpr int kButtonType = 3;

/// Selects the whole text of the field that has the focus in the active window,
/// in `own` where no window is active. Does nothing for a control without a text.
void FieldFocus(const Desktop& desktop, const Window& own);

}  // namespace tarnvale
