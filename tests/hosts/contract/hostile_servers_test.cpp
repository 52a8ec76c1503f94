// Real sockets before servers that are slow, rude, endless or silent.
#include <gmock/gmock.h>

#include <chrono>
#include <cstdio>
#include <fstream>
#include <vector>

#include "tests/hosts/contract/real_sockets.h"
#include "tests/hosts/contract/slow_look_up.h"

namespace tarnvale::testing {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::Gt;
using ::testing::IsEmpty;
using ::testing::Le;

#ifdef _WIN32
constexpr char kTable[] = "Z:\\proc\\net\\tcp";
#else
constexpr char kTable[] = "/proc/net/tcp";
#endif

/// After how many seconds the system probes a quiet server of this machine whether
/// it is there, on the connection to this port; 0: never. The system reports it in
/// a table of hexadecimal columns: number, own address, the other's, state,
/// queues, timer (02 for such a question) and when it is due, in hundredths.
double SecondsToTheQuestion(int port) {
  std::ifstream table(kTable);
  std::string line;
  while (std::getline(table, line)) {
    unsigned other = 0;
    unsigned state = 0;
    unsigned timer = 0;
    unsigned long due = 0;
    const int read =
        std::sscanf(line.c_str(), "%*s %*s %*8[^:]:%x %x %*s %x:%lx", &other, &state, &timer, &due);
    const bool is_established = read == 4 && state == 1;
    if (is_established && other == static_cast<unsigned>(port)) {
      return timer == 2 ? static_cast<double>(due) / 100 : 0;
    }
  }
  return 0;
}

class HostileServers : public RealSockets {
 protected:
  HostileServers() {
    socket->DataArrived.Listen([this](const std::string& bytes) {
      data += bytes;
      largest_chunk = std::max(largest_chunk, bytes.size());
    });
    socket->Failed.Listen([this](int number) { failures.push_back(number); });
    socket->ClosedByPeer.Listen([this] { ended = true; });
  }

  void Connect(const std::string& host = "127.0.0.1") {
    socket->Connect(host, server.Port());
    ASSERT_TRUE(WaitFor([&] {
      server.Accept();
      return server.HasConnection() && socket->State() != SocketState::kConnecting;
    }));
    ASSERT_EQ(socket->State(), SocketState::kConnected);
  }

