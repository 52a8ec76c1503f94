// The FTP client of desktop hosts.
#pragma once

#include <future>
#include <memory>
#include <string>
#include <vector>

#include "hosts/curl/ftp_session.h"
#include "platform/ftp_transport.h"
#include "platform/transfer_files.h"
#include "ui/event_loop.h"
#include "ui/timer.h"

namespace tarnvale {

/// Passive transfers in binary mode by libcurl, encrypted where the server offers
/// it. A session lives until it is cancelled, closed, outdated or lost.
class CurlFtpTransport final : public FtpTransport {
 public:
  /// What is given must outlive it; the loop takes posts from any thread.
  CurlFtpTransport(EventLoop& loop, TransferFiles& files, FtpPatience patience = {});
  CurlFtpTransport(const CurlFtpTransport&) = delete;
  CurlFtpTransport& operator=(const CurlFtpTransport&) = delete;
  ~CurlFtpTransport() override;

  void SetProtocol(TransferProtocol protocol) override;
  void SetRemoteHost(const std::string& host) override { host_ = host; }
  void SetUserName(const std::string& name) override { user_ = name; }
  void SetPassword(const std::string& password) override { password_ = password; }
  void SetRequestTimeout(std::int32_t seconds) override;

  void Cancel() override;
  void Execute(const std::string& command) override;
  bool IsBusy() const override { return busy_; }
  std::int32_t ResponseCode() const override { return response_code_; }

 private:
  FtpLogin LoginAt(std::string server) const;
  void StartSession(FtpLogin login);
  void DropSession();
  void Start(const FtpCommand& command);
  void Look();
  void OnTold(TransportState state, std::int32_t code);

  EventLoop& loop_;
  TransferFiles& files_;
  const FtpPatience patience_;

  std::string host_;
  std::string user_;
  std::string password_;
  std::int32_t timeout_s_ = 0;

  bool busy_ = false;
  FtpVerb verb_ = FtpVerb::kList;
  std::int32_t response_code_ = kTransferNoError;
  std::shared_ptr<FtpSession> session_;
  Timer look_;
  std::vector<std::future<void>> leaving_;  ///< threads of dropped sessions
};

}  // namespace tarnvale
