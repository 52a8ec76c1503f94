#include "ui/loop_socket.h"

#include <gmock/gmock.h>

#include <chrono>
#include <string>
#include <vector>

#include "tests/support/manual_loop.h"

namespace tarnvale::testing {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A host whose network is what the test says it is. `calls` is what it was asked to do.
class ScriptedSocket final : public LoopSocket {
 public:
  explicit ScriptedSocket(EventLoop& loop) : LoopSocket(loop) {}
  ~ScriptedSocket() override { Close(); }

  using LoopSocket::OnArrival;
  using LoopSocket::OnConnected;
  using LoopSocket::OnError;

  std::string waiting;
  SocketWaiting behind = SocketWaiting::kNothing;  ///< what comes behind the bytes
  bool can_write = true;
  std::vector<std::string> calls;

 private:
  void Open(const std::string& host, std::uint16_t port) override {
    calls.push_back("open " + host + ":" + std::to_string(port));
  }
  SocketWaiting Look() override { return waiting.empty() ? behind : SocketWaiting::kBytes; }
  std::string Read(std::size_t most) override {
    std::string bytes = waiting.substr(0, most);
    waiting.erase(0, bytes.size());
    return bytes;
  }
  bool Write(const std::string& bytes) override {
    calls.push_back("write " + bytes);
    return can_write;
  }
  void Drop(bool sees_off) override { calls.push_back(sees_off ? "see off" : "drop"); }
};

class LoopSocketTest : public ::testing::Test {
 protected:
  LoopSocketTest() {
    socket.Connected.Listen([this] { reports.push_back("connected"); });
    socket.DataArrived.Listen([this](const std::string& bytes) {
      reports.push_back(bytes.size() < 99 ? bytes : std::to_string(bytes.size()));
    });
    socket.ClosedByPeer.Listen([this] { reports.push_back("ended"); });
    socket.Failed.Listen([this](int number) { reports.push_back(std::to_string(number)); });
  }

  void Pass() { loop.Advance(0ns); }

  /// With a connection, of whose coming nothing is in `reports`.
  void Connect() {
    socket.Connect("mail", 25);
    Pass();
    socket.OnConnected();
    Pass();
    reports.clear();
    socket.calls.clear();
  }

