// The derived colours of the button.
#pragma once

#include "kit/color_math.h"
#include "ui/raster.h"

namespace tarnvale {

/// What the colours come from. Colours may name system colours.
struct ButtonColorSource {
  int scheme = 1;  ///< 2 custom, 3 fixed classic, 4 from the parent, else the system's
  Color back = 0;
  Color back_over = 0;
  Color fore = 0;
  Color fore_over = 0;
  Color parent_back = 0;
  Color parent_fore = 0;
  bool soft_bevel = false;
};

/// The colours that a button is drawn in; none of them names a system colour.
struct ButtonColors {
  Color face = 0;
  Color face_over = 0;
  Color text = 0;
  Color text_over = 0;
  Color shadow = 0;
  Color light = 0;
  Color highlight = 0;
  Color dark = 0;
  Color selection = 0;
  Color selection_fill = 0;
  ShiftKind shift;

  Color Shifted(Color color, int step) const { return ShiftColor(color, step, shift); }
  /// The light face of the gradients.
  Color LightFace() const { return Shifted(face, 48); }
};

ButtonColors DeriveButtonColors(const ButtonColorSource& source);

}  // namespace tarnvale
