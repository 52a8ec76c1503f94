// A real mail server of the system's, for one test.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>

#include "hosts/linux/descriptor.h"
#include "tests/hosts/contract/temporary_folder.h"

namespace tarnvale::testing {

/// Postfix with a configuration and a queue of its own in a temporary folder. It
/// takes mail for any mailbox of "home.test" and puts it all into one file. It
/// ends with the object, and with the test program however that ends.
class MailServer {
 public:
  /// Why it can't run here; empty when it can.
  static std::string Obstacle();

  /// Starts it on a port of the loopback address; 0: a free one.
  explicit MailServer(std::uint16_t port = 0);
  MailServer(const MailServer&) = delete;
  MailServer& operator=(const MailServer&) = delete;
  ~MailServer();

  std::uint16_t Port() const { return port_; }
  /// The mailbox file; empty before the first mail.
  std::string Mailbox() const;
  std::string Log() const;

 private:
  void WriteConfiguration();
  void StartGuarded();

  TemporaryFolder folder_;
  std::uint16_t port_;
  /// Its end is what ends the server.
  Descriptor lifeline_;
  pid_t guard_ = -1;
};

}  // namespace tarnvale::testing
