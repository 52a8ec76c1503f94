#include "shell/popup_pictures.h"

#include <cmath>
#include <cstdint>
#include <utility>

#include "ui/sampled_drawing.h"

namespace tarnvale {
namespace {

// The colours of the program's look.
constexpr Color kPanelTop = 0xF8E7DD;
constexpr Color kPanelBottom = 0xEED0BF;
constexpr Color kPanelEdge = 0xD8B29D;
constexpr Color kBandTop = 0xDD8F5B;
constexpr Color kBandBottom = 0xC56A31;
constexpr Color kField = 0xFFFFFF;
constexpr Color kFieldFrame = 0xB99D7F;
constexpr Color kSelection = 0xC56A31;
constexpr Color kLines = 0xEED7C9;
constexpr Color kArrow = 0x85614D;

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
  void Fade(Rect area, Color top, Color bottom) {
    for (int y = area.top_px * scale_; y < area.BottomPx() * scale_; ++y) {
      const double down = (y + 0.5 - area.top_px * scale_) / (area.height_px * scale_);
      const Color paint = Between(top, bottom, down);
      for (int x = area.left_px * scale_; x < area.RightPx() * scale_; ++x) Mix(x, y, paint, 1);
    }
  }

  /// Whatever `inside` says is inside, within the bounds.
  template <class Inside>
  void Fill(Rect bounds, Color paint, Inside&& inside) {
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
        Mix(at.x_px * scale_ + x, at.y_px * scale_ + y, pixel, (pixel >> 24U) / 255.0);
      }
    }
  }

 private:
  template <class Inside>
  double Coverage(int x, int y, Inside&& inside) const {
    int hits = 0;
    VisitSamples(x, y, 1.0 / scale_, [&](Spot spot) { hits += inside(spot) ? 1 : 0; });
    return hits / static_cast<double>(kSamples * kSamples);
  }

  // Lays paint over what is there. `share` is 0 to 1.
  void Mix(int x, int y, Color paint, double share) {
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
            channel(BlueOf(paint), BlueOf(pixel)) << 16U |
            channel(GreenOf(paint), GreenOf(pixel)) << 8U | channel(RedOf(paint), RedOf(pixel));
  }

  Raster picture_;
  int scale_;
};

void FillRounded(Sheet& sheet, Rect area, double radius, Color paint) {
  const Spot upper_left{static_cast<double>(area.left_px), static_cast<double>(area.top_px)};
  const Spot lower_right{static_cast<double>(area.RightPx()), static_cast<double>(area.BottomPx())};
  sheet.Fill(area, paint,
             [&](Spot spot) { return InRounded(spot, upper_left, lower_right, radius); });
}

Rect Inset(Rect area) {
  return {area.left_px + 1, area.top_px + 1, area.width_px - 2, area.height_px - 2};
}

void FillFramed(Sheet& sheet, Rect area, double radius, Color frame, Color inside) {
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

void DrawChevron(Sheet& sheet, Point tip, Color paint) {
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
  DrawChevron(sheet, {119, 52}, 0xEABFA6);
  DrawChevron(sheet, {141, 52}, 0xDA976E);
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
