// What every network's sockets do alike.
#include "platform/socket.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <vector>

#include "tests/hosts/contract/network_under_test.h"

namespace tarnvale::testing {
namespace {

using ::testing::AnyOf;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

class SocketContract : public ::testing::TestWithParam<MakeNetwork> {
 protected:
  SocketContract() {
    socket->Connected.Listen([this] { reported.push_back("connected"); });
    socket->DataArrived.Listen([this](const std::string& bytes) {
      // Where a stream is cut is nobody's promise.
      if (!reported.empty() && reported.back().starts_with("data ")) {
        reported.back() += bytes;
      } else {
        reported.push_back("data " + bytes);
      }
    });
    socket->ClosedByPeer.Listen([this] { reported.push_back("closed by peer"); });
    socket->Failed.Listen(
        [this](int number) { reported.push_back("failed " + std::to_string(number)); });
  }

  bool WaitFor(const std::function<bool()>& condition) { return network->WaitFor(condition); }
  bool WaitForReports(std::size_t count) {
    return WaitFor([this, count] { return reported.size() >= count; });
  }
  void Connect() {
    socket->Connect(network->Host(), network->Port());
    ASSERT_TRUE(WaitFor([this] { return network->HasConnection() && !reported.empty(); }));
    ASSERT_THAT(reported, ElementsAre("connected"));
  }
  /// Lets whatever is still on its way come.
  void Settle() {
    int passes = 0;
    WaitFor([&] { return ++passes > 20; });
  }

