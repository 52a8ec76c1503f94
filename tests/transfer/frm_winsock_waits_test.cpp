// When the program says what: its waits, its pause, and what comes between.
#include "tests/transfer/frm_winsock_fixture.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;

TEST_F(FrmWinsockTest, OnlyTheGreetingIsWaitedForAndOnlyTheDataIsPutOff) {
  server.on_connect = [](FakeConnection& c) { c.Say("220 ready\r\n", 30ms); };
  Send();
  EXPECT_THAT(Timed(), ElementsAre("0 HELO x.x", "30 MAIL FROM: report@site.example",
                                   "30 RCPT TO: ann@home.example", "500 DATA", "500 SUBJECT: 0",
                                   "500 All is well.", "500 \r\n\r\n."));
}

TEST_F(FrmWinsockTest, TheClosingDoesNotWaitForTheAnswerToTheMessage) {
  server.on_connect = [](FakeConnection& c) { c.Say("220 ready\r\n"); };
  server.on_bytes = [](FakeConnection& c, const std::string& bytes) {
    if (bytes == "\r\n\r\n.\r\n") c.Say("250 taken\r\n", 10ms);
  };
  Send();
  EXPECT_TRUE(server.Connection().IsEnded());
  EXPECT_THAT(Log(), EndsWith("> \r\n\r\n.\r\n<CONNECTION CLOSED>\r\n"));
}

TEST_F(FrmWinsockTest, WithoutAGreetingTheWaitLastsAndTheProgramLives) {
  int ticks = 0;
  Timer timer(machine.loop.Timers(), 1000, true);
  timer.Tick.Listen([&] { ++ticks; });
  window->StartSend();
  machine.Advance(std::chrono::hours(3));
  EXPECT_EQ(Log(), "<CONNECTED>\r\n> HELO x.x\r\n");
  EXPECT_EQ(ticks, 3 * 3600);
  server.Connection().Say("220 at last\r\n");
  machine.Advance(10s);
  EXPECT_THAT(Log(), HasSubstr("> HELO x.x\r\n220 at last\r\n\r\n> MAIL FROM"));
  EXPECT_EQ(Sent(), whole_mail);
}

TEST_F(FrmWinsockTest, AMailThatWaitsForASilentServerEndsWithTheProgramUnsent) {
  Send();
  machine.loop.Quit(0);
  server.Connection().Say("220 at last\r\n");
  machine.Advance(10s);
  EXPECT_EQ(Sent(), "HELO x.x\r\n");
}

// The connection comes while a run waits for something.
TEST_F(FrmWinsockTest, AMailThatWaitsForASilentServerHoldsNoOtherWait) {
  bool run_ended = false;
  Timer run(machine.loop.Timers(), 10, true);
  run.Tick.Listen([&] {
    run.Enabled = false;
    window->StartSend();
    while (Log().empty()) machine.loop.WaitPass();
    run_ended = true;
  });
  machine.Advance(10s);
  EXPECT_TRUE(run_ended);
  EXPECT_EQ(Log(), "<CONNECTED>\r\n> HELO x.x\r\n");
}

// The first one's server ends without a word, and the second one's speaks.
TEST_F(FrmWinsockTest, TheFirstWordsOfAServerEndTheWaitOfEveryMail) {
  server.on_connect = [](FakeConnection& c) { c.EndSending(50ms); };
  Send();
  server.on_connect = nullptr;
  settings.ReportTo = "bob@home.example";
  Send();
  server.Connection(1).Say("220 at last\r\n");
  machine.Advance(10s);
  EXPECT_THAT(Sent(1),
              HasSubstr("MAIL FROM: report@site.example\r\nRCPT TO: bob@home.example\r\n"));
  EXPECT_THAT(Log(), HasSubstr("> RCPT TO: ann@home.example\r\n"));
}

TEST_F(FrmWinsockTest, AMailInItsPauseEndsWithTheProgramUnsent) {
  last_reply = "220 from before";
  machine.loop.OnYield(4, [&] { machine.loop.Quit(0); });
  Send();
  EXPECT_THAT(Sent(), EndsWith("RCPT TO: ann@home.example\r\n"));
}

TEST_F(FrmWinsockTest, AMailBetweenItsRecipientsEndsWithTheProgramUnsent) {
  last_reply = "220 from before";
  settings.ReportTo = "ann@home.example,bob@home.example";
  machine.loop.OnYield(3, [&] { machine.loop.Quit(0); });
  Send();
  EXPECT_THAT(Sent(), EndsWith("RCPT TO: ann@home.example\r\n"));
}

