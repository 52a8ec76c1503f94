// What goes over the wire, and what the log says of it.
#include "transfer/frm_winsock.h"

#include <algorithm>

#include "tests/transfer/frm_winsock_fixture.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

TEST_F(FrmWinsockTest, IsALogWithTheDesignsCaption) {
  EXPECT_EQ(window->Caption.Get(), "Form1");
  EXPECT_EQ(window->txtData.Kind, TextKind::kMemo);
  EXPECT_TRUE(window->txtData.FixedWidth);
  EXPECT_EQ(Log(), "");
}

TEST_F(FrmWinsockTest, AMailIsTheseBytes) {
  AnswerWith("220 ready\r\n", "250 ok\r\n");
  Send();
  EXPECT_THAT(machine.network.Requested(), ElementsAre("mail.example:25"));
  EXPECT_EQ(Sent(), whole_mail);
  EXPECT_TRUE(server.Connection().IsEnded());
}

TEST_F(FrmWinsockTest, TheLogMixesBothSidesInTheOrderOfArrivalAndEndsWithTheClosing) {
  AnswerWith("220 ready\r\n", "250 ok\r\n");
  Send();
  EXPECT_EQ(Log(),
            "<CONNECTED>\r\n"
            "> HELO x.x\r\n"
            "220 ready\r\n\r\n"
            "250 ok\r\n\r\n"
            "> MAIL FROM: report@site.example\r\n"
            "250 ok\r\n\r\n"
            "> RCPT TO: ann@home.example\r\n"
            "250 ok\r\n\r\n"
            "> DATA\r\n"
            "250 ok\r\n\r\n"
            "> SUBJECT: 0\r\n"
            "> All is well.\r\n"
            "> \r\n\r\n.\r\n"
            "250 ok\r\n\r\n"
            "<CONNECTION CLOSED>\r\n");
}

TEST_F(FrmWinsockTest, ALineIsLoggedAfterItWasSent) {
  std::string log_at_arrival;
  server.on_connect = [](FakeConnection& c) { c.Say("220 ready\r\n"); };
  server.on_bytes = [&](FakeConnection&, const std::string& bytes) {
    if (bytes.starts_with("HELO")) log_at_arrival = Log();
  };
  Send();
  EXPECT_EQ(log_at_arrival, "<CONNECTED>\r\n");
}

TEST_F(FrmWinsockTest, TheCaretFollowsTheNewestLine) {
  AnswerWith("220 ready\r\n", "250 ok\r\n");
  Send();
  EXPECT_EQ(window->txtData.Selection.Get(), (TextSelection{Log().size(), 0}));
  window->txtData.Text = "something shorter";
  EXPECT_EQ(window->txtData.Selection.Get(), (TextSelection{17, 0}));
}

TEST_F(FrmWinsockTest, TheDesignsSenderAndSubjectAreFixed) {
  const ReportMail design;
  EXPECT_THAT(design.Sender.Get(), HasSubstr("@"));
  EXPECT_EQ(design.Subject.Get(), "0");
  EXPECT_EQ(design.Body.Get(), "");
}

TEST_F(FrmWinsockTest, ABodyOfManyLinesGoesOutInOnePieceAsItStands) {
  mail.Subject = "Backup";
  mail.Body = "first\r\n\r\n\tthird \xC3\xBC \xFF\r\n";
  AnswerWith("220 ready\r\n", "250 ok\r\n");
  Send();
  EXPECT_THAT(Sent(), HasSubstr("SUBJECT: Backup\r\nfirst\r\n\r\n\tthird \xC3\xBC \xFF\r\n\r\n"
                                "\r\n\r\n.\r\n"));
}

TEST_F(FrmWinsockTest, ALoneStopInTheBodyEndsTheMessageEarlyAndTheRestGoesOutAsCommands) {
  mail.Body = "before\r\n.\r\nafter\r\n..two\r\n.three";
  AnswerWith("220 ready\r\n", "250 ok\r\n");
  Send();
  const std::string sent = Sent();
  const std::string end = "\r\n.\r\n";
  const std::size_t message_end = sent.find(end);
  ASSERT_NE(message_end, std::string::npos);
  EXPECT_THAT(sent.substr(0, message_end), ::testing::EndsWith("DATA\r\nSUBJECT: 0\r\nbefore"));
  EXPECT_EQ(sent.substr(message_end + end.size()), "after\r\n..two\r\n.three\r\n\r\n\r\n.\r\n");
}

