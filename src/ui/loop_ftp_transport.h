// What the FTP clients of all hosts share: the properties, the commands, and sessions in
// the event loop.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/ftp_transport.h"
#include "platform/transfer_files.h"
#include "ui/event_loop.h"
#include "ui/ftp_session.h"
#include "ui/timer.h"

namespace tarnvale {

/// A session lives until it is cancelled, closed, outdated or lost.
class LoopFtpTransport : public FtpTransport {
 public:
  LoopFtpTransport(const LoopFtpTransport&) = delete;
  LoopFtpTransport& operator=(const LoopFtpTransport&) = delete;
  ~LoopFtpTransport() override;

  void SetProtocol(TransferProtocol protocol) override;
  void SetRemoteHost(const std::string& host) override { host_ = host; }
  void SetUserName(const std::string& name) override { user_ = name; }
  void SetPassword(const std::string& password) override { password_ = password; }
  void SetRequestTimeout(std::int32_t seconds) override;

  void Cancel() override;
  void Execute(const std::string& command) override;
  bool IsBusy() const override { return busy_; }
  std::int32_t ResponseCode() const override { return response_code_; }

 protected:
  using MakeSession =
      std::function<std::shared_ptr<FtpSession>(FtpLogin login, FtpSession::Listener listener)>;

  /// What is given must outlive it.
  LoopFtpTransport(EventLoop& loop, TransferFiles& files, MakeSession make_session);

 private:
  FtpLogin LoginAt(FtpHost host) const;
  void StartSession(FtpLogin login);
  void DropSession();
  void Start(const FtpCommand& command);
  void Look();
  void OnState(TransportState state, std::int32_t code);

  TransferFiles& files_;
  const MakeSession make_session_;

  std::string host_;
  std::string user_;
  std::string password_;
  std::int32_t timeout_s_ = 0;

  bool busy_ = false;
  FtpVerb verb_ = FtpVerb::kList;
  std::int32_t response_code_ = kTransferNoError;
  std::shared_ptr<FtpSession> session_;
  Timer look_;
  std::vector<std::shared_ptr<FtpSession>> leaving_;  ///< whose threads may still run
};

}  // namespace tarnvale
