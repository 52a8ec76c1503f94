// The FTP client of the test machine keeps the contract of FtpTransport.
#include "tests/support/fake_ftp_transport.h"

#include <gmock/gmock.h>

#include "tests/support/fake_machine.h"
#include "tests/support/raised.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class FakeFtpTransportTest : public ::testing::Test {
 protected:
  FakeFtpTransportTest() {
    ftp.StateChanged.Listen(
        [this](TransportState state) { reported.push_back(static_cast<int>(state)); });
    ftp.SetRemoteHost("ftp.example.com");
  }
  /// The states that a command reports until it ends.
  std::vector<int> StatesOf(const std::string& command) {
    reported.clear();
    ftp.Execute(command);
    while (ftp.IsBusy()) machine.loop.WaitPass();
    return reported;
  }

  FakeMachine machine;
  FakeFtpTransport& ftp = machine.ftp;
  std::vector<int> reported;
};

TEST_F(FakeFtpTransportTest, TheFirstCommandConnectsAndTheNextKeepsTheConnection) {
  EXPECT_THAT(StatesOf("DIR"), ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 12));
  EXPECT_THAT(StatesOf("PUT \"C:\\a\" \"a\""), ElementsAre(5, 6, 7, 8, 12));
  EXPECT_THAT(StatesOf("CLOSE"), ElementsAre(9, 10, 12));
  EXPECT_FALSE(ftp.IsConnected());
}

TEST_F(FakeFtpTransportTest, ACommandStartsAtOnceAndRunsInTheLoop) {
  ftp.Execute("DIR");
  EXPECT_TRUE(ftp.IsBusy());
  EXPECT_THAT(reported, IsEmpty());
  machine.Advance(30ms);
  EXPECT_THAT(reported, ElementsAre(1, 2, 3));
  EXPECT_TRUE(ftp.IsBusy());
}

TEST_F(FakeFtpTransportTest, ACommandWhileOneRunsRaises) {
  ftp.Execute("DIR");
  EXPECT_EQ(RaisedBy([&] { ftp.Execute("CLOSE"); }), kStillExecuting);
  EXPECT_TRUE(ftp.IsBusy());
}

TEST_F(FakeFtpTransportTest, WithoutAHostAndForATextThatIsNoCommandExecuteRaises) {
  EXPECT_EQ(RaisedBy([&] { ftp.Execute("LIST"); }), kMalformedCommand);
  for (const char* text : {"", " ", "no host", "a/b", "user@host", "a\"b", "10.0.0.1#x", "a?b"}) {
    ftp.SetRemoteHost(text);
    EXPECT_EQ(RaisedBy([&] { ftp.Execute("DIR"); }), kMalformedCommand) << text;
    EXPECT_FALSE(ftp.IsBusy());
  }
}

TEST_F(FakeFtpTransportTest, CancelEndsACommandAndReportsNothing) {
  ftp.Execute("DIR");
  machine.Advance(20ms);
  ftp.Cancel();
  EXPECT_FALSE(ftp.IsBusy());
  machine.Advance(1s);
  EXPECT_THAT(reported, ElementsAre(1, 2));
}

TEST_F(FakeFtpTransportTest, ACourseReportsItsErrorAndMayBeCancelledFromIt) {
  ftp.Let("DIR", {.reported = {{10ms, TransportState::kError, kTransferConnectionAborted},
                               {20ms, TransportState::kConnected}},
                  .lasts = 1s});
  ftp.StateChanged.Listen([&](TransportState) { ftp.Cancel(); });
  EXPECT_THAT(StatesOf("DIR"), ElementsAre(11));
  EXPECT_EQ(ftp.ResponseCode(), kTransferConnectionAborted);
}

}  // namespace
}  // namespace tarnvale::testing
