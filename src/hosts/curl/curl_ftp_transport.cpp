#include "hosts/curl/curl_ftp_transport.h"

#include <utility>

namespace tarnvale {

CurlFtpTransport::CurlFtpTransport(EventLoop& loop, TransferFiles& files,
                                   const FtpPatience& patience)
    : LoopFtpTransport(loop, files,
                       [&loop, patience](FtpLogin login, FtpSession::Listener listener) {
                         return std::make_shared<CurlFtpSession>(loop, std::move(login), patience,
                                                                 std::move(listener));
                       }) {
  static const CURLcode ready = curl_global_init(CURL_GLOBAL_DEFAULT);
  static_cast<void>(ready);
}

}  // namespace tarnvale
