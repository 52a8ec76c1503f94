// The upload of a backup run, which may be unattended.
#include "tests/transfer/ftp_window_fixture.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class CompressFtpTest : public FtpWindowTest {
 protected:
  CompressFtpTest() {
    FillFields();
    machine.Advance(200ms);
    LetCommandsLast(50ms);
    settings.CompressDir = "C:\\Archives";
  }

  const std::string put_command =
      "PUT \"C:\\Archives\\Auto Compressed.tvz\" \"AutoCompressed.tvz\"";
  const Actions names{"txtLocal: C:\\Archives\\Auto Compressed.tvz",
                      "txtRemote: AutoCompressed.tvz"};
};

TEST_F(CompressFtpTest, GoesItsStepsInOrder) {
  ftp.Let("DIR", {.lasts = 250ms});
  FollowAll();
  window.CompressFTP();
  EXPECT_EQ(actions, Joined({BarsAt(0),
                             {"Timer3 on"},
                             names,
                             configuration,
                             {"Execute DIR"},
                             first_tick,
                             {"status: Connected To Server", "Execute " + put_command},
                             {"Execute CLOSE", "Timer3 off"},
                             BarsAt(100),
                             {"Timer2 on", "chameleonButton1 on", "cmdBrowse on"}}));
  EXPECT_TRUE(ftp.IsBusy()) << "nobody waits for the end of the session";
}

TEST_F(CompressFtpTest, SetsTheFirstBarBackOnceMoreAndStartsTheAnimationAgain) {
  window.XP_ProgressBar1.Value = 50;
  ftp.Called.Listen([this](const std::string& call) {
    // Something moves and stops them in the course of the set-up.
    if (call != "SetRequestTimeout 40") return;
    window.XP_ProgressBar1.Value = 30;
    window.XP_ProgressBar2.Value = 30;
    window.Timer3.Enabled = false;
  });
  std::vector<int> bars;
  bool is_animated = false;
  ftp.Called.Listen([&](const std::string& call) {
    if (call != "Execute DIR") return;
    bars = {window.XP_ProgressBar1.Value, window.XP_ProgressBar2.Value};
    is_animated = window.Timer3.Enabled;
  });
  window.CompressFTP();
  EXPECT_THAT(bars, ElementsAre(0, 30));
  EXPECT_TRUE(is_animated);
}

TEST_F(CompressFtpTest, OverwritesWhatTheUserHadInTheFields) {
  window.CompressFTP();
  EXPECT_EQ(window.txtLocal.Text.Get(), "C:\\Archives\\Auto Compressed.tvz");
  EXPECT_EQ(window.txtRemote.Text.Get(), "AutoCompressed.tvz");
}

TEST_F(CompressFtpTest, EachRunReplacesTheSameRemoteFile) {
  window.CompressFTP();
  machine.Advance(1s);
  window.CompressFTP();
  EXPECT_THAT(ftp.Commands(),
              ElementsAre("DIR", put_command, "CLOSE", "DIR", put_command, "CLOSE"));
}

TEST_F(CompressFtpTest, TakesTheFieldsAsTheyStandEmptyOrNot) {
  window.txtPassword.Text = "";
  window.CompressFTP();
  EXPECT_THAT(ftp.Commands(), ElementsAre("DIR", put_command, "CLOSE"));
}

TEST_F(CompressFtpTest, ItsLastStatusesAreThoseOfTheClose) {
  using enum TransportState;
  ftp.Let("CLOSE", {.reported = {{10ms, kDisconnecting}, {20ms, kDisconnected}}, .lasts = 20ms});
  window.CompressFTP();
  Actions statuses;
  window.ConnectionStatus.Changed.Listen([&] { statuses.push_back(window.ConnectionStatus); });
  machine.Advance(5s);
  EXPECT_THAT(statuses, ElementsAre("Disconnecting From Server", "Action Completed"));
}

TEST_F(CompressFtpTest, AFailureGoesItsPathWithoutABox) {
  FollowAll();
  ftp.FailNext("Execute", kMalformedCommand);
  window.CompressFTP();
  EXPECT_EQ(actions, Joined({BarsAt(0),
                             {"Timer3 on"},
                             names,
                             configuration,
                             {"Execute DIR", "status: File Transfer Has Failed!"},
                             BarsAt(100)}));
  EXPECT_THAT(machine.boxes.Shown(), IsEmpty());
}

TEST_F(CompressFtpTest, AFailureEnablesWhatTheAnimationHadDisabled) {
  ftp.FailOn("Execute", put_command, kStillExecuting);
  ftp.Let("DIR", {.lasts = 250ms});
  FollowAll();
  window.CompressFTP();
  const Actions end{"chameleonButton1 on", "cmdBrowse on"};
  ASSERT_GE(actions.size(), 2U);
  EXPECT_EQ(Actions(actions.end() - 2, actions.end()), end);
}

TEST_F(CompressFtpTest, AfterAFailureTheAnimationGoesOnUntilAnotherFlowEndsIt) {
  ftp.FailNext("Execute", kMalformedCommand);
  window.CompressFTP();
  EXPECT_EQ(window.ConnectionStatus.Get(), "File Transfer Has Failed!");
  EXPECT_TRUE(window.chameleonButton1.Enabled);
  machine.Advance(200ms);
  EXPECT_EQ(window.ConnectionStatus.Get(), "File Transferring...");
  EXPECT_FALSE(window.chameleonButton1.Enabled);
  EXPECT_FALSE(window.cmdBrowse.Enabled);
  EXPECT_FALSE(window.Timer2.Enabled);
  machine.Advance(10min);
  EXPECT_EQ(window.ConnectionStatus.Get(), "File Transferring...");

  machine.dialogs.Choose(Dialog::kSave, "C:\\near.tvz");
  Click(window.chameleonButton3);
  EXPECT_FALSE(window.Timer3.Enabled);
  EXPECT_TRUE(window.Timer2.Enabled);
  EXPECT_TRUE(window.chameleonButton1.Enabled);
}

}  // namespace
}  // namespace tarnvale::testing
