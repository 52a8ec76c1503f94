// The client against servers that do what no server should. None of them may
// hold it up for longer than its limit, nor the program at all.
#include <gmock/gmock.h>

#include <algorithm>
#include <cstdio>

#include "tests/platform/curl/ftp_stage.h"
#include "tests/platform/curl/loopback.h"
#include "tests/platform/curl/scripted_server.h"
#include "tests/support/raised.h"

namespace tarnvale::testing {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr int kLimitSeconds = 1;
// What a busy machine adds to a limit.
constexpr double kLateSeconds = 1.0;

class FtpHostile : public FtpStage {
 protected:
  static void TearDownTestSuite() {
    std::printf(
        "worst end: %.3f s after the last move (limit %d s); worst gap of a timer: %.3f s\n",
        worst_end, kLimitSeconds, worst_gap);
  }

  void TearDown() override {
    worst_gap = std::max(worst_gap, WorstGap());
    EXPECT_LT(WorstGap(), 0.5) << "the program stood still";
  }

  /// Runs one command against a script and expects this end within the limit.
  void ExpectEnd(const ScriptedServer::Script& script, int code,
                 const std::string& command = "DIR") {
    ScriptedServer server(script);
    Configure(server.Port(), kLimitSeconds);
    const FtpRun run = Run(command);
    EXPECT_EQ(run.code, code);
    EXPECT_LT(run.seconds, kLimitSeconds + kLateSeconds);
    worst_end = std::max(worst_end, run.seconds);
  }

