#include "splitter/progress_picture.h"

#include "base/numbers.h"

namespace tarnvale {
namespace {

constexpr Color kFill = 0x808080;
constexpr double kPixelsPerPercent = 1.55;
constexpr int kLeft = 30;
constexpr int kTop = 2;
constexpr int kRight = 184;
constexpr int kBottom = 12;
constexpr Point kText{3, 1};

// A box by two corners that both belong to it.
Rect Box(int right) {
  return {kLeft, kTop, right - kLeft + 1, kBottom - kTop + 1};
}

}  // namespace

void ProgressPicture::Show(std::int16_t percent) {
  percent_ = percent;
  LookChanged.Emit();
}

void ProgressPicture::Paint(Canvas& canvas, TextPainter& text) {
  canvas.FillRect(Box(RoundToInt32(percent_ * kPixelsPerPercent + kLeft)), kFill);
  canvas.FrameRect(Box(kRight), kBlack);
  const TextLook look;
  const std::string words = ToText(percent_) + "%";
  const Size size = text.Measure(words, look);
  text.Draw(canvas, words, look, {kText.x_px, kText.y_px, size.width_px, size.height_px});
}

}  // namespace tarnvale