TEST_F(FrmWinsockTest, TheWaitForAServersFirstWordsYieldsUntilTheyCome) {
  Send();
  server.Connection().Say("220 at last\r\n", 50ms);
  EXPECT_TRUE(window->WinsockReady());
  EXPECT_EQ(last_reply, "220 at last\r\n");
}

TEST_F(FrmWinsockTest, TheWaitForAServersFirstWordsEndsWithTheProgram) {
  Send();
  machine.loop.OnYield(2, [&] { machine.loop.Quit(0); });
  EXPECT_FALSE(window->WinsockReady());
  EXPECT_EQ(Sent(), "HELO x.x\r\n");
}

// What the server has when the program ends.
class EndOfProgramTest : public FrmWinsockTest,
                         public ::testing::WithParamInterface<const char*> {};

TEST_P(EndOfProgramTest, NothingMoreIsSaidBehindIt) {
  server.on_connect = [](FakeConnection& c) { c.Say("220 ready\r\n"); };
  server.on_bytes = [this](FakeConnection&, const std::string& bytes) {
    if (bytes == GetParam()) machine.loop.Quit(0);
  };
  Send();
  machine.Advance(10s);
  EXPECT_THAT(Sent(), EndsWith(GetParam()));
  EXPECT_THAT(Log(), ::testing::Not(HasSubstr("<CONNECTION CLOSED>")));
}

INSTANTIATE_TEST_SUITE_P(Words, EndOfProgramTest,
                         ::testing::Values("HELO x.x\r\n", "MAIL FROM: report@site.example\r\n",
                                           "RCPT TO: ann@home.example\r\n", "DATA\r\n",
                                           "SUBJECT: 0\r\n", "\r\n\r\n.\r\n"));

TEST_F(FrmWinsockTest, AGreetingThatIsThereAlreadyEndsTheWaitAfterItsOneYield) {
  last_reply = "220 from before";
  const int before = machine.loop.YieldCount();
  window->WinsockReady();
  EXPECT_EQ(machine.loop.YieldCount(), before + 1);
}

TEST_F(FrmWinsockTest, ASecondConversationWaitsForNothing) {
  AnswerWith("220 ready\r\n", "250 ok\r\n");
  Send();
  server.on_connect = nullptr;
  server.on_bytes = nullptr;
  begun = machine.clock.Uptime();
  Send();
  EXPECT_EQ(Sent(1), whole_mail) << "to a server that says nothing at all";
  EXPECT_THAT(Timed(1), ElementsAre("0 HELO x.x", "0 MAIL FROM: report@site.example",
                                    "0 RCPT TO: ann@home.example", "500 DATA", "500 SUBJECT: 0",
                                    "500 All is well.", "500 \r\n\r\n."));
}

TEST_F(FrmWinsockTest, AnUnloadedWindowLeavesItsLastReplyToTheNext) {
  AnswerWith("220 ready\r\n", "250 ok\r\n");
  Send();
  EXPECT_TRUE(window->Close());
  const auto closed = std::move(window);
  window = std::make_unique<frmWinsock>(machine.Interfaces(), settings, mail, last_reply);
  EXPECT_EQ(Log(), "");
  server.on_connect = nullptr;
  server.on_bytes = nullptr;
  Send();
  EXPECT_EQ(Sent(1), whole_mail);
}

TEST_F(FrmWinsockTest, ClosingTheWindowEndsAWaitForASilentServer) {
  Send();
  window->Close();
  server.Connection().Say("220 at last\r\n");
  machine.Advance(10s);
  EXPECT_EQ(Sent(), "HELO x.x\r\n");
  EXPECT_EQ(Log(), "<CONNECTED>\r\n> HELO x.x\r\n");
}

TEST_F(FrmWinsockTest, ClosingTheWindowClosesTheConnectionAndEndsTheConversation) {
  AnswerWith("220 ready\r\n", "250 ok\r\n");
  machine.loop.OnYield(5, [this] { window->Close(); });
  Send();
  EXPECT_TRUE(server.Connection().IsEnded());
  EXPECT_THAT(Timed().back(), EndsWith("RCPT TO: ann@home.example"));
  EXPECT_EQ(last_reply, "250 ok\r\n");
  EXPECT_EQ(window->Winsock->State(), SocketState::kClosed);
}

