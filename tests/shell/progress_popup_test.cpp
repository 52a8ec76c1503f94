#include "shell/progress_popup.h"

#include "tests/shell/popups_fixture.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;

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
  Popups popups(engine);
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

}  // namespace
}  // namespace tarnvale::testing
