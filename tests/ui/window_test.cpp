#include "ui/window.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "ui/controls.h"

namespace tarnvale {
namespace {

using ::testing::ElementsAre;

class WindowTest : public ::testing::Test {
 protected:
  WindowTest() {
    window.Place({{&caption, nullptr, {}},
                  {&first, nullptr, {}},
                  {&panel, nullptr, {}},
                  {&inside, &panel, {}},
                  {&last, nullptr, {}}});
    Watch(first, "first");
    Watch(inside, "inside");
    Watch(last, "last");
  }

  void Watch(Control& control, const std::string& name) {
    control.GotFocus.Listen([this, name] { events.push_back(name + " got"); });
    control.LostFocus.Listen([this, name] { events.push_back(name + " lost"); });
  }

  Window window;
  Label caption;
  TextBox first;
  PictureBox panel;
  TextBox inside;
  TextBox last;
  std::vector<std::string> events;
};

TEST_F(WindowTest, PlacedControlsKnowWindowAndContainer) {
  EXPECT_EQ(first.Owner(), &window);
  EXPECT_EQ(first.Parent(), nullptr);
  EXPECT_EQ(inside.Parent(), &panel);
  EXPECT_EQ(window.Placements().size(), 5U);
}

TEST_F(WindowTest, TheLossIsReportedBeforeTheGain) {
  window.Focus(first);
  window.Focus(last);
  EXPECT_THAT(events, ElementsAre("first got", "first lost", "last got"));
  EXPECT_EQ(window.Focused(), &last);
}

TEST_F(WindowTest, TheWindowHasMovedOnWhenTheLossIsReported) {
  const Control* focused = nullptr;
  first.LostFocus.Listen([&] { focused = window.Focused(); });
  window.Focus(first);
  window.Focus(last);
  EXPECT_EQ(focused, &last);
}

TEST_F(WindowTest, TheFocusThatIsThereAlreadyDoesNotMove) {
  int moves = 0;
  window.FocusMoved.Listen([&] { ++moves; });
  window.Focus(first);
  window.Focus(first);
  EXPECT_EQ(moves, 1);
  EXPECT_THAT(events, ElementsAre("first got"));
}

TEST_F(WindowTest, WhatIsHiddenOrDisabledTakesNoFocus) {
  first.Visible = false;
  last.Enabled = false;
  window.Focus(first);
  window.Focus(last);
  EXPECT_EQ(window.Focused(), nullptr);
}

TEST_F(WindowTest, WhatLiesInAHiddenOrDisabledContainerTakesNoFocus) {
  panel.Visible = false;
  window.Focus(inside);
  EXPECT_EQ(window.Focused(), nullptr);
  panel.Visible = true;
  panel.Enabled = false;
  window.Focus(inside);
  EXPECT_EQ(window.Focused(), nullptr);
  panel.Enabled = true;
  window.Focus(inside);
  EXPECT_EQ(window.Focused(), &inside);
}

TEST_F(WindowTest, AHandlerOfTheLossMaySendTheFocusElsewhere) {
  window.Focus(first);
  first.LostFocus.Listen([&] { window.Focus(inside); });
  window.Focus(last);
  EXPECT_EQ(window.Focused(), &inside);
  EXPECT_THAT(events, ElementsAre("first got", "first lost", "inside got"));
}

TEST_F(WindowTest, AHandlerOfTheMoveMaySendTheFocusElsewhere) {
  window.FocusMoved.Listen([&] { window.Focus(inside); });
  window.Focus(first);
  EXPECT_EQ(window.Focused(), &inside);
  EXPECT_THAT(events, ElementsAre("inside got"));
}

TEST_F(WindowTest, WhereNothingCanBeUsedNothingGetsTheFocus) {
  for (Control* control : {static_cast<Control*>(&first), static_cast<Control*>(&panel),
                           static_cast<Control*>(&last)}) {
    control->Enabled = false;
  }
  window.FocusNext();
  EXPECT_EQ(window.Focused(), nullptr);
}

TEST_F(WindowTest, TheNextControlIsTheNextInTheTabOrder) {
  window.FocusNext();
  EXPECT_EQ(window.Focused(), &first);
  window.FocusNext();
  EXPECT_EQ(window.Focused(), &inside);
  window.FocusNext();
  window.FocusNext();
  EXPECT_EQ(window.Focused(), &first);
}

TEST_F(WindowTest, ThePreviousControlIsTheOneBefore) {
  window.FocusNext(false);
  EXPECT_EQ(window.Focused(), &last);
  window.FocusNext(false);
  EXPECT_EQ(window.Focused(), &inside);
}

TEST_F(WindowTest, TheTabOrderLeavesOutWhatCannotBeUsed) {
  panel.Visible = false;
  window.Focus(first);
  window.FocusNext();
  EXPECT_EQ(window.Focused(), &last);
}

TEST_F(WindowTest, WithOneUsableControlTheFocusStays) {
  panel.Visible = false;
  last.Enabled = false;
  window.FocusNext();
  window.FocusNext();
  EXPECT_EQ(window.Focused(), &first);
  EXPECT_THAT(events, ElementsAre("first got"));
}

TEST_F(WindowTest, ALinkTakesPartInTheTabOrderAndAPlainLabelDoesNot) {
  Window other;
  Label plain;
  Label link(TextRole::kLink);
  other.Place({{&plain, nullptr, {}}, {&link, nullptr, {}}});
  other.FocusNext();
  EXPECT_EQ(other.Focused(), &link);
}

TEST_F(WindowTest, AnEmptyWindowHasNoFocus) {
  Window empty;
  empty.FocusNext();
  EXPECT_EQ(empty.Focused(), nullptr);
}

TEST_F(WindowTest, ClosingHidesAndIsReported) {
  std::vector<std::string> reported;
  window.CloseAsked.Listen([&](CloseRequest&) { reported.push_back("asked"); });
  window.Closed.Listen([&] { reported.push_back(window.Visible ? "closed visible" : "closed"); });
  window.Show();
  EXPECT_TRUE(window.Close());
  EXPECT_FALSE(window.Visible);
  EXPECT_THAT(reported, ElementsAre("asked", "closed"));
}

TEST_F(WindowTest, AnyHandlerCanCancelClosing) {
  bool closed = false;
  window.CloseAsked.Listen([](CloseRequest& request) { request.cancelled = true; });
  window.CloseAsked.Listen([](CloseRequest&) {});
  window.Closed.Listen([&] { closed = true; });
  window.Show();
  EXPECT_FALSE(window.Close());
  EXPECT_TRUE(window.Visible);
  EXPECT_FALSE(closed);
}

TEST_F(WindowTest, ShowingAVisibleWindowRaisesIt) {
  int raised = 0;
  window.Show();
  window.Raised.Listen([&] { ++raised; });
  window.Show();
  EXPECT_TRUE(window.Visible);
  EXPECT_EQ(raised, 1);
}

}  // namespace
}  // namespace tarnvale
