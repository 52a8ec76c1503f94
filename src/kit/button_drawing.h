// One drawing of a button, and the steps that the types share. The fourteen
// types are small functions of it; button_look.cpp holds their table.
#pragma once

#include "kit/button_look.h"
#include "kit/button_shape.h"
#include "kit/drawing.h"
#include "ui/raster.h"

namespace tarnvale {

/// The colours of a caption; DrawCaption says what each does.
enum class CaptionLook : int {
  kNormal = 0,
  kOver = 1,
  kPressed = 2,
  kDisabled = 3,
  kShadow = 4,
  kDim = 5,
  kFaint = 6,
  kRaised = 7,
};

struct ButtonDrawing {
  ButtonDrawing(const ButtonLook& look, Canvas& canvas, TextPainter& text);

  const ButtonLook& look;
  const ButtonColors& colors;
  Canvas& canvas;
  TextPainter& text;
  int w;
  int h;
  Rect client;
  Font font;          ///< the look's; a type may make it bold for this drawing
  Rect caption_area;  ///< the focus rectangle is drawn on it
  CaptionPlaces places;

  Color Shifted(Color color, int step) const { return colors.Shifted(color, step); }
  void Line(int x1, int y1, int x2, int y2, Color color) { canvas.Line(x1, y1, x2, y2, color); }
  void Fill(Color color) { canvas.FillRect(client, color); }

  /// Measures the caption anew and places caption and picture, after `font` or
  /// `caption_area` changed.
  void Place();
  TextLook CaptionTextLook(Color color) const;
};

/// Draws the caption, on one line, centred:
/// 0 normal: the special effect, then the text colour.
/// 1 over: the same in the colour for hovering.
/// 2 pressed: as 1, moved by one pixel; type 4 takes the light colour.
/// 3 disabled: highlight moved, then shadow. 4: shadow.
/// 5: the light face shifted by -104. 6: highlight moved, then face.
/// 7: shadow shifted by -50, moved, then highlight.
void DrawCaption(ButtonDrawing& d, CaptionLook look);

/// Caption in look 0, or 1 while hovered.
void DrawLiveCaption(ButtonDrawing& d);

/// The picture as the state needs it: hovered, pressed, grey, disabled.
void DrawButtonPicture(ButtonDrawing& d);

/// The focus rectangle, while the button has the focus and shows it.
void DrawFocusMark(ButtonDrawing& d);

/// Rows from the top, `base` darkened by round(step * row), row 1 to the height.
void DrawShade(ButtonDrawing& d, Color base, double step);
/// The same from the bottom up: the bottom is the lightest.
void DrawShadeUpward(ButtonDrawing& d, Color base, double step);

// The types' blocks.
void DrawOldNormal(ButtonDrawing& d);
void DrawOldPressed(ButtonDrawing& d);
void DrawOldDisabled(ButtonDrawing& d);
void DrawClassicNormal(ButtonDrawing& d);
void DrawClassicPressed(ButtonDrawing& d);
void DrawClassicDisabled(ButtonDrawing& d);
void DrawShadedNormal(ButtonDrawing& d);
void DrawShadedPressed(ButtonDrawing& d);
void DrawShadedDisabled(ButtonDrawing& d);
void DrawRoundedNormal(ButtonDrawing& d);
void DrawRoundedPressed(ButtonDrawing& d);
void DrawRoundedDisabled(ButtonDrawing& d);
void DrawMetalNormal(ButtonDrawing& d);
void DrawMetalPressed(ButtonDrawing& d);
void DrawMetalDisabled(ButtonDrawing& d);
void DrawThinNormal(ButtonDrawing& d);
void DrawThinPressed(ButtonDrawing& d);
void DrawThinDisabled(ButtonDrawing& d);
void DrawFlatNormal(ButtonDrawing& d);
void DrawFlatPressed(ButtonDrawing& d);
void DrawFlatDisabled(ButtonDrawing& d);
void DrawHoverFlatNormal(ButtonDrawing& d);
void DrawSelectionNormal(ButtonDrawing& d);
void DrawSelectionPressed(ButtonDrawing& d);
void DrawSelectionDisabled(ButtonDrawing& d);
void DrawNothing(ButtonDrawing& d);
void DrawTransparentNormal(ButtonDrawing& d);
void DrawTransparentPressed(ButtonDrawing& d);
void DrawTransparentDisabled(ButtonDrawing& d);
void DrawDoubleNormal(ButtonDrawing& d);
void DrawDoublePressed(ButtonDrawing& d);
void DrawOvalNormal(ButtonDrawing& d);
void DrawOvalPressed(ButtonDrawing& d);
void DrawOvalDisabled(ButtonDrawing& d);
void DrawStripNormal(ButtonDrawing& d);
void DrawStripPressed(ButtonDrawing& d);
void DrawStripDisabled(ButtonDrawing& d);

}  // namespace tarnvale
