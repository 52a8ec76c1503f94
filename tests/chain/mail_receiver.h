// Where the program's mail goes in a test: port 25.
#pragma once

#include <optional>
#include <string>

#include "tests/gui/mail_server.h"
#include "tests/hosts/contract/loopback_server.h"

namespace tarnvale::testing {

/// The system's mail server; where that can't run, a server that lets the client
/// talk and keeps what it says.
class MailReceiver {
 public:
  MailReceiver();

  /// It takes connections.
  bool IsReady() const;
  /// To be called again and again.
  void Serve();

  /// The text of the mail that this recipient of "home.test" got, without its
  /// headers, lines ending in "\n" and none of them empty at its end. Empty as
  /// long as none has come.
  std::string TextFor(const std::string& recipient) const;
  /// All that it received or noted itself.
  std::string Everything() const;

 private:
  std::optional<MailServer> server_;
  std::optional<LoopbackServer> recorder_;
};

}  // namespace tarnvale::testing
