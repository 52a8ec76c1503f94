// The types made of 3-D frames: 1, 2, 6, 7, 8 and 12.
#include "kit/button_drawing.h"

namespace tarnvale {
namespace {

constexpr int kThinLightStep = 8;

EdgeColors ClassicEdges(const ButtonColors& colors) {
  return {colors.highlight, colors.dark, colors.light, colors.shadow};
}

EdgeColors OldEdges(const ButtonColors& colors) {
  return {colors.highlight, colors.shadow, colors.highlight, colors.shadow};
}

void DrawOldFrame(ButtonDrawing& d, const EdgeColors& edges) {
  d.canvas.FrameRect(d.client, d.colors.dark);
  DrawEdges(d.canvas, Inset(d.client, 1), edges);
}

// One line each, one pixel inside the border: a rim of the face stays around it.
void DrawThinFrame(ButtonDrawing& d, bool pressed) {
  const Color light = d.Shifted(d.colors.light, kThinLightStep);
  const Rect frame = Inset(d.client, 1);
  d.canvas.Edge(frame, pressed ? d.colors.shadow : light, pressed ? light : d.colors.shadow);
}

void DrawFlatFrame(ButtonDrawing& d) {
  d.canvas.Edge(d.client, d.colors.highlight, d.colors.shadow);
}

}  // namespace

void DrawOldNormal(ButtonDrawing& d) {
  DrawLiveCaption(d);
  DrawOldFrame(d, OldEdges(d.colors));
  DrawFocusMark(d);
}

void DrawOldPressed(ButtonDrawing& d) {
  DrawCaption(d, CaptionLook::kPressed);
  DrawOldFrame(d, OldEdges(d.colors).Inverted());
}

void DrawOldDisabled(ButtonDrawing& d) {
  DrawCaption(d, CaptionLook::kDisabled);
  DrawOldFrame(d, OldEdges(d.colors));
}

void DrawClassicNormal(ButtonDrawing& d) {
  DrawLiveCaption(d);
  if (!d.look.IsMarked()) {
    DrawEdges(d.canvas, d.client, ClassicEdges(d.colors));
    return;
  }
  DrawEdges(d.canvas, Inset(d.client, 1), ClassicEdges(d.colors));
  if (d.look.show_focus_rect) DrawFocusRect(d.canvas, d.caption_area);
  d.canvas.FrameRect(d.client, d.colors.dark);
}

void DrawClassicPressed(ButtonDrawing& d) {
  DrawCaption(d, CaptionLook::kPressed);
  if (!d.look.IsMarked()) {
    DrawEdges(d.canvas, d.client, ClassicEdges(d.colors).Inverted());
    return;
  }
  d.canvas.FrameRect(Inset(d.client, 1), d.colors.shadow);
  d.canvas.FrameRect(d.client, d.colors.dark);
}

void DrawClassicDisabled(ButtonDrawing& d) {
  DrawCaption(d, CaptionLook::kDisabled);
  DrawEdges(d.canvas, d.client, ClassicEdges(d.colors));
}

void DrawThinNormal(ButtonDrawing& d) {
  DrawLiveCaption(d);
  DrawThinFrame(d, false);
  DrawFocusMark(d);
}

void DrawThinPressed(ButtonDrawing& d) {
  DrawCaption(d, CaptionLook::kPressed);
  DrawThinFrame(d, true);
  DrawFocusMark(d);
}

void DrawThinDisabled(ButtonDrawing& d) {
  DrawCaption(d, CaptionLook::kDisabled);
  DrawThinFrame(d, false);
}

void DrawFlatNormal(ButtonDrawing& d) {
  DrawLiveCaption(d);
  DrawFlatFrame(d);
  DrawFocusMark(d);
}

void DrawFlatPressed(ButtonDrawing& d) {
  DrawCaption(d, CaptionLook::kPressed);
  d.canvas.Edge(d.client, d.colors.shadow, d.colors.highlight);
}

void DrawFlatDisabled(ButtonDrawing& d) {
  DrawCaption(d, CaptionLook::kDisabled);
  DrawFlatFrame(d);
}

void DrawHoverFlatNormal(ButtonDrawing& d) {
  DrawLiveCaption(d);
  if (d.look.over) DrawFlatFrame(d);
  DrawFocusMark(d);
}

void DrawDoubleNormal(ButtonDrawing& d) {
  DrawLiveCaption(d);
  if (d.look.over) {
    DrawEdges(d.canvas, d.client, OldEdges(d.colors));
  } else {
    DrawFlatFrame(d);
  }
  DrawFocusMark(d);
}

void DrawDoublePressed(ButtonDrawing& d) {
  DrawCaption(d, CaptionLook::kPressed);
  DrawEdges(d.canvas, d.client, OldEdges(d.colors).Inverted());
}

}  // namespace tarnvale
