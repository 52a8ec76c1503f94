#include "kit/progress_modes.h"

#include <algorithm>

#include "base/numbers.h"
#include "kit/color_math.h"
#include "kit/drawing.h"

namespace tarnvale {
namespace {

constexpr Color kGroundGrey = 0xC0C0C0;

// --- modes 0 to 2 ---

constexpr int kChunkMargin = 3;  // from the border to the chunks

// The bar's area in the direction in which it grows.
struct Track {
  int length = 0;
  int end = 0;  // how far the bar has come, aligned to whole steps
};

Track TrackOf(const ProgressDrawing& d, int step) {
  Track track;
  track.length = std::max((d.look.upright ? d.h : d.w) - 2 * kChunkMargin, 0);
  const int reached = d.Share(track.length, 100.0);
  track.end = std::min((reached + step - 1) / step * step, track.length);
  return track;
}

// A slice of the bar across its direction, counted from where it begins.
Rect SliceOf(const ProgressDrawing& d, int start, int length) {
  if (d.look.upright) {
    return {kChunkMargin, d.h - kChunkMargin - start - length, d.w - 2 * kChunkMargin, length};
  }
  return {kChunkMargin + start, kChunkMargin, length, d.h - 2 * kChunkMargin};
}

// Rounded like a rod: pale at its edges, the full colour past its middle.
void DrawRod(ProgressDrawing& d, int length) {
  const Rect area = SliceOf(d, 0, length);
  if (area.width_px <= 0 || area.height_px <= 0) return;
  const Color pale = BlendToColor(d.color, 170);
  const Color soft = BlendToColor(d.color, 70);
  const int across = d.look.upright ? area.width_px : area.height_px;
  for (int i = 0; i < across; ++i) {
    const int middle = across * 3 / 5;
    const int away = i <= middle ? middle - i : i - middle;
    const int reach = std::max(i <= middle ? middle : across - 1 - middle, 1);
    const Color edge = i <= middle ? pale : soft;
    const Color color = BlendColors(edge, d.color, 255 * away / reach);
    if (d.look.upright) {
      d.canvas.FillRect({area.left_px + i, area.top_px, 1, area.height_px}, color);
    } else {
      d.canvas.FillRect({area.left_px, area.top_px + i, area.width_px, 1}, color);
    }
  }
}

// --- mode 9 ---

struct CornerPixel {
  int x, y;
  Color color;
};

// Of the upper left corner; the other three mirror it.
constexpr CornerPixel kCornerPixels[] = {
    {0, 1, 0xA6ABAC}, {0, 2, 0x7D7E7F}, {1, 0, 0xA7ABAC}, {2, 0, 0x7D7E7F}, {2, 2, 0xBEBEBE}};

}  // namespace

void DrawRoundedFrame(ProgressDrawing& d) {
  constexpr Color kDeep = 0xBEBEBE;
  constexpr Color kSoft = 0xEFEFEF;
  const int w = d.w;
  const int h = d.h;
  d.canvas.Line(2, 1, w - 2, 1, kDeep);
  d.canvas.Line(2, h - 2, w - 2, h - 2, kSoft);
  d.canvas.Line(1, 2, 1, h - 2, kDeep);
  d.canvas.Line(2, 2, 2, h - 2, kSoft);
  d.canvas.Line(2, 2, w - 2, 2, kSoft);
  d.canvas.Line(w - 2, 2, w - 2, h - 2, kSoft);
  for (const CornerPixel& pixel : kCornerPixels) {
    for (const int x : {pixel.x, w - 1 - pixel.x}) {
      for (const int y : {pixel.y, h - 1 - pixel.y}) d.canvas.SetPixel(x, y, pixel.color);
    }
  }
}

void DrawChunks(ProgressDrawing& d) {
  constexpr int kChunk = 6;
  constexpr int kGap = 2;
  const Track track = TrackOf(d, kChunk + kGap);
  DrawRod(d, track.end);
  for (int at = kChunk; at < track.end; at += kChunk + kGap) {
    d.canvas.FillRect(SliceOf(d, at, kGap), kWhite);
  }
  DrawRoundedFrame(d);
}

void DrawUnbrokenChunks(ProgressDrawing& d) {
  constexpr int kStep = 2;
  DrawRod(d, TrackOf(d, kStep).end);
  DrawRoundedFrame(d);
}

void DrawPlain(ProgressDrawing& d) {
  d.canvas.FrameRect(ClientRect(d.canvas), BlendToColor(d.color, 100));
  const int end = std::min(d.Share(d.w, 100.0), d.w - 1);
  d.canvas.FillRect({1, 1, end - 1, d.h - 2}, BlendToColor(d.color, 180));
}

void DrawEtchedFade(ProgressDrawing& d) {
  DrawGradient(d.canvas, BlendToColor(d.color, 140), BlendToColor(d.color, 200),
               {2, 2, d.Share(d.w - 4, 100.0), d.h - 3}, GradientLines::kRows);
  // Chosen: the edge comes last, so that no gradient lies on it.
  DrawEtchedEdge(d.canvas, ClientRect(d.canvas));
}

void DrawTube(ProgressDrawing& d) {
  const Color pale = BlendToColor(d.color, 250);
  const Color deep = BlendToColor(d.color, 100);
  const Color line = BlendToColor(d.color, 25);
  const int end = d.Share(d.w, 101.0);
  const int half = RoundToInt32((d.h - 2) / 2.0);
  if (end > 1) {
    DrawGradient(d.canvas, pale, deep, {1, 1, end - 1, half}, GradientLines::kRows);
    DrawGradient(d.canvas, deep, pale, {1, 1 + half, end - 1, d.h - 2 - half},
                 GradientLines::kRows);
    d.canvas.Line(end, 1, end, d.h - 1, line);
  }
  d.canvas.FrameRect(ClientRect(d.canvas), line);
}

void DrawDark(ProgressDrawing& d) {
  const Color shine = BlendToColor(d.color, 200);
  const int end = d.Share(d.w - 4, 100.0);
  const int half = RoundToInt32((d.h - 4) / 2.0);
  if (end > 0) {
    DrawGradient(d.canvas, shine, d.color, {2, 2, end, half}, GradientLines::kRows);
    DrawGradient(d.canvas, BlendColors(d.color, kBlack, 190), BlendColors(d.color, kBlack, 90),
                 {2, 2 + half, end, d.h - 5 - half}, GradientLines::kRows);
  }
  d.canvas.FrameRect(ClientRect(d.canvas), BlendColors(kGroundGrey, kBlack, 100));
}

void DrawHatched(ProgressDrawing& d) {
  const int end = d.Share(d.w, 101.0);
  d.canvas.Hatch({2, 2, end - 2, d.h - 4}, d.look.brush_style, d.color, BlendToColor(d.color, 140));
  DrawBumpEdge(d.canvas, ClientRect(d.canvas));
}

void DrawPatterned(ProgressDrawing& d) {
  if (d.look.image != nullptr && !d.look.image->Empty()) {
    const int end = d.Share(d.w, 101.0);
    d.canvas.Tile(d.look.image->image, {2, 2, end - 2, d.h - 4});
  }
  DrawSunkenEdge(d.canvas, ClientRect(d.canvas));
}

void DrawPolished(ProgressDrawing& d) {
  const int half = RoundToInt32((d.h - 3) / 2.0);
  const int bar_end = d.Share(d.w - 4, 100.0);
  const auto rows = [&](Color from, Color to, int top, int width) {
    DrawGradient(d.canvas, from, to, {2, top, width, half}, GradientLines::kRows);
  };
  rows(kWhite, kGroundGrey, 2, d.w - 3);
  rows(BlendColors(kGroundGrey, kBlack, 255), kGroundGrey, half, d.w - 3);
  rows(BlendToColor(d.color, 150), BlendColors(d.look.color, kBlack, 180), 2, bar_end);
  rows(BlendColors(d.look.color, kBlack, 190), d.color, half, bar_end);
  DrawRoundedFrame(d);
}

}  // namespace tarnvale
