// A Linux desktop as one machine.
#pragma once

#include <optional>

#include "hosts/curl/curl_ftp_transport.h"
#include "hosts/linux/linux_host.h"
#include "hosts/qt/qt_host.h"
#include "ui/machine.h"

namespace tarnvale {

/// Drive C: is the root of the file system. One to a process.
class LinuxMachine {
 public:
  /// `argc` and `argv` are main's.
  LinuxMachine(int& argc, char** argv);
  LinuxMachine(const LinuxMachine&) = delete;
  LinuxMachine& operator=(const LinuxMachine&) = delete;

  Machine& Parts() { return machine_; }

  /// Writes what files are still to get and ends the process, and waits for no
  /// server. A regular end would wait for a name server that doesn't answer,
  /// unseen, and the next start would find another instance. Happens by itself when
  /// a copy or an archive goes on for a second after the loop's Quit.
  [[noreturn]] void EndProcess(int status);

 private:
  std::optional<LinuxHost> system_{std::in_place};
  QtHost desktop_;
  std::optional<CurlFtpTransport> ftp_;
  Machine machine_;
};

}  // namespace tarnvale
