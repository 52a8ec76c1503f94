// The window that sends a mail, on real sockets, before servers that mean it harm.
#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>

#include "tests/hosts/contract/real_sockets.h"
#include "tests/hosts/contract/redirected_sockets.h"
#include "tests/support/fake_machine.h"
#include "tests/support/resident_bytes.h"
#include "transfer/frm_winsock.h"

namespace tarnvale::testing {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

// The window on real sockets; its pause takes up to a second of real time.
class HostileMailServers : public RealSockets {
 protected:
  HostileMailServers() {
    settings.SmtpServer = "mail.example";
    settings.ReportTo = "ann@home.example";
    mail.Sender = "report@site.example";
    mail.Body = "All is well.";
  }

  std::string Log() const { return window.txtData.Text.Get(); }
  bool IsClosed() { return Log().ends_with("> \r\n\r\n.\r\n<CONNECTION CLOSED>\r\n"); }
  /// The window's last line, other than the program's own closing, may come from
  /// the server.
  bool IsDone() { return window.Winsock->State() == SocketState::kClosed; }

  /// Begins early in a second, so that the pause lasts two tenths at least, and
  /// never spans midnight.
  void Begin() {
    ASSERT_TRUE(WaitFor([&] { return std::fmod(clock.SecondsSinceMidnight(), 1) < 0.3; }));
    window.StartSend();
  }
  void Open() {
    Begin();
    ASSERT_TRUE(WaitFor([&] { return server.Accept(); }));
  }
  const std::string whole_mail =
      "HELO x.x\r\nMAIL FROM: report@site.example\r\nRCPT TO: ann@home.example\r\n"
      "DATA\r\nSUBJECT: 0\r\nAll is well.\r\n\r\n\r\n.\r\n";

