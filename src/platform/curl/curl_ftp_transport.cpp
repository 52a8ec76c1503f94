// The request: how it starts and ends, and what is told of it.
#include "platform/curl/curl_ftp_transport.h"

#include <utility>

#include "base/failure.h"

namespace tarnvale {
namespace {

constexpr const char* kSource = "FtpTransport";
constexpr const char* kAnonymousUser = "anonymous";
constexpr const char* kAnonymousPassword = "anonymous@";

std::int32_t CodeOfLocal(int number, FtpVerb verb) {
  switch (number) {
    case kFileNotFound:
      return kTransferFileNotFound;
    case kPathNotFound:
      return kTransferPathNotFound;
    case kPermissionDenied:
    case kPathFileAccess:
      return kTransferAccessDenied;
    case kDiskFull:
      return kTransferDiskFull;
    default:
      return verb == FtpVerb::kUpload ? kTransferReadFault : kTransferWriteFault;
  }
}

}  // namespace

CurlFtpTransport::CurlFtpTransport(EventLoop& loop, SocketWatcher& watcher, TransferFiles& files)
    : loop_(loop),
      watcher_(watcher),
      files_(files),
      start_(watcher.NewAlarm([this] {
        Start();
        DeliverTold();
      })),
      silence_(
          watcher, [this] { return data_ && data_->Moved(); },
          [this] {
            Fail(kTransferTimeOut, Afterwards::kDropConnection);
            DeliverTold();
          }),
      connector_(watcher, [this] {
        OnConnectorMoved();
        DeliverTold();
      }) {}

CurlFtpTransport::~CurlFtpTransport() {
  Cancel();
}

void CurlFtpTransport::SetProtocol(TransferProtocol protocol) {
  if (protocol != TransferProtocol::kFtp) throw ProgramError(kInvalidPropertyValue);
}

void CurlFtpTransport::SetRequestTimeout(std::int32_t seconds) {
  if (seconds < 0) throw ProgramError(kInvalidPropertyValue);
  timeout_s_ = seconds;
}

void CurlFtpTransport::Cancel() {
  start_->Clear();
  told_.clear();
  Rest();
  CloseControl();
  busy_ = false;
}

void CurlFtpTransport::Execute(const std::string& command) {
  if (busy_) throw ProgramError(kStillExecuting, kSource, "Still executing last request");
  auto parsed = ParseFtpCommand(command);
  const auto address = ParseHostAddress(host_);
  if (!parsed || !address || !Connector::IsHost(address->host, address->port)) {
    throw ProgramError(kMalformedCommand, kSource, "Malformed request");
  }
  command_ = std::move(*parsed);
  login_ = LoginFor(*address);
  response_code_ = kTransferNoError;
  busy_ = true;
  start_->Set(std::chrono::milliseconds(0));
}

CurlFtpTransport::Login CurlFtpTransport::LoginFor(const HostAddress& address) const {
  if (!user_.empty()) return {address, user_, password_};
  return {address, kAnonymousUser, password_.empty() ? kAnonymousPassword : password_};
}

void CurlFtpTransport::Start() {
  silence_.Begin(timeout_s_);
  const bool outdated = control_ && (session_login_ != login_ || control_->IsStale());
  if (outdated) CloseControl();
  if (command_.verb == FtpVerb::kClose) {
    if (!control_) return Succeed();
    return Send("QUIT", Phase::kQuit);
  }
  try {
    OpenLocalFile();
  } catch (const ProgramError& error) {
    return FailLocally(error, Afterwards::kKeepConnection);
  }
  if (control_) {
    AskForData();
  } else {
    Connect();
  }
}

void CurlFtpTransport::OpenLocalFile() {
  data_began_ = data_ended_ = data_broke_ = confirmed_ = false;
  switch (command_.verb) {
    case FtpVerb::kUpload:
      data_ = MakeUpload(files_.OpenSource(command_.local));
      break;
    case FtpVerb::kDownload:
      data_ = MakeDownload(files_.OpenTarget(command_.local));
      break;
    default:
      data_ = MakeListing();
      break;
  }
}

void CurlFtpTransport::Succeed() {
  Rest();
  Tell(TransportState::kResponseCompleted);
}

void CurlFtpTransport::Fail(std::int32_t code, Afterwards afterwards) {
  Rest();
  if (afterwards == Afterwards::kDropConnection) CloseControl();
  Tell(TransportState::kError, code);
}

void CurlFtpTransport::FailLocally(const ProgramError& error, Afterwards afterwards) {
  Fail(CodeOfLocal(error.Number(), command_.verb), afterwards);
}

// Ends whatever the request has open but the control connection.
void CurlFtpTransport::Rest() {
  silence_.Stop();
  connector_.Abandon();
  data_watch_.reset();
  // Regularly closed, an upload that broke off would look whole.
  if (data_ && !data_ended_) data_->Abort();
  data_.reset();
  if (control_watch_) control_watch_->Want({});
  phase_ = Phase::kResting;
}

void CurlFtpTransport::Tell(TransportState state, std::int32_t code) {
  told_.push_back({state, code});
  last_queued_ = state;
}

void CurlFtpTransport::TellReceiving() {
  if (last_queued_ != TransportState::kReceivingResponse) {
    Tell(TransportState::kReceivingResponse);
  }
}

// Tells what has been queued. The last thing that a handler does: a listener may
// cancel, execute, or wait in a loop of its own, in which this runs again.
void CurlFtpTransport::DeliverTold() {
  while (!told_.empty()) {
    const Told told = told_.front();
    told_.pop_front();
    if (told.state == TransportState::kError) response_code_ = told.code;
    if (told.state == TransportState::kError || told.state == TransportState::kResponseCompleted) {
      busy_ = false;
    }
    loop_.Deliver([&] { StateChanged.Emit(told.state); });
  }
}

void CurlFtpTransport::CloseControl() {
  control_watch_.reset();
  control_.reset();
}

}  // namespace tarnvale