  FakeClock clock;
  ManualLoop loop{clock};
  ScriptedSocket socket{loop};
  std::vector<std::string> reports;
};

TEST_F(LoopSocketTest, OpensAndReportsFromTheLoopOnly) {
  socket.Connect("mail", 25);
  EXPECT_EQ(socket.State(), SocketState::kConnecting);
  EXPECT_THAT(socket.calls, ElementsAre("drop"));
  Pass();
  EXPECT_THAT(socket.calls, ElementsAre("drop", "open mail:25"));
  socket.waiting = "220 hello";
  socket.OnConnected();
  socket.OnArrival();
  EXPECT_EQ(socket.State(), SocketState::kConnected);
  EXPECT_THAT(reports, IsEmpty());
  Pass();
  EXPECT_THAT(reports, ElementsAre("connected", "220 hello"));
}

TEST_F(LoopSocketTest, AHostThatCannotBeOneIsNotLookedUp) {
  socket.Connect("", 25);
  EXPECT_EQ(socket.State(), SocketState::kFailed);
  Pass();
  socket.Connect(std::string("mail\0x", 6), 25);
  EXPECT_EQ(socket.State(), SocketState::kFailed);
  Pass();
  EXPECT_THAT(reports, ElementsAre("10049", "11001"));
  EXPECT_THAT(socket.calls, ElementsAre("drop", "drop", "drop", "drop"));
}

TEST_F(LoopSocketTest, AnAttemptThatFailsIsLetGo) {
  socket.Connect("mail", 25);
  socket.OnError(kConnectionRefused);
  EXPECT_EQ(socket.State(), SocketState::kFailed);
  Pass();
  EXPECT_THAT(reports, ElementsAre("10061"));
  EXPECT_THAT(socket.calls, ElementsAre("drop", "drop")) << "nor is it opened after that";
}

TEST_F(LoopSocketTest, ASecondConnectLeavesTheFirstAsItIs) {
  socket.Connect("mail", 25);
  socket.Connect("other", 25);
  EXPECT_EQ(socket.State(), SocketState::kConnecting);
  Pass();
  socket.OnConnected();
  socket.Connect("other", 25);
  EXPECT_EQ(socket.State(), SocketState::kConnected);
  Pass();
  EXPECT_THAT(reports, ElementsAre("40020", "connected", "40020"));
  EXPECT_THAT(socket.calls, ElementsAre("drop", "open mail:25"));
}

TEST_F(LoopSocketTest, TheEndComesBehindTheLastBytes) {
  Connect();
  socket.waiting = "bye";
  socket.behind = SocketWaiting::kEnd;
  socket.OnArrival();
  socket.OnArrival();
  Pass();
  EXPECT_THAT(reports, ElementsAre("bye", "ended"));
  EXPECT_EQ(socket.State(), SocketState::kClosedByPeer);
  socket.OnArrival();
  Pass();
  EXPECT_THAT(reports, ElementsAre("bye", "ended")) << "once";
}

TEST_F(LoopSocketTest, AResetAndALossAreFailures) {
  for (const auto& [how, number] :
       {std::pair(SocketWaiting::kReset, "10054"), {SocketWaiting::kLoss, "10053"}}) {
    Connect();
    socket.behind = how;
    socket.OnArrival();
    Pass();
    EXPECT_THAT(reports, ElementsAre(number));
    EXPECT_EQ(socket.State(), SocketState::kFailed);
    EXPECT_THAT(socket.calls, ElementsAre("drop"));
    socket.behind = SocketWaiting::kNothing;
  }
}

TEST_F(LoopSocketTest, WhereNothingWaitsNothingIsReported) {
  Connect();
  socket.OnArrival();
  Pass();
  EXPECT_THAT(reports, IsEmpty());
  EXPECT_EQ(socket.State(), SocketState::kConnected);
}

TEST_F(LoopSocketTest, NoReportHoldsMoreThanTheMost) {
  Connect();
  socket.waiting = std::string(kMostBytesAtOnce + 200, 'x');
  socket.OnArrival();
  Pass();
  EXPECT_THAT(reports, ElementsAre("65536"));
  socket.OnArrival();
  Pass();
  EXPECT_THAT(reports, ElementsAre("65536", "200"));
}

TEST_F(LoopSocketTest, WhatTheServerSaidBeforeAWriteThatFailsIsReportedFirst) {
  Connect();
  socket.waiting = "421 closing";
  socket.can_write = false;
  socket.Send("QUIT");
  EXPECT_THAT(reports, IsEmpty());
  Pass();
  EXPECT_THAT(reports, ElementsAre("421 closing", "10053"));
  EXPECT_EQ(socket.State(), SocketState::kFailed);
}

TEST_F(LoopSocketTest, WhatComesWhileSomethingIsSentAddsUpToNoMoreThanTheMost) {
  Connect();
  socket.waiting = std::string(kMostBytesAtOnce - 1, 'x');
  socket.Send("a");
  socket.waiting += "yz";
  socket.Send("b");
  EXPECT_EQ(socket.waiting, "z");
  EXPECT_THAT(socket.calls, ElementsAre("write a", "write b"));
  Pass();
  EXPECT_THAT(reports, ElementsAre("65536", "z"));
}

TEST_F(LoopSocketTest, AResetThatASendFindsIsReportedAndNothingIsWritten) {
  Connect();
  socket.behind = SocketWaiting::kReset;
  socket.Send("a");
  Pass();
  EXPECT_THAT(reports, ElementsAre("10054"));
  EXPECT_THAT(socket.calls, ElementsAre("drop"));
}

TEST_F(LoopSocketTest, AfterTheServersEndTheProgramCanStillSend) {
  Connect();
  socket.behind = SocketWaiting::kEnd;
  socket.OnArrival();
  Pass();
  socket.Send("a");
  Pass();
  EXPECT_THAT(reports, ElementsAre("ended"));
  EXPECT_THAT(socket.calls, ElementsAre("write a"));
}

TEST_F(LoopSocketTest, WithoutAConnectionNothingIsWrittenAndTheStateStays) {
  socket.Send("a");
  EXPECT_EQ(socket.State(), SocketState::kClosed);
  socket.Connect("mail", 25);
  socket.Send("b");
  EXPECT_EQ(socket.State(), SocketState::kConnecting);
  Pass();
  EXPECT_THAT(reports, ElementsAre("40006")) << "the first one's connection was let go";
  EXPECT_THAT(socket.calls, ElementsAre("drop", "open mail:25"));
}

TEST_F(LoopSocketTest, ACloseSeesOffWhatWasSentAndReportsNothingAnyMore) {
  Connect();
  socket.waiting = "late";
  socket.OnArrival();
  socket.Close();
  EXPECT_EQ(socket.State(), SocketState::kClosed);
  Pass();
  EXPECT_THAT(reports, IsEmpty());
  EXPECT_THAT(socket.calls, ElementsAre("see off"));
}

TEST_F(LoopSocketTest, OfAConnectionThatBrokeNothingIsSeenOff) {
  Connect();
  socket.OnError(kConnectionReset);
  socket.Close();
  EXPECT_THAT(socket.calls, ElementsAre("drop"));
}

TEST_F(LoopSocketTest, AConnectAfterTheServersEndBeginsAnew) {
  Connect();
  socket.waiting = "old";
  socket.behind = SocketWaiting::kEnd;
  // In the handler of the last bytes, with the end already known.
  socket.DataArrived.Listen([this](const std::string&) { socket.Close(); });
  socket.Send("a");
  Pass();
  socket.behind = SocketWaiting::kNothing;
  EXPECT_THAT(reports, ElementsAre("old"));
  Connect();
  socket.waiting = "new";
  socket.OnArrival();
  Pass();
  EXPECT_THAT(reports, ElementsAre("new"));
}

}  // namespace
}  // namespace tarnvale::testing
