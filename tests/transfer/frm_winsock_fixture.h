// The window of the conversation on the test machine, with one mail server.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/support/fake_machine.h"
#include "transfer/frm_winsock.h"

namespace tarnvale::testing {

class FrmWinsockTest : public ::testing::Test {
 protected:
  FrmWinsockTest() {
    settings.SmtpServer = "mail.example";
    settings.ReportTo = "ann@home.example";
    mail.Sender = "report@site.example";
    mail.Body = "All is well.";
    begun = machine.clock.Uptime();
  }

  /// The server greets, and answers each of the program's lines but those of the
  /// message itself.
  void AnswerWith(const std::string& greeting, const std::string& answer) {
    server.on_connect = [greeting](FakeConnection& c) { c.Say(greeting); };
    server.on_bytes = [answer](FakeConnection& c, const std::string& bytes) {
      for (const char* command : {"HELO", "MAIL", "RCPT", "DATA", "\r\n\r\n."}) {
        if (bytes.starts_with(command)) c.Say(answer);
      }
    };
  }

  /// Sends a mail and lets ten seconds pass.
  void Send() {
    window->StartSend();
    machine.Advance(10s);
  }

  /// Every chunk of a connection, with the milliseconds since the test began:
  /// "500 DATA".
  std::vector<std::string> Timed(std::size_t connection = 0) {
    std::vector<std::string> lines;
    for (const FakeConnection::Chunk& chunk : server.Connection(connection).Chunks()) {
      EXPECT_TRUE(chunk.bytes.ends_with("\r\n"));
      const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(chunk.at - begun);
      lines.push_back(std::to_string(ms.count()) + " " +
                      chunk.bytes.substr(0, chunk.bytes.size() - 2));
    }
    return lines;
  }

  std::string Log() const { return window->txtData.Text.Get(); }
  std::string Sent(std::size_t connection = 0) { return server.Connection(connection).Text(); }

  const std::string whole_mail =
      "HELO x.x\r\n"
      "MAIL FROM: report@site.example\r\n"
      "RCPT TO: ann@home.example\r\n"
      "DATA\r\n"
      "SUBJECT: 0\r\n"
      "All is well.\r\n"
      "\r\n\r\n.\r\n";

  FakeMachine machine;
  FakeServer& server = machine.network.AddServer("mail.example", 25);
  BackupSettings settings;
  ReportMail mail;
  std::string last_reply;
  std::unique_ptr<frmWinsock> window =
      std::make_unique<frmWinsock>(machine.Interfaces(), settings, mail, last_reply);
  std::chrono::nanoseconds begun{};
};

}  // namespace tarnvale::testing
