// The client against servers that do what no server should. None of them may
// hold it up for longer than its limit, nor the program at all.
#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <random>

#include "tests/hosts/contract/loopback.h"
#include "tests/hosts/ftp/ftp_stage.h"
#include "tests/hosts/ftp/scripted_server.h"
#include "tests/support/raised.h"

namespace tarnvale::testing {
namespace {

using ::testing::AnyOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Matcher;

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
    EXPECT_LT(WorstGap(), 0.5) << "the program was blocked";
  }

  /// Runs one command against a script and expects this end within the limit.
  void ExpectEnd(const ScriptedServer::Script& script, const Matcher<int>& code,
                 const std::string& command = "DIR") {
    ScriptedServer server(script);
    Configure(server.Port(), kLimitSeconds);
    const FtpRun run = Run(command);
    EXPECT_THAT(run.code, code);
    EXPECT_LT(run.awake_seconds, kLimitSeconds + kLateSeconds);
    worst_end = std::max(worst_end, run.awake_seconds);
  }

  static inline double worst_end = 0;
  static inline double worst_gap = 0;
};

// A polite server up to so many replies, the greeting being the first.
void SpeakUpTo(Talk& talk, int replies) {
  if (replies > 0) talk.Say("220 ready\r\n");
  for (int i = 1; i < replies; ++i) {
    const std::string line = talk.HearAny();
    const std::string verb = line.substr(0, line.find(' '));
    if (verb == "AUTH") talk.Say("502 no\r\n");
    if (verb == "USER") talk.Say("331 password\r\n");
    if (verb == "PASS") talk.Say("230 in\r\n");
    if (verb == "PWD") talk.Say("257 \"/\"\r\n");
    if (verb == "EPSV" || verb == "PASV") talk.Say(Talk::PassiveReply(verb, talk.DataPort()));
    if (verb == "TYPE") talk.Say("200 text\r\n");
    if (verb == "LIST") talk.AcceptData();
  }
}
#ifdef _WIN32
constexpr int kReplies = 6;
#else
// AUTH is sent twice.
constexpr int kReplies = 9;
#endif

#ifdef _WIN32
constexpr std::array kFirstWords{"150 here it comes"};
#else
constexpr std::array kFirstWords{"150 here it comes", "200 go on", "350 more of it"};
#endif

void BeginListing(Talk& talk) {
  talk.LogIn();
  talk.EnterPassive();
  talk.AcceptData();
}

void SendListing(Talk& talk) {
  talk.SendData("-rw-r--r-- 1 a");
  talk.CloseData();
}

void List(Talk& talk) {
  BeginListing(talk);
  SendListing(talk);
  talk.Say("226 done\r\n");
}

std::string PassiveReply(int port) {
  return "227 (10,1,2,3," + std::to_string(port / 256) + "," + std::to_string(port % 256) + ")\r\n";
}

TEST_F(FtpHostile, SilenceAtAnyPointIsATimeOut) {
  for (int replies = 0; replies <= kReplies; ++replies) {
    SCOPED_TRACE(replies);
    ExpectEnd(
        [replies](Talk& talk) {
          SpeakUpTo(talk, replies);
          talk.Hang();
        },
        kTransferTimeOut);
  }
  ExpectEnd([](Talk& talk) { BeginListing(talk), SendListing(talk), talk.Hang(); },
            kTransferTimeOut);
}

TEST_F(FtpHostile, HangingUpAtAnyPointIsAnAbortedConnection) {
  for (int replies = 0; replies <= kReplies; ++replies) {
    SCOPED_TRACE(replies);
    ExpectEnd([replies](Talk& talk) { SpeakUpTo(talk, replies); }, kTransferConnectionAborted);
  }
  ExpectEnd([](Talk& talk) { BeginListing(talk), SendListing(talk); }, kTransferConnectionAborted);
}

TEST_F(FtpHostile, AReplyLineThatTricklesForEverIsATimeOut) {
  ExpectEnd([](Talk& talk) { talk.SayForever("2", 20); }, kTransferTimeOut);
}

