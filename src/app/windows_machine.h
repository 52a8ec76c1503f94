// A Windows desktop as one machine.
#pragma once

#include <optional>

#include "hosts/windows/windows_desktop.h"
#include "hosts/windows/windows_ftp_transport.h"
#include "hosts/windows/windows_host.h"
#include "ui/machine.h"

namespace tarnvale {

/// One to a process.
class WindowsMachine {
 public:
  WindowsMachine();
  WindowsMachine(const WindowsMachine&) = delete;
  WindowsMachine& operator=(const WindowsMachine&) = delete;

  Machine& Parts() { return machine_; }

  /// Writes what files are still to get and ends the process, and waits for no server.
  /// Happens by itself when a copy or an archive goes on for a second after the loop's Quit,
  /// and when the user's session ends.
  [[noreturn]] void EndProcess(int status);

 private:
  // The dialogs' own: the system's parts may go first.
  const DrivePaths drives_;
  std::optional<WindowsHost> system_{std::in_place};
  WindowsDesktop desktop_;
  std::optional<WindowsFtpTransport> ftp_;
  Machine machine_;
};

}  // namespace tarnvale
