// The colours of the program's look, which all drawing reads; the pictures in
// assets/ keep to them. 0xRRGGBB.
//
// What a drawn control's rules name by number is in kit/, beside those rules.
#pragma once

#include <array>
#include <cstdint>

#include "ui/raster.h"

namespace tarnvale {

/// The colours of a desktop, by the numbers that Windows gives them and drawn controls name.
using SystemColorTable = std::array<Color, 31>;

namespace palette {

using Rgb = std::uint32_t;

// Surfaces: warm light grey.
inline constexpr Rgb kGround = 0xECE9D8;
inline constexpr Rgb kGroove = 0xF3F2EA;
inline constexpr Rgb kEdgeBright = 0xFFFFFF;
inline constexpr Rgb kEdgeLight = 0xF5F4EC;
inline constexpr Rgb kEdgeMiddle = 0xC5C2B2;
inline constexpr Rgb kEdgeDark = 0xACA899;
inline constexpr Rgb kEdgeShadow = 0x716F64;
inline constexpr Rgb kTip = 0xFFFFE1;
inline constexpr Rgb kTipFrame = 0x6B6B5A;

// Fields, lists and trees.
inline constexpr Rgb kField = 0xFFFFFF;
inline constexpr Rgb kFieldFrame = 0x7F9DB9;
inline constexpr Rgb kFieldFrameOff = 0xC9C7BA;
inline constexpr Rgb kSecondRow = 0xF4F6FA;
inline constexpr Rgb kBranchShade = 0xD6DEE6;

// Text, and what is chosen or can be clicked: one calm blue.
inline constexpr Rgb kText = 0x1B1B1B;
inline constexpr Rgb kTextOff = 0x9A978A;
inline constexpr Rgb kNote = 0x5E5B50;
inline constexpr Rgb kHeading = 0x16387C;
inline constexpr Rgb kLink = 0x1A4FA3;
inline constexpr Rgb kLinkOver = 0x2F7BE6;
inline constexpr Rgb kSelection = 0x316AC5;
inline constexpr Rgb kSelectionIdle = 0xC9D7EE;
inline constexpr Rgb kFocus = 0x606060;

// The task panel.
inline constexpr Rgb kPanelTop = 0xDDE7F8;
inline constexpr Rgb kPanelBottom = 0xBFD0EE;
inline constexpr Rgb kPanelEdge = 0x9DB2D8;
inline constexpr Rgb kPanelBar = 0xC9D7F3;

// Check boxes and radio buttons.
inline constexpr Rgb kMark = 0x1C5180;  ///< their frames
inline constexpr Rgb kTick = 0x21A121;  ///< what is in them
inline constexpr Rgb kMarkShade = 0xDFDFDA;
inline constexpr Rgb kMarkDown = 0xD6D5CC;
inline constexpr Rgb kMarkOff = 0xF6F5EE;
inline constexpr Rgb kGlow = 0xF8C46C;  ///< under the pointer

// Scroll bars and drop-down arrows.
inline constexpr Rgb kKnob = 0xC6D5FB;
inline constexpr Rgb kKnobOver = 0xDAE6FF;
inline constexpr Rgb kKnobDown = 0xA9BEEC;
inline constexpr Rgb kKnobFrame = 0x98B1E4;
inline constexpr Rgb kArrow = 0x4D6185;

// The buttons of message boxes.
inline constexpr Rgb kButtonTop = 0xFFFFFC;
inline constexpr Rgb kButtonBottom = 0xE6E4D6;
inline constexpr Rgb kButtonFrame = 0x003C73;
inline constexpr Rgb kButtonGlow = 0xF8B330;
inline constexpr Rgb kButtonFocus = 0x9DBCEB;

}  // namespace palette

/// As the colour of a canvas.
constexpr Color ToColor(palette::Rgb rgb) {
  return (rgb & 0xFFU) << 16U | (rgb & 0xFF00U) | rgb >> 16U;
}

}  // namespace tarnvale
