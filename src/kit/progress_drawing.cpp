#include "kit/progress_drawing.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "base/numbers.h"
#include "kit/drawing.h"
#include "kit/progress_modes.h"
#include "kit/system_colors.h"

namespace tarnvale {
namespace {

constexpr int kSearchingMode = 2;
constexpr int kDarkMode = 6;
constexpr Color kLightGrey = 0xC0C0C0;

using Mode = void (*)(ProgressDrawing&);
constexpr std::array<Mode, 10> kModes = {
    DrawChunks, DrawUnbrokenChunks, DrawUnbrokenChunks, DrawPlain,     DrawEtchedFade,
    DrawTube,   DrawDark,           DrawHatched,        DrawPatterned, DrawPolished};

void DrawProgressText(const ProgressLook& look, Canvas& canvas, TextPainter& text) {
  if (!look.show_text) return;
  TextLook text_look;
  text_look.font = look.font;
  text_look.align = TextLook::Align::kCenter;
  text_look.color = look.mode == kDarkMode ? kLightGrey : kBlack;
  const std::string shown =
      look.mode == kSearchingMode ? "Searching.." : ToText(look.percent) + " %";
  text.Draw(canvas, shown, text_look, ClientRect(canvas));
}

// One channel of a gradient, in single precision throughout.
struct Ramp {
  float from = 0;
  float step = 0;

  Ramp(int start, int end, int count) : from(static_cast<float>(start)) {
    // A division by no lines is passed over: the step stays 0.
    if (count != 0) step = static_cast<float>(end - start) / static_cast<float>(count);
  }
  int At(int i) const {
    const float moved = step * static_cast<float>(i);
    return static_cast<int>(RoundHalfEven(from + moved));
  }
};

}  // namespace

int ProgressDrawing::Share(int length, double whole) const {
  const std::int64_t share = RoundHalfEven(look.percent / whole * length);
  return static_cast<int>(std::clamp<std::int64_t>(share, 0, std::max(length, 0)));
}

void DrawGradient(Canvas& canvas, Color from, Color to, Rect rect, GradientLines lines) {
  const bool rows = lines == GradientLines::kRows;
  const int count = rows ? rect.height_px : rect.width_px;
  const Ramp red(RedOf(from), RedOf(to), count);
  const Ramp green(GreenOf(from), GreenOf(to), count);
  const Ramp blue(BlueOf(from), BlueOf(to), count);
  for (int i = 0; i <= count; ++i) {
    const Color color = MakeColor(red.At(i), green.At(i), blue.At(i));
    if (rows) {
      canvas.FillRect({rect.left_px, rect.top_px + i, rect.width_px, 1}, color);
    } else {
      canvas.FillRect({rect.left_px + i, rect.top_px, 1, rect.height_px}, color);
    }
  }
}

void DrawProgress(const ProgressLook& look, Canvas& canvas, TextPainter& text) {
  canvas.FillRect(ClientRect(canvas), look.mode == kDarkMode ? kBlack : kWhite);
  ProgressDrawing d{look, canvas, TranslateColor(look.color), canvas.WidthPx(), canvas.HeightPx()};
  if (look.mode >= 0 && look.mode < static_cast<int>(kModes.size())) {
    kModes[static_cast<std::size_t>(look.mode)](d);
  }
  DrawProgressText(look, canvas, text);
}

}  // namespace tarnvale
