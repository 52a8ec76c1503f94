// What the FTP window shows, how it is loaded and unloaded, and the commands
// that transfer nothing.
#include <set>

#include "tests/transfer/ftp_window_fixture.h"
#include "ui/window_slot.h"

namespace tarnvale::testing {
namespace {

using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

class FtpPanelsTest : public FtpWindowTest {
 protected:
  /// Visible flags of GroupBox1, GroupBox2 and GroupBox4.
  std::vector<bool> PanelsInView() const {
    return {window.GroupBox1.Visible, window.GroupBox2.Visible, window.GroupBox4.Visible};
  }
};

TEST_F(FtpPanelsTest, EachLinkShowsItsPanelAndHidesTheOtherTwo) {
  EXPECT_THAT(PanelsInView(), ElementsAre(true, false, false));
  window.Label49.Clicked.Emit();
  EXPECT_THAT(PanelsInView(), ElementsAre(false, true, false));
  window.Label14.Clicked.Emit();
  EXPECT_THAT(PanelsInView(), ElementsAre(false, false, true));
  window.Label15.Clicked.Emit();
  EXPECT_THAT(PanelsInView(), ElementsAre(true, false, false));
  EXPECT_TRUE(window.GroupBox3.Visible);
}

TEST_F(FtpPanelsTest, TheThreePanelsStandInOnePlace) {
  std::set<std::vector<int>> places;
  for (const Placement& placement : window.Placements()) {
    const Control* control = placement.control;
    if (control != &window.GroupBox1 && control != &window.GroupBox2 &&
        control != &window.GroupBox4) {
      continue;
    }
    const Rect& place = placement.place;
    places.insert({place.left_px, place.top_px, place.width_px, place.height_px});
  }
  EXPECT_EQ(places.size(), 1U);
}

TEST_F(FtpPanelsTest, TheTextsAreTheRequiredOnes) {
  EXPECT_EQ(window.Caption.Get(), "FTP Server Management");
  EXPECT_EQ(window.TasksHeading.Caption.Get(), "FTP Server Tasks");
  EXPECT_EQ(window.Label15.Caption.Get(), "FTP Upload Server Settings");
  EXPECT_EQ(window.GroupBox1.Caption.Get(), "FTP Upload Server Settings");
  EXPECT_EQ(window.Label49.Caption.Get(), "Upload A Compressed File");
  EXPECT_EQ(window.GroupBox2.Caption.Get(), "FTP Server File Upload");
  EXPECT_EQ(window.Label14.Caption.Get(), "Download A Compressed File");
  EXPECT_EQ(window.GroupBox4.Caption.Get(), "FTP Server File Download");
  EXPECT_EQ(window.GroupBox3.Caption.Get(), "Status");
  EXPECT_EQ(window.StatusHeading.Caption.Get(), "Connection Status");
  EXPECT_EQ(window.Label6.Caption.Get(), "Not Connected To Server");
  EXPECT_EQ(window.SpacesNote.Caption.Get(), "No Spaces Allowed");
  EXPECT_EQ(window.ExtensionNote.Caption.Get(), "TVZ For Tarnvale Compressed File");
}

TEST_F(FtpPanelsTest, TheFieldsAndButtonsHaveTheRequiredCaptions) {
  EXPECT_EQ(window.ServerLabel.Caption.Get(), "FTP Server Address");
  EXPECT_EQ(window.UserLabel.Caption.Get(), "Username:");
  EXPECT_EQ(window.PasswordLabel.Caption.Get(), "Password:");
  EXPECT_EQ(window.chameleonButton2.Caption.Get(), "Save My Current FTP Server Upload Settings");
  EXPECT_EQ(window.chameleonButton4.Caption.Get(), "Establish Test Connection To Verify Settings");
  EXPECT_EQ(window.LocalLabel.Caption.Get(), "Compressed Backup File:");
  EXPECT_EQ(window.RemoteLabel.Caption.Get(), "Remote File Name:");
  EXPECT_EQ(window.cmdBrowse.Caption.Get(), "Browse For A Compressed File");
  EXPECT_EQ(window.chameleonButton1.Caption.Get(), "Upload File To FTP Server");
  EXPECT_EQ(window.DownloadLabel.Caption.Get(), "Remote File Name:");
  EXPECT_EQ(window.ExtensionLabel.Caption.Get(), "Extension:");
  EXPECT_EQ(window.chameleonButton3.Caption.Get(), "Download File From FTP Server");
}

TEST_F(FtpPanelsTest, ThePasswordIsMaskedAndTheFirstBarIsOfItsOwnMode) {
  EXPECT_EQ(window.txtPassword.Kind, TextKind::kPassword);
  EXPECT_EQ(window.XP_ProgressBar1.Scrolling, 2);
  EXPECT_EQ(window.XP_ProgressBar2.Scrolling, 9);
  EXPECT_EQ(window.XP_ProgressBar3.Scrolling, 9);
}

TEST_F(FtpPanelsTest, EveryFieldAndBarHasAName) {
  for (const TextBox* field :
       {&window.txtServer, &window.txtUserID, &window.txtPassword, &window.txtLocal,
        &window.txtRemote, &window.Text22, &window.Text23}) {
    EXPECT_FALSE(field->AccessibleName.Get().empty());
  }
  std::set<std::string> bars;
  for (const XP_ProgressBar* bar :
       {&window.XP_ProgressBar1, &window.XP_ProgressBar2, &window.XP_ProgressBar3}) {
    bars.insert(bar->AccessibleName.Get());
  }
  EXPECT_EQ(bars.size(), 3U);
  EXPECT_THAT(bars, Not(Contains("")));
}

// --- Load and unload ------------------------------------------------------------

TEST_F(FtpWindowTest, ItsLoadTakesTheFieldsFromTheSettings) {
  settings.FtpServer = "ftp.home";
  settings.FtpUsername = "ann";
  settings.FtpPassword = "s3cret";
  const Main other(machine.Interfaces(), settings);
  EXPECT_EQ(other.txtServer.Text.Get(), "ftp.home");
  EXPECT_EQ(other.txtUserID.Text.Get(), "ann");
  EXPECT_EQ(other.txtPassword.Text.Get(), "s3cret");
  EXPECT_FALSE(other.Visible);
}

TEST_F(FtpWindowTest, ClosingSavesAllSettingsWithWhatWasTypedInTheLastSecond) {
  FillFields();
  machine.Advance(1s);
  window.txtServer.Text = "ftp.later";
  window.txtUserID.Text = "bob";
  window.txtPassword.Text = "n3w";
  window.Close();
  EXPECT_EQ(saves, 1);
  EXPECT_THAT(saved, ElementsAre("ftp.later", "bob", "n3w"));
}

TEST_F(FtpWindowTest, AClosedWindowTicksNoMoreAndHearsNothing) {
  window.Close();
  window.txtServer.Text = "ftp.home";
  machine.Advance(5s);
  ftp.Report(TransportState::kConnected);
  EXPECT_NE(settings.FtpServer.Get(), "ftp.home");
  EXPECT_EQ(window.ConnectionStatus.Get(), "Not Connected To Server");
  EXPECT_EQ(machine.loop.Timers().NextDue(), std::nullopt);
}

TEST_F(FtpWindowTest, ANewWindowAfterAClosedOneHasTheSettingsAndTheDesignState) {
  WindowSlot<Main> slot(machine.loop, machine.windows,
                        [this] { return std::make_unique<Main>(machine.Interfaces(), settings); });
  Main& first = slot.Get();
  window.Close();
  first.txtServer.Text = "ftp.home";
  first.ConnectionStatus = "File Transfer Has Failed!";
  machine.Advance(1s);
  first.Close();
  EXPECT_NE(&slot.Get(), &first);
  EXPECT_EQ(slot.Get().txtServer.Text.Get(), "ftp.home");
  EXPECT_EQ(slot.Get().ConnectionStatus.Get(), "Not Connected To Server");
}

TEST_F(FtpWindowTest, AFlowGoesOnWhenItsWindowIsClosedAndLeavesNothingTicking) {
  FillFields();
  LetCommandsLast(300ms);
  machine.loop.OnYield(5, [this] { window.Close(); });
  Click(window.chameleonButton1);
  EXPECT_THAT(ftp.Commands(), ElementsAre("DIR", "PUT \"C:\\Store\\a b.tvz\" \"ab.tvz\"", "CLOSE"));
  EXPECT_FALSE(window.Timer2.Enabled);
  EXPECT_FALSE(window.Timer3.Enabled);
}

TEST_F(FtpWindowTest, AFailedAutomaticUploadOfAClosedWindowLeavesNothingTicking) {
  FillFields();
  LetCommandsLast(300ms);
  ftp.FailOn("Execute", "PUT \"C:\\Archives\\Auto Compressed.tvz\" \"AutoCompressed.tvz\"", 5);
  settings.CompressDir = "C:\\Archives";
  machine.loop.OnYield(5, [this] { window.Close(); });
  window.CompressFTP();
  EXPECT_EQ(window.ConnectionStatus.Get(), "File Transfer Has Failed!");
  EXPECT_EQ(machine.loop.Timers().NextDue(), std::nullopt);
}

TEST_F(FtpWindowTest, AHiddenWindowWakesTheProgramOnlyForWhatTheEngineReads) {
  window.Hide();
  EXPECT_FALSE(window.Timer1.WakesLoop);
  EXPECT_FALSE(window.Timer2.WakesLoop);
  EXPECT_TRUE(window.Timer3.WakesLoop);
  EXPECT_TRUE(window.Timer4.WakesLoop);
  window.Show();
  EXPECT_TRUE(window.Timer1.WakesLoop);
  EXPECT_TRUE(window.Timer2.WakesLoop);
}

// --- Save -------------------------------------------------------------------------

TEST_F(FtpWindowTest, SaveSavesAndSaysSo) {
  ExpectInformation("Your FTP Server Settings Have Been Successfully Saved!");
  Click(window.chameleonButton2);
  EXPECT_EQ(saves, 1);
  EXPECT_EQ(machine.boxes.Shown()[0].title, "Tarnvale");
  EXPECT_THAT(ftp.Calls(), IsEmpty());
}

TEST_F(FtpWindowTest, SaveSavesWhatWasTypedInTheLastSecond) {
  FillFields();
  ExpectInformation("Your FTP Server Settings Have Been Successfully Saved!");
  Click(window.chameleonButton2);
  EXPECT_THAT(saved, ElementsAre("ftp.home", "ann", "s3cret"));
}

TEST_F(FtpWindowTest, SaveReportsSuccessAfterAFailureToo) {
  save_failure = 70;
  ExpectInformation("Your FTP Server Settings Have Been Successfully Saved!");
  Click(window.chameleonButton2);
  EXPECT_EQ(saves, 1);
}

// --- Browse -------------------------------------------------------------------------

TEST_F(FtpWindowTest, BrowseFillsInThePathAndTheNameAlone) {
  machine.dialogs.Choose(Dialog::kOpen, "C:\\Store\\my backup.tvz");
  Click(window.cmdBrowse);
  EXPECT_EQ(window.txtLocal.Text.Get(), "C:\\Store\\my backup.tvz");
  EXPECT_EQ(window.txtRemote.Text.Get(), "my backup.tvz");
  const FileDialogRecord& dialog = machine.dialogs.Seen()[0].file;
  EXPECT_EQ(dialog.title, "Select File To Upload To FTP Server");
  EXPECT_EQ(WithBars(dialog.filter), "All Files (*.*)|*.*||");
  EXPECT_EQ(dialog.file.substr(0, dialog.file.find('\0')), "*.*");
}

TEST_F(FtpWindowTest, ACancelledBrowseLeavesBothFieldsWithoutAMessage) {
  FillFields();
  machine.dialogs.Cancel(Dialog::kOpen);
  Click(window.cmdBrowse);
  EXPECT_EQ(window.txtLocal.Text.Get(), "C:\\Store\\a b.tvz");
  EXPECT_EQ(window.txtRemote.Text.Get(), "ab.tvz");
}

// --- Verify -------------------------------------------------------------------------

TEST_F(FtpWindowTest, VerifyGoesItsStepsAndLeavesTheConnectionOpen) {
  FillFields();
  ftp.Let("DIR", {.lasts = 50ms});
  FollowAll();
  FollowNextBox();
  ExpectInformation("Your Settings Have Been Verified. Connection Established!");
  Click(window.chameleonButton4);
  EXPECT_EQ(
      actions,
      Joined({BarsAt(0), configuration, {"Execute DIR", "box", "status: Connected To Server"}}));
  EXPECT_EQ(machine.boxes.Shown()[0].title, "Tarnvale");
  EXPECT_TRUE(ftp.IsConnected());
}

TEST_F(FtpWindowTest, AVerifyThatCannotStartSaysSoAndShowsTheWindowUnconnected) {
  FillFields();
  window.ConnectionStatus = "Connected To Server";
  FollowAll();
  FollowNextBox();
  ftp.FailNext("Execute", kMalformedCommand);
  ExpectError("Your Settings Have Not Been Verified. Connection Failed!");
  Click(window.chameleonButton4);
  EXPECT_EQ(actions, Joined({BarsAt(0),
                             configuration,
                             {"Execute DIR", "box", "status: Not Connected To Server"}}));
  EXPECT_EQ(machine.boxes.Shown()[0].title, "Tarnvale");
}

TEST_F(FtpWindowTest, AVerifyOfATextThatIsNoHostFails) {
  for (const char* text : {"ftp.example.com/backup", "user@host", "my host"}) {
    window.txtServer.Text = text;
    ExpectError("Your Settings Have Not Been Verified. Connection Failed!");
    Click(window.chameleonButton4);
    EXPECT_EQ(window.ConnectionStatus.Get(), "Not Connected To Server") << text;
  }
}

TEST_F(FtpWindowTest, VerifyWorksWithEmptyFields) {
  FillFields();
  window.txtUserID.Text = "";
  window.txtPassword.Text = "";
  machine.Advance(200ms);
  EXPECT_TRUE(window.chameleonButton4.Enabled);
  EXPECT_TRUE(window.chameleonButton2.Enabled);
  ExpectInformation("Your Settings Have Been Verified. Connection Established!");
  Click(window.chameleonButton4);
  EXPECT_THAT(ftp.Commands(), ElementsAre("DIR"));
}

TEST_F(FtpWindowTest, VerifyReportsSuccessForARefusedLoginToo) {
  FillFields();
  ftp.Let("DIR", {.reported = {{10ms, TransportState::kConnected},
                               {20ms, TransportState::kError, kTransferWrongPassword}},
                  .lasts = 30ms});
  ExpectInformation("Your Settings Have Been Verified. Connection Established!");
  Click(window.chameleonButton4);
  EXPECT_EQ(window.ConnectionStatus.Get(), "Connected To Server");
}

// --- The password ---------------------------------------------------------------------

TEST_F(FtpWindowTest, ThePasswordAppearsInNoStatusAndNoMessage) {
  FillFields();
  window.ConnectionStatus.Changed.Listen([this] { actions.push_back(window.ConnectionStatus); });
  ExpectInformation("Your Settings Have Been Verified. Connection Established!");
  Click(window.chameleonButton4);
  ExpectInformation("Your FTP Server Settings Have Been Successfully Saved!");
  Click(window.chameleonButton2);
  Click(window.chameleonButton1);
  machine.dialogs.Cancel(Dialog::kSave);
  ExpectError(kServerError);
  Click(window.chameleonButton3);
  ftp.FailNext("SetPassword", 5);
  window.CompressFTP();
  for (const BoxRequest& box : machine.boxes.Shown()) actions.push_back(box.text + box.title);
  for (const auto& dialog : machine.dialogs.Seen()) {
    actions.push_back(dialog.file.title + dialog.file.file);
  }
  EXPECT_THAT(actions, Each(Not(HasSubstr("s3cret"))));
  EXPECT_THAT(ftp.Commands(), Each(Not(HasSubstr("s3cret"))));
}

}  // namespace
}  // namespace tarnvale::testing
