// The timers of the FTP window.
#include "tests/transfer/ftp_window_fixture.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;

class FtpTicksTest : public FtpWindowTest {};

TEST_F(FtpTicksTest, StandAtTheirIntervalsAndThreeOfThemAreOn) {
  EXPECT_EQ(window.Timer1.IntervalMs(), 500);
  EXPECT_EQ(window.Timer2.IntervalMs(), 200);
  EXPECT_EQ(window.Timer3.IntervalMs(), 200);
  EXPECT_EQ(window.Timer4.IntervalMs(), 1000);
  EXPECT_TRUE(window.Timer1.Enabled);
  EXPECT_TRUE(window.Timer2.Enabled);
  EXPECT_FALSE(window.Timer3.Enabled);
  EXPECT_TRUE(window.Timer4.Enabled);
}

// --- The remote name ------------------------------------------------------------------

TEST_F(FtpTicksTest, ARemoteNameLosesItsBlanksWithinHalfASecond) {
  window.txtRemote.Text = " my  back up.tvz ";
  machine.Advance(499ms);
  EXPECT_EQ(window.txtRemote.Text.Get(), " my  back up.tvz ");
  machine.Advance(1ms);
  EXPECT_EQ(window.txtRemote.Text.Get(), "mybackup.tvz");
}

TEST_F(FtpTicksTest, ARemoteNameOfBlanksBecomesEmpty) {
  window.txtRemote.Text = "   ";
  machine.Advance(500ms);
  EXPECT_EQ(window.txtRemote.Text.Get(), "");
}

TEST_F(FtpTicksTest, OtherWhiteSpaceStays) {
  window.txtRemote.Text =
      "a\tb\xA0"
      "c d";
  machine.Advance(500ms);
  EXPECT_EQ(window.txtRemote.Text.Get(),
            "a\tb\xA0"
            "cd");
}

TEST_F(FtpTicksTest, AUserWhoIsTypingGoesOnAtTheCaret) {
  window.txtRemote.Text = "my new name.tvz";
  window.txtRemote.Selection = TextSelection{.start = 7};  // behind "my new "
  machine.Advance(500ms);
  EXPECT_EQ(window.txtRemote.Text.Get(), "mynewname.tvz");
  EXPECT_EQ(window.txtRemote.Selection.Get(), TextSelection{.start = 5});
}

TEST_F(FtpTicksTest, ASelectionInANameWithoutBlanksStays) {
  window.txtRemote.Text = "name.tvz";
  window.txtRemote.Selection = TextSelection{.start = 2, .length = 3};
  machine.Advance(1s);
  EXPECT_EQ(window.txtRemote.Selection.Get(), (TextSelection{.start = 2, .length = 3}));
}

// --- The buttons ----------------------------------------------------------------------

class FtpRuleTest : public FtpWindowTest {
 protected:
  FtpRuleTest() {
    FillFields();
    machine.Advance(200ms);
  }
  /// Enabled flags of upload and download after a tick with one field empty.
  std::vector<bool> Without(TextBox& field) {
    const std::string text = field.Text;
    field.Text = "";
    machine.Advance(200ms);
    const std::vector<bool> enabled{window.chameleonButton1.Enabled,
                                    window.chameleonButton3.Enabled};
    field.Text = text;
    machine.Advance(200ms);
    EXPECT_TRUE(window.chameleonButton1.Enabled);
    EXPECT_TRUE(window.chameleonButton3.Enabled);
    return enabled;
  }
};

TEST_F(FtpRuleTest, UploadNeedsServerLoginAndBothNames) {
  EXPECT_THAT(Without(window.txtLocal), ElementsAre(false, true));
  EXPECT_THAT(Without(window.txtRemote), ElementsAre(false, true));
}

TEST_F(FtpRuleTest, DownloadNeedsServerLoginNameAndExtension) {
  EXPECT_THAT(Without(window.Text22), ElementsAre(true, false));
  EXPECT_THAT(Without(window.Text23), ElementsAre(true, false));
}

TEST_F(FtpRuleTest, ALoginWithoutAPasswordCannotBeStartedFromTheButtons) {
  EXPECT_THAT(Without(window.txtServer), ElementsAre(false, false));
  EXPECT_THAT(Without(window.txtUserID), ElementsAre(false, false));
  EXPECT_THAT(Without(window.txtPassword), ElementsAre(false, false));
}

TEST_F(FtpRuleTest, TheOtherButtonsAreNotSubjectToIt) {
  for (TextBox* field : {&window.txtServer, &window.txtUserID, &window.txtPassword,
                         &window.txtLocal, &window.txtRemote, &window.Text22, &window.Text23}) {
    field->Text = "";
  }
  machine.Advance(200ms);
  EXPECT_TRUE(window.chameleonButton2.Enabled);
  EXPECT_TRUE(window.chameleonButton4.Enabled);
  EXPECT_TRUE(window.cmdBrowse.Enabled);
}