// Some editions of libcurl have enough after 300 KiB, others wait for the limit.
TEST_F(FtpHostile, AReplyLineThatPoursForEverEnds) {
  ExpectEnd([](Talk& talk) { talk.SayForever("220 " + std::string(60000, 'x'), 0); },
            AnyOf(kTransferTimeOut, kTransferConnectionAborted));
}

TEST_F(FtpHostile, AReplyOfLinesWithoutEndEnds) {
  ExpectEnd([](Talk& talk) { talk.SayForever("220-more\r\n", 0); },
            AnyOf(kTransferTimeOut, kTransferConnectionAborted));
}

TEST_F(FtpHostile, AGreetingThatIsPutOffIsARefusal) {
  ExpectEnd([](Talk& talk) { talk.SayForever("120 in a moment\r\n", 50); },
            kTransferRefusedByServer);
}

TEST_F(FtpHostile, FirstWordsOnATransferWithoutEndAreATimeOut) {
  ExpectEnd(
      [](Talk& talk) {
        talk.LogIn();
        talk.EnterPassive();
        talk.SayForever("150 here it comes\r\n", 50);
      },
      kTransferTimeOut);
}

TEST_F(FtpHostile, RepliesOfManyKibibytesAreRead) {
  SKIP_ON_WININET("of Wine reads 1460 bytes of a reply");
  const std::string x(32768, 'x');
  ExpectEnd(
      [&x](Talk& talk) {
        talk.Say("220 " + x + "\r\n");
        talk.Hear();
        talk.Say("331 " + x + "\r\n");
        talk.Hear();
        talk.Say("230-" + x + "\r\n" + x + "\r\n230 " + x + "\r\n");
        talk.EnterPassive();
        talk.AcceptData();
        talk.CloseData();
        talk.Say("226 " + x + "\r\n");
        talk.Hang();
      },
      kTransferNoError);
}

TEST_F(FtpHostile, WhatIsNoFtpServerEndsAtOnce) {
  SKIP_ON_WININET("waits for a reply with a number");
  ExpectEnd([](Talk& talk) { talk.Say("SSH-2.0-x\r\n"), talk.Hang(); }, kTransferRefusedByServer);
  ExpectEnd([](Talk& talk) { talk.Say(std::string(300, '\0') + "\n"), talk.Hang(); },
            kTransferRefusedByServer);
  ExpectEnd([](Talk& talk) { talk.LogIn(), talk.Hear(), talk.Say("\xFF\xFE\r\n"), talk.Hang(); },
            kTransferRefusedByServer);
}

TEST_F(FtpHostile, AServerThatIsFullIsAnAbortedConnection) {
  ExpectEnd([](Talk& talk) { talk.Say("421 too many\r\n"), talk.Hang(); },
            kTransferConnectionAborted);
}

// What still ends of the first session is nobody's.
TEST_F(FtpHostile, AfterAServerWasFullTheNextCommandBeginsAnew) {
  std::atomic<int> talks = 0;
  ScriptedServer server([&talks](Talk& talk) {
    if (++talks > 1) return List(talk);
    talk.Say("421 too many\r\n");
    talk.Hear();
  });
  Configure(server.Port(), kLimitSeconds);
  ASSERT_EQ(Run("DIR").code, kTransferConnectionAborted);
  const FtpRun next = Run("DIR");
  EXPECT_EQ(next.code, kTransferNoError);
  EXPECT_EQ(next.states.front(), 1);
}

TEST_F(FtpHostile, AServerThatDoesntKnowTheUserIsRecognised) {
  ExpectEnd(
      [](Talk& talk) {
        talk.Say("220 ready\r\n");
        talk.Hear();
        talk.Say("530 no\r\n");
        talk.Hang();
      },
      kTransferWrongUserName);
}

TEST_F(FtpHostile, ARepliesTooManyEndTheSession) {
  SKIP_ON_WININET("takes each reply for that to its last command");
  ExpectEnd(
      [](Talk& talk) {
        talk.LogIn();
        talk.AnswerPassive("229 ok (|||" + std::to_string(talk.DataPort()) +
                           "|)\r\n200 what\r\n200 else\r\n");
        talk.Hang();
      },
      kTransferRefusedByServer);
}