  std::unique_ptr<NetworkUnderTest> network = GetParam()();
  std::unique_ptr<Socket> socket = network->Maker().MakeSocket();
  std::vector<std::string> reported;
};

INSTANTIATE_TEST_SUITE_P(Networks, SocketContract,
                         ::testing::Values(&MakeFakeNetwork, &MakeLoopbackNetwork),
                         [](const auto& network) {
                           return network.param == &MakeFakeNetwork ? "Fake" : "Loopback";
                         });

TEST_P(SocketContract, AConnectIsReportedFromTheLoop) {
  EXPECT_EQ(socket->State(), SocketState::kClosed);
  socket->Connect(network->Host(), network->Port());
  EXPECT_THAT(reported, IsEmpty());
  EXPECT_EQ(socket->State(), SocketState::kConnecting);
  ASSERT_TRUE(WaitForReports(1));
  EXPECT_THAT(reported, ElementsAre("connected"));
  EXPECT_EQ(socket->State(), SocketState::kConnected);
}

TEST_P(SocketContract, BytesGoBothWaysAsTheyAre) {
  Connect();
  const std::string odd("\0\r\n\xFF.\r\n", 7);
  socket->Send("one");
  socket->Send("");
  socket->Send(odd);
  EXPECT_TRUE(WaitFor([&] { return network->Received() == "one" + odd; }));
  network->Say(odd);
  ASSERT_TRUE(WaitForReports(2));
  EXPECT_THAT(reported, ElementsAre("connected", "data " + odd));
}

TEST_P(SocketContract, NoReportHoldsMoreThan64KiB) {
  std::size_t largest = 0;
  std::size_t all = 0;
  socket->DataArrived.Listen([&](const std::string& bytes) {
    largest = std::max(largest, bytes.size());
    all += bytes.size();
  });
  Connect();
  network->Say(std::string(200000, 'x'));
  ASSERT_TRUE(WaitFor([&] { return all == 200000; }));
  EXPECT_LE(largest, kMostBytesAtOnce);
}

TEST_P(SocketContract, AGreetingIsReportedDuringAYieldOfTheConnectedHandler) {
  bool during = false;
  socket->Connected.Listen([&] {
    EXPECT_TRUE(WaitFor([&] { return network->HasConnection(); }));
    network->Say("hello");
    EXPECT_TRUE(WaitForReports(2));
    during = true;
  });
  socket->Connect(network->Host(), network->Port());
  ASSERT_TRUE(WaitFor([&] { return during; }));
  EXPECT_THAT(reported, ElementsAre("connected", "data hello"));
}

TEST_P(SocketContract, ADeadPortRefuses) {
  socket->Connect(network->Host(), network->DeadPort());
  EXPECT_THAT(reported, IsEmpty());
  ASSERT_TRUE(WaitForReports(1));
  EXPECT_THAT(reported, ElementsAre("failed 10061"));
  EXPECT_EQ(socket->State(), SocketState::kFailed);
}

TEST_P(SocketContract, AnEmptyHostIsNoAddress) {
  socket->Connect("", network->Port());
  ASSERT_TRUE(WaitForReports(1));
  EXPECT_THAT(reported, ElementsAre("failed 10049"));
}

TEST_P(SocketContract, AHostThatThereIsNotIsNotFound) {
  socket->Connect("nowhere.invalid", network->Port());
  ASSERT_TRUE(WaitForReports(1));
  // Without a name server nobody can know for sure.
  EXPECT_THAT(reported, AnyOf(ElementsAre("failed 11001"), ElementsAre("failed 11002")));
  EXPECT_EQ(socket->State(), SocketState::kFailed);
}

TEST_P(SocketContract, AfterTheServersEndTheProgramCanStillSend) {
  Connect();
  network->Say("bye");
  network->EndSending();
  ASSERT_TRUE(WaitForReports(3));
  EXPECT_THAT(reported, ElementsAre("connected", "data bye", "closed by peer"));
  EXPECT_EQ(socket->State(), SocketState::kClosedByPeer);
  socket->Send("one");
  socket->Send("two");
  EXPECT_TRUE(WaitFor([&] { return network->Received() == "onetwo"; }));
  socket->Close();
  EXPECT_TRUE(WaitFor([&] { return network->SawEnd(); }));
}

TEST_P(SocketContract, AResetIsAFailure) {
  Connect();
  network->Reset();
  ASSERT_TRUE(WaitForReports(2));
  EXPECT_THAT(reported, ElementsAre("connected", "failed 10054"));
  EXPECT_EQ(socket->State(), SocketState::kFailed);
}

TEST_P(SocketContract, TheSecondWriteToAServerThatHungUpFails) {
  Connect();
  network->HangUp();
  ASSERT_TRUE(WaitForReports(2));
  socket->Send("lost");
  Settle();
  EXPECT_THAT(reported, ElementsAre("connected", "closed by peer"));
  socket->Send("lost too");
  ASSERT_TRUE(WaitForReports(3));
  EXPECT_EQ(reported.back(), "failed 10053");
  EXPECT_EQ(socket->State(), SocketState::kFailed);
}

TEST_P(SocketContract, AWriteWithoutAConnectionFailsAndTheStateStays) {
  socket->Send("lost");
  EXPECT_THAT(reported, IsEmpty());
  ASSERT_TRUE(WaitForReports(1));
  EXPECT_THAT(reported, ElementsAre("failed 40006"));
  EXPECT_EQ(socket->State(), SocketState::kClosed);
}

TEST_P(SocketContract, AConnectDuringAConnectionFailsAndTheConnectionGoesOn) {
  socket->Connect(network->Host(), network->Port());
  socket->Connect(network->Host(), network->DeadPort());
  ASSERT_TRUE(WaitForReports(2));
  EXPECT_THAT(reported, ::testing::UnorderedElementsAre("connected", "failed 40020"));
  socket->Connect(network->Host(), network->Port());
  ASSERT_TRUE(WaitForReports(3));
  EXPECT_EQ(reported.back(), "failed 40020");
  ASSERT_TRUE(WaitFor([&] { return network->HasConnection(); }));
  socket->Send("still here");
  EXPECT_TRUE(WaitFor([&] { return network->Received() == "still here"; }));
}

TEST_P(SocketContract, ConnectsAnewAfterAFailureAnEndAndAClose) {
  socket->Connect(network->Host(), network->DeadPort());
  ASSERT_TRUE(WaitForReports(1));
  socket->Connect(network->Host(), network->Port());
  ASSERT_TRUE(WaitFor([&] { return network->HasConnection() && reported.size() == 2; }));
  network->EndSending();
  ASSERT_TRUE(WaitForReports(3));
  for (const char* text : {"second", "third"}) {
    reported.clear();
    socket->Connect(network->Host(), network->Port());
    ASSERT_TRUE(WaitForReports(1));
    EXPECT_THAT(reported, ElementsAre("connected"));
    socket->Send(text);
    EXPECT_TRUE(WaitFor([&] { return network->Received() == text; }));
    socket->Close();
  }
}

TEST_P(SocketContract, WhatWasSentBeforeACloseArrives) {
  Connect();
  socket->Send("the last word");
  socket->Close();
  EXPECT_EQ(socket->State(), SocketState::kClosed);
  EXPECT_TRUE(WaitFor([&] { return network->SawEnd(); }));
  EXPECT_EQ(network->Received(), "the last word");
}

TEST_P(SocketContract, NothingIsReportedAfterAClose) {
  Connect();
  network->Say("late");
  network->EndSending();
  socket->Close();
  Settle();
  EXPECT_THAT(reported, ElementsAre("connected"));
}

TEST_P(SocketContract, ACloseInAHandlerIsTheEndToo) {
  Connect();
  socket->DataArrived.Listen([&](const std::string&) { socket->Close(); });
  network->Say("one");
  ASSERT_TRUE(WaitForReports(2));
  Settle();
  EXPECT_THAT(reported, ElementsAre("connected", "data one"));
  EXPECT_TRUE(WaitFor([&] { return network->SawEnd(); }));
}

TEST_P(SocketContract, NothingIsReportedOfAClosedAttempt) {
  socket->Connect(network->Host(), network->Port());
  socket->Close();
  socket->Connect(network->Host(), network->DeadPort());
  socket->Close();
  socket->Connect("nowhere.invalid", network->Port());
  socket->Close();
  Settle();
  EXPECT_THAT(reported, IsEmpty());
}

TEST_P(SocketContract, AHandlerOfAFailureMayConnectAnew) {
  int tries = 0;
  socket->Failed.Listen([&](int) {
    const bool last = ++tries == 3;
    socket->Connect(network->Host(), last ? network->Port() : network->DeadPort());
  });
  socket->Connect(network->Host(), network->DeadPort());
  ASSERT_TRUE(WaitForReports(4));
  EXPECT_EQ(reported.back(), "connected");
}

}  // namespace
}  // namespace tarnvale::testing
