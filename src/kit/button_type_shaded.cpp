// Type 3: a soft gradient in a dark blue frame, warm while hovered, blue with
// the focus. Exact to the pixel.
#include "kit/button_drawing.h"

namespace tarnvale {
namespace {

constexpr Color kFrame = 0x733C00;
constexpr Color kFrameCorner = 0x7B4D10;
constexpr double kFall = 25.0;

// The coloured inner frame: whole frame, bottom line, top line, row 2, and the
// columns 2 and w - 3.
struct InnerFrame {
  Color frame, bottom, top, second_row, sides;
};
constexpr InnerFrame kBlue = {0xE7AE8C, 0xEF826B, 0xFFE7CE, 0xF7D7BD, 0xF0D1B5};
constexpr InnerFrame kOrange = {0x31B2FF, 0x0096E7, 0xCEF3FF, 0x8CDBFF, 0x6BCBFF};

void SetInnerCorners(ButtonDrawing& d, Color color) {
  for (const int x : {1, d.w - 2}) {
    for (const int y : {1, d.h - 2}) d.canvas.SetPixel(x, y, color);
  }
}

void DrawFrame(ButtonDrawing& d) {
  d.canvas.FrameRect(d.client, kFrame);
  SetInnerCorners(d, kFrameCorner);
}

void DrawInnerFrame(ButtonDrawing& d, const InnerFrame& colors) {
  d.canvas.FrameRect({1, 2, d.w - 2, d.h - 4}, colors.frame);
  d.Line(2, d.h - 2, d.w - 2, d.h - 2, colors.bottom);
  d.Line(2, 1, d.w - 2, 1, colors.top);
  d.Line(1, 2, d.w - 1, 2, colors.second_row);
  d.Line(2, 3, 2, d.h - 3, colors.sides);
  d.Line(d.w - 3, 3, d.w - 3, d.h - 3, colors.sides);
}

// Steps from the base colour of the eight lines of the bevel.
struct Bevel {
  int bottom, above_bottom, right, before_right, top, below_top, left, behind_left;
};
constexpr Bevel kRaised = {-48, -32, -36, -24, 16, 10, -5, -10};
constexpr Bevel kPressedIn = {16, 10, 5, 0, -32, -24, -32, -22};

void DrawBevel(ButtonDrawing& d, Color base, const Bevel& bevel) {
  const auto shade = [&](int step) { return d.Shifted(base, step); };
  d.Line(2, d.h - 2, d.w - 2, d.h - 2, shade(bevel.bottom));
  d.Line(1, d.h - 3, d.w - 1, d.h - 3, shade(bevel.above_bottom));
  d.Line(d.w - 2, 2, d.w - 2, d.h - 2, shade(bevel.right));
  d.Line(d.w - 3, 3, d.w - 3, d.h - 3, shade(bevel.before_right));
  d.Line(2, 1, d.w - 2, 1, shade(bevel.top));
  d.Line(1, 2, d.w - 1, 2, shade(bevel.below_top));
  d.Line(1, 2, 1, d.h - 2, shade(bevel.left));
  d.Line(2, 3, 2, d.h - 3, shade(bevel.behind_left));
}

}  // namespace

void DrawShadedNormal(ButtonDrawing& d) {
  const Color light_face = d.colors.LightFace();
  DrawShade(d, light_face, kFall / d.h);
  DrawLiveCaption(d);
  DrawFrame(d);
  if (d.look.over) {
    DrawInnerFrame(d, kOrange);
  } else if (d.look.IsMarked() && d.look.show_focus_rect) {
    DrawInnerFrame(d, kBlue);
  } else {
    DrawBevel(d, light_face, kRaised);
  }
}

void DrawShadedPressed(ButtonDrawing& d) {
  const Color base = d.Shifted(d.colors.LightFace(), -32);
  DrawShadeUpward(d, base, kFall / d.h);
  DrawCaption(d, CaptionLook::kPressed);
  DrawFrame(d);
  DrawBevel(d, base, kPressedIn);
}

void DrawShadedDisabled(ButtonDrawing& d) {
  SetInnerCorners(d, d.Shifted(d.colors.LightFace(), -72));
  DrawCaption(d, CaptionLook::kDisabled);
}

}  // namespace tarnvale
