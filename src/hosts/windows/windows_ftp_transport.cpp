#include "hosts/windows/windows_ftp_transport.h"

#include <utility>

#include "hosts/windows/inet_ftp_session.h"

namespace tarnvale {

WindowsFtpTransport::WindowsFtpTransport(EventLoop& loop, TransferFiles& files,
                                         const FtpPatience& patience)
    : LoopFtpTransport(loop, files,
                       [&loop, patience](FtpLogin login, FtpSession::Listener listener) {
                         return std::make_shared<InetFtpSession>(loop, std::move(login), patience,
                                                                 std::move(listener));
                       }) {}

}  // namespace tarnvale
