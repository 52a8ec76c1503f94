// The FTP client of desktop hosts.
#pragma once

#include <deque>
#include <memory>
#include <optional>
#include <string>

#include "platform/curl/connector.h"
#include "platform/curl/control_channel.h"
#include "platform/curl/data_channel.h"
#include "platform/curl/host_address.h"
#include "platform/curl/silence_limit.h"
#include "platform/event_loop.h"
#include "platform/ftp_command.h"
#include "platform/ftp_transport.h"
#include "platform/socket_watch.h"
#include "platform/transfer_files.h"

namespace tarnvale {

/// Passive transfers in binary mode over plain connections. All of it happens in
/// handlers of the event loop, and none of them waits. Handlers queue the
/// states that they bring about and tell them at their end, so whatever a
/// listener does finds the client at rest.
class CurlFtpTransport final : public FtpTransport {
 public:
  /// What is given must outlive it. It must not be destroyed in a handler of its
  /// own states.
  CurlFtpTransport(EventLoop& loop, SocketWatcher& watcher, TransferFiles& files);
  CurlFtpTransport(const CurlFtpTransport&) = delete;
  CurlFtpTransport& operator=(const CurlFtpTransport&) = delete;
  ~CurlFtpTransport() override;

  void SetProtocol(TransferProtocol protocol) override;
  /// A port may stand behind the host, after a colon.
  void SetRemoteHost(const std::string& host) override { host_ = host; }
  /// Without a name the login is anonymous.
  void SetUserName(const std::string& name) override { user_ = name; }
  void SetPassword(const std::string& password) override { password_ = password; }
  /// 0: no limit. Raises 380 for less.
  void SetRequestTimeout(std::int32_t seconds) override;

  void Cancel() override;
  void Execute(const std::string& command) override;
  bool IsBusy() const override { return busy_; }
  std::int32_t ResponseCode() const override { return response_code_; }

 private:
  /// What the request waits for.
  enum class Phase {
    kResting,
    kConnecting,
    kGreeting,
    kUser,
    kPassword,
    kType,
    kExtendedPassive,
    kPassive,
    kDataConnecting,
    kAnswer,    ///< the server's first word on the transfer
    kTransfer,  ///< data, and its last word
    kQuit,
  };
  enum class Afterwards { kKeepConnection, kDropConnection };

  struct Login {
    HostAddress address;
    std::string user;
    std::string password;

    bool operator==(const Login&) const = default;
  };
  struct Told {
    TransportState state;
    std::int32_t code;
  };

  // The request.
  Login LoginFor(const HostAddress& address) const;
  void Start();
  void OpenLocalFile();
  void Succeed();
  void Fail(std::int32_t code, Afterwards afterwards);
  void FailLocally(const ProgramError& error, Afterwards afterwards);
  void Rest();
  void Tell(TransportState state, std::int32_t code = kTransferNoError);
  void TellReceiving();
  void DeliverTold();
  void CloseControl();

  // The session.
  void Connect();
  void OnConnectorMoved();
  void OnConnected(Connection socket);
  void OnControlReady(SocketReadiness ready);
  void FlushControl();
  void ReadControl();
  void TakeReplies();
  void WatchControl();
  void OnControlEnded();
  void Send(const std::string& command, Phase next);
  void OnReply(const FtpReply& reply);
  void OnGreeting(const FtpReply& reply);
  void OnUser(const FtpReply& reply);
  void OnPassword(const FtpReply& reply);
  void LogIn();
  void OnType(const FtpReply& reply);
  void Disconnect();

  // The transfer.
  void AskForData();
  void AskForPassive();
  void OnExtendedPassive(const FtpReply& reply);
  void OnPassive(const FtpReply& reply);
  void ConnectData(int port);
  void OnDataConnected(Connection socket);
  void OnNoDataConnection(std::int32_t code);
  std::string TransferCommand() const;
  void OnAnswer(const FtpReply& reply);
  void BeginTransfer();
  void OnDataReady();
  void PumpData();
  void OnTransferReply(const FtpReply& reply);
  void FinishTransfer();

  EventLoop& loop_;
  SocketWatcher& watcher_;
  TransferFiles& files_;

  // What was set.
  std::string host_;
  std::string user_;
  std::string password_;
  std::int32_t timeout_s_ = 0;

  // The request that runs.
  bool busy_ = false;
  FtpCommand command_;
  Login login_;
  Phase phase_ = Phase::kResting;
  std::deque<Told> told_;
  TransportState last_queued_ = TransportState::kResponseCompleted;
  std::int32_t response_code_ = kTransferNoError;
  std::unique_ptr<Alarm> start_;
  SilenceLimit silence_;

  // The session. Watches stand behind what they watch, so they go first.
  Connector connector_;
  bool trying_told_ = false;
  std::optional<ControlChannel> control_;
  std::unique_ptr<SocketWatch> control_watch_;
  Login session_login_;
  bool extended_refused_ = false;

  // The transfer.
  std::unique_ptr<DataChannel> data_;
  std::unique_ptr<SocketWatch> data_watch_;
  bool data_began_ = false;
  bool data_ended_ = false;
  bool data_broke_ = false;
  bool confirmed_ = false;
};

}  // namespace tarnvale
