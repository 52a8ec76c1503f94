// The program's typeface and colours in Qt, in one place.
#pragma once

#include <QColor>
#include <QFont>

#include "ui/controls.h"

namespace tarnvale {

namespace look {
inline constexpr QRgb kGround = 0xFFECE9D8;
inline constexpr QRgb kField = 0xFFFFFFFF;
inline constexpr QRgb kFieldFrame = 0xFF7F9DB9;
inline constexpr QRgb kFieldFrameOff = 0xFFC9C7BA;
inline constexpr QRgb kText = 0xFF1B1B1B;
inline constexpr QRgb kTextOff = 0xFF9A978A;
inline constexpr QRgb kNote = 0xFF5E5B50;
inline constexpr QRgb kSelection = 0xFF316AC5;
inline constexpr QRgb kSelectionIdle = 0xFFC9D7EE;
inline constexpr QRgb kLink = 0xFF1A4FA3;
inline constexpr QRgb kLinkOver = 0xFF2F7BE6;
inline constexpr QRgb kHeading = 0xFF16387C;
inline constexpr QRgb kPanelTop = 0xFFDDE7F8;
inline constexpr QRgb kPanelBottom = 0xFFBFD0EE;
inline constexpr QRgb kPanelEdge = 0xFF9DB2D8;
inline constexpr QRgb kPanelBar = 0xFFC9D7F3;
inline constexpr QRgb kMark = 0xFF1C5180;  ///< frames of check boxes and radio buttons
inline constexpr QRgb kTick = 0xFF21A121;  ///< what stands in them
inline constexpr QRgb kKnob = 0xFFC6D5FB;  ///< scroll bars and drop-down arrows
inline constexpr QRgb kKnobOver = 0xFFDAE6FF;
inline constexpr QRgb kKnobDown = 0xFFA9BEEC;
inline constexpr QRgb kKnobFrame = 0xFF98B1E4;
inline constexpr QRgb kArrow = 0xFF4D6185;
inline constexpr QRgb kGroove = 0xFFF3F2EA;
inline constexpr QRgb kButtonFrame = 0xFF003C73;
inline constexpr QRgb kTip = 0xFFFFFFE1;
}  // namespace look

/// The program's one typeface at a size in points of 1/72 inch at 96 dpi;
/// greyscale, hinted the same everywhere.
QFont ProgramFont(double size_pt, bool bold = false);
/// As ProgramFont with every character equally wide.
QFont FixedWidthFont(double size_pt);
QFont FontOf(TextRole role);
QColor ColorOf(TextRole role, bool enabled);

}  // namespace tarnvale
