#include "core/alerts.h"

#include <limits>

#include "tests/core/engine_fixture.h"

namespace tarnvale::testing {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;

constexpr int kStepTwips = 30;
constexpr int kScreenWidthTwips = 1024 * kTwipsPerPixel;
constexpr int kScreenHeightTwips = 768 * kTwipsPerPixel;

/// A whole engine with its popups. The gate is free until its first tick.
class PopupsFixture : public EngineFixture {
 protected:
  PopupsFixture() {
    engine.settings.SaveLog = false;
    engine.run.EngineFree = "1";
    popups.ConnectStages();
    engine.stages.CompressionProgress = [this] { return compression; };
    engine.stages.ConnectionStatus = [this] { return connection; };
  }

  static Raster PaintEmblem(int size_px) {
    Raster emblem{size_px, size_px, {}};
    emblem.pixels.assign(static_cast<std::size_t>(size_px * size_px), 0xFF0000FFU);
    return emblem;
  }

  static int HeightTwips(const Window& window) {
    return window.ClientSize.height_px * kTwipsPerPixel;
  }
  /// As many steps take a window from home to its place, a millisecond each.
  static std::chrono::milliseconds Slide(const Window& window) {
    return std::chrono::milliseconds(HeightTwips(window) / kStepTwips);
  }

  frmGmail& Alert() { return popups.Alert(); }
  Progress& Bar() { return popups.ProgressPopup(); }
  void Announce() { cAlert(popups).Gmail(); }

