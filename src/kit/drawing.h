// Small drawing steps that the drawn controls share.
#pragma once

#include "ui/geometry.h"
#include "ui/raster.h"

namespace tarnvale {

/// `rect` made smaller by `inset` on all sides; not below size 0.
Rect Inset(Rect rect, int inset);
Rect Moved(Rect rect, int dx, int dy);

/// The whole canvas.
Rect ClientRect(const Canvas& canvas);

/// A pair of edge colours, one pixel wide each.
struct EdgeColors {
  Color outer_top_left = 0;
  Color outer_bottom_right = 0;
  Color inner_top_left = 0;
  Color inner_bottom_right = 0;

  /// The same edge pressed in.
  EdgeColors Inverted() const {
    return {outer_bottom_right, outer_top_left, inner_bottom_right, inner_top_left};
  }
};

/// A 3-D frame two pixels wide inside `rect`.
void DrawEdges(Canvas& canvas, Rect rect, const EdgeColors& colors);

/// The classic frames in system colours, two pixels wide: engraved line,
/// raised line, sunken.
void DrawEtchedEdge(Canvas& canvas, Rect rect);
void DrawBumpEdge(Canvas& canvas, Rect rect);
void DrawSunkenEdge(Canvas& canvas, Rect rect);

/// A dotted frame that inverts every second pixel, so that it shows on any
/// ground. On a transparent pixel the dot is black.
void DrawFocusRect(Canvas& canvas, Rect rect);

/// Engraved text of something that is out of use: `light` moved by (1, 1), then
/// `dark` over it.
void DrawEngraved(Canvas& canvas, TextPainter& text, const std::string& caption, TextLook look,
                  Rect area, Color light, Color dark);

}  // namespace tarnvale