// --- The animation --------------------------------------------------------------------

TEST_F(FtpTicksTest, TheAnimationMovesTheBarsTwoTenAndSevenAndWrapsAtTheMaximum) {
  std::vector<std::vector<int>> seen;
  window.Timer3.Enabled = true;
  for (int tick = 1; tick <= 50; ++tick) {
    machine.Advance(200ms);
    seen.push_back(
        {window.XP_ProgressBar1.Value, window.XP_ProgressBar2.Value, window.XP_ProgressBar3.Value});
  }
  EXPECT_THAT(seen[0], ElementsAre(2, 10, 7));
  EXPECT_THAT(seen[8], ElementsAre(18, 90, 63));
  EXPECT_THAT(seen[9], ElementsAre(20, 0, 70));
  EXPECT_THAT(seen[13], ElementsAre(28, 40, 98));
  // 105 is cut to 100, and so comes out at the maximum.
  EXPECT_THAT(seen[14], ElementsAre(30, 50, 0));
  EXPECT_THAT(seen[48], ElementsAre(98, 90, 28));
  EXPECT_THAT(seen[49], ElementsAre(0, 0, 35));
}

TEST_F(FtpTicksTest, FullBarsStartOver) {
  for (XP_ProgressBar* bar :
       {&window.XP_ProgressBar1, &window.XP_ProgressBar2, &window.XP_ProgressBar3}) {
    bar->Value = 100;
  }
  window.Timer3.Enabled = true;
  machine.Advance(200ms);
  EXPECT_EQ(window.XP_ProgressBar1.Value, 0);
  EXPECT_EQ(window.XP_ProgressBar2.Value, 0);
  EXPECT_EQ(window.XP_ProgressBar3.Value, 0);
}

TEST_F(FtpTicksTest, TheAnimationOverwritesTheStatusFiveTimesASecond) {
  window.Timer3.Enabled = true;
  for (int tick = 0; tick < 5; ++tick) {
    ftp.Report(TransportState::kRequestSent);
    EXPECT_EQ(window.ConnectionStatus.Get(), "Request Sent");
    machine.Advance(200ms);
    EXPECT_EQ(window.ConnectionStatus.Get(), "File Transferring...");
  }
}

TEST_F(FtpTicksTest, TheAnimationDisablesWhatUploadsAndStopsTheRule) {
  FillFields();
  FollowAll();
  for (XP_ProgressBar* bar :
       {&window.XP_ProgressBar1, &window.XP_ProgressBar2, &window.XP_ProgressBar3}) {
    bar->Value = 0;
  }
  machine.Advance(200ms);
  window.Timer3.Enabled = true;
  actions.clear();
  machine.Advance(200ms);
  EXPECT_EQ(actions, first_tick);
  EXPECT_TRUE(window.chameleonButton3.Enabled);
  EXPECT_TRUE(window.chameleonButton2.Enabled);
  EXPECT_TRUE(window.chameleonButton4.Enabled);
}

// --- The settings ---------------------------------------------------------------------

TEST_F(FtpTicksTest, TheFieldsAreStoredEverySecondInTheirOrder) {
  FillFields();
  Actions stored;
  settings.FtpServer.Changed.Listen([&] { stored.push_back(settings.FtpServer); });
  settings.FtpUsername.Changed.Listen([&] { stored.push_back(settings.FtpUsername); });
  settings.FtpPassword.Changed.Listen([&] { stored.push_back(settings.FtpPassword); });
  machine.Advance(999ms);
  EXPECT_TRUE(stored.empty());
  machine.Advance(1ms);
  EXPECT_THAT(stored, ElementsAre("ftp.home", "ann", "s3cret"));
}

TEST_F(FtpTicksTest, TheFieldsAreStoredWhileTheWindowIsHidden) {
  window.Hide();
  window.txtUserID.Text = "ann";
  machine.Advance(1s);
  EXPECT_EQ(settings.FtpUsername.Get(), "ann");
}

TEST_F(FtpTicksTest, AnEmptyServerIsEmptyForASecondAtMost) {
  window.txtServer.Text = "";
  machine.Advance(999ms);
  EXPECT_EQ(window.txtServer.Text.Get(), "");
  machine.Advance(1ms);
  EXPECT_EQ(window.txtServer.Text.Get(), kExampleServer);
  EXPECT_EQ(settings.FtpServer.Get(), "") << "stored before it filled itself";
  machine.Advance(1s);
  EXPECT_EQ(settings.FtpServer.Get(), kExampleServer);
}

}  // namespace
}  // namespace tarnvale::testing
