// The FTP client on WinINet.
#pragma once

#include "platform/ftp_watch.h"
#include "ui/loop_ftp_transport.h"

namespace tarnvale {

/// Passive transfers in binary mode.
class WindowsFtpTransport final : public LoopFtpTransport {
 public:
  /// What is given must outlive it; the loop takes posts from any thread.
  WindowsFtpTransport(EventLoop& loop, TransferFiles& files, const FtpPatience& patience = {});
};

}  // namespace tarnvale