  std::unique_ptr<Socket> socket = sockets.MakeSocket();
  std::string data;
  std::size_t largest_chunk = 0;
  std::vector<int> failures;
  bool ended = false;
};

TEST_F(HostileServers, AFloodComesInOrderAndLeavesRoomForTimers) {
  Connect();
  std::string flood;
  for (int i = 0; flood.size() < 20'000'000; ++i) flood += std::to_string(i) + " ";
  std::size_t said = 0;
  ASSERT_TRUE(WaitFor([&] { return data.size() == flood.size(); },
                      [&] { said += server.Say(flood.substr(said, 1'000'000)); }));
  EXPECT_TRUE(data == flood);
  EXPECT_LE(largest_chunk, 65536U);
  EXPECT_GT(ticks, 0);
}

TEST_F(HostileServers, AServerThatNeverReadsHoldsNobodyUpAndGetsItAllInTheEnd) {
  Connect();
  std::string much(30'000'000, 'x');
  for (std::size_t i = 0; i < much.size(); i += 1000) much[i] = static_cast<char>('a' + i % 26);
  socket->Send(much);
  socket->Send("the end");
  socket->Close();
  EXPECT_EQ(socket->State(), SocketState::kClosed);
  const int before = ticks;
  ASSERT_TRUE(WaitFor([&] { return ticks > before + 3; }));
  ASSERT_TRUE(WaitFor([&] { return server.SawEnd(); }, [&] { server.Read(); }));
  EXPECT_TRUE(server.Received() == much + "the end");
}

TEST_F(HostileServers, AServerThatTalksBehindTheCloseStillGetsAllThatWasSent) {
  Connect();
  socket->Send(std::string(3'000'000, 'x'));
  server.Say("250 before\r\n");
  socket->Close();
  int said = 0;
  ASSERT_TRUE(WaitFor([&] { return said > 20; },
                      [&] {
                        server.Say("250 ok\r\n");
                        ++said;
                      }));
  ASSERT_TRUE(
      WaitFor([&] { return server.SawEnd() || server.ReadError() != 0; }, [&] { server.Read(); }));
  EXPECT_EQ(server.ReadError(), 0) << "no reset";
  EXPECT_EQ(server.Received().size(), 3'000'000U);
  EXPECT_THAT(data, IsEmpty());
}

TEST_F(HostileServers, AFloodBehindTheCloseIsNotSwallowed) {
  Connect();
  socket->Send("the last word");
  socket->Close();
  const std::string flood(1'000'000, 'f');
  std::size_t said = 0;
  int quiet_passes = 0;
  ASSERT_TRUE(WaitFor([&] { return quiet_passes > 100; },
                      [&] {
                        server.Read();
                        const std::size_t count = server.Say(flood);
                        said += count;
                        quiet_passes = count > 0 ? 0 : quiet_passes + 1;
                      }));
  EXPECT_EQ(server.Received(), "the last word");
  // What fits into the system's own buffers is no reading.
  EXPECT_LT(said, 50'000'000U);
}

TEST_F(HostileServers, AServerThatNeitherReadsNorHangsUpIsLeftAtTheLimit) {
  HostSockets hasty(loop, std::chrono::milliseconds(300));
  socket = hasty.MakeSocket();
  Connect();
  socket->Send(std::string(30'000'000, 'x'));
  const auto start = std::chrono::steady_clock::now();
  socket->Close();
  const int before = ticks;
  ASSERT_TRUE(WaitFor(
      [&] { return std::chrono::steady_clock::now() - start > std::chrono::milliseconds(350); }));
  EXPECT_GT(ticks, before);
  ASSERT_TRUE(
      WaitFor([&] { return server.SawEnd() || server.ReadError() != 0; }, [&] { server.Read(); }));
  EXPECT_LT(server.Received().size(), 30'000'000U);
  socket.reset();
}

TEST_F(HostileServers, WhatWasSaidBeforeAResetIsReportedBeforeIt) {
  Connect();
  socket->Send("question");
  ASSERT_TRUE(WaitFor([&] { return server.Received() == "question"; }, [&] { server.Read(); }));
  server.Say("421 go away\r\n");
  server.Reset();
  // Written before the program has heard of the reset.
  socket->Send("more");
  socket->Send("and more");
  std::string before;
  socket->Failed.Listen([&](int) { before = data; });
  ASSERT_TRUE(WaitFor([&] { return !failures.empty(); }));
  EXPECT_EQ(before, "421 go away\r\n");
  EXPECT_THAT(failures, ElementsAre(::testing::AnyOf(kConnectionReset, kConnectionAborted)));
  EXPECT_FALSE(ended);
}

TEST_F(HostileServers, AServerThatHangsUpAtOnceIsAConnectionThatEnds) {
  for (int i = 0; i < 20; ++i) {
    ended = false;
    Connect();
    server.HangUp();
    ASSERT_TRUE(WaitFor([&] { return ended; }));
    socket->Close();
  }
  EXPECT_THAT(failures, IsEmpty());
}

TEST_F(HostileServers, AServerThatResetsAtOnceIsAFailureAndTheNextConnectionWorks) {
  for (int i = 0; i < 20; ++i) {
    failures.clear();
    Connect();
    server.Reset();
    ASSERT_TRUE(WaitFor([&] { return !failures.empty(); }));
    EXPECT_THAT(failures, ElementsAre(kConnectionReset));
  }
  Connect();
  socket->Send("hello");
  EXPECT_TRUE(WaitFor([&] { return server.Received() == "hello"; }, [&] { server.Read(); }));
}

TEST_F(HostileServers, ANameWithAZeroByteIsNotTheNameBeforeIt) {
  socket->Connect(std::string("127.0.0.1\0.example", 18), server.Port());
  ASSERT_TRUE(WaitFor([&] { return !failures.empty(); }));
  EXPECT_THAT(failures, ElementsAre(kHostNotFound));
  EXPECT_FALSE(server.Accept());
}

TEST_F(HostileServers, AQuietServerIsProbedWithinMinutes) {
  if (!std::ifstream(kTable)) GTEST_SKIP() << "no system that shows when it probes";
  Connect();
  EXPECT_THAT(SecondsToTheQuestion(server.Port()), AllOf(Gt(0), Le(120)));
}

TEST_F(HostileServers, AHostIsFoundByItsNameToo) {
  Connect("localhost");
  server.Say("hello");
  EXPECT_TRUE(WaitFor([&] { return data == "hello"; }));
}

TEST_F(HostileServers, ASlowLookupHoldsNobodyUpAndCanBeGivenUp) {
  SlowLookUp& lookup = TheSlowLookUp();
  lookup.begun = lookup.released = false;
  socket->Connect("slow.example", server.Port());
  ASSERT_TRUE(WaitFor([&] { return lookup.begun && ticks > 5; }));
  EXPECT_EQ(socket->State(), SocketState::kConnecting);
  socket->Close();
  Connect();
  socket->Close();
  server.HangUp();

  socket->Connect("slow.example", server.Port());
  lookup.released = true;
  ASSERT_TRUE(WaitFor([&] {
    server.Accept();
    return server.HasConnection() && socket->State() == SocketState::kConnected;
  }));
  EXPECT_FALSE(server.Accept()) << "the lookup that was given up connects nobody";
  EXPECT_THAT(failures, IsEmpty());
}

TEST_F(HostileServers, AnErrorOfAHandlerStopsAtTheLoop) {
  socket->DataArrived.Listen([](const std::string&) { throw ProgramError(kOverflow); });
  Connect();
  server.Say("one");
  ASSERT_TRUE(WaitFor([&] { return !faults.empty(); }));
  EXPECT_THAT(faults, ElementsAre(kOverflow));
}

TEST_F(HostileServers, ASocketMayGoInTheMiddleOfEverything) {
  socket->Connect("127.0.0.1", server.Port());
  socket.reset();
  socket = sockets.MakeSocket();
  Connect();
  server.Say("unheard");
  socket->Send(std::string(5'000'000, 'x'));
  socket.reset();
  ASSERT_TRUE(WaitFor([&] { return server.SawEnd(); },
                      [&] {
                        server.Accept();
                        server.Read();
                      }));
  EXPECT_TRUE(server.Received().empty() || server.Received().size() == 5'000'000U);
}

}  // namespace
}  // namespace tarnvale::testing
