// What the layout tables of the main window share.
#pragma once

#include "platform/geometry.h"

namespace tarnvale {

class Form1;

/// All screens have the same size and the same place.
inline constexpr Rect kScreen{236, 10, 648, 546};

void LayOutGeneralScreen(Form1& form);
void LayOutAdvancedScreen(Form1& form);
void LayOutRestoreScreen(Form1& form);

}  // namespace tarnvale
