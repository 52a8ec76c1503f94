// Every text of every window has room at each resolution.
#include <algorithm>
#include <cstdint>
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

  static bool IsWhite(const Surface& surface, const RECT& part) {
    for (LONG y = part.top; y < part.bottom; ++y) {
      const std::uint32_t* row = surface.Row(y) - surface.Area().left;
      if (!std::all_of(row + part.left, row + part.right,
                       [](std::uint32_t pixel) { return (pixel & 0xFFFFFFU) == 0xFFFFFFU; })) {
        return false;
      }
    }
    return true;
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

// What the system draws of a line may be wider than what it measured.
TEST_F(WindowsFits, NoLabelPaintsWhereItIsCut) {
  for (const int dpi : {96, 120, 144, 192}) {
    Program& p = Start(dpi);
    LoadEveryWindow(p);
    for (Window* window : Windows()) {
      for (const Placement& placement : window->Placements()) {
        auto* label = dynamic_cast<Label*>(placement.control);
        if (label == nullptr || !label->Wrap) continue;
        ++met;
        window->Show();
        ASSERT_TRUE(WaitUntilShown(*window));
        auto& peer = dynamic_cast<DrawnPeer&>(*screen->host.NativeOf(*window)->PeerOf(*label));
        RECT around = peer.SeenArea();
        ::InflateRect(&around, 60, 0);
        Surface ground(around);
        ground.Fill(around, kWhite);
        peer.Paint(ground);
        EXPECT_TRUE(IsWhite(ground, {around.left, around.top, around.left + 60, around.bottom}) &&
                    IsWhite(ground, {around.right - 60, around.top, around.right, around.bottom}))
            << NameOf(*window) << " at " << dpi << ": " << label->Shown();
        window->Hide();
      }
    }
    program.reset();
    screen.reset();
  }
  EXPECT_GT(met, 20);
}

}  // namespace
}  // namespace tarnvale::testing
