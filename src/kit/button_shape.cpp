#include "kit/button_shape.h"

#include <algorithm>

namespace tarnvale {
namespace {

// Distance of a pixel from the nearest corner, along both edges.
struct CornerDistance {
  int x = 0;
  int y = 0;
  bool IsCorner() const { return x == 0 && y == 0; }
};

CornerDistance FromCorner(Size size, Point at) {
  return {std::min(at.x_px, size.width_px - 1 - at.x_px),
          std::min(at.y_px, size.height_px - 1 - at.y_px)};
}

bool IsInEllipse(Size size, Point at) {
  const long long w = size.width_px;
  const long long h = size.height_px;
  const long long dx = 2LL * at.x_px + 1 - w;
  const long long dy = 2LL * at.y_px + 1 - h;
  return dx * dx * h * h + dy * dy * w * w <= w * w * h * h;
}

// The picture is placed this far from the text where there is room.
constexpr int kPictureGap = 4;

int Centred(int start, int room, int size) {
  return start + (room - size) / 2;
}

void PlaceSideways(CaptionPlaces& places, Rect area, Size text, Size picture, bool at_left) {
  const int taken = picture.width_px + 1;
  places.caption.width_px = std::max(area.width_px - taken, 0);
  if (at_left) places.caption.left_px += taken;
  places.picture.y_px = Centred(area.top_px, area.height_px, picture.height_px);
  const int text_left = Centred(places.caption.left_px, places.caption.width_px, text.width_px);
  if (text.width_px == 0) {
    places.picture.x_px = Centred(area.left_px, area.width_px, picture.width_px);
  } else if (at_left) {
    places.picture.x_px = std::max(text_left - kPictureGap - picture.width_px, area.left_px);
  } else {
    places.picture.x_px = std::min(text_left + text.width_px + kPictureGap,
                                   std::max(area.RightPx() - picture.width_px, area.left_px));
  }
}

void PlaceUpright(CaptionPlaces& places, Rect area, Size text, Size picture, bool on_top) {
  const int taken = picture.height_px + 1;
  places.caption.height_px = std::max(area.height_px - taken, 0);
  if (on_top) places.caption.top_px += taken;
  places.picture.x_px = Centred(area.left_px, area.width_px, picture.width_px);
  const int text_top = Centred(places.caption.top_px, places.caption.height_px, text.height_px);
  if (text.width_px == 0) {
    places.picture.y_px = Centred(area.top_px, area.height_px, picture.height_px);
  } else if (on_top) {
    places.picture.y_px = std::max(text_top - kPictureGap - picture.height_px, area.top_px);
  } else {
    places.picture.y_px = std::min(text_top + text.height_px + kPictureGap,
                                   std::max(area.BottomPx() - picture.height_px, area.top_px));
  }
}

}  // namespace

bool IsInButtonRegion(int type, Size size, Point at) {
  if (!Rect{0, 0, size.width_px, size.height_px}.Contains(at)) return false;
  const CornerDistance from = FromCorner(size, at);
  switch (type) {
    case 1:
    case 14:
      return !from.IsCorner();
    case 3:
    case 4:
      return from.x + from.y > 1;
    case 5:
      return !from.IsCorner() || (at.x_px == 0) == (at.y_px == 0);
    case 13:
      return IsInEllipse(size, at);
    default:
      return true;
  }
}

void ClipToButtonRegion(int type, Canvas& canvas) {
  const Size size{canvas.WidthPx(), canvas.HeightPx()};
  if (type == 13) {
    canvas.ClipToEllipse({0, 0, size.width_px, size.height_px});
    return;
  }
  // Every other shape differs from the rectangle at its corners only.
  constexpr int kCorner = 2;
  for (int y = 0; y < kCorner; ++y) {
    for (int x = 0; x < kCorner; ++x) {
      for (const Point at :
           {Point{x, y}, Point{size.width_px - 1 - x, y}, Point{x, size.height_px - 1 - y},
            Point{size.width_px - 1 - x, size.height_px - 1 - y}}) {
        if (!IsInButtonRegion(type, size, at)) canvas.ClearPixel(at.x_px, at.y_px);
      }
    }
  }
}

Rect CaptionRectangle(int type, Size size) {
  const int inset = type == 14 ? 5 : type >= 7 ? 3 : 4;
  const int moved = type == 14 ? 1 : 0;
  return {inset + moved, inset + moved, std::max(size.width_px - 2 * inset, 0),
          std::max(size.height_px - 2 * inset, 0)};
}

CaptionPlaces PlaceCaption(Rect area, Size text, Size picture, int position) {
  CaptionPlaces places{area, {area.left_px, area.top_px}};
  if (picture.width_px == 0 || picture.height_px == 0) return places;
  switch (position) {
    case 0:
    case 1:
      PlaceSideways(places, area, text, picture, position == 0);
      break;
    case 2:
    case 3:
      PlaceUpright(places, area, text, picture, position == 2);
      break;
    default:
      places.picture = {Centred(area.left_px, area.width_px, picture.width_px),
                        Centred(area.top_px, area.height_px, picture.height_px)};
      break;
  }
  return places;
}

}  // namespace tarnvale
