// The download: its steps, its names, and what its failure path leaves out.
#include "tests/transfer/ftp_window_fixture.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class FtpDownloadTest : public FtpWindowTest {
 protected:
  FtpDownloadTest() {
    FillFields();
    machine.Advance(200ms);
    LetCommandsLast(50ms);
  }

  /// The name that the n-th dialog began with.
  std::string NameOffered(std::size_t n) const {
    const std::string& file = machine.dialogs.Seen().at(n).file.file;
    return file.substr(0, file.find('\0'));
  }

  /// The rule, which still runs, enables both buttons; then the animation ticks.
  const Actions rule_and_first_tick{"chameleonButton1 on",
                                    "chameleonButton3 on",
                                    "status: File Transferring...",
                                    "bar 1: 2",
                                    "bar 2: 10",
                                    "bar 3: 7",
                                    "chameleonButton1 off",
                                    "Timer2 off"};
  const std::string get = "Execute GET \"far.tvz\" \"C:\\In Box\\near.tvz\"";
};

TEST_F(FtpDownloadTest, GoesItsStepsInOrder) {
  ftp.Let("GET", {.lasts = 250ms});
  machine.dialogs.Choose(Dialog::kSave, "C:\\In Box\\near.tvz");
  FollowAll();
  Click(window.chameleonButton3);
  EXPECT_EQ(actions, Joined({BarsAt(0),
                             {"chameleonButton3 off", "chameleonButton1 off", "cmdBrowse off"},
                             configuration,
                             {"Execute DIR", "status: Connected To Server", "Text20: far.tvz",
                              "Text21: C:\\In Box\\near.tvz", "Timer3 on", get},
                             rule_and_first_tick,
                             {"Timer3 off"},
                             BarsAt(100),
                             {"Timer2 on", "status: Action Completed", "chameleonButton1 on",
                              "cmdBrowse on", "Execute CLOSE"}}));
  EXPECT_THAT(machine.boxes.Shown(), IsEmpty());
}

TEST_F(FtpDownloadTest, OnlyTheRuleBringsItsButtonBackAfterAGoodEnding) {
  window.Timer2.Enabled = false;
  machine.dialogs.Choose(Dialog::kSave, "C:\\near.tvz");
  Click(window.chameleonButton3);
  EXPECT_FALSE(window.chameleonButton3.Enabled);
  machine.Advance(200ms);
  EXPECT_TRUE(window.chameleonButton3.Enabled);
}

TEST_F(FtpDownloadTest, TheDialogOffersTheRemoteName) {
  machine.dialogs.Choose(Dialog::kSave, "C:\\near.tvz");
  Click(window.chameleonButton3);
  EXPECT_EQ(NameOffered(0), "far.tvz");
  const FileDialogRecord& dialog = machine.dialogs.Seen()[0].file;
  EXPECT_EQ(dialog.title, "Select Where To Download The File From FTP Server");
  EXPECT_EQ(WithBars(dialog.filter), "All Files (*.*)|*.*||");
}

TEST_F(FtpDownloadTest, AnExtensionWithALeadingDotGivesTwoDots) {
  window.Text23.Text = ".tvz";
  machine.dialogs.Choose(Dialog::kSave, "C:\\near.tvz");
  Click(window.chameleonButton3);
  EXPECT_EQ(window.Text20.Text.Get(), "far..tvz");
  EXPECT_EQ(NameOffered(0), "far..tvz");
  EXPECT_THAT(ftp.Commands(), ElementsAre("DIR", "GET \"far..tvz\" \"C:\\near.tvz\"", "CLOSE"));
}

TEST_F(FtpDownloadTest, ACancelledDialogCountsAsAFailureOfTheServer) {
  machine.dialogs.Cancel(Dialog::kSave);
  FollowAll();
  FollowNextBox();
  ExpectError(kServerError);
  Click(window.chameleonButton3);
  EXPECT_EQ(actions, Joined({BarsAt(0),
                             {"chameleonButton3 off", "chameleonButton1 off", "cmdBrowse off"},
                             configuration,
                             {"Execute DIR", "status: Connected To Server", "Text20: far.tvz",
                              "box", "status: File Download Has Failed!"},
                             BarsAt(100),
                             {"chameleonButton3 on"}}));
  EXPECT_EQ(machine.boxes.Shown()[0].title, "FTP Error");
  EXPECT_THAT(ftp.Commands(), ElementsAre("DIR"));
}

