#include "kit/drawing.h"

#include <algorithm>

#include "kit/system_colors.h"

namespace tarnvale {
namespace {

// The three classic frames in the two colours that make them.
EdgeColors Etched() {
  const Color shadow = SystemColor(kColorButtonShadow);
  const Color highlight = SystemColor(kColorButtonHighlight);
  return {shadow, highlight, highlight, shadow};
}

}  // namespace

Rect Inset(Rect rect, int inset) {
  return {rect.left_px + inset, rect.top_px + inset, std::max(rect.width_px - 2 * inset, 0),
          std::max(rect.height_px - 2 * inset, 0)};
}

Rect Moved(Rect rect, int dx, int dy) {
  rect.left_px += dx;
  rect.top_px += dy;
  return rect;
}

Rect ClientRect(const Canvas& canvas) {
  return {0, 0, canvas.WidthPx(), canvas.HeightPx()};
}

void DrawEdges(Canvas& canvas, Rect rect, const EdgeColors& colors) {
  canvas.Edge(rect, colors.outer_top_left, colors.outer_bottom_right);
  canvas.Edge(Inset(rect, 1), colors.inner_top_left, colors.inner_bottom_right);
}

void DrawEtchedEdge(Canvas& canvas, Rect rect) {
  DrawEdges(canvas, rect, Etched());
}

void DrawBumpEdge(Canvas& canvas, Rect rect) {
  DrawEdges(canvas, rect,
            {SystemColor(kColor3DLight), SystemColor(kColor3DDarkShadow),
             SystemColor(kColor3DDarkShadow), SystemColor(kColor3DLight)});
}

void DrawSunkenEdge(Canvas& canvas, Rect rect) {
  DrawEdges(canvas, rect,
            {SystemColor(kColorButtonShadow), SystemColor(kColorButtonHighlight),
             SystemColor(kColor3DDarkShadow), SystemColor(kColor3DLight)});
}

void DrawFocusRect(Canvas& canvas, Rect rect) {
  const auto invert = [&](int x, int y) {
    if ((x + y) % 2 != 0) return;
    const auto color = canvas.PixelAt(x, y);
    canvas.SetPixel(x, y, color ? *color ^ kWhite : kBlack);
  };
  if (rect.width_px < 2 || rect.height_px < 2) return;
  for (int x = rect.left_px; x < rect.RightPx(); ++x) {
    invert(x, rect.top_px);
    invert(x, rect.BottomPx() - 1);
  }
  for (int y = rect.top_px + 1; y < rect.BottomPx() - 1; ++y) {
    invert(rect.left_px, y);
    invert(rect.RightPx() - 1, y);
  }
}

void DrawEngraved(Canvas& canvas, TextPainter& text, const std::string& caption, TextLook look,
                  Rect area, Color light, Color dark) {
  look.color = light;
  text.Draw(canvas, caption, look, Moved(area, 1, 1));
  look.color = dark;
  text.Draw(canvas, caption, look, area);
}

}  // namespace tarnvale
