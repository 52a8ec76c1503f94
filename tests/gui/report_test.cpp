// Reports of the whole program: real windows, real files, real sockets, and a
// real mail server.
#include <gmock/gmock.h>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>

#include "tests/gui/gui_fixture.h"
#include "tests/gui/mail_server.h"
#include "tests/hosts/contract/loopback_server.h"
#include "tests/hosts/contract/redirected_sockets.h"

namespace tarnvale::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class RealReports : public GuiTest {
 protected:
  /// Starts the program, with these sockets for its mail, and brings its window up.
  Program& StartWith(Sockets& sockets_of_mail) {
    mail_sockets = &sockets_of_mail;
    return StartAndBringUp(
        "[Setup]\r\nWizard=1\r\n[Destiny]\r\nDir=C:\\Store\r\n[Server]\r\nSTMP=localhost\r\n"
        "[Reports]\r\nSend=True\r\n[Send]\r\nTo=ann@home.test, bob@home.test\r\n"
        "[FTP]\r\nPassword=well-kept\r\n[Entries]\r\n0=C:\\Work\\a.txt\r\n");
  }

  void SendTestMail(Program& p) {
    Click(p.form.Label39);
    Click(p.form.Advanced.chameleonButton6);
  }
  /// Backs up and waits for the end of the mail's conversation.
  void BackUp(Program& p) {
    AnswerNextBox(QMessageBox::Yes);
    // Not by the mouse: which window is the active one now is the desktop's affair.
    p.form.Label49.Clicked.Emit();
    ASSERT_TRUE(
        WaitFor([&] { return p.form.Progress.Label14.Caption.Get().starts_with("Success"); }));
    ASSERT_TRUE(WaitFor([&] { return HasEnded(p); }));
  }
  bool HasEnded(Program& p) {
    return p.Mailer.IsLoaded() &&
           p.Mailer.Get().txtData.Text.Get().find("<CONNECTION CLOSED>") != std::string::npos;
  }
  std::string Log(Program& p) { return p.Mailer.Get().txtData.Text.Get(); }
};

/// One mail of the mailbox file, without its headers.
std::string TextOfMail(const std::string& mailbox, const std::string& recipient,
                       const std::string& word) {
  std::size_t begin = 0;
  while ((begin = mailbox.find("Delivered-To: " + recipient, begin)) != std::string::npos) {
    begin = mailbox.find("\n\n", begin) + 2;
    const std::string text = mailbox.substr(begin, mailbox.find("\nFrom ", begin) - begin);
    if (text.find(word) != std::string::npos) return text;
  }
  return "";
}

/// What arrives of a body: the three line ends behind it come along, and the
/// mailbox adds an empty line, whose end the next mail's mark may have taken.
::testing::Matcher<std::string> IsMailOf(std::string body) {
  for (std::size_t at = body.find('\r'); at != std::string::npos; at = body.find('\r', at)) {
    body.erase(at, 1);
  }
  return ::testing::AnyOf(body + "\n\n\n", body + "\n\n\n\n");
}

// Sends a test mail and a report to a real server and reads the mailbox.
class ReportsToAMailServer : public RealReports {
 protected:
  void SendBothAndCompare(MailServer& server, Sockets& sockets_of_mail) {
    ASSERT_TRUE(WaitFor([&] { return server.Log().find("daemon started") != std::string::npos; }))
        << server.Log();
    Program& p = StartWith(sockets_of_mail);
    SendTestMail(p);
    EXPECT_TRUE(p.Mailer.Get().Visible);
    EXPECT_TRUE(WaitFor([&] { return host.NativeOf(p.Mailer.Get())->isVisible(); }));
    ASSERT_TRUE(WaitFor([&] { return HasEnded(p); })) << Log(p) << server.Log();
    ExpectMail(server, p, "Confirmed");
    BackUp(p);
    ExpectMail(server, p, "automated");
    EXPECT_THAT(p.engine.mail.Body.Get(), HasSubstr("Success >> Copied 1 Files, "));
    EXPECT_THAT(Log(p), Not(HasSubstr("<WINSOCK ERROR>")));
    EXPECT_THAT(Log(p) + server.Mailbox() + server.Log(), Not(HasSubstr("well-kept")));
  }

  /// The present text of the report arrives at both recipients.
  void ExpectMail(MailServer& server, Program& p, const char* word) {
    for (const char* recipient : {"ann@home.test", "bob@home.test"}) {
      ASSERT_TRUE(WaitFor([&] { return !TextOfMail(server.Mailbox(), recipient, word).empty(); }))
          << Log(p) << server.Log();
      EXPECT_THAT(TextOfMail(server.Mailbox(), recipient, word),
                  IsMailOf(p.engine.mail.Body.Get()));
    }
    EXPECT_THAT(server.Mailbox(), HasSubstr("\nSUBJECT: 0\n"));
  }
};

TEST_F(ReportsToAMailServer, ATestMailAndAReportReachTheMailbox) {
  if (const std::string obstacle = MailServer::Obstacle(); !obstacle.empty()) {
    GTEST_SKIP() << obstacle;
  }
  MailServer server;
  RedirectedSockets redirected(sockets, server.Port());
  SendBothAndCompare(server, redirected);
}

// In a network of its own (see with-own-network), where port 25 is free.
class ReportsOnPort25 : public ReportsToAMailServer {
 protected:
  /// A network that is new has its loopback device down.
  static void BringLoopbackUp() {
    const Descriptor any(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    ifreq request{};
    std::strcpy(request.ifr_name, "lo");
    ASSERT_EQ(::ioctl(any.Get(), SIOCGIFFLAGS, &request), 0);
    request.ifr_flags |= IFF_UP;
    ASSERT_EQ(::ioctl(any.Get(), SIOCSIFFLAGS, &request), 0) << std::strerror(errno);
  }
};

TEST_F(ReportsOnPort25, AreWhereTheProgramSendsThem) {
  if (std::getenv("TARNVALE_OWN_NETWORK") == nullptr) GTEST_SKIP() << "no network of its own";
  BringLoopbackUp();
  if (MailServer::Obstacle().empty()) {
    MailServer server(25);
    SendBothAndCompare(server, sockets);
    return;
  }
  LoopbackServer server(25);
  Timer serving(loop.Timers(), 20, true);
  serving.Tick.Listen([&] {
    if (server.Accept()) server.Say("220 ready\r\n");
    server.Read();
  });
  Program& p = StartWith(sockets);
  BackUp(p);
  ASSERT_TRUE(WaitFor([&] { return server.SawEnd(); }));
  EXPECT_EQ(server.Received(),
            "HELO x.x\r\nMAIL FROM: report@tarnvale.example\r\nRCPT TO: ann@home.test\r\n"
            "RCPT TO:  bob@home.test\r\nDATA\r\nSUBJECT: 0\r\n" +
                p.engine.mail.Body.Get() + "\r\n\r\n\r\n.\r\n");
}

}  // namespace
}  // namespace tarnvale::testing
