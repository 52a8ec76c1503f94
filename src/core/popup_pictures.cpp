#include "core/popup_pictures.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace tarnvale {
namespace {

// The colours of the program's look.
struct Paint {
  int red = 0;
  int green = 0;
  int blue = 0;
};
constexpr Paint kPanelTop{0xDD, 0xE7, 0xF8};
constexpr Paint kPanelBottom{0xBF, 0xD0, 0xEE};
constexpr Paint kPanelEdge{0x9D, 0xB2, 0xD8};
constexpr Paint kBandTop{0x5B, 0x8F, 0xDD};
constexpr Paint kBandBottom{0x31, 0x6A, 0xC5};
constexpr Paint kField{0xFF, 0xFF, 0xFF};
constexpr Paint kFieldFrame{0x7F, 0x9D, 0xB9};
constexpr Paint kSelection{0x31, 0x6A, 0xC5};
constexpr Paint kLines{0xC9, 0xD7, 0xEE};
constexpr Paint kArrow{0x4D, 0x61, 0x85};

// Edges are the mean of so many samples in each direction.
constexpr int kSamples = 4;

struct Spot {
  double x = 0;
  double y = 0;
};

/// A sheet to draw on. Places are pixels at 96 dpi, whatever the scale.
class Sheet {
 public:
  Sheet(Size size, int scale) : scale_(scale) {
    picture_.width = size.width_px * scale;
    picture_.height = size.height_px * scale;
    picture_.pixels.resize(static_cast<std::size_t>(picture_.width) *
                           static_cast<std::size_t>(picture_.height));
  }

  int Scale() const { return scale_; }
  Raster Take() { return std::move(picture_); }

  /// From `top` to `bottom` over the whole rectangle.
  void Fade(Rect area, Paint top, Paint bottom) {
    for (int y = area.top_px * scale_; y < area.BottomPx() * scale_; ++y) {
      const double down = (y + 0.5 - area.top_px * scale_) / (area.height_px * scale_);
      const auto between = [&](int from, int to) {
        return static_cast<int>(std::lround(from + (to - from) * down));
      };
      const Paint paint{between(top.red, bottom.red), between(top.green, bottom.green),
                        between(top.blue, bottom.blue)};
      for (int x = area.left_px * scale_; x < area.RightPx() * scale_; ++x) Mix(x, y, paint, 1);
    }
  }

  /// Whatever `inside` says is inside, within the bounds.
  template <class Inside>
  void Fill(Rect bounds, Paint paint, Inside&& inside) {
    for (int y = bounds.top_px * scale_; y < bounds.BottomPx() * scale_; ++y) {
      for (int x = bounds.left_px * scale_; x < bounds.RightPx() * scale_; ++x) {
        Mix(x, y, paint, Coverage(x, y, inside));
      }
    }
  }

  /// A picture made for this scale, its upper left corner at a place.
  void Stamp(const Raster& picture, Point at) {
    for (int y = 0; y < picture.height; ++y) {
      for (int x = 0; x < picture.width; ++x) {
        const std::uint32_t pixel = picture.At(x, y);
        const Paint paint{RedOf(pixel), GreenOf(pixel), BlueOf(pixel)};
        Mix(at.x_px * scale_ + x, at.y_px * scale_ + y, paint, (pixel >> 24U) / 255.0);
      }
    }
  }

 private:
  template <class Inside>
  double Coverage(int x, int y, Inside&& inside) const {
    int hits = 0;
    for (int sy = 0; sy < kSamples; ++sy) {
      for (int sx = 0; sx < kSamples; ++sx) {
        const Spot spot{(x + (sx + 0.5) / kSamples) / scale_, (y + (sy + 0.5) / kSamples) / scale_};
        if (inside(spot)) ++hits;
      }
    }
    return hits / static_cast<double>(kSamples * kSamples);
  }

  // Lays paint over what is there. `share` is 0 to 1.
  void Mix(int x, int y, Paint paint, double share) {
    if (share <= 0) return;
    std::uint32_t& pixel =
        picture_.pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(picture_.width) +
                        static_cast<std::size_t>(x)];
    const double below = (pixel >> 24U) / 255.0 * (1 - share);
    const double alpha = share + below;
    const auto channel = [&](int over, int under) {
      return static_cast<std::uint32_t>(std::lround((over * share + under * below) / alpha));
    };
    pixel = static_cast<std::uint32_t>(std::lround(alpha * 255)) << 24U |
            channel(paint.blue, BlueOf(pixel)) << 16U | channel(paint.green, GreenOf(pixel)) << 8U |
            channel(paint.red, RedOf(pixel));
  }

  Raster picture_;
  int scale_;
};

bool InRounded(Spot spot, Rect area, double radius) {
  const double x = std::clamp(spot.x, area.left_px + radius, area.RightPx() - radius);
  const double y = std::clamp(spot.y, area.top_px + radius, area.BottomPx() - radius);
  return std::hypot(spot.x - x, spot.y - y) <= radius;
}

bool OnStroke(Spot spot, Spot from, Spot to, double width) {
  const double dx = to.x - from.x;
  const double dy = to.y - from.y;
  const double along = ((spot.x - from.x) * dx + (spot.y - from.y) * dy) / (dx * dx + dy * dy);
  const double t = std::clamp(along, 0.0, 1.0);
  return std::hypot(spot.x - from.x - t * dx, spot.y - from.y - t * dy) <= width / 2;
}