  int compression = 0;
  std::string connection;
  Popups popups{engine, PaintEmblem};
};

// --- the alert

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

TEST_F(AlertTest, TheEngineIsAskedAtTheLoadOnly) {
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

// --- the alert in the chain

class AlertChainTest : public PopupsFixture {
 protected:
  AlertChainTest() {
    engine.settings.AutoReport = true;
    engine.stages.SendReport = [this](const RunFacts&) { deeds.push_back("report"); };
  }

  void StartByHand() {
    machine.boxes.Expect("Start?", BoxIcon::kQuestion, BoxAnswer::kYes);
    engine.AskAndStart("Start?");
  }
  void StartByTheScheduleAtNoon() {
    engine.settings.ScheduleAt = true;
    engine.settings.AlwaysAtTime = 0.5;
    machine.SetTime("12:00:00");
    engine.scheduler.CheckSchedule();
  }
};

TEST_F(AlertChainTest, AStartByHandShowsIt) {
  StartByHand();
  ASSERT_TRUE(popups.IsAlertLoaded());
  EXPECT_TRUE(Alert().Visible);
}

TEST_F(AlertChainTest, WithoutShowAlertThereIsNoPopupAndTheSamePause) {
  engine.settings.ShowAlert = false;
  StartByHand();
  EXPECT_FALSE(popups.IsAlertLoaded());
  machine.Advance(8099ms);
  EXPECT_THAT(deeds, IsEmpty());
  machine.Advance(1ms);
  EXPECT_THAT(deeds, ElementsAre("report"));
}

TEST_F(AlertChainTest, AScheduledStartOfABusyEngineHasNoPopupNoCopyAndTheChain) {
  compression = 50;
  engine.run.EngineFree = "0";
  StartByTheScheduleAtNoon();
  machine.Advance(8100ms);
  EXPECT_FALSE(popups.IsAlertLoaded());
  EXPECT_FALSE(popups.IsProgressLoaded()) << "the copy phase would have touched its bar";
  EXPECT_THAT(deeds, ElementsAre("report"));
}

TEST_F(AlertChainTest, ItAppearsAgainWithEachStart) {
  StartByHand();
  machine.Advance(1min);
  EXPECT_FALSE(Alert().Visible);
  StartByTheScheduleAtNoon();
  EXPECT_TRUE(Alert().Visible);
  machine.Advance(Slide(Alert()));
  EXPECT_EQ(Alert().TopTwips, kScreenHeightTwips - HeightTwips(Alert()));
}

// --- the progress window

class ProgressWindowTest : public PopupsFixture {
 protected:
  std::string Text() { return Bar().Label1.Caption.Get(); }
  void Show() { cAlert(popups).ProgressWindow(); }
  void ShowAndSlideIn() {
    Show();
    machine.Advance(Slide(Bar()));
  }
};

TEST_F(ProgressWindowTest, IsLoadedUnseenWhenARunTouchesItsBar) {
  EXPECT_FALSE(popups.IsProgressLoaded());
  engine.stages.ResetProgressWindow();
  EXPECT_TRUE(popups.IsProgressLoaded());
  EXPECT_FALSE(Bar().Visible);
  EXPECT_THAT(machine.windows.Adopted(), ElementsAre(&Bar()));
}

TEST_F(ProgressWindowTest, BeginsIdleJustBelowTheLowerRightCorner) {
  Show();
  const int width = Bar().ClientSize.width_px * kTwipsPerPixel;
  EXPECT_TRUE(Bar().Visible);
  EXPECT_EQ(Bar().LeftTwips, kScreenWidthTwips - width);
  EXPECT_EQ(Bar().TopTwips, kScreenHeightTwips);
  EXPECT_EQ(Bar().Slide().HomeLeftTwips(), kScreenWidthTwips - width);
  EXPECT_EQ(Bar().Slide().HomeTopTwips(), kScreenHeightTwips);
  EXPECT_EQ(Text(), "Backup Process Is Currently Idle");
}

TEST_F(ProgressWindowTest, IsANearlySolidPopupWithItsTexts) {
  EXPECT_EQ(Bar().Frame, WindowFrame::kPopup);
  EXPECT_EQ(Bar().Alpha, 250);
  EXPECT_EQ(Bar().Caption.Get(), "Current Backup Progress");
  EXPECT_EQ(Bar().TitleLabel.Caption.Get(), "Tarnvale Progress");
}

TEST_F(ProgressWindowTest, TheTimersHaveTheirIntervalsAndStartStates) {
  EXPECT_EQ(Bar().Timer1.IntervalMs(), 1);
  EXPECT_EQ(Bar().Timer2.IntervalMs(), 7000);
  EXPECT_EQ(Bar().Timer3.IntervalMs(), 1);
  EXPECT_EQ(Bar().Timer4.IntervalMs(), 1);
  EXPECT_EQ(Bar().Timer5.IntervalMs(), 100);
  EXPECT_TRUE(Bar().Timer1.Enabled);
  EXPECT_FALSE(Bar().Timer2.Enabled);
  EXPECT_FALSE(Bar().Timer3.Enabled);
  EXPECT_TRUE(Bar().Timer4.Enabled);
  EXPECT_FALSE(Bar().Timer5.Enabled);
}

TEST_F(ProgressWindowTest, NothingListensToTheSecondTimer) {
  EXPECT_FALSE(Bar().Timer2.Tick.HasListeners());
  machine.Advance(1min);
  EXPECT_FALSE(Bar().Timer2.Enabled);
}

TEST_F(ProgressWindowTest, SlidesInAndStops) {
  Show();
  machine.Advance(1ms);
  EXPECT_EQ(Bar().TopTwips, kScreenHeightTwips - 30);
  machine.Advance(Slide(Bar()));
  EXPECT_EQ(Bar().TopTwips, kScreenHeightTwips - HeightTwips(Bar()));
  EXPECT_FALSE(Bar().Timer1.Enabled);
  EXPECT_TRUE(Bar().Visible);
}

TEST_F(ProgressWindowTest, LoadedUnseenItStandsInItsPlaceWhenShown) {
  engine.stages.ResetProgressWindow();
  machine.Advance(1s);
  Show();
  EXPECT_EQ(Bar().TopTwips, kScreenHeightTwips - HeightTwips(Bar()));
  EXPECT_FALSE(Bar().Timer1.Enabled);
}

TEST_F(ProgressWindowTest, TheCrossSlidesItOutAndHidesItAtHome) {
  ShowAndSlideIn();
  Bar().Image2.Clicked.Emit();
  EXPECT_TRUE(Bar().Timer3.Enabled);
  machine.Advance(Slide(Bar()) - 1ms);
  EXPECT_TRUE(Bar().Visible);
  machine.Advance(1ms);
  EXPECT_FALSE(Bar().Visible);
  EXPECT_FALSE(Bar().Timer3.Enabled);
  machine.Advance(1s);
  EXPECT_EQ(Bar().TopTwips, kScreenHeightTwips);
}

TEST_F(ProgressWindowTest, AClickOnTheCrossWhileItSlidesInMakesItHover) {
  Show();
  machine.Advance(10ms);
  const int top = Bar().TopTwips;
  Bar().Image2.Clicked.Emit();
  machine.Advance(1s);
  EXPECT_EQ(Bar().TopTwips, top);
  EXPECT_TRUE(Bar().Timer1.Enabled);
  EXPECT_TRUE(Bar().Timer3.Enabled);
}

TEST_F(ProgressWindowTest, CalledUpAgainAfterItsClosingItSlidesIn) {
  ShowAndSlideIn();
  Bar().Image2.Clicked.Emit();
  machine.Advance(1s);
  ShowAndSlideIn();
  EXPECT_TRUE(Bar().Visible);
  EXPECT_EQ(Bar().TopTwips, kScreenHeightTwips - HeightTwips(Bar()));
  EXPECT_FALSE(Bar().Timer1.Enabled);
}

TEST_F(ProgressWindowTest, CalledUpOnItsWayOutItTurnsRound) {
  ShowAndSlideIn();
  Bar().Image2.Clicked.Emit();
  machine.Advance(10ms);
  ShowAndSlideIn();
  EXPECT_FALSE(Bar().Timer3.Enabled);
  EXPECT_EQ(Bar().TopTwips, kScreenHeightTwips - HeightTwips(Bar()));
}

TEST_F(ProgressWindowTest, ClosingDoesNotUnloadIt) {
  Show();
  const Progress* first = &Bar();
  Bar().Close();
  Show();
  EXPECT_EQ(&Bar(), first);
  EXPECT_TRUE(Bar().Visible);
}

// --- it follows the copy

class FollowCopyTest : public ProgressWindowTest {
 protected:
  void Copied(int value) {
    engine.run.CopyBar = value;
    machine.Advance(1ms);
  }
};

TEST_F(FollowCopyTest, ARunResetsTheBarAndFollowsAgain) {
  Show();
  Copied(100);
  EXPECT_FALSE(Bar().Timer4.Enabled);
  engine.stages.ResetProgressWindow();
  EXPECT_EQ(Bar().Bar.Value, 0);
  engine.stages.FollowCopy();
  EXPECT_TRUE(Bar().Timer4.Enabled);
}

TEST_F(FollowCopyTest, TheBarTakesValueAndMaximumOfTheCopy) {
  Show();
  Copied(25);
  EXPECT_EQ(Bar().Bar.Value, 25);
  EXPECT_EQ(Bar().Bar.Max, 100);
}

TEST_F(FollowCopyTest, BetweenZeroAndTheMaximumItIsRunning) {
  Show();
  Copied(1);
  EXPECT_EQ(Text(), "Backup Process Is Currently Running");
  Copied(99);
  EXPECT_EQ(Text(), "Backup Process Is Currently Running");
  EXPECT_TRUE(Bar().Timer4.Enabled);
}

TEST_F(FollowCopyTest, AtZeroItIsIdle) {
  Show();
  Copied(25);
  Copied(0);
  EXPECT_EQ(Text(), "Backup Process Is Currently Idle");
  EXPECT_TRUE(Bar().Timer4.Enabled);
}

TEST_F(FollowCopyTest, AtTheMaximumItIsCompletedAndStops) {
  Show();
  Copied(100);
  EXPECT_EQ(Text(), "Backup Has Been Completed");
  EXPECT_FALSE(Bar().Timer4.Enabled);
}

TEST_F(FollowCopyTest, WithoutAutoCompressTheTextEndsThere) {
  engine.settings.AutoCompress = false;
  compression = 100;
  Show();
  Copied(100);
  machine.Advance(10s);
  EXPECT_FALSE(Bar().Timer5.Enabled);
  EXPECT_EQ(Text(), "Backup Has Been Completed");
}

TEST_F(FollowCopyTest, WithAutoCompressTheLaterStagesAreFollowed) {
  engine.settings.AutoCompress = true;
  Show();
  Copied(100);
  EXPECT_TRUE(Bar().Timer5.Enabled);
  EXPECT_FALSE(Bar().Timer4.Enabled);
}

TEST_F(FollowCopyTest, AnUnchangedBarIsNotDrawnAgain) {
  Show();
  Copied(25);
  int looks = 0;
  Bar().Bar.LookChanged.Listen([&] { ++looks; });
  machine.Advance(1s);
  EXPECT_EQ(looks, 0);
}

// --- it follows compression and upload

class FollowStagesTest : public ProgressWindowTest {
 protected:
  FollowStagesTest() {
    engine.settings.AutoCompress = true;
    Show();
    engine.run.CopyBar = 100;
    machine.Advance(1ms);
    Bar().Label1.Caption.Changed().Listen([this] { texts.push_back(Text()); });
  }

  void Compressed(int value) {
    compression = value;
    machine.Advance(100ms);
  }

  std::vector<std::string> texts;
};

TEST_F(FollowStagesTest, BelowTheMaximumItIsCompressing) {
  Compressed(0);
  EXPECT_EQ(Text(), "Compressing The Backup File");
  Compressed(40);
  EXPECT_EQ(Text(), "Compressing The Backup File");
  EXPECT_EQ(Bar().Bar.Value, 40);
  EXPECT_TRUE(Bar().Timer5.Enabled);
}

TEST_F(FollowStagesTest, TheMaximumOfItsBarIsAHundred) {
  Bar().Bar.Max = 50;
  Compressed(40);
  EXPECT_EQ(Bar().Bar.Max, 100);
  EXPECT_EQ(Bar().Bar.Value, 40);
}

TEST_F(FollowStagesTest, WithoutUploadItHasCompletedAtTheMaximum) {
  Compressed(40);
  Compressed(100);
  EXPECT_EQ(Text(), "Tarnvale Has Completed");
  EXPECT_FALSE(Bar().Timer5.Enabled);
}

TEST_F(FollowStagesTest, WithUploadTheUploadTextIsReplacedInTheSameTick) {
  engine.settings.AutoUpload = true;
  connection = "Transferring File...";
  Compressed(40);
  texts.clear();
  Compressed(100);
  EXPECT_THAT(texts, ElementsAre("Uploading File To FTP Server", "Backup Has Been Completed"));
  EXPECT_FALSE(Bar().Timer5.Enabled);
}

TEST_F(FollowStagesTest, WithUploadTheTransfersTextDecidesNothing) {
  engine.settings.AutoUpload = true;
  for (const char* status : {"", "File Transfer Complete", "File Transfer Canceled",
                             "File Transfer Failed", "Connecting To Host"}) {
    connection = status;
    Bar().Timer5.Enabled = true;
    Compressed(40);
    EXPECT_EQ(Text(), "Compressing The Backup File") << status;
    EXPECT_TRUE(Bar().Timer5.Enabled) << status;
    Compressed(100);
    EXPECT_EQ(Text(), "Backup Has Been Completed") << status;
    EXPECT_FALSE(Bar().Timer5.Enabled) << status;
  }
}

TEST_F(FollowStagesTest, AFailingTransferTextCountsAsTrueToo) {
  engine.settings.AutoUpload = true;
  engine.stages.ConnectionStatus = []() -> std::string { throw ProgramError(kInvalidCall); };
  Compressed(100);
  EXPECT_EQ(Text(), "Backup Has Been Completed");
  EXPECT_FALSE(Bar().Timer5.Enabled);
}

TEST_F(FollowStagesTest, AFailingCompressionBarIsPassedOver) {
  Compressed(40);
  engine.stages.CompressionProgress = []() -> int { throw ProgramError(kInvalidCall); };
  machine.Advance(100ms);
  EXPECT_EQ(Bar().Bar.Value, 40);
  EXPECT_EQ(Text(), "Compressing The Backup File");
}

TEST_F(FollowStagesTest, ASecondRunSeesTheOldHundredAtOnce) {
  Compressed(100);
  EXPECT_FALSE(Bar().Timer5.Enabled);
  engine.stages.ResetProgressWindow();
  engine.stages.FollowCopy();
  engine.run.CopyBar = 0;
  machine.Advance(1ms);
  engine.run.CopyBar = 100;
  machine.Advance(1ms);
  EXPECT_TRUE(Bar().Timer5.Enabled);
  texts.clear();
  machine.Advance(100ms);
  EXPECT_THAT(texts, ElementsAre("Tarnvale Has Completed"));
  EXPECT_FALSE(Bar().Timer5.Enabled);
}

TEST(ProgressInARunTest, FollowsAWholeRun) {
  FakeMachine machine;
  Engine engine(machine.Interfaces());
  Popups popups(engine, [](int) { return Raster(); });
  popups.ConnectStages();
  engine.settings.SaveLog = false;
  engine.run.EngineFree = "1";
  engine.run.RunDestination = "C:\\Backup";
  machine.files.MakeFolder("C:\\Backup");
  machine.files.Write("C:\\a.txt", "a");
  engine.settings.Entries.Append("C:\\a.txt");
  std::vector<std::string> texts;
  machine.loop.OnYield(1, [&] {
    Label& line = popups.ProgressPopup().Label1;
    line.Caption.Changed().Listen([&] { texts.push_back(line.Caption.Get()); });
  });
  // A copy that has begun.
  machine.loop.OnYield(2, [&] { machine.Advance(1ms); });
  engine.backup.RunBackup();
  machine.Advance(1ms);
  EXPECT_THAT(texts,
              ElementsAre("Backup Process Is Currently Running", "Backup Has Been Completed"));
  EXPECT_FALSE(popups.ProgressPopup().Visible);
}

// --- names and pictures

TEST_F(PopupsFixture, EveryControlThatShowsNoTextHasAName) {
  Announce();
  for (const Window* window : {static_cast<Window*>(&Alert()), static_cast<Window*>(&Bar())}) {
    for (const Placement& placement : window->Placements()) {
      // The status line is known by what it says.
      if (placement.control == &Bar().Label1) continue;
      EXPECT_NE(placement.control->AccessibleName.Get(), "");
    }
  }
}

TEST_F(PopupsFixture, PicturesComeInBothScales) {
  Announce();
  const Size size = Alert().ClientSize;
  EXPECT_EQ(Alert().Image1.Picture.width, size.width_px);
  EXPECT_EQ(Alert().Image1.Picture.height, size.height_px);
  EXPECT_EQ(Alert().Image1.PictureAt2x.width, 2 * size.width_px);
  EXPECT_EQ(Alert().Image1.PictureAt2x.height, 2 * size.height_px);
}

TEST_F(PopupsFixture, AWindowsPictureLeavesNoPixelClear) {
  Announce();
  const auto alpha_of = [](const Raster& picture) {
    std::vector<std::uint32_t> alphas;
    for (const std::uint32_t pixel : picture.pixels) alphas.push_back(pixel >> 24U);
    return alphas;
  };
  EXPECT_THAT(alpha_of(Alert().Image1.Picture), Each(0xFFU));
  EXPECT_THAT(alpha_of(Bar().Backdrop.PictureAt2x), Each(0xFFU));
}

TEST_F(PopupsFixture, TheEmblemStandsInTheAlertsPicture) {
  Announce();
  EXPECT_THAT(Alert().Image1.Picture.pixels, ::testing::Contains(0xFF0000FFU).Times(64 * 64));
  EXPECT_THAT(Alert().Image1.PictureAt2x.pixels, ::testing::Contains(0xFF0000FFU).Times(128 * 128));
}

}  // namespace
}  // namespace tarnvale::testing