TEST_F(FtpDownloadTest, AFailureGoesItsPathAndLeavesWhatUploadsDisabled) {
  ftp.FailOn("Execute", "GET \"far.tvz\" \"C:\\In Box\\near.tvz\"", kStillExecuting);
  machine.dialogs.Choose(Dialog::kSave, "C:\\In Box\\near.tvz");
  FollowAll();
  FollowNextBox(250ms);
  ExpectError(kServerError);
  Click(window.chameleonButton3);
  EXPECT_EQ(actions, Joined({BarsAt(0),
                             {"chameleonButton3 off", "chameleonButton1 off", "cmdBrowse off"},
                             configuration,
                             {"Execute DIR", "status: Connected To Server", "Text20: far.tvz",
                              "Text21: C:\\In Box\\near.tvz", "Timer3 on", get, "box"},
                             rule_and_first_tick,
                             {"status: File Download Has Failed!", "Timer3 off"},
                             BarsAt(100)}));
  EXPECT_TRUE(window.chameleonButton3.Enabled);
}

TEST_F(FtpDownloadTest, UploadStaysOffAfterAFailureUntilAFlowEndsWell) {
  ftp.FailOn("Execute", "GET \"far.tvz\" \"C:\\near.tvz\"", kStillExecuting);
  machine.dialogs.Choose(Dialog::kSave, "C:\\near.tvz");
  FollowNextBox(250ms);
  ExpectError(kServerError);
  Click(window.chameleonButton3);
  EXPECT_TRUE(window.chameleonButton3.Enabled) << "the download comes back by itself";
  machine.Advance(10s);
  EXPECT_FALSE(window.chameleonButton1.Enabled);
  EXPECT_FALSE(window.cmdBrowse.Enabled);

  ExpectInformation("Your Settings Have Been Verified. Connection Established!");
  Click(window.chameleonButton4);
  machine.Advance(1s);
  EXPECT_FALSE(window.chameleonButton1.Enabled) << "a verify starts no rule";

  machine.dialogs.Choose(Dialog::kSave, "C:\\other.tvz");
  Click(window.chameleonButton3);
  EXPECT_TRUE(window.Timer2.Enabled);
  EXPECT_TRUE(window.chameleonButton1.Enabled);
  EXPECT_TRUE(window.cmdBrowse.Enabled);
}

// The animation never ran, so nothing had switched the rule off.
TEST_F(FtpDownloadTest, AfterACancelOnlyTheBrowseButtonStaysOff) {
  machine.dialogs.Cancel(Dialog::kSave);
  ExpectError(kServerError);
  Click(window.chameleonButton3);
  EXPECT_FALSE(window.cmdBrowse.Enabled);
  EXPECT_FALSE(window.chameleonButton1.Enabled);
  machine.Advance(200ms);
  EXPECT_TRUE(window.chameleonButton1.Enabled);
  EXPECT_FALSE(window.cmdBrowse.Enabled);
}

TEST_F(FtpDownloadTest, TheCloseWaitsUntilTheTransportIsFree) {
  // Something starts a command of its own as the download ends.
  window.ConnectionStatus.Changed.Listen([this] {
    if (window.ConnectionStatus.Get() == "Action Completed") ftp.Execute("DIR");
  });
  machine.dialogs.Choose(Dialog::kSave, "C:\\near.tvz");
  Click(window.chameleonButton3);
  EXPECT_THAT(ftp.Commands(),
              ElementsAre("DIR", "GET \"far.tvz\" \"C:\\near.tvz\"", "DIR", "CLOSE"));
}

// What uploads came back before, and stays.
TEST_F(FtpDownloadTest, AFailureOfTheCloseIsAFailureOfTheDownload) {
  ftp.FailOn("Execute", "CLOSE", kStillExecuting);
  machine.dialogs.Choose(Dialog::kSave, "C:\\near.tvz");
  ExpectError(kServerError);
  Click(window.chameleonButton3);
  ASSERT_EQ(machine.boxes.Shown().size(), 1U);
  EXPECT_EQ(machine.boxes.Shown()[0].title, "FTP Error");
  EXPECT_EQ(window.ConnectionStatus.Get(), "File Download Has Failed!");
  EXPECT_TRUE(window.chameleonButton3.Enabled);
  EXPECT_TRUE(window.chameleonButton1.Enabled);
  EXPECT_TRUE(window.Timer2.Enabled);
}

TEST_F(FtpDownloadTest, AMissingRemoteFileEndsWellAndSaysNothing) {
  ftp.Let("GET",
          {.reported = {{10ms, TransportState::kError, kTransferRefusedByServer}}, .lasts = 20ms});
  machine.dialogs.Choose(Dialog::kSave, "C:\\near.tvz");
  Click(window.chameleonButton3);
  EXPECT_EQ(window.ConnectionStatus.Get(), "Action Completed");
  EXPECT_THAT(machine.boxes.Shown(), IsEmpty());
}

}  // namespace
}  // namespace tarnvale::testing
