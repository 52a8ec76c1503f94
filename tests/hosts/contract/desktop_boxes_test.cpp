// Message boxes of each desktop.
#include <functional>
#include <string>

#include "tests/hosts/contract/desktop_under_test.h"
#include "ui/timer.h"

namespace tarnvale::testing {
namespace {

class DesktopBoxes : public DesktopUnderTest {
 protected:
  /// Shows a box and calls `act` as soon as it is up.
  BoxAnswer Answer(const BoxRequest& request, const std::function<void()>& act) {
    Timer timer(loop.Timers(), 10, true);
    timer.Tick.Listen([&] {
      if (!IsBoxOpen()) return;
      timer.Enabled = false;
      act();
    });
    const BoxAnswer answer = boxes.Show(request);
    EXPECT_FALSE(timer.Enabled);
    return answer;
  }
  std::function<void()> Press(BoxAnswer button) {
    return [this, button] { PressButton(button); };
  }

  const BoxRequest ok{.text = "Done"};
  const BoxRequest yes_no{.text = "Proceed?", .buttons = BoxButtons::kYesNo};
  const BoxRequest ok_cancel{.text = "Proceed?", .buttons = BoxButtons::kOkCancel};
};

TEST_F(DesktopBoxes, TheButtonsAnswerForThemselves) {
  EXPECT_EQ(Answer(yes_no, Press(BoxAnswer::kYes)), BoxAnswer::kYes);
  EXPECT_EQ(Answer(yes_no, Press(BoxAnswer::kNo)), BoxAnswer::kNo);
  EXPECT_EQ(Answer(ok_cancel, Press(BoxAnswer::kOk)), BoxAnswer::kOk);
  EXPECT_EQ(Answer(ok_cancel, Press(BoxAnswer::kCancel)), BoxAnswer::kCancel);
  EXPECT_EQ(Answer(ok, Press(BoxAnswer::kOk)), BoxAnswer::kOk);
}

TEST_F(DesktopBoxes, TheCloseBoxAnswersCancelOrOk) {
  EXPECT_EQ(Answer(ok_cancel, [this] { CloseBox(); }), BoxAnswer::kCancel);
  EXPECT_EQ(Answer(ok, [this] { CloseBox(); }), BoxAnswer::kOk);
}

TEST_F(DesktopBoxes, ShowTextTitleAndLineEnds) {
  std::string text;
  std::string title;
  Answer({.text = "first\r\nsecond\rthird\n<b>&\x07", .title = "Exit Tarnvale"}, [&] {
    text = TextInBox();
    title = TitleOfBox();
    CloseBox();
  });
  EXPECT_EQ(text, "first\nsecond\nthird\n<b>&?");
  EXPECT_EQ(title, "Exit Tarnvale");
}

TEST_F(DesktopBoxes, TheActiveWindowStaysTheProgramsUnderABox) {
  Show();
  Window* active = nullptr;
  bool is_over = false;
  Answer(ok, [&] {
    active = host.Surroundings().ActiveWindow;
    is_over = IsBoxOver(window);
    CloseBox();
  });
  EXPECT_EQ(active, &window);
  EXPECT_TRUE(is_over);
  EXPECT_TRUE(WaitFor([&] { return IsActive(window); }));
}

TEST_F(DesktopBoxes, ATimerThatShowsABoxDoesNotTickBehindItAndOthersDo) {
  Timer timer(loop.Timers(), 10, true);
  Timer closing(loop.Timers(), 50, true);
  int boxes_shown = 0;
  int ticks = 0;
  timer.Tick.Listen([&] {
    timer.Enabled = false;
    timer.Enabled = true;
    ++boxes_shown;
    boxes.Show(ok);
    timer.Enabled = false;
  });
  closing.Tick.Listen([&] {
    if (IsBoxOpen() && ++ticks == 4) CloseBox();
  });
  ASSERT_TRUE(WaitFor([&] { return !timer.Enabled; }));
  EXPECT_EQ(boxes_shown, 1);
  EXPECT_GE(ticks, 4);
}

TEST_F(DesktopBoxes, AFaultInATimerBehindABoxLeavesTheBoxOpen) {
  Loop other;
  int faults = 0;
  other.Fault.Listen([&](const ProgramError&) { ++faults; });
  Timer failing(other.Timers(), 10, true);
  failing.Tick.Listen([&] {
    failing.Enabled = false;
    throw ProgramError(kOverflow);
  });
  Timer closing(loop.Timers(), 10, true);
  closing.Tick.Listen([&] {
    if (faults == 0 || !IsBoxOpen()) return;
    closing.Enabled = false;
    PressButton(BoxAnswer::kYes);
  });
  EXPECT_EQ(boxes.Show(yes_no), BoxAnswer::kYes);
  EXPECT_EQ(faults, 1);
}

}  // namespace
}  // namespace tarnvale::testing