  FakeMachine fake;
  HostClock clock;
  RedirectedSockets redirected{sockets, server.Port()};
  Machine machine{{fake.files, fake.open_files, fake.profiles, fake.processes, clock, fake.random,
                   fake.formats, fake.registry, fake.applications},
                  {loop, fake.boxes, fake.desktop, fake.windows, fake.dialogs, fake.tray,
                   redirected, fake.ftp}};
  BackupSettings settings;
  ReportMail mail;
  std::string last_reply;
  frmWinsock window{machine, settings, mail, last_reply};
};

TEST_F(HostileMailServers, APoliteServerGetsTheWholeMail) {
  Open();
  server.Say("220 ready\r\n");
  ASSERT_TRUE(WaitFor([&] { return server.SawEnd(); }, [&] { server.Read(); }));
  EXPECT_EQ(server.Received(), whole_mail);
  EXPECT_THAT(Log(), StartsWith("<CONNECTED>\r\n> HELO x.x\r\n"));
  EXPECT_TRUE(IsClosed());
}

// The connection comes while something else waits, as a run does.
TEST_F(HostileMailServers, ASilentServerHoldsNothingThatWaitsWhenItAccepts) {
  bool has_spoken = false;
  bool run_ended_before = false;
  Timer run(loop.Timers(), 10, true);
  run.Tick.Listen([&] {
    run.Enabled = false;
    Begin();
    while (Log().empty()) loop.WaitPass();
    run_ended_before = !has_spoken;
  });
  Timer speaking(loop.Timers(), 2000, true);
  speaking.Tick.Listen([&] {
    speaking.Enabled = false;
    has_spoken = true;
    server.Say("220 at last\r\n");
  });
  Timer accepting(loop.Timers(), 10, true);
  accepting.Tick.Listen([&] { server.Accept(); });
  ASSERT_TRUE(WaitFor([&] { return IsDone() && has_spoken; }));
  EXPECT_TRUE(run_ended_before);
  server.Read();
  EXPECT_EQ(server.Received(), whole_mail);
}

// What the server does comes from a timer.
TEST_F(HostileMailServers, ASilentServerIsWaitedForWhileTheProgramLives) {
  std::string log_before;
  Begin();
  Timer later(loop.Timers(), 300, true);
  later.Tick.Listen([&] {
    later.Enabled = false;
    log_before = Log();
    server.Say("220 at last\r\n");
  });
  Timer accepting(loop.Timers(), 10, true);
  accepting.Tick.Listen([&] { server.Accept(); });
  ASSERT_TRUE(WaitFor([&] { return IsDone() && !log_before.empty(); }));
  EXPECT_EQ(log_before, "<CONNECTED>\r\n> HELO x.x\r\n");
  EXPECT_GT(ticks, 10);
  server.Read();
  EXPECT_EQ(server.Received(), whole_mail);
}

TEST_F(HostileMailServers, AServerThatEndsAtOnceOrResetsInTheMiddleLeavesWindowAndLog) {
  last_reply = "220 from before";
  for (const bool resets : {false, true}) {
    Begin();
    Timer rude(loop.Timers(), 10, true);
    rude.Tick.Listen([&] {
      if (!server.Accept()) return;
      rude.Enabled = false;
      resets ? server.Reset() : server.HangUp();
    });
    ASSERT_TRUE(WaitFor([&] { return IsDone() && !rude.Enabled; }));
    EXPECT_THAT(Log(), EndsWith("<CONNECTION CLOSED>\r\n"));
  }
  EXPECT_THAT(Log(), HasSubstr("<WINSOCK ERROR> 100"));
  EXPECT_THAT(faults, IsEmpty());
}

TEST_F(HostileMailServers, AFloodDoesNotKeepTheMailFromEnding) {
  Begin();
  Timer flooding(loop.Timers(), 10, true);
  const std::string flood(100'000, 'f');
  flooding.Tick.Listen([&] {
    server.Accept();
    if (!server.HasConnection()) return;
    server.Say(flood);
    server.Read();
  });
  ASSERT_TRUE(WaitFor([&] { return IsDone() && server.SawEnd(); }));
  EXPECT_EQ(server.Received(), whole_mail);
  EXPECT_THAT(Log(), EndsWith("<CONNECTION CLOSED>\r\n"));
}

TEST_F(HostileMailServers, AFloodTakesNoMemory) {
  const std::string flood(1'000'000, 'f');
  std::size_t said = 0;
  std::size_t most = 0;
  Timer flooding(loop.Timers(), 10, true);
  flooding.Tick.Listen([&] {
    server.Accept();
    if (!server.HasConnection()) return;
    server.Read();
    while (const std::size_t count = server.Say(flood)) said += count;
    most = std::max(most, ResidentBytes());
  });
  std::size_t first = 0;
  for (int mail_count = 0; said < 50'000'000; ++mail_count) {
    ASSERT_LT(mail_count, 100) << "the server is not heard enough";
    Begin();
    ASSERT_TRUE(WaitFor([&] { return IsDone(); }));
    if (first == 0) first = most;
  }
  EXPECT_LE(most, first + (8U << 20));
  EXPECT_LE(Log().size(), 1U << 20);
  EXPECT_LE(last_reply.size(), 65536U);
}

TEST_F(HostileMailServers, AServerThatNeverReadsDoesNotKeepTheMailFromEnding) {
  mail.Body = std::string(10'000'000, 'b');
  Begin();
  Timer accepting(loop.Timers(), 10, true);
  accepting.Tick.Listen([&] {
    if (server.Accept()) server.Say("220 ready\r\n");
  });
  ASSERT_TRUE(WaitFor([&] { return IsDone() && server.HasConnection(); }));
  EXPECT_THAT(Log(), EndsWith("<CONNECTION CLOSED>\r\n"));
  ASSERT_TRUE(WaitFor([&] { return server.SawEnd(); }, [&] { server.Read(); }));
  EXPECT_THAT(server.Received().substr(10'000'000), EndsWith("b\r\n\r\n\r\n.\r\n"));
}

TEST_F(HostileMailServers, OddBytesOfAServerStayOddInTheLog) {
  const std::string odd("220 \0\x01\xFF\x1B[31m\r\n", 13);
  Begin();
  Timer accepting(loop.Timers(), 10, true);
  accepting.Tick.Listen([&] {
    if (server.Accept()) server.Say(odd);
  });
  ASSERT_TRUE(WaitFor([&] { return IsDone() && server.HasConnection(); }));
  EXPECT_EQ(last_reply, odd);
  EXPECT_THAT(Log(), HasSubstr(odd));
}

TEST_F(HostileMailServers, PastedLineEndsReachNoServerAsCommands) {
  settings.ReportTo = "ann@home.example\r\nDATA\r\nspam\r\n.\r\nRCPT TO: eve@x";
  Open();
  server.Say("220 ready\r\n");
  ASSERT_TRUE(WaitFor([&] { return server.SawEnd(); }, [&] { server.Read(); }));
  EXPECT_THAT(
      server.Received(),
      HasSubstr("\r\nRCPT TO: ann@home.example??DATA??spam??.??RCPT TO: eve@x\r\nDATA\r\n"));
}

// The mail is in the middle of its wait when the program is left.
TEST_F(HostileMailServers, ASilentServerIsSentNothingWhenTheProgramIsLeft) {
  Begin();
  Timer leaving(loop.Timers(), 300, true);
  leaving.Tick.Listen([&] {
    leaving.Enabled = false;
    loop.Quit(0);
  });
  ASSERT_TRUE(WaitFor([&] { return loop.IsEnding(); }, [&] { server.Accept(); }));
  server.Accept();
  window.Winsock->Close();
  ASSERT_TRUE(WaitFor([&] { return server.SawEnd(); }, [&] { server.Read(); }));
  EXPECT_EQ(server.Received(), "HELO x.x\r\n");
}

}  // namespace
}  // namespace tarnvale::testing
