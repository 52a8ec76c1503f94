// The system colours of the program's look, in one place.
//
// Chosen: a fixed table instead of the desktop's colours, so that windows,
// frames, buttons and bars are of one piece on every machine; but high contrast is the desktop's.
#pragma once

#include <optional>

#include "ui/palette.h"

namespace tarnvale {

/// Those of the desktop in the place of ours, for a person who needs them; none: ours again.
/// What was drawn before isn't drawn anew.
void UseSystemColors(const std::optional<SystemColorTable>& colors);

/// Indexes of the system colours that the controls name.
enum SystemColorIndex : int {
  kColorSelection = 13,
  kColorButtonFace = 15,
  kColorButtonShadow = 16,
  kColorButtonText = 18,
  kColorButtonHighlight = 20,
  kColor3DDarkShadow = 21,
  kColor3DLight = 22,
};

/// The colour of one index, 0 to 30; black for any other.
Color SystemColor(int index);

/// A colour number whose top bit is set names a system colour by its low bits;
/// any other stands for itself.
Color TranslateColor(Color color);

/// The number that names a system colour.
constexpr Color SystemColorNumber(int index) {
  return 0x80000000U | static_cast<Color>(index);
}

}  // namespace tarnvale
