// How long the drawn controls take for one redraw: the record is taken anew and
// painted into a canvas that stands already, as a host does it. Prints medians;
// exits with 1 when one of them is above its limit.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include "kit/chameleon_button.h"
#include "kit/progress_bar.h"
#include "tools/pictures/bitmap_font.h"

namespace {

using tarnvale::BitmapTextPainter;
using tarnvale::Canvas;
using tarnvale::chameleonButton;
using tarnvale::OwnerDrawn;
using tarnvale::Size;
using tarnvale::XP_ProgressBar;

constexpr int kRounds = 2001;
constexpr double kLimitUs = 100.0;

// `change` makes the control take its look anew; the round paints it.
template <class Change>
double MedianUs(OwnerDrawn& control, Size size, int scale, Change&& change) {
  Canvas canvas(size, scale);
  BitmapTextPainter text;
  std::vector<double> times;
  for (int round = 0; round < kRounds; ++round) {
    const auto start = std::chrono::steady_clock::now();
    change(round);
    canvas.Reset(size, scale);
    control.Paint(canvas, text);
    const std::chrono::duration<double, std::micro> spent =
        std::chrono::steady_clock::now() - start;
    times.push_back(spent.count());
  }
  std::nth_element(times.begin(), times.begin() + kRounds / 2, times.end());
  return times[kRounds / 2];
}

bool Report(const std::string& what, int scale, double median_us) {
  std::printf("%-28s scale %d  %7.1f us\n", what.c_str(), scale, median_us);
  return median_us < kLimitUs;
}

bool MeasureButton(int scale) {
  constexpr Size kSize{200, 26};
  chameleonButton button;
  button.OnResize(kSize);
  button.ButtonType = 3;
  button.Caption = "&Browse For A Compressed File";
  return Report("button, type 3, 200 x 26", scale, MedianUs(button, kSize, scale, [&](int round) {
                  button.OnFocusChanged(round % 2 == 0);
                }));
}

bool MeasureBar(int scale) {
  constexpr Size kSize{400, 20};
  XP_ProgressBar bar;
  bar.OnResize(kSize);
  bar.Scrolling = 9;
  return Report("bar, mode 9, 400 x 20", scale,
                MedianUs(bar, kSize, scale, [&](int round) { bar.Value = round % 101; }));
}

}  // namespace

int main() {
  bool within_limits = true;
  for (const int scale : {1, 2}) {
    within_limits = MeasureButton(scale) && within_limits;
    within_limits = MeasureBar(scale) && within_limits;
  }
  return within_limits ? 0 : 1;
}