void FillRounded(Sheet& sheet, Rect area, double radius, Paint paint) {
  sheet.Fill(area, paint, [&](Spot spot) { return InRounded(spot, area, radius); });
}

Rect Inset(Rect area) {
  return {area.left_px + 1, area.top_px + 1, area.width_px - 2, area.height_px - 2};
}

void FillFramed(Sheet& sheet, Rect area, double radius, Paint frame, Paint inside) {
  FillRounded(sheet, area, radius, frame);
  FillRounded(sheet, Inset(area), radius - 1, inside);
}

void DrawGround(Sheet& sheet, Size size) {
  const Rect whole{0, 0, size.width_px, size.height_px};
  sheet.Fade(whole, kPanelEdge, kPanelEdge);
  sheet.Fade(Inset(whole), kPanelTop, kPanelBottom);
  sheet.Fade({1, 1, size.width_px - 2, 5}, kBandTop, kBandBottom);
}

// A sheet of paper with lines of writing, the last one short.
void DrawPaper(Sheet& sheet, Point at) {
  const Rect paper{at.x_px, at.y_px, 36, 46};
  FillFramed(sheet, paper, 3, kFieldFrame, kField);
  for (int line = 0; line < 5; ++line) {
    const int width = line == 4 ? 12 : 24;
    sheet.Fade({at.x_px + 6, at.y_px + 8 + line * 7, width, 2}, kLines, kLines);
  }
}

void DrawChevron(Sheet& sheet, Point tip, Paint paint) {
  const Spot end{static_cast<double>(tip.x_px), static_cast<double>(tip.y_px)};
  const Spot upper{end.x - 9, end.y - 10};
  const Spot lower{end.x - 9, end.y + 10};
  sheet.Fill({tip.x_px - 13, tip.y_px - 13, 17, 26}, paint, [&](Spot spot) {
    return OnStroke(spot, upper, end, 5) || OnStroke(spot, end, lower, 5);
  });
}

// A bar that is partly full, and an arrow behind it: there is more to see.
void DrawBarHint(Sheet& sheet) {
  const Rect bar{kAlertBarPart.left_px + 4, kAlertBarPart.top_px + 6, 212, 12};
  FillFramed(sheet, bar, 4, kFieldFrame, kField);
  FillRounded(sheet, {bar.left_px + 2, bar.top_px + 2, 76, 8}, 2.5, kSelection);
  const Spot tip{bar.RightPx() + 19.0, bar.top_px + 6.0};
  sheet.Fill({bar.RightPx() + 8, bar.top_px - 1, 14, 14}, kSelection, [&](Spot spot) {
    return OnStroke(spot, {tip.x - 6, tip.y - 5}, tip, 2.5) ||
           OnStroke(spot, tip, {tip.x - 6, tip.y + 5}, 2.5);
  });
}

void DrawAlert(Sheet& sheet, const EmblemPainter& emblem) {
  DrawGround(sheet, kAlertSize);
  DrawPaper(sheet, {40, 23});
  DrawPaper(sheet, {30, 31});
  // Ever stronger towards the box.
  DrawChevron(sheet, {119, 52}, {0xA6, 0xBF, 0xEA});
  DrawChevron(sheet, {141, 52}, {0x6E, 0x97, 0xDA});
  DrawChevron(sheet, {163, 52}, kSelection);
  constexpr int kEmblemPx = 64;
  sheet.Stamp(emblem(kEmblemPx * sheet.Scale()), {194, 20});
  DrawBarHint(sheet);
}

void DrawProgressGround(Sheet& sheet, const EmblemPainter& emblem) {
  DrawGround(sheet, kProgressSize);
  constexpr int kEmblemPx = 24;
  sheet.Stamp(emblem(kEmblemPx * sheet.Scale()), {14, 16});
}

void DrawCross(Sheet& sheet) {
  const Rect tile{0, 0, kCrossSize.width_px, kCrossSize.height_px};
  FillFramed(sheet, tile, 4, kPanelEdge, kPanelTop);
  sheet.Fill(Inset(tile), kArrow, [](Spot spot) {
    return OnStroke(spot, {6.5, 6.5}, {13.5, 13.5}, 2) ||
           OnStroke(spot, {13.5, 6.5}, {6.5, 13.5}, 2);
  });
}

template <class Draw>
PicturePair BothScales(Size size, Draw&& draw) {
  const auto at_scale = [&](int scale) {
    Sheet sheet(size, scale);
    draw(sheet);
    return sheet.Take();
  };
  return {at_scale(1), at_scale(2)};
}

}  // namespace

PicturePair AlertPicture(const EmblemPainter& emblem) {
  return BothScales(kAlertSize, [&](Sheet& sheet) { DrawAlert(sheet, emblem); });
}

PicturePair ProgressBackdrop(const EmblemPainter& emblem) {
  return BothScales(kProgressSize, [&](Sheet& sheet) { DrawProgressGround(sheet, emblem); });
}

PicturePair ClosingCross() {
  return BothScales(kCrossSize, DrawCross);
}

}  // namespace tarnvale
