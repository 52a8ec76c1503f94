// The conversation with the server.
#include <utility>

#include "base/failure.h"
#include "platform/curl/curl_ftp_transport.h"

namespace tarnvale {
namespace {

// What an FTP reply's first digit means.
constexpr int kPreliminary = 1;
constexpr int kDone = 2;
constexpr int kMoreWanted = 3;
constexpr int kRefused = 5;

constexpr int kClosingConnection = 421;
constexpr int kPasswordWanted = 331;
constexpr int kExtendedPassiveEntered = 229;
constexpr int kPassiveEntered = 227;

}  // namespace

void CurlFtpTransport::Connect() {
  if (!FitsOneLine(login_.user)) {
    return Fail(kTransferWrongUserName, Afterwards::kDropConnection);
  }
  if (!FitsOneLine(login_.password)) {
    return Fail(kTransferWrongPassword, Afterwards::kDropConnection);
  }
  phase_ = Phase::kConnecting;
  trying_told_ = false;
  Tell(TransportState::kResolvingHost);
  if (!connector_.Begin(login_.address.host, login_.address.port, timeout_s_)) {
    Fail(kTransferNameNotResolved, Afterwards::kDropConnection);
  }
}

void CurlFtpTransport::OnConnectorMoved() {
  if (phase_ != Phase::kConnecting && phase_ != Phase::kDataConnecting) return;
  const bool for_session = phase_ == Phase::kConnecting;
  if (for_session && connector_.IsTrying() && !trying_told_) {
    trying_told_ = true;
    Tell(TransportState::kHostResolved);
    Tell(TransportState::kConnecting);
    silence_.Touch();
  }
  const auto ended = connector_.Ended();
  if (!ended) return;
  Connection socket = connector_.Take();
  connector_.Abandon();
  if (socket) {
    for_session ? OnConnected(std::move(socket)) : OnDataConnected(std::move(socket));
  } else {
    for_session ? Fail(*ended, Afterwards::kDropConnection) : OnNoDataConnection(*ended);
  }
}

void CurlFtpTransport::OnConnected(Connection socket) {
  Tell(TransportState::kConnected);
  silence_.Touch();
  const int fd = socket.Get();
  control_.emplace(std::move(socket));
  control_watch_ = watcher_.Watch(fd, [this](SocketReadiness ready) {
    OnControlReady(ready);
    DeliverTold();
  });
  extended_refused_ = false;
  session_login_ = login_;
  phase_ = Phase::kGreeting;
  WatchControl();
}

void CurlFtpTransport::OnControlReady(SocketReadiness ready) {
  if (phase_ == Phase::kResting) return;
  if (ready.writable) {
    FlushControl();
  } else {
    ReadControl();
  }
}

void CurlFtpTransport::WatchControl() {
  control_watch_->Want({.readable = true, .writable = control_->HasUnsent()});
}

void CurlFtpTransport::Send(const std::string& command, Phase next) {
  phase_ = next;
  silence_.Touch();
  Tell(TransportState::kRequesting);
  control_->Queue(command);
  FlushControl();
}

void CurlFtpTransport::FlushControl() {
  if (!control_->Flush()) return OnControlEnded();
  if (!control_->HasUnsent()) Tell(TransportState::kRequestSent);
  WatchControl();
}

void CurlFtpTransport::ReadControl() {
  const bool is_open = control_->Read();
  TakeReplies();
  if (!is_open && control_ && phase_ != Phase::kResting) OnControlEnded();
}

void CurlFtpTransport::TakeReplies() {
  while (control_ && phase_ != Phase::kResting) {
    const auto reply = control_->Replies().Next();
    if (!reply) break;
    TellReceiving();
    Tell(TransportState::kResponseReceived);
    OnReply(*reply);
  }
  if (!control_ || phase_ == Phase::kResting) return;
  if (control_->Replies().IsInside()) TellReceiving();
  if (control_->Replies().IsGarbage()) {
    Fail(kTransferRefusedByServer, Afterwards::kDropConnection);
  }
}

void CurlFtpTransport::OnControlEnded() {
  if (phase_ == Phase::kQuit) {
    Disconnect();
  } else if (phase_ == Phase::kTransfer && confirmed_) {
    // All that is missing is the rest of the data.
    CloseControl();
  } else {
    Fail(kTransferConnectionAborted, Afterwards::kDropConnection);
  }
}

void CurlFtpTransport::OnReply(const FtpReply& reply) {
  if (reply.code == kClosingConnection && phase_ != Phase::kQuit) {
    return Fail(kTransferConnectionAborted, Afterwards::kDropConnection);
  }
  switch (phase_) {
    case Phase::kGreeting:
      return OnGreeting(reply);
    case Phase::kUser:
      return OnUser(reply);
    case Phase::kPassword:
      return OnPassword(reply);
    case Phase::kType:
      return OnType(reply);
    case Phase::kExtendedPassive:
      return OnExtendedPassive(reply);
    case Phase::kPassive:
      return OnPassive(reply);
    case Phase::kAnswer:
      return OnAnswer(reply);
    case Phase::kTransfer:
      return OnTransferReply(reply);
    case Phase::kQuit:
      return Disconnect();
    default:
      // Nothing was asked: which reply belongs to what isn't certain any more.
      return Fail(kTransferRefusedByServer, Afterwards::kDropConnection);
  }
}

void CurlFtpTransport::OnGreeting(const FtpReply& reply) {
  // "Ready in a moment": the greeting is still to come.
  if (reply.Class() == kPreliminary) return;
  if (reply.Class() != kDone) {
    return Fail(kTransferRefusedByServer, Afterwards::kDropConnection);
  }
  Send("USER " + login_.user, Phase::kUser);
}

void CurlFtpTransport::OnUser(const FtpReply& reply) {
  if (reply.Class() == kDone) return LogIn();
  if (reply.code == kPasswordWanted) return Send("PASS " + login_.password, Phase::kPassword);
  Fail(reply.Class() == kRefused ? kTransferWrongUserName : kTransferRefusedByServer,
       Afterwards::kDropConnection);
}

void CurlFtpTransport::OnPassword(const FtpReply& reply) {
  if (reply.Class() == kDone) return LogIn();
  Fail(reply.Class() == kRefused ? kTransferWrongPassword : kTransferRefusedByServer,
       Afterwards::kDropConnection);
}

void CurlFtpTransport::LogIn() {
  Send("TYPE I", Phase::kType);
}

void CurlFtpTransport::OnType(const FtpReply& reply) {
  if (reply.Class() == kDone) return AskForData();
  Fail(kTransferRefusedByServer, Afterwards::kDropConnection);
}

void CurlFtpTransport::Disconnect() {
  Tell(TransportState::kDisconnecting);
  CloseControl();
  Tell(TransportState::kDisconnected);
  Succeed();
}

void CurlFtpTransport::AskForData() {
  if (extended_refused_) return AskForPassive();
  Send("EPSV", Phase::kExtendedPassive);
}

// The older command can't name an IPv6 address.
void CurlFtpTransport::AskForPassive() {
  if (control_->Line().PeerIsIpv6()) {
    return Fail(kTransferRefusedByServer, Afterwards::kKeepConnection);
  }
  extended_refused_ = true;
  Send("PASV", Phase::kPassive);
}

void CurlFtpTransport::OnExtendedPassive(const FtpReply& reply) {
  const auto port = PortOfExtendedPassive(reply);
  if (reply.code == kExtendedPassiveEntered && port) return ConnectData(*port);
  AskForPassive();
}

void CurlFtpTransport::OnPassive(const FtpReply& reply) {
  const auto port = PortOfPassive(reply);
  if (reply.code == kPassiveEntered && port) return ConnectData(*port);
  Fail(kTransferRefusedByServer, Afterwards::kKeepConnection);
}

void CurlFtpTransport::ConnectData(int port) {
  phase_ = Phase::kDataConnecting;
  if (!connector_.Begin(control_->Line().PeerAddress(), port, timeout_s_)) {
    Fail(kTransferConnectionAborted, Afterwards::kDropConnection);
  }
}

void CurlFtpTransport::OnNoDataConnection(std::int32_t code) {
  // Chosen: some gateways know the older command only.
  if (!extended_refused_ && !control_->Line().PeerIsIpv6()) return AskForPassive();
  Fail(code, Afterwards::kKeepConnection);
}

void CurlFtpTransport::OnDataConnected(Connection socket) {
  data_->Connect(std::move(socket));
  Send(TransferCommand(), Phase::kAnswer);
}

std::string CurlFtpTransport::TransferCommand() const {
  switch (command_.verb) {
    case FtpVerb::kUpload:
      return "STOR " + command_.remote;
    case FtpVerb::kDownload:
      return "RETR " + command_.remote;
    default:
      return "LIST";
  }
}

void CurlFtpTransport::OnAnswer(const FtpReply& reply) {
  // A server that takes no data can't have got them.
  const bool done_at_once = reply.Class() == kDone && command_.verb != FtpVerb::kUpload;
  if (reply.Class() != kPreliminary && !done_at_once) {
    return Fail(kTransferRefusedByServer, Afterwards::kKeepConnection);
  }
  confirmed_ = done_at_once;
  BeginTransfer();
}

void CurlFtpTransport::BeginTransfer() {
  phase_ = Phase::kTransfer;
  silence_.Touch();
  data_watch_ = watcher_.Watch(data_->Line().Get(), [this](SocketReadiness) {
    OnDataReady();
    DeliverTold();
  });
  data_watch_->Want(data_->Wants());
}

void CurlFtpTransport::OnDataReady() {
  if (phase_ != Phase::kTransfer) return;
  if (!std::exchange(data_began_, true)) {
    // What is sent belongs to the request, what is received to the response.
    command_.verb == FtpVerb::kUpload ? Tell(TransportState::kRequesting) : TellReceiving();
  }
  try {
    PumpData();
  } catch (const ProgramError& error) {
    FailLocally(error, Afterwards::kDropConnection);
  }
}

void CurlFtpTransport::PumpData() {
  const DataChannel::Outcome outcome = data_->Pump();
  if (outcome == DataChannel::Outcome::kGoesOn) return;
  data_watch_.reset();
  if (outcome == DataChannel::Outcome::kEnded) {
    data_ended_ = true;
    data_->EndConnection();
    if (command_.verb == FtpVerb::kUpload) Tell(TransportState::kRequestSent);
    return FinishTransfer();
  }
  if (confirmed_) return Fail(kTransferConnectionAborted, Afterwards::kKeepConnection);
  // The server may still say why.
  data_broke_ = true;
  data_->Abort();
}

void CurlFtpTransport::OnTransferReply(const FtpReply& reply) {
  if (reply.Class() == kPreliminary) return;
  if (reply.Class() == kMoreWanted || reply.Class() > kMoreWanted) {
    return Fail(kTransferRefusedByServer, Afterwards::kKeepConnection);
  }
  const bool cut_short = data_broke_ || (command_.verb == FtpVerb::kUpload && !data_ended_);
  if (cut_short) return Fail(kTransferConnectionAborted, Afterwards::kKeepConnection);
  confirmed_ = true;
  FinishTransfer();
}

void CurlFtpTransport::FinishTransfer() {
  if (!data_ended_ || !confirmed_) return;
  try {
    data_->Commit();
  } catch (const ProgramError& error) {
    return FailLocally(error, Afterwards::kKeepConnection);
  }
  Succeed();
}

}  // namespace tarnvale