TEST_F(FrmWinsockTest, AConnectDuringAConversationIsRefusedByTheSocketAndDisturbsNothing) {
  AnswerWith("220 ready\r\n", "250 ok\r\n");
  machine.loop.OnYield(5, [this] { window->StartSend(); });
  Send();
  EXPECT_EQ(Sent(), whole_mail);
  EXPECT_EQ(server.ConnectionCount(), 1U);
  EXPECT_THAT(Log(), HasSubstr("<WINSOCK ERROR> 40020. Invalid operation at current state.\r\n"));
}

// Nothing guards the conversation itself: here the server's end lets the socket
// connect again while the first one is in its pause.
TEST_F(FrmWinsockTest, ASecondConversationRunsInsideThePauseOfTheFirst) {
  server.on_connect = [](FakeConnection& c) {
    c.Say("220 ready\r\n");
    c.EndSending(50ms);
  };
  machine.loop.OnYield(12, [this] {
    ASSERT_EQ(window->Winsock->State(), SocketState::kClosedByPeer);
    window->StartSend();
  });
  Send();
  EXPECT_EQ(server.ConnectionCount(), 2U);
  EXPECT_THAT(Timed(0).back(), EndsWith("RCPT TO: ann@home.example"));
  EXPECT_EQ(Sent(1), whole_mail);
  EXPECT_THAT(Log(),
              HasSubstr("> RCPT TO: ann@home.example\r\n<CONNECTION CLOSED>\r\n<CONNECTED>"));
  EXPECT_THAT(Log(), EndsWith("<CONNECTION CLOSED>\r\n"));
}

struct PauseCase {
  const char* name;
  std::chrono::milliseconds into_the_second;
  std::chrono::milliseconds lasts;
  const char* second = "11:00:00";
};

class PauseTest : public FrmWinsockTest, public ::testing::WithParamInterface<PauseCase> {};

TEST_P(PauseTest, CountsFromTheNearestWholeSecond) {
  machine.SetTime(GetParam().second);
  machine.clock.Move(GetParam().into_the_second);
  const auto before = machine.clock.Uptime();
  const int yields = machine.loop.YieldCount();
  window->Pause(0.5);
  EXPECT_EQ(machine.clock.Uptime() - before, GetParam().lasts);
  EXPECT_EQ(machine.loop.YieldCount() == yields, GetParam().lasts == 0ms);
}

INSTANTIATE_TEST_SUITE_P(Moments, PauseTest,
                         ::testing::Values(PauseCase{"AtTheSecondHalfASecond", 0ms, 500ms},
                                           PauseCase{"BeforeTheHalfWhatIsLeftOfIt", 400ms, 100ms},
                                           PauseCase{"AtTheHalfOfAnEvenSecondNothing", 500ms, 0ms},
                                           PauseCase{"AtTheHalfOfAnOddSecondAWholeOne", 500ms,
                                                     1000ms, "11:00:01"},
                                           PauseCase{"BehindTheHalfNearlyAWholeOne", 600ms, 900ms}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(FrmWinsockTest, APauseThatSpansMidnightLastsUntilTheSameTimeOfTheNextDay) {
  machine.SetTime("23:59:59");
  // A yield that takes half a second; the rest of the day passes in two more.
  machine.loop.OnYield(1, [this] { machine.clock.Move(1200ms); });
  machine.loop.OnYield(2, [this] { machine.clock.Move(std::chrono::hours(12)); });
  machine.loop.OnYield(3, [this] { machine.clock.Move(std::chrono::hours(11)); });
  machine.loop.OnYield(4, [this] { machine.clock.Move(std::chrono::minutes(59)); });
  machine.loop.OnYield(5, [this] { machine.clock.Move(std::chrono::seconds(58)); });
  const auto before = machine.clock.Uptime();
  window->Pause(0.5);
  EXPECT_EQ(machine.clock.Uptime() - before, std::chrono::hours(24) + 500ms);
}

// The start is rounded up to midnight, a number that the clock never reaches.
TEST_F(FrmWinsockTest, APauseBegunInTheLastHalfSecondOfADayGoesOnThroughTheNextOnes) {
  machine.SetTime("23:59:59");
  machine.clock.Move(600ms);
  const auto before = machine.clock.Uptime();
  bool waits_still = false;
  struct Stop {};
  machine.loop.OnYield(1, [this] { machine.clock.Move(std::chrono::hours(24)); });
  machine.loop.OnYield(1000, [&, this] {
    waits_still = machine.clock.Uptime() - before > std::chrono::hours(24) + 5s;
    throw Stop();
  });
  EXPECT_THROW(window->Pause(0.5), Stop);
  EXPECT_TRUE(waits_still);
}

}  // namespace
}  // namespace tarnvale::testing