TEST_F(FrmWinsockTest, LineEndsInAnAddressOrASubjectMakeNoCommands) {
  settings.ReportTo = std::string("ann@home.example\r\nRCPT TO: eve@x\nDATA\0.", 39);
  mail.Sender = "me@home.example\rQUIT";
  mail.Subject = "0\r\n\r\n.\r\nRSET\t";
  AnswerWith("220 ready\r\n", "250 ok\r\n");
  Send();
  EXPECT_EQ(Sent(),
            "HELO x.x\r\n"
            "MAIL FROM: me@home.example?QUIT\r\n"
            "RCPT TO: ann@home.example??RCPT TO: eve@x?DATA?.\r\n"
            "DATA\r\n"
            "SUBJECT: 0????.??RSET?\r\n"
            "All is well.\r\n\r\n\r\n.\r\n");
}

TEST_F(FrmWinsockTest, TheLogKeepsTheFirst64KiBThatAServerSaysOnAConnection) {
  const std::string flood(100000, 'f');
  server.on_connect = [&](FakeConnection& c) {
    for (int i = 0; i < 50; ++i) c.Say(flood, std::chrono::milliseconds(i));
  };
  Send();
  const std::string log = Log();
  EXPECT_EQ(std::count(log.begin(), log.end(), 'f'), 65536);
  EXPECT_THAT(log, ::testing::StartsWith("<CONNECTED>\r\n> HELO x.x\r\nffff"));
  EXPECT_THAT(log, ::testing::EndsWith("<CONNECTION CLOSED>\r\n"));
  EXPECT_LE(last_reply.size(), 65536U);
  EXPECT_EQ(Sent(), whole_mail);
}

