#include "shell/alert_popup.h"

#include <limits>

#include "tests/shell/popups_fixture.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class AlertTest : public PopupsFixture {
 protected:
  void AnnounceAndSlideIn() {
    Announce();
    machine.Advance(Slide(Alert()));
  }
  void LetItGo() {
    AnnounceAndSlideIn();
    machine.Advance(5000ms + Slide(Alert()));
  }
};

TEST_F(AlertTest, IsLoadedByItsFirstUse) {
  EXPECT_FALSE(popups.IsAlertLoaded());
  EXPECT_THAT(machine.windows.Adopted(), IsEmpty());
  Announce();
  EXPECT_TRUE(popups.IsAlertLoaded());
  EXPECT_THAT(machine.windows.Adopted(), ElementsAre(&Alert()));
}

TEST_F(AlertTest, StartsJustBelowTheLowerRightCorner) {
  Announce();
  const int width = Alert().ClientSize.width_px * kTwipsPerPixel;
  EXPECT_EQ(Alert().LeftTwips, kScreenWidthTwips - width);
  EXPECT_EQ(Alert().TopTwips, kScreenHeightTwips);
  EXPECT_EQ(Alert().Slide().HomeLeftTwips(), kScreenWidthTwips - width);
  EXPECT_EQ(Alert().Slide().HomeTopTwips(), kScreenHeightTwips);
  EXPECT_TRUE(Alert().Visible);
}

TEST_F(AlertTest, IsASolidPopupWithoutAnyText) {
  Announce();
  EXPECT_EQ(Alert().Frame, WindowFrame::kPopup);
  EXPECT_EQ(Alert().Alpha, 255);
  EXPECT_EQ(Alert().Caption.Get(), "");
  EXPECT_EQ(Alert().lblTitle.Caption.Get(), "");
  EXPECT_EQ(Alert().lblText.Caption.Get(), "");
  EXPECT_EQ(Alert().Label1.Caption.Get(), "");
}

TEST_F(AlertTest, TheTimersHaveTheirIntervalsAndStartStates) {
  Announce();
  EXPECT_EQ(Alert().Timer1.IntervalMs(), 1);
  EXPECT_EQ(Alert().Timer2.IntervalMs(), 5000);
  EXPECT_EQ(Alert().Timer3.IntervalMs(), 1);
  EXPECT_TRUE(Alert().Timer1.Enabled);
  EXPECT_FALSE(Alert().Timer2.Enabled);
  EXPECT_FALSE(Alert().Timer3.Enabled);
}

TEST_F(AlertTest, SlidesInByThirtyTwipsATick) {
  Announce();
  machine.Advance(1ms);
  EXPECT_EQ(Alert().TopTwips, kScreenHeightTwips - 30);
  machine.Advance(9ms);
  EXPECT_EQ(Alert().TopTwips, kScreenHeightTwips - 300);
}

TEST_F(AlertTest, StopsWhenItIsWhollyInView) {
  Announce();
  machine.Advance(Slide(Alert()) - 1ms);
  EXPECT_TRUE(Alert().Timer1.Enabled);
  machine.Advance(1ms);
  EXPECT_EQ(Alert().TopTwips, kScreenHeightTwips - HeightTwips(Alert()));
  EXPECT_FALSE(Alert().Timer1.Enabled);
  EXPECT_TRUE(Alert().Timer2.Enabled);
}

TEST_F(AlertTest, RestsFiveSecondsThenSlidesOut) {
  AnnounceAndSlideIn();
  const int top = Alert().TopTwips;
  machine.Advance(4999ms);
  EXPECT_EQ(Alert().TopTwips, top);
  EXPECT_FALSE(Alert().Timer3.Enabled);
  machine.Advance(1ms);
  EXPECT_FALSE(Alert().Timer2.Enabled);
  EXPECT_TRUE(Alert().Timer3.Enabled);
  machine.Advance(1ms);
  EXPECT_EQ(Alert().TopTwips, top + 30);
}