  static inline double worst_end = 0;
  static inline double worst_gap = 0;
};

// What a server does until the step at which it goes wrong.
void SpeakUpTo(Talk& talk, int step) {
  if (step >= 1) talk.Say("220 ready\r\n"), talk.Hear();
  if (step >= 2) talk.Say("331 password\r\n"), talk.Hear();
  if (step >= 3) talk.Say("230 in\r\n"), talk.Hear();
  if (step >= 4) talk.Say("200 binary\r\n"), talk.Hear();
  if (step >= 5) talk.Say("229 ok (|||" + std::to_string(talk.DataPort()) + "|)\r\n"), talk.Hear();
  if (step >= 6) talk.AcceptData();
  if (step >= 7) talk.SendData("-rw-r--r-- 1 a"), talk.CloseData();
}
constexpr int kSteps = 8;

TEST_F(FtpHostile, SilenceAtAnyPointIsATimeOut) {
  for (int step = 0; step < kSteps; ++step) {
    SCOPED_TRACE(step);
    ExpectEnd(
        [step](Talk& talk) {
          SpeakUpTo(talk, step);
          talk.Hang();
        },
        kTransferTimeOut);
  }
}

TEST_F(FtpHostile, HangingUpAtAnyPointIsAnAbortedConnection) {
  for (int step = 0; step < kSteps; ++step) {
    SCOPED_TRACE(step);
    ExpectEnd([step](Talk& talk) { SpeakUpTo(talk, step); }, kTransferConnectionAborted);
  }
}

TEST_F(FtpHostile, AReplyLineThatTricklesForEverIsATimeOut) {
  ExpectEnd([](Talk& talk) { talk.SayForever("2", 20); }, kTransferTimeOut);
}

TEST_F(FtpHostile, AReplyLineThatPoursForEverIsATimeOut) {
  ExpectEnd([](Talk& talk) { talk.SayForever("220 " + std::string(60000, 'x'), 0); },
            kTransferTimeOut);
}

TEST_F(FtpHostile, AReplyOfLinesWithoutEndIsATimeOut) {
  ExpectEnd([](Talk& talk) { talk.SayForever("220-more\r\n", 0); }, kTransferTimeOut);
}

TEST_F(FtpHostile, AGreetingPutOffForEverIsATimeOut) {
  ExpectEnd([](Talk& talk) { talk.SayForever("120 in a moment\r\n", 50); }, kTransferTimeOut);
}

TEST_F(FtpHostile, FirstWordsOnATransferWithoutEndAreATimeOut) {
  ExpectEnd(
      [](Talk& talk) {
        SpeakUpTo(talk, 5);
        talk.SayForever("150 here it comes\r\n", 50);
      },
      kTransferTimeOut);
}

TEST_F(FtpHostile, AReplyLineOf64KiBIsRead) {
  const std::string x(65536, 'x');
  ExpectEnd(
      [&x](Talk& talk) {
        talk.Say("220 " + x + "\r\n");
        talk.Hear();
        talk.Say("331 " + x + "\r\n");
        talk.Hear();
        talk.Say("230-" + x + "\r\n" + x + "\r\n230 " + x + "\r\n");
        talk.Hear();
        talk.Say("200 " + x + "\r\n");
        talk.EnterPassive();
        talk.AcceptData();
        talk.CloseData();
        talk.Say("226 " + x + "\r\n");
        talk.Hang();
      },
      kTransferNoError);
}

TEST_F(FtpHostile, WhatIsNoFtpServerEndsAtOnce) {
  ExpectEnd([](Talk& talk) { talk.Say("SSH-2.0-x\r\n"), talk.Hang(); }, kTransferRefusedByServer);
  ExpectEnd([](Talk& talk) { talk.Say(std::string(300, '\0') + "\n"), talk.Hang(); },
            kTransferRefusedByServer);
  ExpectEnd([](Talk& talk) { SpeakUpTo(talk, 4), talk.Say("\xFF\xFE\r\n"), talk.Hang(); },
            kTransferRefusedByServer);
}

TEST_F(FtpHostile, AServerThatIsFullIsAnAbortedConnection) {
  ExpectEnd([](Talk& talk) { talk.Say("421 too many\r\n"), talk.Hang(); },
            kTransferConnectionAborted);
}

TEST_F(FtpHostile, AServerThatDoesntKnowTheUserIsToldApart) {
  ExpectEnd([](Talk& talk) { SpeakUpTo(talk, 1), talk.Say("530 no\r\n"), talk.Hang(); },
            kTransferWrongUserName);
}

TEST_F(FtpHostile, ARepliesTooManyEndTheSession) {
  ExpectEnd(
      [](Talk& talk) {
        SpeakUpTo(talk, 4);
        talk.Say("229 ok (|||" + std::to_string(talk.DataPort()) + "|)\r\n200 what else\r\n");
        talk.Hang();
      },
      kTransferRefusedByServer);
}

TEST_F(FtpHostile, AListingThatTricklesForEverIsATimeOut) {
  ExpectEnd([](Talk& talk) { SpeakUpTo(talk, 6), talk.SendDataForever("x", 20); },
            kTransferTimeOut);
}

TEST_F(FtpHostile, AListingThatPoursForEverEnds) {
  ScriptedServer server(
      [](Talk& talk) { SpeakUpTo(talk, 6), talk.SendDataForever(std::string(65536, 'x'), 0); });
  Configure(server.Port(), kLimitSeconds);
  EXPECT_NE(Run("DIR").code, kTransferNoError);
}

TEST_F(FtpHostile, APassiveReplyThatLiesAboutTheAddressLeadsToTheServerAllTheSame) {
  ExpectEnd(
      [](Talk& talk) {
        SpeakUpTo(talk, 4);
        talk.Say("500 what\r\n");
        const int port = talk.DataPort();
        talk.AnswerPassive("227 (10,1,2,3," + std::to_string(port / 256) + "," +
                           std::to_string(port % 256) + ")\r\n");
        talk.AcceptData();
        talk.CloseData();
        talk.Say("226 done\r\n");
        talk.Hang();
      },
      kTransferNoError);
}

TEST_F(FtpHostile, APortWhereNobodyListensLeadsToTheOlderCommandAndThenToAnError) {
  const int nobody = FreeLoopbackPort();
  ScriptedServer server([nobody](Talk& talk) {
    SpeakUpTo(talk, 4);
    talk.Say("229 ok (|||" + std::to_string(nobody) + "|)\r\n");
    talk.AnswerPassive("227 (127,0,0,1," + std::to_string(nobody / 256) + "," +
                       std::to_string(nobody % 256) + ")\r\n");
  });
  Configure(server.Port(), kLimitSeconds);
  EXPECT_EQ(Run("DIR").code, kTransferCannotConnect);
  EXPECT_THAT(server.Heard(), Contains("PASV"));
}

TEST_F(FtpHostile, NobodyListeningIsNoConnection) {
  Configure(FreeLoopbackPort(), kLimitSeconds);
  const FtpRun run = Run("DIR");
  EXPECT_EQ(run.code, kTransferCannotConnect);
  EXPECT_THAT(run.states, ElementsAre(1, 2, 3, 11));
}

TEST_F(FtpHostile, ATextThatIsNoHostStartsNothing) {
  for (const char* text : {"no host", "a/b", "user@host", "a\"b", "10.0.0.1#x", "a?b",
                           "ftp.example.com/backup", "a b:2121", "[a/b]:21"}) {
    Configure(text, "ann", "x", kLimitSeconds);
    EXPECT_EQ(RaisedBy([&] { transport->Execute("DIR"); }), kMalformedCommand) << text;
    EXPECT_FALSE(transport->IsBusy()) << text;
  }
  EXPECT_THAT(told, IsEmpty());
}

TEST_F(FtpHostile, AConnectionThatTheServerEndedIsReplacedAtTheNextCommand) {
  ScriptedServer server([](Talk& talk) {
    SpeakUpTo(talk, 7);
    talk.Say("226 done\r\n");
  });
  Configure(server.Port(), kLimitSeconds);
  EXPECT_EQ(Run("DIR").code, kTransferNoError);
  ASSERT_TRUE(WaitFor([&] { return server.Heard().size() == 5; }));
  // The end comes over the wire in its own time.
  FtpRun run;
  ASSERT_TRUE(WaitFor([&] { return (run = Run("DIR")).states.front() == 1; }));
  EXPECT_EQ(run.code, kTransferNoError);
  EXPECT_EQ(server.Connections(), 2);
}

TEST_F(FtpHostile, AQuitWithoutAnAnswerDisconnectsWhenTheServerHangsUp) {
  ScriptedServer server([](Talk& talk) {
    SpeakUpTo(talk, 7);
    talk.Say("226 done\r\n");
    talk.Hear();
  });
  Configure(server.Port(), kLimitSeconds);
  ASSERT_EQ(Run("DIR").code, kTransferNoError);
  EXPECT_THAT(Run("CLOSE").states, ElementsAre(5, 6, 9, 10, 12));
}

TEST_F(FtpHostile, CancelWhileAServerIsSilentEndsAtOnceAndTellsNothing) {
  ScriptedServer server([](Talk& talk) { talk.Hang(); });
  Configure(server.Port(), 40);
  transport->Execute("DIR");
  ASSERT_TRUE(WaitFor([&] { return told.size() == 4; }));
  transport->Cancel();
  EXPECT_FALSE(transport->IsBusy());
  EXPECT_THAT(told, ElementsAre(1, 2, 3, 4));
}

}  // namespace
}  // namespace tarnvale::testing