TEST_F(FrmWinsockTest, WhatTheLogKeepsOfAServerIsCutBetweenTwoCharacters) {
  std::string flood = "f";
  for (int i = 0; i < 50'000; ++i) flood += "\xC3\xA9";
  server.on_connect = [&](FakeConnection& c) {
    c.Say(flood, 0ms);
    c.Say("more", 1ms);
  };
  Send();
  const std::string log = Log();
  EXPECT_EQ(std::count(log.begin(), log.end(), '\xC3'), 32767);
  EXPECT_TRUE(log.find("\xC3\xA9\r\n") != std::string::npos);
  EXPECT_TRUE(log.find("more") == std::string::npos);
}

TEST_F(FrmWinsockTest, TheLogOfALineWithoutEndBeginsWithACharacter) {
  std::string line;
  for (int i = 0; i < 1'000'000; ++i) line += "\xC3\xA9";
  for (const std::string end : {"", "."}) {
    window->Status(line + end);
    EXPECT_TRUE(Log().starts_with("\xC3\xA9")) << end;
    EXPECT_TRUE(Log().ends_with("\xC3\xA9" + end + "\r\n"));
    EXPECT_LE(Log().size(), 1U << 20);
  }
}

TEST_F(FrmWinsockTest, TheLogKeepsTheLatestMebibyteAndBeginsWithALine) {
  const std::string line(98, 'x');
  for (int i = 0; i < 30000; ++i) window->Status(line);
  window->Status("the last");
  EXPECT_LE(Log().size(), 1U << 20);
  EXPECT_GE(Log().size(), 1U << 19);
  EXPECT_TRUE(Log().starts_with(line + "\r\n"));
  EXPECT_TRUE(Log().ends_with(line + "\r\nthe last\r\n"));
  EXPECT_EQ(window->txtData.Selection.Get(), (TextSelection{Log().size(), 0}));
}

TEST_F(FrmWinsockTest, TheLogOfAnEnormousBodyKeepsTheEndOfIt) {
  mail.Body = std::string(5'000'000, 'b');
  AnswerWith("220 ready\r\n", "250 ok\r\n");
  Send();
  EXPECT_LE(Log().size(), 1U << 20);
  EXPECT_THAT(Log(), ::testing::StartsWith("bbbb"));
  EXPECT_THAT(Log(), ::testing::EndsWith("<CONNECTION CLOSED>\r\n"));
  EXPECT_EQ(Sent().size(), whole_mail.size() - 12 + 5'000'000);
}

TEST_F(FrmWinsockTest, AnErrorReplyToEachCommandChangesNothing) {
  AnswerWith("554 no service here\r\n", "550 go away\r\n");
  Send();
  EXPECT_EQ(Sent(), whole_mail);
  EXPECT_THAT(Log(), HasSubstr("> DATA\r\n550 go away\r\n\r\n> SUBJECT: 0\r\n"));
}

TEST_F(FrmWinsockTest, TheServerIsThatOfTheRequestAllElseThatOfTheOpening) {
  AnswerWith("220 ready\r\n", "250 ok\r\n");
  window->StartSend();
  settings.SmtpServer = "elsewhere.example";
  settings.ReportTo = "bob@home.example";
  mail.Sender = "new@site.example";
  mail.Subject = "new subject";
  mail.Body = "new body";
  machine.loop.OnYield(1, [this] {
    settings.ReportTo = "too late";
    mail.Sender = "too late";
    mail.Subject = "too late";
    mail.Body = "too late";
  });
  machine.Advance(10s);
  EXPECT_THAT(machine.network.Requested(), ElementsAre("mail.example:25"));
  EXPECT_THAT(Sent(), HasSubstr("MAIL FROM: new@site.example\r\nRCPT TO: bob@home.example\r\n"));
  EXPECT_THAT(Sent(), HasSubstr("SUBJECT: new subject\r\nnew body\r\n"));
  EXPECT_THAT(Sent(), Not(HasSubstr("late")));
}

struct RecipientCase {
  const char* name;
  const char* text;
  const char* lines;
};

class RecipientsTest : public FrmWinsockTest,
                       public ::testing::WithParamInterface<RecipientCase> {};

TEST_P(RecipientsTest, AreSplitAtCommasAndNotTrimmed) {
  settings.ReportTo = GetParam().text;
  AnswerWith("220 ready\r\n", "250 ok\r\n");
  Send();
  EXPECT_EQ(Sent(), "HELO x.x\r\nMAIL FROM: report@site.example\r\n" +
                        std::string(GetParam().lines) +
                        "DATA\r\nSUBJECT: 0\r\nAll is well.\r\n\r\n\r\n.\r\n");
}

INSTANTIATE_TEST_SUITE_P(
    Texts, RecipientsTest,
    ::testing::Values(
        RecipientCase{"AnEmptyTextIsOneEmptyAddress", "", "RCPT TO: \r\n"},
        RecipientCase{"ACommaAloneIsOneEmptyAddress", ",", "RCPT TO: \r\n"},
        RecipientCase{"Two", "a@x,b@x", "RCPT TO: a@x\r\nRCPT TO: b@x\r\n"},
        RecipientCase{"TwoWithACommaAtTheEnd", "a@x,b@x,", "RCPT TO: a@x\r\nRCPT TO: b@x\r\n"},
        RecipientCase{"TwoCommasInARow", "a@x,,b@x",
                      "RCPT TO: a@x\r\nRCPT TO: \r\nRCPT TO: b@x\r\n"},
        RecipientCase{"ABlankBehindAComma", "a@x, b@x", "RCPT TO: a@x\r\nRCPT TO:  b@x\r\n"},
        RecipientCase{"ABlankAtTheEnd", "a@x, ", "RCPT TO: a@x\r\nRCPT TO:  \r\n"},
        RecipientCase{"SemicolonsDontSeparate", "a@x;b@x", "RCPT TO: a@x;b@x\r\n"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(FrmWinsockTest, EveryChunkReplacesTheLastReply) {
  server.on_connect = [](FakeConnection& c) {
    c.Say("220-first\r\n");
    c.Say("220 second\r\n");
  };
  Send();
  EXPECT_EQ(last_reply, "220 second\r\n");
}

TEST_F(FrmWinsockTest, AConnectThatFailsLeavesItsLineAndNothingElse) {
  server.fails_with = kConnectionRefused;
  Send();
  machine.Advance(std::chrono::hours(1));
  EXPECT_EQ(Log(), "<WINSOCK ERROR> 10061. Connection is forcefully rejected.\r\n");
  EXPECT_EQ(machine.network.Requested().size(), 1U) << "no retry is made";
}

TEST_F(FrmWinsockTest, AnUnknownHostAndAnEmptyOneAreErrorsLikeAnyOther) {
  settings.SmtpServer = "nowhere.example";
  Send();
  settings.SmtpServer = "";
  Send();
  EXPECT_EQ(Log(),
            "<WINSOCK ERROR> 11001. Authoritative answer: Host not found.\r\n"
            "<WINSOCK ERROR> 10049. Address is not available from the local machine.\r\n");
}

TEST_F(FrmWinsockTest, TheNextSendTriesAnewAfterAFailedOne) {
  server.fails_with = kConnectTimedOut;
  Send();
  server.fails_with = 0;
  AnswerWith("220 ready\r\n", "250 ok\r\n");
  Send();
  EXPECT_EQ(Sent(), whole_mail);
}

TEST_F(FrmWinsockTest, AServerThatEndsItsSideInTheMiddleOnlyAddsItsLine) {
  server.on_connect = [](FakeConnection& c) {
    c.Say("421 closing\r\n");
    c.EndSending(100ms);
  };
  Send();
  EXPECT_EQ(Sent(), whole_mail) << "the conversation isn't stopped";
  EXPECT_EQ(Log(),
            "<CONNECTED>\r\n> HELO x.x\r\n421 closing\r\n\r\n"
            "> MAIL FROM: report@site.example\r\n> RCPT TO: ann@home.example\r\n"
            "<CONNECTION CLOSED>\r\n"
            "> DATA\r\n> SUBJECT: 0\r\n> All is well.\r\n> \r\n\r\n.\r\n"
            "<CONNECTION CLOSED>\r\n");
}

TEST_F(FrmWinsockTest, WritesToAServerThatHungUpFailAndTheConversationRunsToItsEnd) {
  server.on_connect = [](FakeConnection& c) {
    c.Say("220 ready\r\n");
    c.HangUp(100ms);
  };
  Send();
  EXPECT_THAT(Timed().back(), ::testing::EndsWith("RCPT TO: ann@home.example"));
  EXPECT_THAT(
      Log(), ::testing::EndsWith(
                 "<CONNECTION CLOSED>\r\n> DATA\r\n> SUBJECT: 0\r\n"
                 "<WINSOCK ERROR> 10053. Connection is aborted due to timeout or other failure.\r\n"
                 "> All is well.\r\n> \r\n\r\n.\r\n"
                 "<WINSOCK ERROR> 40006. Wrong protocol or connection state for the requested "
                 "transaction or request.\r\n"
                 "<WINSOCK ERROR> 40006. Wrong protocol or connection state for the requested "
                 "transaction or request.\r\n"
                 "<CONNECTION CLOSED>\r\n"));
}

TEST_F(FrmWinsockTest, AResetInTheMiddleOnlyAddsItsLineAndTheNextMailGoesOut) {
  server.on_connect = [](FakeConnection& c) {
    c.Say("220 ready\r\n");
    c.Reset(100ms);
  };
  Send();
  EXPECT_THAT(Log(), HasSubstr("> RCPT TO: ann@home.example\r\n"
                               "<WINSOCK ERROR> 10054. The connection is reset by remote side.\r\n"
                               "> DATA\r\n"));
  EXPECT_THAT(Log(), ::testing::EndsWith("<CONNECTION CLOSED>\r\n"));
  AnswerWith("220 ready\r\n", "250 ok\r\n");
  Send();
  EXPECT_EQ(Sent(1), whole_mail);
}

TEST_F(FrmWinsockTest, AServerThatClosesBehindTheProgramAddsNothing) {
  AnswerWith("220 ready\r\n", "250 ok\r\n");
  server.on_connect = [](FakeConnection& c) {
    c.Say("220 ready\r\n");
    c.Say("221 bye\r\n", 5s);
    c.HangUp(5s);
  };
  Send();
  const std::string closed = "<CONNECTION CLOSED>";
  EXPECT_EQ(Log().find(closed), Log().rfind(closed));
  EXPECT_THAT(Log(), Not(HasSubstr("221")));
}

}  // namespace
}  // namespace tarnvale::testing