TEST_F(AlertTest, IsHiddenExactlyAtHome) {
  AnnounceAndSlideIn();
  machine.Advance(5000ms + Slide(Alert()) - 1ms);
  EXPECT_TRUE(Alert().Visible);
  machine.Advance(1ms);
  EXPECT_EQ(Alert().TopTwips, kScreenHeightTwips);
  EXPECT_FALSE(Alert().Visible);
}

TEST_F(AlertTest, GoesOnMovingDownWhenHidden) {
  LetItGo();
  EXPECT_TRUE(Alert().Timer3.Enabled);
  machine.Advance(1s);
  EXPECT_GT(Alert().TopTwips, kScreenHeightTwips);
  EXPECT_EQ((Alert().TopTwips - kScreenHeightTwips) % 30, 0);
  EXPECT_TRUE(Alert().Timer3.Enabled);
  EXPECT_FALSE(Alert().Visible);
}

TEST_F(AlertTest, IsHiddenOnlyWhenItMeetsHomeExactly) {
  AnnounceAndSlideIn();
  Alert().TopTwips = kScreenHeightTwips - 45;
  Alert().lblText.Clicked.Emit();
  machine.Advance(100ms);
  EXPECT_GT(Alert().TopTwips, kScreenHeightTwips);
  EXPECT_TRUE(Alert().Visible);
}

TEST_F(AlertTest, AHiddenOneDoesNotWakeTheLoop) {
  AnnounceAndSlideIn();
  machine.Advance(5000ms);
  EXPECT_TRUE(Alert().Timer3.WakesLoop) << "while it can be seen";
  machine.Advance(Slide(Alert()));
  EXPECT_FALSE(Alert().Timer3.WakesLoop);
}

TEST_F(AlertTest, StandsStillWhereWholeNumbersEnd) {
  LetItGo();
  Alert().TopTwips = std::numeric_limits<int>::max() - 10;
  machine.Advance(1s);
  EXPECT_EQ(Alert().TopTwips, std::numeric_limits<int>::max());
  EXPECT_TRUE(Alert().Timer3.Enabled);
}

TEST_F(AlertTest, StaysHiddenWhenTheEngineIsNotFreeAtItsLoad) {
  engine.run.EngineFree = "0";
  Announce();
  EXPECT_TRUE(popups.IsAlertLoaded());
  EXPECT_FALSE(Alert().Visible);
  EXPECT_EQ(Alert().TopTwips, kScreenHeightTwips);
  EXPECT_TRUE(Alert().Timer1.Enabled) << "it slides unseen";
  machine.Advance(10s);
  EXPECT_FALSE(Alert().Visible);
}

TEST_F(AlertTest, TheEngineIsReadAtTheLoadOnly) {
  LetItGo();
  engine.run.EngineFree = "0";
  Announce();
  EXPECT_TRUE(Alert().Visible);
}

TEST_F(AlertTest, ASecondAlertSlidesInAgain) {
  LetItGo();
  machine.Advance(3s);
  Announce();
  EXPECT_TRUE(Alert().Visible);
  EXPECT_EQ(Alert().TopTwips, kScreenHeightTwips);
  EXPECT_TRUE(Alert().Timer1.Enabled);
  EXPECT_FALSE(Alert().Timer2.Enabled);
  EXPECT_FALSE(Alert().Timer3.Enabled);
  EXPECT_TRUE(Alert().Timer3.WakesLoop);
  machine.Advance(Slide(Alert()));
  EXPECT_EQ(Alert().TopTwips, kScreenHeightTwips - HeightTwips(Alert()));
  machine.Advance(5000ms + Slide(Alert()));
  EXPECT_FALSE(Alert().Visible);
  EXPECT_TRUE(Alert().Timer3.Enabled);
}

