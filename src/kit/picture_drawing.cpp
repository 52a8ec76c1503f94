#include "kit/picture_drawing.h"

#include "base/numbers.h"

namespace tarnvale {
namespace {

constexpr Color k24Bits = 0xFFFFFFU;

Color Grey(Color color) {
  // Required: the red term is rounded by itself, the sum once more.
  const auto red = static_cast<double>(RoundHalfEven(RedOf(color) * 0.3));
  const int grey =
      static_cast<int>(RoundHalfEven(red + GreenOf(color) * 0.59 + BlueOf(color) * 0.11));
  return MakeColor(grey, grey, grey);
}

Color BlendedOver(Color picture, Color ground) {
  return MakeColor((2 * RedOf(picture) + RedOf(ground)) / 3,
                   (2 * GreenOf(picture) + GreenOf(ground)) / 3,
                   (2 * BlueOf(picture) + BlueOf(ground)) / 3);
}

std::optional<Color> Treated(Color color, Color ground, const PictureTreatment& treatment) {
  if (treatment.mask == color) return std::nullopt;
  if (treatment.silhouette) {
    const int sum = RedOf(color) + GreenOf(color) + BlueOf(color);
    if (treatment.threshold && sum > 384) return std::nullopt;
    return treatment.silhouette;
  }
  if (treatment.greyscale) return Grey(color);
  if (treatment.blend) return BlendedOver(color, ground);
  return color;
}

}  // namespace

void DrawPicture(Canvas& canvas, const Picture& picture, Point at,
                 const PictureTreatment& treatment) {
  const Raster& image = picture.image;
  for (int y = 0; y < image.height; ++y) {
    for (int x = 0; x < image.width; ++x) {
      const std::uint32_t pixel = image.At(x, y);
      if (picture.is_icon && pixel >> 24U < 128) continue;
      const Color ground =
          treatment.blend ? canvas.PixelAt(at.x_px + x, at.y_px + y).value_or(kWhite) : kWhite;
      const std::optional<Color> drawn = Treated(pixel & k24Bits, ground, treatment);
      if (drawn) canvas.SetPixel(at.x_px + x, at.y_px + y, *drawn);
    }
  }
}

}  // namespace tarnvale