TEST_F(FtpHostile, AListingThatTricklesForEverIsATimeOut) {
  SetPatience({.listing = std::chrono::seconds(kLimitSeconds)});
  ExpectEnd([](Talk& talk) { BeginListing(talk), talk.SendDataForever("x", 20); },
            kTransferTimeOut);
}

TEST_F(FtpHostile, AListingThatPoursForEverEndsBeyondAMebibyte) {
  std::atomic<std::size_t> sent = 0;
  ExpectEnd(
      [&sent](Talk& talk) {
        BeginListing(talk);
        const std::string part(65536, 'x');
        while (talk.SendData(part)) sent += part.size();
        talk.Hang();
      },
      kTransferTimeOut);
  // What the systems at both ends hold is sent, too.
  EXPECT_LT(sent, std::size_t{16} * 1024 * 1024);
}

TEST_F(FtpHostile, AListingOfAMebibyteIsRead) {
  SKIP_ON_WININET("of Wine reads it byte by byte");
  ExpectEnd(
      [](Talk& talk) {
        BeginListing(talk);
        talk.SendData(std::string(1024 * 1024, 'x'));
        talk.CloseData();
        talk.Say("226 done\r\n");
        talk.Hang();
      },
      kTransferNoError);
}

TEST_F(FtpHostile, ADownloadThatTricklesForEverIsATimeOut) {
  SetPatience({.span = std::chrono::seconds(kLimitSeconds), .span_bytes = 1024});
  ExpectEnd([](Talk& talk) { BeginListing(talk), talk.SendDataForever("x", 20); }, kTransferTimeOut,
            kGet);
  EXPECT_THAT(NativeNames(OnDrive("Data")), IsEmpty());
}

TEST_F(FtpHostile, AnUploadTakenByteByByteIsATimeOut) {
  SetPatience({.span = std::chrono::seconds(kLimitSeconds), .span_bytes = 1024});
  WriteNative(Native("a"), Megabytes(20));
  // First the systems at both ends fill up.
  constexpr int kFillingSeconds = 2;
  // An upload begins with every reply that isn't a refusal.
  for (const char* words : kFirstWords) {
    ScriptedServer server([words](Talk& talk) {
      talk.LogIn();
      talk.HoldAtMost(4096);
      talk.EnterPassive();
      talk.AcceptData(words);
      talk.ReceiveDataByByte(20);
    });
    Configure(server.Port(), 40);
    const FtpRun run = Run(kPut);
    EXPECT_EQ(run.code, kTransferTimeOut) << words;
    EXPECT_LT(run.awake_seconds, kFillingSeconds + kLimitSeconds + kLateSeconds) << words;
  }
}

TEST_F(FtpHostile, APassiveReplyThatLiesAboutTheAddressLeadsToTheServerAllTheSame) {
  SKIP_ON_WININET("goes where the reply says");
  ExpectEnd(
      [](Talk& talk) {
        talk.LogIn();
        talk.Hear();
        talk.Say("500 what\r\n");
        talk.AnswerPassive(PassiveReply(talk.DataPort()));
        talk.AcceptData();
        talk.CloseData();
        talk.Say("226 done\r\n");
        talk.Hang();
      },
      kTransferNoError);
}

TEST_F(FtpHostile, APortWhereNobodyListensLeadsToTheOlderCommandAndThenToAnError) {
  SKIP_ON_WININET("says the older command only");
  const int nobody = FreeLoopbackPort();
  ScriptedServer server([nobody](Talk& talk) {
    talk.LogIn();
    talk.Hear();
    talk.Say("229 ok (|||" + std::to_string(nobody) + "|)\r\n");
    talk.AnswerPassive(PassiveReply(nobody));
  });
  Configure(server.Port(), kLimitSeconds);
  EXPECT_EQ(Run("DIR").code, kTransferCannotConnect);
  EXPECT_THAT(server.Heard(), Contains("PASV"));
}

