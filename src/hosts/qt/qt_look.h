// The program's typeface and the colours of texts in Qt.
#pragma once

#include <QColor>
#include <QFont>

#include "ui/look.h"

namespace tarnvale {

/// The program's one typeface at a size in points of 1/72 inch at 96 dpi;
/// greyscale, hinted the same everywhere.
QFont ProgramFont(double size_pt, bool bold = false);
/// As ProgramFont with every character equally wide.
QFont FixedWidthFont(double size_pt);
QFont FontOf(TextRole role);
QColor ColorOf(TextRole role, bool enabled);

}  // namespace tarnvale
