// Windows of each desktop, and their records.
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tests/hosts/contract/desktop_under_test.h"
#include "ui/timer.h"
#include "ui/window_slot.h"

namespace tarnvale::testing {
namespace {

class DesktopWindows : public DesktopUnderTest {
 protected:
  /// Shows another window, which is then the active one.
  void ShowOther() {
    other.ClientSize = {50, 50};
    host.Adopt(other);
    other.Show();
    ASSERT_TRUE(WaitFor([&] { return host.Surroundings().ActiveWindow.Get() == &other; }));
  }

  Window other;
};

TEST_F(DesktopWindows, HidingAndShowingFollowTheRecord) {
  Show();
  window.Hide();
  EXPECT_TRUE(WaitFor([&] { return !IsShown(window); }));
  window.Visible = true;
  EXPECT_TRUE(WaitFor([&] { return IsShown(window); }));
}

TEST_F(DesktopWindows, TheCloseBoxAsksAndHides) {
  int closed = 0;
  window.Closed.Listen([&] { ++closed; });
  Show();
  PressCross(window);
  EXPECT_EQ(closed, 1);
  EXPECT_FALSE(window.Visible);
  EXPECT_TRUE(WaitFor([&] { return !IsShown(window); }));
}

TEST_F(DesktopWindows, ACancelledCloseLeavesTheWindowWhereItIs) {
  window.CloseAsked.Listen([](CloseRequest& request) { request.cancelled = true; });
  Show();
  PressCross(window);
  loop.WaitPass();
  EXPECT_TRUE(window.Visible);
  EXPECT_TRUE(IsShown(window));
}

TEST_F(DesktopWindows, TheProgramMinimisesAndRestoresAndBothAreReported) {
  std::size_t expected = 2;
  std::vector<WindowState> states;
  window.Resized.Listen([&] { states.push_back(window.State); });
  Show();
  window.State = WindowState::kMinimized;
  ASSERT_TRUE(WaitFor([&] { return IsMinimised(window) && states.size() == 1; }));
  EXPECT_EQ(states[0], WindowState::kMinimized);
  window.State = WindowState::kNormal;
  // Under Wine the window manager may follow late, and minimises once more what is restored.
  ASSERT_TRUE(WaitFor([&] {
    const bool is_restored = !IsMinimised(window);
    if (!is_restored && window.State.Get() == WindowState::kMinimized) {
      window.State = WindowState::kNormal;
      expected += 2;
    }
    return is_restored && states.size() == expected;
  }));
  EXPECT_EQ(states.back(), WindowState::kNormal);
}

TEST_F(DesktopWindows, TheUserMinimisesAndRestores) {
  int reported = 0;
  window.Resized.Listen([&] { ++reported; });
  Show();
  MinimiseByHand(window);
  EXPECT_TRUE(WaitFor([&] { return window.State.Get() == WindowState::kMinimized; }));
  EXPECT_EQ(reported, 1);
  RestoreByHand(window);
  EXPECT_TRUE(WaitFor([&] { return window.State.Get() == WindowState::kNormal; }));
  EXPECT_EQ(reported, 2);
}

TEST_F(DesktopWindows, AMinimisedWindowThatLeftTheTaskBarIsNowhere) {
  window.Resized.Listen([&] {
    if (window.State.Get() == WindowState::kMinimized) window.InTaskBar = false;
  });
  Show();
  window.State = WindowState::kMinimized;
  EXPECT_TRUE(WaitFor([&] { return !IsShown(window); }));
  EXPECT_TRUE(window.Visible);
  window.State = WindowState::kNormal;
  window.Show();
  window.InTaskBar = true;
  EXPECT_TRUE(WaitFor([&] { return IsShown(window) && !IsMinimised(window); }));
}

TEST_F(DesktopWindows, TheActiveWindowIsKnownAndReported) {
  Show();
  ShowOther();
  // More than once where the window manager gives the other one the focus late.
  int became_active = 0;
  const Subscription following = host.Surroundings().ActiveWindow.Changed.Subscribe(
      [&] { became_active += host.Surroundings().ActiveWindow.Get() == &window ? 1 : 0; });
  int activations = 0;
  Window* active_when_emitted = nullptr;
  window.Activated.Listen([&] {
    ++activations;
    active_when_emitted = host.Surroundings().ActiveWindow;
  });
  EXPECT_TRUE(WaitFor([&] {
    Activate(window);
    return host.Surroundings().ActiveWindow.Get() == &window;
  }));
  EXPECT_EQ(active_when_emitted, &window);
  EXPECT_EQ(activations, became_active);
}

// The focus.

TEST_F(DesktopWindows, TabFollowsThePlacementsAndTheRecordKnows) {
  TextBox first;
  Label label;
  CheckButton second;
  TextBox hidden;
  Label link{TextRole::kLink};
  TextBox last;
  hidden.Visible = false;
  for (Control* control : std::vector<Control*>{&first, &label, &second, &hidden, &link, &last}) {
    Place(*control);
  }
  Show();
  ASSERT_TRUE(WaitFor([&] { return window.Focused() == &first; }));
  for (Control* next : std::vector<Control*>{&second, &link, &last}) {
    PressKey(Key::kTab);
    EXPECT_EQ(window.Focused(), next);
  }
  EXPECT_TRUE(ShowsFocus(last));
  PressKey(Key::kTab, Held::kShift);
  EXPECT_EQ(window.Focused(), &link);
  PressKey(Key::kTab);
  PressKey(Key::kTab);
  EXPECT_EQ(window.Focused(), &first);
}

TEST_F(DesktopWindows, AClickMovesTheRecordsFocus) {
  TextBox first;
  TextBox second;
  std::string reported;
  first.LostFocus.Listen([&] { reported += "lost "; });
  second.GotFocus.Listen([&] { reported += "got"; });
  Place(first);
  Place(second);
  Show();
  Click(second);
  EXPECT_EQ(window.Focused(), &second);
  EXPECT_EQ(reported, "lost got");
}

TEST_F(DesktopWindows, TheProgramMovesTheFocus) {
  TextBox first;
  TextBox second;
  Place(first);
  Place(second);
  Show();
  window.Focus(second);
  EXPECT_TRUE(ShowsFocus(second));
}

TEST_F(DesktopWindows, AControlThatIsHiddenOrDisabledPassesTheFocusOnAsTabDoes) {
  TextBox first;
  TextBox second;
  PictureBox panel;
  TextBox inside;
  Place(first);
  Place(second);
  Place(panel);
  window.Place({{&inside, &panel, {5, 5, 100, 24}}});
  Show();
  window.Focus(first);
  first.Enabled = false;
  EXPECT_EQ(window.Focused(), &second);
  first.Enabled = true;
  window.Focus(inside);
  panel.Visible = false;
  EXPECT_EQ(window.Focused(), &first);
  EXPECT_TRUE(ShowsFocus(first));
}

TEST_F(DesktopWindows, AHiddenControlOfAWindowThatIsNotActiveKeepsTheFocus) {
  TextBox first;
  TextBox second;
  Place(first);
  Place(second);
  Show();
  window.Focus(first);
  ShowOther();
  int losses = 0;
  first.LostFocus.Listen([&] { ++losses; });
  first.Visible = false;
  EXPECT_EQ(window.Focused(), &first);
  EXPECT_EQ(losses, 0);
}

TEST_F(DesktopWindows, AKeyThatTheWindowHandledNeverReachesTheControl) {
  CheckButton first;
  CheckButton second;
  Place(first);
  Place(second);
  std::vector<Key> heard;
  window.KeyDown.Listen([&](KeyEvent& event) {
    heard.push_back(event.press.key);
    event.handled = true;
    if (event.press.key == Key::kEnter) window.FocusNext();
  });
  Show();
  ASSERT_TRUE(WaitFor([&] { return window.Focused() == &first; }));
  PressKey(Key::kSpace);
  EXPECT_FALSE(first.Value);
  PressKey(Key::kEnter);
  EXPECT_EQ(window.Focused(), &second);
  EXPECT_EQ(heard, (std::vector<Key>{Key::kSpace, Key::kEnter}));
}

TEST_F(DesktopWindows, WhatIsOnAPopupIsClickedWithoutTheFocus) {
  Label link{TextRole::kLink};
  CheckButton check;
  window.Frame = WindowFrame::kPopup;
  Place(link);
  Place(check);
  window.ClientSize = {300, 240};
  host.Adopt(window);
  window.Show();
  ASSERT_TRUE(WaitFor([&] { return IsShown(window); }));
  int clicks = 0;
  link.Clicked.Listen([&] { ++clicks; });
  Click(link);
  EXPECT_EQ(clicks, 1);
  Click(check);
  EXPECT_TRUE(check.Value);
  EXPECT_EQ(window.Focused(), nullptr);
}

// Windows that are made anew.

class SlotWindow : public Window {
 public:
  SlotWindow() {
    ClientSize = {100, 100};
    Place({{&box, nullptr, {10, 10, 80, 80}}});
  }
  TextBox box{TextKind::kMemo};
};

TEST_F(DesktopWindows, AClosedOneOfASlotGoesWithItsNativeOneWhenNoHandlerOfItRuns) {
  WindowSlot<SlotWindow> slot(loop, host, [] { return std::make_unique<SlotWindow>(); });
  std::function<bool()> is_there;
  bool lived_through_the_handler = false;
  Timer timer(loop.Timers(), 10, true);
  timer.Tick.Listen([&] {
    timer.Enabled = false;
    slot.Show();
    ASSERT_TRUE(WaitFor([&] { return IsShown(slot.Get()); }));
    is_there = LifeOf(slot.Get());
    slot.Get().Close();
    bool has_passed = false;
    Timer later(loop.Timers(), 300, true);
    later.Tick.Listen([&] { has_passed = true; });
    ASSERT_TRUE(WaitFor([&] { return has_passed; }));
    lived_through_the_handler = is_there();
  });
  EXPECT_TRUE(WaitFor([&] { return !timer.Enabled && is_there && !is_there(); }));
  EXPECT_TRUE(lived_through_the_handler);
}

TEST_F(DesktopWindows, OneThatIsClosedByItsCrossGoesAsWell) {
  WindowSlot<SlotWindow> slot(loop, host, [] { return std::make_unique<SlotWindow>(); });
  slot.Show();
  ASSERT_TRUE(WaitFor([&] { return IsShown(slot.Get()); }));
  const std::function<bool()> is_there = LifeOf(slot.Get());
  PressCross(slot.Get());
  EXPECT_TRUE(WaitFor([&] { return !is_there(); }));
  EXPECT_FALSE(slot.IsLoaded());
}

}  // namespace
}  // namespace tarnvale::testing