TEST_F(FtpHostile, APortThatSwallowsEveryKnockLeadsToTheOlderCommand) {
  SKIP_ON_WININET("says the older command only");
  ScriptedServer server([](Talk& talk) {
    talk.LogIn();
    talk.Hear();
    talk.Say("229 ok (|||" + std::to_string(talk.SilentDataPort()) + "|)\r\n");
    talk.AnswerPassive(PassiveReply(talk.DataPort()));
    talk.AcceptData();
    SendListing(talk);
    talk.Say("226 done\r\n");
    talk.Hang();
  });
  Configure(server.Port(), kLimitSeconds);
  const FtpRun run = Run("DIR");
  EXPECT_EQ(run.code, kTransferNoError);
  EXPECT_THAT(server.Heard(), Contains("PASV"));
  EXPECT_LT(run.awake_seconds, kLimitSeconds + kLateSeconds);
}

TEST_F(FtpHostile, PortsThatSwallowEveryKnockAreATimeOut) {
  SKIP_ON_WININET("says the older command only");
  ScriptedServer server([](Talk& talk) {
    talk.LogIn();
    talk.Hear();
    talk.Say("229 ok (|||" + std::to_string(talk.SilentDataPort()) + "|)\r\n");
    talk.AnswerPassive(PassiveReply(talk.SilentDataPort()));
    talk.Hang();
  });
  Configure(server.Port(), kLimitSeconds);
  const FtpRun run = Run("DIR");
  EXPECT_EQ(run.code, kTransferTimeOut);
  EXPECT_LT(run.awake_seconds, 1.5 * kLimitSeconds + kLateSeconds);
}

TEST_F(FtpHostile, AnEncryptionThatFailsIsDoneWithout) {
  SKIP_ON_WININET("speaks in clear");
  std::atomic<int> talks = 0;
  ScriptedServer server([&talks](Talk& talk) {
    if (++talks <= 2) {
      talk.Say("220 ready\r\n");
      EXPECT_EQ(talk.HearAny(), "AUTH TLS");
      talk.Say("234 go on\r\n");
    } else {
      List(talk);
      talk.Hang();
    }
  });
  Configure(server.Port(), kLimitSeconds);
  EXPECT_EQ(Run("DIR").code, kTransferNoError);
  EXPECT_EQ(talks, 3) << "the usual version, the newest, none";
}

TEST_F(FtpHostile, AnEncryptionThatNeverBeginsIsATimeOut) {
  SKIP_ON_WININET("speaks in clear");
  ExpectEnd(
      [](Talk& talk) {
        talk.Say("220 ready\r\n");
        talk.HearAny();
        talk.Say("234 go on\r\n");
        talk.Hang();
      },
      kTransferTimeOut);
}

// Whatever a server says and when, a command ends, and the next one can begin.
TEST_F(FtpHostile, RandomRepliesEndEveryCommand) {
#ifdef _WIN32
  constexpr int kRounds = 20;  // WinINet waits for a second in many of them
#else
  constexpr int kRounds = 60;
#endif
  for (int round = 0; round < kRounds && !HasFailure(); ++round) {
    SCOPED_TRACE(round);
    std::atomic<unsigned> talks = 0;
    ScriptedServer server([round, &talks](Talk& talk) {
      std::mt19937 random(static_cast<unsigned>(round) * 100U + ++talks);
      const auto pick = [&random](std::size_t count) { return random() % count; };
      talk.Say("220 ready\r\n");
      for (int line = 0; line < 40 && !talk.HearAny().empty(); ++line) {
        const std::string port = std::to_string(pick(3) == 0 ? pick(70000) : talk.DataPort());
        const std::vector<std::string> replies{"200 ok",
                                               "226 done",
                                               "230 in",
                                               "331 more",
                                               "150 now",
                                               "502 no",
                                               "550 no",
                                               "421 bye",
                                               "125 now",
                                               "257 \"/\"",
                                               "257 \"",
                                               "257 /",
                                               "234 secure",
                                               "227 (1,2)",
                                               "227 (999,1,1,1,-1,5)",
                                               "229 (|||)",
                                               "229 (|||" + port + "|)",
                                               "229 (|||" + port,
                                               "",
                                               "\xFF\xFE\xFD",
                                               "120 later",
                                               "230-a\r\n220 b",
                                               "452 full",
                                               "999 x",
                                               "000 y"};
        // Mostly what leads on.
        const std::size_t which = pick(3) == 0 ? pick(replies.size()) : pick(5);
        talk.Say((pick(4) == 0 ? "229 ok (|||" + port + "|)" : replies[which]) + "\r\n");
      }
    });
    WriteNative(Native("a"), "content");
    Configure(server.Port(), kLimitSeconds);
    for (const std::string command : {"DIR", kPut, kGet, "CLOSE"}) {
      const FtpRun run = Run(command);
      // In clear and for data alone, encryption may fail before that.
      EXPECT_LT(run.awake_seconds, 3 * kLimitSeconds + kLateSeconds) << command;
    }
  }
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
  EXPECT_THAT(reported, IsEmpty());
}

