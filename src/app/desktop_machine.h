// A Linux desktop as one machine.
#pragma once

#include "platform/curl/curl_ftp_transport.h"
#include "platform/linux/linux_host.h"
#include "platform/linux/linux_sockets.h"
#include "platform/linux/paths.h"
#include "platform/machine.h"
#include "platform/qt/qt_host.h"

namespace tarnvale {

/// Drive C: is the root of the file system. One to a process.
class DesktopMachine {
 public:
  /// `argc` and `argv` are main's.
  DesktopMachine(int& argc, char** argv);
  DesktopMachine(const DesktopMachine&) = delete;
  DesktopMachine& operator=(const DesktopMachine&) = delete;

  Machine& Parts() { return machine_; }
  /// Between the program's paths and the system's.
  const DrivePaths& Drive() const { return drive_; }

 private:
  const DrivePaths drive_{"/"};
  LinuxHost system_;
  QtHost desktop_;
  LinuxSockets sockets_;
  CurlFtpTransport ftp_;
  Machine machine_;
};

}  // namespace tarnvale
