// Every text of every window has room at each resolution.
#include <cmath>
#include <string>

#include "hosts/windows/fonts.h"
#include "hosts/windows/shown_text.h"
#include "hosts/windows/surface.h"
#include "tests/hosts/windows/program_fixture.h"
#include "tests/support/said_by.h"

namespace tarnvale::testing {
namespace {

class WindowsFits : public WindowsProgramTest {
 protected:
  WindowsFits() = default;

  void ExpectTextsFit(Window& window, int dpi) {
    Fonts fonts(dpi);
    const Surface measure({0, 0, 1, 1});
    for (const Placement& placement : window.Placements()) {
      const auto said = SaidBy(placement);
      if (!said || said->text.empty()) continue;
      ++met;
      const Selected font(
          measure.Dc(),
          fonts.Of({.family = {}, .size_pt = said->font.size_pt, .bold = said->font.bold}));
      const RECT room{0, 0, ::MulDiv(said->width_px, dpi, 96), ::MulDiv(said->height_px, dpi, 96)};
      RECT needed = room;
      ::DrawTextW(measure.Dc(), ToShown(said->text).c_str(), -1, &needed,
                  DT_CALCRECT | DT_NOPREFIX | (said->wraps ? DT_WORDBREAK : DT_SINGLELINE));
      const std::string what = NameOf(window) + " at " + std::to_string(dpi) + ": \"" + said->text;
      EXPECT_LE(needed.right, room.right) << what << "\" is too wide";
      EXPECT_TRUE(!said->wraps || needed.bottom <= room.bottom) << what << "\" is too high";
    }
  }

  int met = 0;
};

TEST_F(WindowsFits, EveryTextAtEachResolution) {
  Program& p = Start();
  LoadEveryWindow(p);
  for (const int dpi : {96, 120, 144, 192}) {
    for (Window* window : Windows()) ExpectTextsFit(*window, dpi);
  }
  EXPECT_GT(met, 400);
}

}  // namespace
}  // namespace tarnvale::testing