TEST_F(FtpHostile, AConnectionThatTheServerEndedIsReplacedAtTheNextCommand) {
  ScriptedServer server([](Talk& talk) { List(talk); });
  Configure(server.Port(), kLimitSeconds);
  EXPECT_EQ(Run("DIR").code, kTransferNoError);
  ASSERT_TRUE(WaitFor([&] { return server.Heard().size() == 4; }));
  // The end comes over the wire in its own time.
  FtpRun run;
  ASSERT_TRUE(WaitFor([&] {
    run = Run("DIR");
    return std::count(run.states.begin(), run.states.end(), 1) > 0;
  }));
  EXPECT_EQ(run.code, kTransferNoError);
  EXPECT_EQ(server.Connections(), 2);
}

TEST_F(FtpHostile, AQuitWithoutAnAnswerDisconnectsWhenTheServerHangsUp) {
  ScriptedServer server([](Talk& talk) {
    List(talk);
    talk.Hear();
  });
  Configure(server.Port(), kLimitSeconds);
  ASSERT_EQ(Run("DIR").code, kTransferNoError);
#ifdef _WIN32
  // WinINet reports that it waits for the answer.
  EXPECT_THAT(Run("CLOSE").states, ElementsAre(5, 6, 7, 9, 10, 12));
#else
  EXPECT_THAT(Run("CLOSE").states, ElementsAre(5, 6, 9, 10, 12));
#endif
}

TEST_F(FtpHostile, WhatAServerSaidUnaskedIsTakenForTheAnswerToAQuit) {
  // Another reply right behind the last one, as of a server that ends a session by itself.
  ScriptedServer server([](Talk& talk) {
    BeginListing(talk);
    SendListing(talk);
    talk.Say("226 done\r\n421 you were idle\r\n");
    talk.Hang();
  });
  Configure(server.Port(), kLimitSeconds);
  ASSERT_EQ(Run("DIR").code, kTransferNoError);
  const FtpRun run = Run("CLOSE");
  EXPECT_EQ(run.code, kTransferNoError);
  EXPECT_THAT(run.states, ElementsAre(5, 6, 7, 8, 9, 10, 12));
}

TEST_F(FtpHostile, CancelWhileAServerIsSilentEndsAtOnceAndReportsNothing) {
  std::atomic<bool> hung_up = false;
  ScriptedServer server([&hung_up](Talk& talk) { talk.Hang(), hung_up = true; });
  Configure(server.Port(), 40);
  transport->Execute("DIR");
  ASSERT_TRUE(WaitFor([&] { return reported.size() >= 4; }));
  const auto before = reported;
  transport->Cancel();
  EXPECT_FALSE(transport->IsBusy());
#ifndef _WIN32
  // The server notices it, too. WinINet's login goes on for a minute or more.
  EXPECT_TRUE(WaitFor([&] { return hung_up.load(); }));
#endif
  EXPECT_EQ(reported, before);
  reported.resize(4);
  EXPECT_THAT(reported, ElementsAre(1, 2, 3, 4));
}

}  // namespace
}  // namespace tarnvale::testing
