// The session: its set-up, its waits, and what the transport reports.
#include "tests/transfer/ftp_window_fixture.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

// --- What the transport reports ------------------------------------------------------

struct StateCase {
  int state;
  const char* status;
};

class FtpStateTest : public FtpWindowTest, public ::testing::WithParamInterface<StateCase> {};

TEST_P(FtpStateTest, WritesItsStatus) {
  window.ConnectionStatus = "before";
  ftp.Report(static_cast<TransportState>(GetParam().state));
  EXPECT_EQ(window.ConnectionStatus.Get(), GetParam().status);
}

INSTANTIATE_TEST_SUITE_P(
    States, FtpStateTest,
    ::testing::Values(StateCase{0, "before"}, StateCase{1, "Finding Host IP Address"},
                      StateCase{2, "IP Address Found"}, StateCase{3, "Connecting To Server"},
                      StateCase{4, "Connected To Server"}, StateCase{5, "Sending Request"},
                      StateCase{6, "Request Sent"}, StateCase{7, "Receiving Response"},
                      StateCase{8, "Please Wait..."}, StateCase{9, "Disconnecting From Server"},
                      StateCase{10, "Action Completed"}, StateCase{12, "before"},
                      StateCase{13, "before"}));

TEST_F(FtpWindowTest, AnAbortedConnectionIsReportedAndCancelled) {
  ftp.Report(TransportState::kError, kTransferConnectionAborted);
  EXPECT_EQ(window.ConnectionStatus.Get(), "Not Connected : Server Error");
  EXPECT_THAT(ftp.Calls(), ElementsAre("Cancel"));
}

TEST_F(FtpWindowTest, EveryOtherErrorChangesNothing) {
  window.ConnectionStatus = "Receiving Response";
  for (const std::int32_t code :
       {kTransferNoError, kTransferTimeOut, kTransferRefusedByServer, kTransferNameNotResolved,
        kTransferWrongUserName, kTransferWrongPassword, kTransferCannotConnect}) {
    ftp.Report(TransportState::kError, code);
    EXPECT_EQ(window.ConnectionStatus.Get(), "Receiving Response") << code;
  }
  EXPECT_THAT(ftp.Calls(), IsEmpty());
}

TEST_F(FtpWindowTest, TheWindowFollowsTheTransportWhileItIsHidden) {
  window.Hide();
  ftp.Report(TransportState::kDisconnected);
  EXPECT_EQ(window.ConnectionStatus.Get(), "Action Completed");
}

// --- The waits -------------------------------------------------------------------------

class FtpWaitTest : public FtpWindowTest {
 protected:
  FtpWaitTest() { FillFields(); }
  /// How often the loop was yielded to meanwhile.
  int YieldsOf(const std::function<void()>& flow) {
    const int before = machine.loop.YieldCount();
    flow();
    return machine.loop.YieldCount() - before;
  }
};

// A pass of a wait takes 10 ms here.
TEST_F(FtpWaitTest, AnUploadYieldsThreeTimesBetweenReadings) {
  LetCommandsLast(10ms);
  EXPECT_EQ(YieldsOf([&] { Click(window.chameleonButton1); }), 3 + 3);
  LetCommandsLast(40ms);
  EXPECT_EQ(YieldsOf([&] { Click(window.chameleonButton1); }), 6 + 6);
}

TEST_F(FtpWaitTest, AnAutomaticUploadYieldsThreeTimesBetweenReadings) {
  LetCommandsLast(10ms);
  EXPECT_EQ(YieldsOf([&] { window.CompressFTP(); }), 3 + 3);
}

// Each box and dialog of the test machine yields once.
TEST_F(FtpWaitTest, AVerifyYieldsFourTimesBetweenReadings) {
  LetCommandsLast(10ms);
  ExpectInformation("Your Settings Have Been Verified. Connection Established!");
  EXPECT_EQ(YieldsOf([&] { Click(window.chameleonButton4); }), 4 + 1);
  LetCommandsLast(50ms);
  ExpectInformation("Your Settings Have Been Verified. Connection Established!");
  EXPECT_EQ(YieldsOf([&] { Click(window.chameleonButton4); }), 8 + 1);
}

TEST_F(FtpWaitTest, ADownloadYieldsFourTimesBetweenReadings) {
  LetCommandsLast(10ms);
  machine.dialogs.Choose(Dialog::kSave, "C:\\Store\\far.tvz");
  EXPECT_EQ(YieldsOf([&] { Click(window.chameleonButton3); }), 4 + 1 + 4);
}

