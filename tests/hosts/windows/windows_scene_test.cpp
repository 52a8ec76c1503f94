// What is drawn onto windows: painted where something has changed, and found by the mouse.
#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "hosts/windows/packed_canvas.h"
#include "tests/hosts/contract/drawn_recorder.h"
#include "tests/hosts/windows/windows_fixture.h"
#include "ui/palette.h"

namespace tarnvale::testing {
namespace {

constexpr Color kRed = 0x0000FF;

class WindowsScene : public WindowsWindowTest {
 protected:
  /// Everything on the screen is as it should be.
  void Settle() {
    ASSERT_TRUE(WaitFor([&] {
      ::UpdateWindow(Native());
      return ::GetUpdateRect(Native(), nullptr, FALSE) == 0;
    }));
  }
};

TEST_F(WindowsScene, DrawnControlsShowWhereTheyLieAndTheWindowWhereTheyAreClear) {
  Recorder drawn;
  Place(drawn);
  Show();
  Settle();
  const RECT& area = PeerOf(drawn).Area();
  EXPECT_EQ(ColorAt(area.left, area.top), 0xFF0000U);
  EXPECT_EQ(ColorAt(area.left + 9, area.top + 9), 0xFF0000U);
  EXPECT_EQ(ColorAt(area.left + 10, area.top + 9), palette::kGround);
  EXPECT_EQ(drawn.size, (Size{200, 100}));
}

TEST_F(WindowsScene, OneThatWasPlacedLaterLiesAboveAndGetsTheClick) {
  Recorder below;
  Recorder above;
  next_top = 60;
  window.Place({{&below, nullptr, {10, 10, 100, 40}}, {&above, nullptr, {50, 10, 100, 40}}});
  Show();
  Click(above);
  EXPECT_EQ(above.heard, (Heard{"down left 5,5", "up left 5,5", "click"}));
  Click(below);
  EXPECT_EQ(above.heard.back(), "leave");
  EXPECT_EQ(below.heard, (Heard{"down left 5,5", "up left 5,5", "click"}));
  above.Visible = false;
  above.heard.clear();
  Click(above);
  EXPECT_TRUE(above.heard.empty());
  EXPECT_EQ(below.heard.back(), "click") << "what was covered gets it";
}

TEST_F(WindowsScene, AFieldBelowAFrameThatWasPlacedLaterIsCovered) {
  PictureBox below;
  TextBox field;
  PictureBox above;
  Recorder drawn;
  next_top = 100;
  window.Place({{&below, nullptr, {10, 10, 80, 80}},
                {&field, &below, {10, 10, 40, 20}},
                {&above, nullptr, {10, 10, 80, 80}},
                {&drawn, &above, {10, 10, 60, 60}}});
  Show();
  Settle();
  EXPECT_EQ(::IsWindowVisible(NativeOf(field)), FALSE);
  EXPECT_EQ(ColorAt(25, 25), 0xFF0000U);
  above.Visible = false;
  Settle();
  EXPECT_NE(::IsWindowVisible(NativeOf(field)), FALSE);
  below.Visible = false;
  above.Visible = true;
  below.Visible = true;
  Settle();
  EXPECT_EQ(::IsWindowVisible(NativeOf(field)), FALSE) << "it was shown behind it";
  EXPECT_EQ(ColorAt(25, 25), 0xFF0000U);
}

TEST_F(WindowsScene, AControlIsSeenAndFoundWithinItsContainerOnly) {
  PictureBox container;
  Recorder drawn;
  next_top = 100;
  window.Place({{&container, nullptr, {20, 20, 50, 50}}, {&drawn, &container, {45, 45, 30, 30}}});
  Show();
  Settle();
  EXPECT_EQ(ColorAt(69, 69), 0xFF0000U);
  EXPECT_EQ(ColorAt(70, 69), palette::kGround);
  ::SendMessageW(Native(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(71, 69));
  EXPECT_TRUE(drawn.heard.empty());
  container.Visible = false;
  Settle();
  EXPECT_EQ(ColorAt(69, 69), palette::kGround);
}

TEST_F(WindowsScene, AControlIsDrawnOnceForManyChangesAndNeverWithoutOne) {
  Recorder drawn;
  Recorder quiet;
  Place(drawn);
  Place(quiet);
  Show();
  Settle();
  const int before = drawn.paints;
  const int quiet_before = quiet.paints;
  for (int i = 0; i < 10; ++i) drawn.LookChanged.Emit();
  ASSERT_TRUE(WaitFor([&] { return drawn.paints > before; }));
  Settle();
  EXPECT_EQ(drawn.paints, before + 1);
  // What comes from behind another window is copied.
  ::InvalidateRect(Native(), nullptr, FALSE);
  Settle();
  EXPECT_EQ(drawn.paints, before + 1);
  EXPECT_EQ(quiet.paints, quiet_before);
}

TEST_F(WindowsScene, WhatIsHiddenKeepsNoPictureAndIsDrawnAnew) {
  PictureBox container;
  Recorder drawn;
  next_top = 100;
  window.Place({{&container, nullptr, {20, 20, 50, 50}}, {&drawn, &container, {0, 0, 30, 30}}});
  Show();
  Settle();
  const int before = drawn.paints;
  container.Visible = false;
  Settle();
  EXPECT_EQ(drawn.paints, before);
  container.Visible = true;
  Settle();
  EXPECT_EQ(drawn.paints, before + 1);
  EXPECT_EQ(ColorAt(20, 20), 0xFF0000U);
}

TEST_F(WindowsScene, OnlyWhatHasChangedIsPaintedAnew) {
  Label changing;
  Label other;
  Place(changing);
  Place(other);
  Show();
  Settle();
  changing.Caption = "new";
  // As the next frame does; nothing is painted before this looks.
  PeerOf(changing).OnFrame();
  RECT area{};
  ::GetUpdateRect(Native(), &area, FALSE);
  const RECT& own = PeerOf(changing).Area();
  EXPECT_NE(::EqualRect(&area, &own), 0)
      << area.left << "," << area.top << "," << area.right << "," << area.bottom;
}

TEST_F(WindowsScene, AnAccessKeyReachesItsControlFromAnotherOne) {
  Recorder drawn;
  CheckButton check;
  check.Caption = "&Keep";
  drawn.access_key = U'b';
  Place(check);
  Place(drawn);
  Show();
  ::PostMessageW(Native(), WM_SYSKEYDOWN, 'B', 1 << 29);
  ::PostMessageW(Native(), WM_SYSCHAR, 'b', 1 << 29);
  // Alt is held as far as the thread knows.
  BYTE keys[256] = {};
  ::GetKeyboardState(keys);
  keys[VK_MENU] = 0x80;
  ::SetKeyboardState(keys);
  EXPECT_TRUE(WaitFor([&] { return !drawn.heard.empty(); }));
  EXPECT_EQ(drawn.heard.front(), "access key");
  keys[VK_MENU] = 0;
  ::SetKeyboardState(keys);
}

TEST_F(WindowsScene, EnterPressesTheDefaultButton) {
  Recorder button;
  CheckButton check;
  Place(check);
  Place(button);
  window.DefaultButton = &button;
  Show();
  PressKey(VK_RETURN);
  EXPECT_EQ(button.heard, Heard{"press"});
}

TEST_F(WindowsScene, TheFrameOfAFocusedLinkLeavesItsTextAlone) {
  CheckButton check;
  Label link(TextRole::kLink);
  link.Caption = "WWW";
  Place(check);
  Place(link);
  Show();
  Settle();
  const RECT& area = PeerOf(link).Area();
  const auto column_of = [&](LONG x) {
    std::vector<unsigned> column;
    for (LONG y = area.top; y < area.bottom; ++y) column.push_back(ColorAt(x, y));
    return column;
  };
  std::vector<std::vector<unsigned>> plain;
  for (LONG x = 0; x < 300; ++x) plain.push_back(column_of(x));
  PressKey(VK_TAB);
  ASSERT_EQ(window.Focused(), &link);
  Settle();
  const std::vector<unsigned> empty(plain[0].size(), palette::kGround);
  std::size_t sides = 0;
  for (std::size_t x = 0; x < plain.size(); ++x) {
    const std::vector<unsigned> focused = column_of(static_cast<LONG>(x));
    std::size_t dots = 0;
    for (std::size_t y = 0; y < focused.size(); ++y) dots += focused[y] != plain[x][y] ? 1U : 0U;
    // The upper and the lower side have a dot in a column at most.
    if (dots <= 2) continue;
    ++sides;
    EXPECT_EQ(plain[x - 1], empty);
    EXPECT_EQ(plain[x], empty) << "the frame touches the text at " << x;
    EXPECT_EQ(plain[x + 1], empty);
  }
  EXPECT_EQ(sides, 2U);
  // Each row of the text lies within the frame.
  std::vector<LONG> text_rows;
  std::vector<LONG> frame_rows;
  for (LONG y = area.top; y < area.bottom; ++y) {
    const auto row = static_cast<std::size_t>(y - area.top);
    bool has_text = false;
    std::size_t dots = 0;
    for (std::size_t x = 0; x < plain.size(); ++x) {
      has_text = has_text || plain[x][row] != palette::kGround;
      dots += ColorAt(static_cast<LONG>(x), y) != plain[x][row] ? 1U : 0U;
    }
    if (has_text) text_rows.push_back(y);
    if (dots > 2) frame_rows.push_back(y);
  }
  ASSERT_FALSE(text_rows.empty());
  ASSERT_EQ(frame_rows.size(), 2U);
  EXPECT_LT(frame_rows.front(), text_rows.front());
  EXPECT_GT(frame_rows.back(), text_rows.back());
}

TEST_F(WindowsScene, APictureIsShownInItsSize) {
  PictureBox picture;
  picture.Picture = "mail";
  next_top = 60;
  window.Place({{&picture, nullptr, {10, 10, 32, 32}}});
  Show();
  Settle();
  bool shows = false;
  for (LONG y = 10; y < 42; ++y) {
    for (LONG x = 10; x < 42; ++x) shows = shows || ColorAt(x, y) != palette::kGround;
  }
  EXPECT_TRUE(shows);
}

// What is drawn is kept as runs: what is shown must be what was drawn, whatever part is asked for.
TEST(PackedCanvas, ShowsWhatWasDrawnInEachPart) {
  Canvas canvas({7, 5}, 2);
  canvas.FillRect({1, 1, 4, 3}, kRed);
  canvas.SetPixel(6, 4, 0x00FF00);
  canvas.SetPixel(0, 0, 0xFF0000);
  canvas.DevicePixels()[20] = 0x80FFFFFF;
  PackedCanvas kept;
  kept.Keep(canvas);
  const RECT all{3, 4, 25, 20};
  for (const RECT& part : {all, RECT{6, 6, 9, 9}, RECT{16, 12, 25, 20}, RECT{3, 4, 5, 6}}) {
    Surface expected(all);
    Surface shown(all);
    for (Surface* surface : {&expected, &shown}) {
      surface->Fill(all, 0x123456);
      surface->ClipTo(part);
    }
    expected.Blend(canvas.DevicePixels(), canvas.DeviceWidth(), canvas.DeviceHeight(), 5, 6);
    kept.Blend(shown, 5, 6);
    for (int y = all.top; y < all.bottom; ++y) {
      EXPECT_TRUE(std::equal(expected.Row(y), expected.Row(y) + 22, shown.Row(y))) << y;
    }
  }
}

TEST(PackedCanvas, OfAScreensFrameTakesLittleRoom) {
  Canvas canvas({648, 546}, 1);
  canvas.FrameRect({0, 8, 648, 538}, kRed);
  PackedCanvas kept;
  kept.Keep(canvas);
  EXPECT_LT(kept.Runs(), 2500U);
  kept.Forget();
  EXPECT_EQ(kept.Runs(), 0U);
}

TEST_F(WindowsScene, ThePointerOverAControlCanBeAPictureOfItsOwn) {
  Recorder drawn;
  drawn.PointerPicture =
      Raster{.width = 16, .height = 12, .pixels = std::vector<std::uint32_t>(16 * 12, 0xFF0000FF)};
  drawn.Pointer = PointerShape::kPicture;
  Place(drawn);
  Show();
  const auto pointer_over = [&](POINT at) {
    Mouse(WM_MOUSEMOVE, drawn, at, 0);
    ::SendMessageW(Native(), WM_SETCURSOR, reinterpret_cast<WPARAM>(Native()),
                   MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
    return ::GetCursor();
  };
  HCURSOR const arrow = ::LoadCursorW(nullptr, IDC_ARROW);
  EXPECT_EQ(pointer_over({300, 5}), arrow);
  HCURSOR const own = pointer_over({5, 5});
  ICONINFO about{};
  ASSERT_TRUE(own != arrow && ::GetIconInfo(own, &about));
  EXPECT_FALSE(about.fIcon);
  EXPECT_EQ(about.xHotspot, 8U);
  EXPECT_EQ(about.yHotspot, 6U);
  BITMAP colors{};
  ::GetObjectW(about.hbmColor, sizeof colors, &colors);
  EXPECT_EQ(colors.bmWidth, 16);
  ::DeleteObject(about.hbmColor);
  ::DeleteObject(about.hbmMask);
  EXPECT_EQ(pointer_over({6, 6}), own) << "it is made once";
  drawn.PointerPicture = Raster{};
  EXPECT_EQ(pointer_over({5, 5}), arrow);
}

}  // namespace
}  // namespace tarnvale::testing
