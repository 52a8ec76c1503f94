// The FTP client of desktop hosts.
#pragma once

#include "hosts/curl/curl_ftp_session.h"
#include "ui/loop_ftp_transport.h"

namespace tarnvale {

/// Passive transfers in binary mode by libcurl, encrypted where the server offers it.
class CurlFtpTransport final : public LoopFtpTransport {
 public:
  /// What is given must outlive it; the loop takes posts from any thread.
  CurlFtpTransport(EventLoop& loop, TransferFiles& files, const FtpPatience& patience = {});
};

}  // namespace tarnvale
