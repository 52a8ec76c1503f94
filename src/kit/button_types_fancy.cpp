// The types with a drawing of their own: 4, 5, 9, 10, 11, 13 and 14.
#include <algorithm>

#include "kit/button_drawing.h"

namespace tarnvale {
namespace {

// --- 4: rounded, raised in single lines and pixels ---

// The outline leaves out the three pixels at each corner that the region cuts
// off, and closes the gap with one pixel on the diagonal.
void DrawRoundedOutline(ButtonDrawing& d, Color color) {
  d.Line(2, 0, d.w - 2, 0, color);
  d.Line(2, d.h - 1, d.w - 2, d.h - 1, color);
  d.Line(0, 2, 0, d.h - 2, color);
  d.Line(d.w - 1, 2, d.w - 1, d.h - 2, color);
  for (const int x : {1, d.w - 2}) {
    for (const int y : {1, d.h - 2}) d.canvas.SetPixel(x, y, color);
  }
}

void DrawRoundedFace(ButtonDrawing& d) {
  const ButtonColors& c = d.colors;
  d.Fill(c.LightFace());
  DrawRoundedOutline(d, c.dark);
  // Lit from the upper left: a line of the face, then the highlight.
  d.Line(2, 1, d.w - 2, 1, c.face);
  d.Line(1, 2, 1, d.h - 2, c.face);
  d.Line(2, 2, d.w - 3, 2, c.highlight);
  d.Line(2, 2, 2, d.h - 3, c.highlight);
  // In its shade: a soft line, then a deep one.
  d.Line(3, d.h - 3, d.w - 2, d.h - 3, d.Shifted(c.face, -16));
  d.Line(d.w - 3, 3, d.w - 3, d.h - 3, d.Shifted(c.face, -16));
  d.Line(2, d.h - 2, d.w - 2, d.h - 2, c.shadow);
  d.Line(d.w - 2, 2, d.w - 2, d.h - 2, c.shadow);
  // Inner corners.
  d.canvas.SetPixel(2, 2, c.face);
  d.canvas.SetPixel(3, 3, c.highlight);
  d.canvas.SetPixel(d.w - 3, d.h - 3, c.shadow);
  d.canvas.SetPixel(d.w - 4, d.h - 4, d.Shifted(c.face, -16));
  d.canvas.SetPixel(d.w - 2, 2, d.Shifted(c.face, -16));
  d.canvas.SetPixel(2, d.h - 2, d.Shifted(c.face, -16));
}

// --- 5: flat metal, one frame within another ---

// The two corners that the region leaves have a colour of their own.
void DrawMetal(ButtonDrawing& d, Color outer, Color inner) {
  d.canvas.FillRect(Inset(d.client, 2), d.Shifted(d.colors.face, 12));
  d.canvas.FrameRect(Inset(d.client, 1), inner);
  d.canvas.FrameRect(d.client, outer);
  const Color corners = d.Shifted(d.colors.shadow, 26);
  d.canvas.SetPixel(0, 0, corners);
  d.canvas.SetPixel(d.w - 1, d.h - 1, corners);
}

void DrawMetalFocus(ButtonDrawing& d) {
  constexpr Color kFocusFrame = 0xCC9999;
  if (!d.look.HasFocusMark()) return;
  const Size text = d.text.Measure(d.look.caption, d.CaptionTextLook(kBlack));
  const Rect area = d.places.caption;
  const int width = std::min(text.width_px + 4, area.width_px);
  const int height = std::min(text.height_px + 2, area.height_px);
  d.canvas.FrameRect({area.left_px + (area.width_px - width) / 2,
                      area.top_px + (area.height_px - height) / 2, width, height},
                     kFocusFrame);
}

// --- 14: gradient with a strip at the left edge ---

constexpr double kStripFall = 58.0;

void DrawStrip(ButtonDrawing& d, Color color) {
  d.canvas.FillRect({2, 2, 3, d.h - 4}, color);
  d.Line(5, 2, 5, d.h - 2, d.Shifted(d.colors.face, -32));
}

void DrawStripFrame(ButtonDrawing& d) {
  d.canvas.FrameRect(d.client, d.colors.dark);
  d.canvas.Edge(Inset(d.client, 1), d.colors.highlight, d.colors.shadow);
}

void DrawStripGround(ButtonDrawing& d) {
  DrawShade(d, d.colors.highlight, kStripFall / d.h);
}

}  // namespace

void DrawRoundedNormal(ButtonDrawing& d) {
  DrawRoundedFace(d);
  DrawLiveCaption(d);
}

void DrawRoundedPressed(ButtonDrawing& d) {
  const ButtonColors& c = d.colors;
  d.Fill(d.Shifted(c.shadow, -40));
  DrawRoundedOutline(d, c.dark);
  d.Line(2, 1, d.w - 2, 1, d.Shifted(c.shadow, -72));
  d.Line(1, 2, 1, d.h - 2, d.Shifted(c.shadow, -72));
  d.Line(2, d.h - 2, d.w - 2, d.h - 2, c.shadow);
  d.Line(d.w - 2, 2, d.w - 2, d.h - 2, c.shadow);
  d.canvas.SetPixel(d.w - 3, d.h - 3, c.shadow);
  DrawCaption(d, CaptionLook::kPressed);
}

void DrawRoundedDisabled(ButtonDrawing& d) {
  DrawRoundedFace(d);
  DrawCaption(d, CaptionLook::kDim);
}

void DrawMetalNormal(ButtonDrawing& d) {
  DrawMetal(d, d.Shifted(d.colors.shadow, -26), d.colors.highlight);
  DrawLiveCaption(d);
  DrawMetalFocus(d);
}

void DrawMetalPressed(ButtonDrawing& d) {
  DrawMetal(d, d.colors.highlight, d.Shifted(d.colors.shadow, -26));
  DrawCaption(d, CaptionLook::kPressed);
}

void DrawMetalDisabled(ButtonDrawing& d) {
  d.canvas.FillRect(Inset(d.client, 1), d.Shifted(d.colors.face, 12));
  d.canvas.FrameRect(d.client, d.colors.shadow);
  DrawCaption(d, CaptionLook::kShadow);
}

void DrawSelectionNormal(ButtonDrawing& d) {
  if (d.look.over) {
    d.Fill(d.colors.selection_fill);
    d.canvas.FrameRect(d.client, d.colors.selection);
  }
  DrawLiveCaption(d);
  DrawFocusMark(d);
}

void DrawSelectionPressed(ButtonDrawing& d) {
  d.Fill(BlendToColor(d.colors.selection, 128));
  d.canvas.FrameRect(d.client, d.colors.selection);
  DrawCaption(d, CaptionLook::kPressed);
}

void DrawSelectionDisabled(ButtonDrawing& d) {
  DrawCaption(d, CaptionLook::kShadow);
}

void DrawNothing(ButtonDrawing&) {}

void DrawTransparentNormal(ButtonDrawing& d) {
  DrawLiveCaption(d);
  DrawFocusMark(d);
}

void DrawTransparentPressed(ButtonDrawing& d) {
  DrawCaption(d, CaptionLook::kPressed);
}

void DrawTransparentDisabled(ButtonDrawing& d) {
  DrawCaption(d, CaptionLook::kDisabled);
}

void DrawOvalNormal(ButtonDrawing& d) {
  d.canvas.FillEllipse(d.client, d.look.over ? d.colors.shadow : d.colors.face);
  d.canvas.FrameEllipse(d.client, d.colors.face);
  DrawLiveCaption(d);
}

void DrawOvalPressed(ButtonDrawing& d) {
  d.canvas.FrameEllipse(d.client, d.colors.shadow);
  DrawCaption(d, CaptionLook::kPressed);
}

void DrawOvalDisabled(ButtonDrawing& d) {
  // Required: the outline has the colour of the ground, so only the caption is seen.
  DrawCaption(d, CaptionLook::kDisabled);
}

void DrawStripNormal(ButtonDrawing& d) {
  if (d.look.over) {
    d.Fill(d.colors.light);
  } else {
    DrawStripGround(d);
  }
  d.font.bold = d.font.bold || d.look.is_default;
  d.Place();
  DrawLiveCaption(d);
  DrawStripFrame(d);
  DrawStrip(d, d.colors.selection);
  DrawFocusMark(d);
}

void DrawStripPressed(ButtonDrawing& d) {
  d.Fill(d.Shifted(d.colors.face, -16));
  DrawCaption(d, CaptionLook::kPressed);
  d.canvas.FrameRect(d.client, d.colors.dark);
  d.canvas.Edge(Inset(d.client, 1), d.Shifted(d.colors.face, -56), d.Shifted(d.colors.face, 16));
}

void DrawStripDisabled(ButtonDrawing& d) {
  DrawStripGround(d);
  DrawCaption(d, CaptionLook::kDim);
  DrawStripFrame(d);
  DrawStrip(d, d.colors.shadow);
}

}  // namespace tarnvale