TEST_F(FtpWaitTest, AWaitHasNoLimitOfItsOwn) {
  ftp.Let("PUT", {.lasts = 10min});
  ftp.Let("DIR", {.lasts = 10ms});
  const auto begun = machine.clock.Uptime();
  Click(window.chameleonButton1);
  EXPECT_GE(machine.clock.Uptime() - begun, 10min);
  EXPECT_EQ(window.ConnectionStatus.Get(), "File Transferring...");
}

class FtpEndTest : public FtpWaitTest {
 protected:
  /// The program is ended while a command of the flow runs.
  void ExpectEnd(const std::function<void()>& flow, std::size_t commands) {
    for (const char* verb : {"DIR", "PUT", "GET"}) ftp.Let(verb, {.lasts = 50ms});
    ftp.Called.Listen([this, commands](const std::string&) {
      if (ftp.Commands().size() + 1 == commands)
        machine.loop.OnYield(2, [this] { machine.loop.Quit(0); });
    });
    const auto begun = machine.clock.Uptime();
    flow();
    EXPECT_TRUE(ftp.IsBusy()) << "nobody waited for it";
    EXPECT_LT(machine.clock.Uptime() - begun, 200ms);
    EXPECT_EQ(ftp.Commands().size(), commands);
    EXPECT_THAT(machine.boxes.Shown(), IsEmpty());
  }
};

TEST_F(FtpEndTest, TheProgramsEndEndsAVerify) {
  ExpectEnd([this] { Click(window.chameleonButton4); }, 1);
}

TEST_F(FtpEndTest, TheProgramsEndEndsAnUploadBeforeItsFile) {
  ExpectEnd([this] { Click(window.chameleonButton1); }, 1);
}

TEST_F(FtpEndTest, TheProgramsEndEndsAnUploadOfItsFile) {
  ExpectEnd([this] { Click(window.chameleonButton1); }, 2);
}

TEST_F(FtpEndTest, TheProgramsEndEndsAnAutomaticUpload) {
  ExpectEnd([this] { window.CompressFTP(); }, 1);
}

TEST_F(FtpEndTest, TheProgramsEndEndsAnAutomaticUploadOfItsFile) {
  ExpectEnd([this] { window.CompressFTP(); }, 2);
}

TEST_F(FtpEndTest, TheProgramsEndEndsADownloadBeforeItsFile) {
  ExpectEnd([this] { Click(window.chameleonButton3); }, 1);
}

TEST_F(FtpEndTest, TheProgramsEndEndsADownloadOfItsFile) {
  machine.dialogs.Choose(Dialog::kSave, "C:\\Store\\far.tvz");
  ExpectEnd([this] { Click(window.chameleonButton3); }, 2);
}

// --- Errors during a wait -----------------------------------------------------------------

TEST_F(FtpWaitTest, AnAbortedConnectionEndsTheWaitAndItsTextStandsUntilTheNextTick) {
  ftp.Let("DIR", {.lasts = 10ms});
  ftp.Let("PUT",
          {.reported = {{30ms, TransportState::kError, kTransferConnectionAborted}}, .lasts = 1h});
  ftp.Let("CLOSE", {.lasts = 10ms});
  FollowAll();
  const auto begun = machine.clock.Uptime();
  Click(window.chameleonButton1);
  EXPECT_LT(machine.clock.Uptime() - begun, 200ms);
  EXPECT_EQ(window.ConnectionStatus.Get(), "Not Connected : Server Error");
  EXPECT_THAT(ftp.Commands(), ElementsAre("DIR", "PUT \"C:\\Store\\a b.tvz\" \"ab.tvz\"", "CLOSE"))
      << "the flow goes on";
}

TEST_F(FtpWaitTest, TheTextOfAnAbortedConnectionIsOverwrittenByTheNextTick) {
  ftp.Let("DIR", {.lasts = 10ms});
  ftp.Let("PUT", {.lasts = 1s});
  Actions statuses;
  window.ConnectionStatus.Changed.Listen([&] { statuses.push_back(window.ConnectionStatus); });
  machine.loop.OnYield(10, [this] {
    machine.Advance(110ms);
    ftp.Report(TransportState::kError, kTransferConnectionAborted);
    machine.Advance(200ms);
  });
  Click(window.chameleonButton1);
  EXPECT_THAT(statuses, ElementsAre("Connected To Server", "Not Connected : Server Error",
                                    "File Transferring..."));
}

