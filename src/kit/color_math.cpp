#include "kit/color_math.h"

#include <algorithm>

#include "base/numbers.h"
#include "kit/system_colors.h"

namespace tarnvale {
namespace {

int Stop(int channel, int step) {
  return step > 0 ? std::min(channel, 255) : std::max(channel, 0);
}

int BlendedToWhite(int channel, int weight) {
  return std::min(channel * (255 - weight) / 255 + weight, 255);
}

int Blended(int a, int b, int amount) {
  return static_cast<int>(RoundHalfEven((255 - amount) * b / 255.0 + a * amount / 255.0));
}

}  // namespace

Color ShiftColor(Color color, int step, ShiftKind kind) {
  if (kind.soft_bevel) step /= 2;
  const int blue = BlueOf(color);
  const int blue_step = kind.scaled ? blue * step / 192 : step;
  return MakeColor(Stop(RedOf(color) + step, step), Stop(GreenOf(color) + step, step),
                   Stop(blue + blue_step, step));
}

Color BlendToColor(Color color, int weight) {
  return MakeColor(BlendedToWhite(RedOf(color), weight), BlendedToWhite(GreenOf(color), weight),
                   BlendedToWhite(BlueOf(color), weight));
}

Color BlendColors(Color a, Color b, int amount) {
  a = TranslateColor(a);
  b = TranslateColor(b);
  return MakeColor(Blended(RedOf(a), RedOf(b), amount), Blended(GreenOf(a), GreenOf(b), amount),
                   Blended(BlueOf(a), BlueOf(b), amount));
}

}  // namespace tarnvale