TEST_F(AlertTest, ASecondAlertIsTheSameWindow) {
  LetItGo();
  const frmGmail* first = &Alert();
  Announce();
  EXPECT_EQ(&Alert(), first);
  EXPECT_THAT(machine.windows.Adopted(), SizeIs(1));
}

TEST_F(AlertTest, AnAlertDuringTheRestChangesNothing) {
  AnnounceAndSlideIn();
  machine.Advance(3s);
  const int top = Alert().TopTwips;
  Announce();
  EXPECT_EQ(Alert().TopTwips, top);
  EXPECT_TRUE(Alert().Timer2.Enabled);
  machine.Advance(2000ms);
  EXPECT_TRUE(Alert().Timer3.Enabled);
}

TEST_F(AlertTest, AnAlertWhileItSlidesOutTurnsItRound) {
  AnnounceAndSlideIn();
  machine.Advance(5000ms + Slide(Alert()) / 2);
  const int top = Alert().TopTwips;
  Announce();
  machine.Advance(1ms);
  EXPECT_EQ(Alert().TopTwips, top - 30);
}

TEST_F(AlertTest, ClosingDoesNotUnloadIt) {
  AnnounceAndSlideIn();
  const frmGmail* first = &Alert();
  Alert().Close();
  Announce();
  EXPECT_EQ(&Alert(), first);
  EXPECT_TRUE(Alert().Visible);
}

// --- clicks on the alert

class AlertClickTest : public AlertTest {
 protected:
  void ExpectItGoes() {
    EXPECT_FALSE(Alert().Timer1.Enabled);
    EXPECT_FALSE(Alert().Timer2.Enabled);
    EXPECT_TRUE(Alert().Timer3.Enabled);
  }
};

TEST_F(AlertClickTest, ThePictureFillsTheWholeWindow) {
  Announce();
  const Placement& first = Alert().Placements().front();
  EXPECT_EQ(first.control, &Alert().Image1);
  EXPECT_EQ(first.place, (Rect{0, 0, Alert().ClientSize.width_px, Alert().ClientSize.height_px}));
}

TEST_F(AlertClickTest, InTheRestItSlidesDownAtOnce) {
  AnnounceAndSlideIn();
  machine.Advance(2s);
  Alert().Image1.Clicked.Emit();
  ExpectItGoes();
  machine.Advance(Slide(Alert()));
  EXPECT_FALSE(Alert().Visible);
}

TEST_F(AlertClickTest, WhileItSlidesInItTurnsRound) {
  Announce();
  machine.Advance(10ms);
  Alert().Image1.Clicked.Emit();
  ExpectItGoes();
  machine.Advance(10ms);
  EXPECT_FALSE(Alert().Visible);
}

TEST_F(AlertClickTest, OnTheTitleItGoes) {
  AnnounceAndSlideIn();
  Alert().lblTitle.Clicked.Emit();
  ExpectItGoes();
}

TEST_F(AlertClickTest, OnTheTextItGoes) {
  AnnounceAndSlideIn();
  Alert().lblText.Clicked.Emit();
  ExpectItGoes();
}

TEST_F(AlertClickTest, OnTheLinkTheProgressWindowShowsFirst) {
  AnnounceAndSlideIn();
  EXPECT_FALSE(popups.IsProgressLoaded());
  bool shown_before_it_went = false;
  Alert().Timer3.Enabled.Changed.Listen(
      [&] { shown_before_it_went = popups.IsProgressLoaded() && Bar().Visible; });
  Alert().Label1.Clicked.Emit();
  EXPECT_TRUE(shown_before_it_went);
  ExpectItGoes();
}

TEST_F(AlertClickTest, OnTheWayOutChangesNothing) {
  AnnounceAndSlideIn();
  Alert().Image1.Clicked.Emit();
  machine.Advance(10ms);
  const int top = Alert().TopTwips;
  Alert().Image1.Clicked.Emit();
  machine.Advance(1ms);
  EXPECT_EQ(Alert().TopTwips, top + 30);
}

}  // namespace
}  // namespace tarnvale::testing