TEST_F(FtpWaitTest, AWrongPasswordLeavesTheFlowToRunItsGoodEnding) {
  using enum TransportState;
  ftp.Let("DIR", {.reported = {{10ms, kResolvingHost},
                               {20ms, kHostResolved},
                               {30ms, kConnecting},
                               {40ms, kConnected},
                               {50ms, kError, kTransferWrongPassword}},
                  .lasts = 60ms});
  ftp.Let("PUT", {.reported = {{10ms, kError, kTransferWrongPassword}}, .lasts = 20ms});
  Actions statuses;
  window.ConnectionStatus.Changed.Listen([&] { statuses.push_back(window.ConnectionStatus); });
  window.XP_ProgressBar1.Value = 50;
  Click(window.chameleonButton1);
  EXPECT_THAT(statuses, ElementsAre("Finding Host IP Address", "IP Address Found",
                                    "Connecting To Server", "Connected To Server"));
  EXPECT_EQ(window.XP_ProgressBar1.Value, 100);
  EXPECT_TRUE(window.chameleonButton1.Enabled);
  EXPECT_FALSE(window.Timer3.Enabled);
}

TEST_F(FtpWaitTest, ACommandIsNeverRetried) {
  ftp.Let("PUT", {.reported = {{10ms, TransportState::kError, kTransferTimeOut}}, .lasts = 20ms});
  Click(window.chameleonButton1);
  EXPECT_EQ(ftp.Commands().size(), 3U);
}

// --- Flows within flows ----------------------------------------------------------------------

TEST_F(FtpWaitTest, AVerifyDuringAnUploadDropsItAndTheUploadEndsWell) {
  LetCommandsLast(300ms);
  ExpectInformation("Your Settings Have Been Verified. Connection Established!");
  machine.loop.OnYield(40, [this] { Click(window.chameleonButton4); });
  Click(window.chameleonButton1);
  EXPECT_THAT(ftp.Commands(),
              ElementsAre("DIR", "PUT \"C:\\Store\\a b.tvz\" \"ab.tvz\"", "DIR", "CLOSE"));
  EXPECT_EQ(window.XP_ProgressBar1.Value, 100);
  EXPECT_TRUE(window.Timer2.Enabled);
}

TEST_F(FtpWaitTest, ACommandWhileAnotherRunsFailsInTheFlowThatGaveIt) {
  LetCommandsLast(50ms);
  machine.dialogs.WhileOpen([this] { ftp.Execute("CLOSE"); });
  machine.dialogs.Choose(Dialog::kSave, "C:\\Store\\far.tvz");
  ExpectError(kServerError);
  Click(window.chameleonButton3);
  EXPECT_EQ(window.ConnectionStatus.Get(), "File Download Has Failed!");
}

TEST_F(FtpWaitTest, TheTimersTickDuringAWait) {
  ftp.Let("DIR", {.lasts = 3s});
  window.txtRemote.Text = "a b";
  window.txtServer.Text = "ftp.other";
  Click(window.chameleonButton1);
  EXPECT_EQ(window.txtRemote.Text.Get(), "ab");
  EXPECT_EQ(settings.FtpServer.Get(), "ftp.other");
}

// --- A failure at each point of the set-up ----------------------------------------------------

class FtpSetUpFailureTest : public FtpWindowTest,
                            public ::testing::WithParamInterface<const char*> {
 protected:
  FtpSetUpFailureTest() {
    FillFields();
    ftp.FailAlways(GetParam(), 5);
  }
};

TEST_P(FtpSetUpFailureTest, FailsTheVerify) {
  ExpectError("Your Settings Have Not Been Verified. Connection Failed!");
  Click(window.chameleonButton4);
  EXPECT_EQ(window.ConnectionStatus.Get(), "Not Connected To Server");
}

TEST_P(FtpSetUpFailureTest, FailsTheUpload) {
  ExpectError(kServerError);
  Click(window.chameleonButton1);
  EXPECT_EQ(window.ConnectionStatus.Get(), "File Transfer Has Failed!");
}

TEST_P(FtpSetUpFailureTest, FailsTheDownload) {
  ExpectError(kServerError);
  Click(window.chameleonButton3);
  EXPECT_EQ(window.ConnectionStatus.Get(), "File Download Has Failed!");
}

TEST_P(FtpSetUpFailureTest, FailsTheAutomaticUploadWithoutABox) {
  window.CompressFTP();
  EXPECT_EQ(window.ConnectionStatus.Get(), "File Transfer Has Failed!");
}

INSTANTIATE_TEST_SUITE_P(Calls, FtpSetUpFailureTest,
                         ::testing::Values("SetProtocol", "SetRemoteHost", "SetUserName", "Cancel",
                                           "SetPassword", "SetRequestTimeout", "Execute"));

}  // namespace
}  // namespace tarnvale::testing
