// Ticks, options, links and drawn controls of each desktop.
#include "tests/hosts/contract/desktop_under_test.h"
#include "tests/hosts/contract/drawn_recorder.h"

namespace tarnvale::testing {
namespace {

using DesktopControls = DesktopUnderTest;

TEST_F(DesktopControls, ATickFollowsBothWays) {
  CheckButton check;
  Place(check);
  Show();
  Click(check);
  EXPECT_TRUE(check.Value);
  EXPECT_TRUE(ShowsTick(check));
  PressKey(Key::kSpace);
  EXPECT_FALSE(check.Value);
  check.Value = true;
  EXPECT_TRUE(ShowsTick(check));
}

TEST_F(DesktopControls, AClickOnAnOptionPutsTheOthersOfItsGroupOutAndIsReported) {
  OptionButton first;
  OptionButton second;
  const OptionGroup group({&first.Value.Target(), &second.Value.Target()});
  first.Value = true;
  int clicks = 0;
  second.Clicked.Listen([&] { ++clicks; });
  Place(first);
  Place(second);
  Show();
  for (int times = 1; times <= 2; ++times) {
    Click(second);
    EXPECT_TRUE(second.Value);
    EXPECT_TRUE(ShowsTick(second));
    EXPECT_FALSE(first.Value);
    EXPECT_FALSE(ShowsTick(first));
    EXPECT_EQ(clicks, times) << "one that is on stays on";
  }
  second.Value = false;
  EXPECT_FALSE(ShowsTick(second)) << "by the program";
}

TEST_F(DesktopControls, ALinkIsClickedByMouseSpaceAndEnterAndTakesTheFocusByKeyboardOnly) {
  TextBox field;
  Label link{TextRole::kLink};
  int left = 0;
  int clicks = 0;
  field.LostFocus.Listen([&] { ++left; });
  link.Clicked.Listen([&] { ++clicks; });
  Place(field);
  Place(link);
  Show();
  window.Focus(field);
  Click(link);
  EXPECT_EQ(clicks, 1);
  EXPECT_EQ(window.Focused(), &field);
  EXPECT_TRUE(ShowsFocus(field));
  EXPECT_EQ(left, 0);
  PressKey(Key::kTab);
  ASSERT_EQ(window.Focused(), &link);
  PressKey(Key::kSpace);
  PressKey(Key::kEnter);
  EXPECT_EQ(clicks, 3);
}

TEST_F(DesktopControls, APressThatIsLetGoOutsideIsNoClick) {
  Label link{TextRole::kLink};
  int clicks = 0;
  link.Clicked.Listen([&] { ++clicks; });
  Place(link);
  Show();
  PressMouse(link, {5, 5});
  ReleaseMouse(link, {5, 500});
  EXPECT_EQ(clicks, 0);
}

class DesktopDrawn : public DesktopUnderTest {
 protected:
  void ShowDrawn() {
    Place(drawn);
    Place(other);
    Show();
    ASSERT_TRUE(WaitFor([&] { return drawn.paints > 0; }));
    drawn.heard.clear();
  }

  Recorder drawn;
  CheckButton other;
};

TEST_F(DesktopDrawn, AClickIsDownUpAndClick) {
  ShowDrawn();
  PressMouse(drawn, {3, 4});
  ReleaseMouse(drawn, {5, 6});
  EXPECT_EQ(drawn.heard, (Heard{"down left 3,4", "up left 5,6", "click"}));
}

TEST_F(DesktopDrawn, MovesGoOnOutsideWhileAButtonIsHeldAndEndInNoClick) {
  ShowDrawn();
  PressMouse(drawn, {3, 4});
  MoveMouse(drawn, {-3, 60}, true);
  ReleaseMouse(drawn, {-3, 60});
  ASSERT_GE(drawn.heard.size(), 3U);
  // What may still come is that the pointer is elsewhere.
  if (drawn.heard.back() == "leave") drawn.heard.pop_back();
  EXPECT_EQ(drawn.heard, (Heard{"down left 3,4", "move left -3,60", "up left -3,60"}));
}

TEST_F(DesktopDrawn, ADoubleClickTakesThePlaceOfTheSecondPress) {
  ShowDrawn();
  PressMouse(drawn, {3, 4});
  ReleaseMouse(drawn, {3, 4});
  PressMouseAgain(drawn, {3, 4});
  ReleaseMouse(drawn, {3, 4});
  EXPECT_EQ(drawn.heard,
            (Heard{"down left 3,4", "up left 3,4", "click", "double left 3,4", "up left 3,4"}));
}

TEST_F(DesktopDrawn, HearsThatThePointerHasLeft) {
  ShowDrawn();
  MoveMouse(drawn, {3, 4}, false);
  LeaveByMouse(drawn);
  EXPECT_EQ(drawn.heard, (Heard{"move none 3,4", "leave"}));
}

TEST_F(DesktopDrawn, HearsKeysAndTheFocus) {
  ShowDrawn();
  EXPECT_TRUE(drawn.focused);
  PressKey(Key::kSpace);
  EXPECT_EQ(drawn.heard, (Heard{"space down", "space up"}));
  window.Focus(other);
  EXPECT_FALSE(drawn.focused);
}

TEST_F(DesktopDrawn, HearsNothingWhileDisabled) {
  ShowDrawn();
  drawn.Enabled = false;
  drawn.heard.clear();
  Click(drawn);
  EXPECT_EQ(drawn.heard, Heard{});
}

TEST_F(DesktopDrawn, IsDrawnOnceForManyChangesAndNeverWithoutOne) {
  ShowDrawn();
  const int before = drawn.paints;
  for (int i = 0; i < 1000; ++i) drawn.LookChanged.Emit();
  ASSERT_TRUE(WaitFor([&] {
    Uncover(drawn);
    return drawn.paints > before;
  }));
  Uncover(drawn);
  EXPECT_EQ(drawn.paints, before + 1);
  EXPECT_EQ(drawn.size, (Size{200, 100}));
}

}  // namespace
}  // namespace tarnvale::testing
