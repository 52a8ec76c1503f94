// Arithmetic on colours, channel by channel.
#pragma once

#include "ui/raster.h"

namespace tarnvale {

struct ShiftKind {
  bool soft_bevel = false;  ///< the step is halved first, towards zero
  bool scaled = false;      ///< blue moves in proportion to itself
};

/// `color` with `step` added to red, green and blue; with `scaled`, blue becomes
/// blue + blue * step / 192 instead. A positive step stops at 255, a negative
/// one at 0.
Color ShiftColor(Color color, int step, ShiftKind kind = {});

/// A pale form of a colour: each channel becomes
/// channel * (255 - weight) / 255 + weight, truncated, at most 255.
/// `weight` 0 (the colour) to 255 (white).
Color BlendToColor(Color color, int weight);

/// `amount` / 255 of `a` and the rest of `b`, each channel rounded half to even.
/// Both go through TranslateColor first. `amount` 0 to 255.
Color BlendColors(Color a, Color b, int amount);

}  // namespace tarnvale
