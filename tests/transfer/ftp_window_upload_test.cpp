// The upload by hand: its steps, and what its failure path leaves out.
#include "tests/transfer/ftp_window_fixture.h"

namespace tarnvale::testing {
namespace {

using ::testing::IsEmpty;

class FtpUploadTest : public FtpWindowTest {
 protected:
  FtpUploadTest() {
    FillFields();
    machine.Advance(200ms);
    LetCommandsLast(50ms);
  }

  const std::string put = "Execute PUT \"C:\\Store\\a b.tvz\" \"ab.tvz\"";
};

TEST_F(FtpUploadTest, GoesItsStepsInOrder) {
  ftp.Let("PUT", {.lasts = 250ms});
  FollowAll();
  Click(window.chameleonButton1);
  EXPECT_EQ(actions, Joined({BarsAt(0),
                             configuration,
                             {"Execute DIR", "status: Connected To Server", "Timer3 on", put},
                             first_tick,
                             {"Execute CLOSE", "Timer3 off"},
                             BarsAt(100),
                             {"Timer2 on", "chameleonButton1 on", "cmdBrowse on"}}));
  EXPECT_TRUE(ftp.IsBusy()) << "nobody waits for the end of the session";
  EXPECT_THAT(machine.boxes.Shown(), IsEmpty());
}

TEST_F(FtpUploadTest, AFailureGoesItsPathAndLeavesTheRuleOff) {
  // The animation runs while the box is open.
  FollowAll();
  FollowNextBox(250ms);
  ftp.FailOn("Execute", "PUT \"C:\\Store\\a b.tvz\" \"ab.tvz\"", kStillExecuting);
  ExpectError(kServerError);
  Click(window.chameleonButton1);
  EXPECT_EQ(actions,
            Joined({BarsAt(0),
                    configuration,
                    {"Execute DIR", "status: Connected To Server", "Timer3 on", put, "box"},
                    first_tick,
                    {"status: File Transfer Has Failed!", "Timer3 off"},
                    BarsAt(100),
                    {"chameleonButton1 on", "cmdBrowse on"}}));
  EXPECT_EQ(machine.boxes.Shown()[0].title, "FTP Error");
  window.txtLocal.Text = "";
  machine.Advance(1s);
  EXPECT_TRUE(window.chameleonButton1.Enabled) << "no rule takes it back";
}

TEST_F(FtpUploadTest, TheRuleComesBackWithTheNextFlowThatEndsWell) {
  FollowNextBox(250ms);
  ftp.FailNext("Execute", 5);
  ExpectError(kServerError);
  window.Timer3.Enabled = true;  // left over from an automatic upload
  Click(window.chameleonButton1);
  EXPECT_FALSE(window.Timer2.Enabled);
  Click(window.chameleonButton1);
  EXPECT_TRUE(window.Timer2.Enabled);
  window.txtLocal.Text = "";
  machine.Advance(200ms);
  EXPECT_FALSE(window.chameleonButton1.Enabled);
}

TEST_F(FtpUploadTest, AFailureOfTheCloseIsAFailureOfTheUpload) {
  ftp.FailOn("Execute", "CLOSE", kStillExecuting);
  ExpectError(kServerError);
  Click(window.chameleonButton1);
  EXPECT_EQ(window.ConnectionStatus.Get(), "File Transfer Has Failed!");
}

TEST_F(FtpUploadTest, TheButtonsStayUsableForTheFirstFifthOfASecond) {
  ftp.Let("PUT", {.lasts = 1s});
  std::chrono::nanoseconds started{};
  std::chrono::nanoseconds disabled{};
  window.Timer3.Enabled.Changed.Listen([&] {
    if (window.Timer3.Enabled) started = machine.clock.Uptime();
  });
  window.chameleonButton1.Enabled.Changed.Listen([&] {
    if (!window.chameleonButton1.Enabled) disabled = machine.clock.Uptime();
  });
  Click(window.chameleonButton1);
  EXPECT_EQ(disabled - started, 200ms);
}

TEST_F(FtpUploadTest, TheRuleIsAppliedToAFlowUntilTheAnimationTicks) {
  ftp.Let("PUT", {.lasts = 1s});
  window.Timer3.Enabled.Changed.Listen([this] {
    if (window.Timer3.Enabled) window.chameleonButton1.Enabled = false;
  });
  FollowAll();
  Click(window.chameleonButton1);
  const auto found = std::find(actions.begin(), actions.end(), put);
  ASSERT_NE(found, actions.end());
  EXPECT_EQ(*std::next(found), "chameleonButton1 on") << "all fields are filled";
  EXPECT_EQ(*std::next(found, 2), "status: File Transferring...");
}

TEST_F(FtpUploadTest, TheStatusThatStaysIsTheOneWrittenLast) {
  ftp.Let("PUT", {.lasts = 500ms});
  using enum TransportState;
  ftp.Let("CLOSE", {.reported = {{10ms, kDisconnecting}, {20ms, kDisconnected}}, .lasts = 20ms});
  Click(window.chameleonButton1);
  EXPECT_EQ(window.ConnectionStatus.Get(), "File Transferring...");
  machine.Advance(10ms);
  EXPECT_EQ(window.ConnectionStatus.Get(), "Disconnecting From Server");
  machine.Advance(1s);
  EXPECT_EQ(window.ConnectionStatus.Get(), "Action Completed");
}

TEST_F(FtpUploadTest, AMissingLocalFileIsFoundOutByTheTransportAlone) {
  ASSERT_FALSE(machine.files.FileExists("C:\\Store\\a b.tvz"));
  ftp.Let("PUT",
          {.reported = {{10ms, TransportState::kError, kTransferRefusedByServer}}, .lasts = 20ms});
  Click(window.chameleonButton1);
  EXPECT_EQ(window.XP_ProgressBar1.Value, 100);
  EXPECT_THAT(machine.boxes.Shown(), IsEmpty());
}

}  // namespace
}  // namespace tarnvale::testing
