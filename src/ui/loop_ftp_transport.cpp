#include "ui/loop_ftp_transport.h"

#include <chrono>
#include <optional>
#include <utility>

#include "base/failure.h"
#include "base/text.h"

namespace tarnvale {
namespace {

constexpr const char* kSource = "FtpTransport";
constexpr const char* kAnonymousUser = "anonymous";
constexpr const char* kAnonymousPassword = "anonymous@";
constexpr int kLookMs = 100;
// A dropped session is gone at once, unless the system holds it up.
constexpr std::chrono::milliseconds kFarewell{300};

bool IsEnd(TransportState state) {
  return state == TransportState::kError || state == TransportState::kResponseCompleted;
}

}  // namespace

LoopFtpTransport::LoopFtpTransport(EventLoop& loop, TransferFiles& files, MakeSession make_session)
    : files_(files), make_session_(std::move(make_session)), look_(loop.Timers(), kLookMs, false) {
  look_.Tick.Listen([this] { Look(); });
}

LoopFtpTransport::~LoopFtpTransport() {
  LoopFtpTransport::Cancel();
  for (const auto& session : leaving_) session->WaitForEnd(kFarewell / leaving_.size());
}

void LoopFtpTransport::SetProtocol(TransferProtocol protocol) {
  if (protocol != TransferProtocol::kFtp) throw ProgramError(kInvalidPropertyValue);
}

void LoopFtpTransport::SetRequestTimeout(std::int32_t seconds) {
  if (seconds < 0) throw ProgramError(kInvalidPropertyValue);
  timeout_s_ = seconds;
}

void LoopFtpTransport::Cancel() {
  DropSession();
  busy_ = false;
}

void LoopFtpTransport::Execute(const std::string& command) {
  if (busy_) throw ProgramError(kStillExecuting, kSource, "Still executing last request");
  const auto parsed = ParseFtpCommand(command);
  auto host = ParseFtpHost(host_);
  if (!parsed || !host) throw ProgramError(kMalformedCommand, kSource, "Malformed request");
  FtpLogin login = LoginAt(std::move(*host));
  if (session_ && session_->Login() != login) DropSession();
  if (!session_) StartSession(std::move(login));
  verb_ = parsed->verb;
  response_code_ = kTransferNoError;
  busy_ = true;
  Start(*parsed);
}

FtpLogin LoopFtpTransport::LoginAt(FtpHost host) const {
  if (!user_.empty()) return {std::move(host), user_, password_};
  return {std::move(host), kAnonymousUser, password_.empty() ? kAnonymousPassword : password_};
}

void LoopFtpTransport::StartSession(FtpLogin login) {
  session_ = make_session_(
      std::move(login), [this](TransportState state, std::int32_t code) { OnState(state, code); });
}

void LoopFtpTransport::DropSession() {
  look_.Enabled = false;
  if (!session_) return;
  std::erase_if(leaving_, [](const auto& session) {
    return session->WaitForEnd(std::chrono::milliseconds(0));
  });
  session_->Drop();
  leaving_.push_back(std::move(session_));
}

// What can't be started is reported like everything that goes wrong later.
void LoopFtpTransport::Start(const FtpCommand& command) {
  const FtpLogin& login = session_->Login();
  const auto fail = [this](std::int32_t code) { session_->Report(TransportState::kError, code); };
  if (!FitsOneLine(login.user)) return fail(kTransferWrongUserName);
  if (!FitsOneLine(login.password)) return fail(kTransferWrongPassword);
  FtpRequest request{.verb = command.verb, .remote = command.remote, .silence_s = timeout_s_};
  try {
    if (verb_ == FtpVerb::kUpload) request.source = files_.OpenSource(command.local);
    if (verb_ == FtpVerb::kDownload) request.target = files_.OpenTarget(command.local);
  } catch (const ProgramError& error) {
    return fail(TransferErrorOf(error, verb_));
  }
  look_.Enabled = true;
  session_->Begin(std::move(request));
}

void LoopFtpTransport::Look() {
  if (session_->IsAlive()) return;
  FtpLogin login = session_->Login();
  DropSession();
  StartSession(std::move(login));
  session_->Report(TransportState::kError, kTransferTimeOut);
}

void LoopFtpTransport::OnState(TransportState state, std::int32_t code) {
  if (IsEnd(state)) {
    look_.Enabled = false;
    try {
      session_->CloseFile(state == TransportState::kResponseCompleted);
    } catch (const ProgramError& error) {
      state = TransportState::kError;
      code = TransferErrorOf(error, verb_);
    }
    if (verb_ == FtpVerb::kClose || code == kTransferConnectionAborted) DropSession();
    if (state == TransportState::kError) response_code_ = code;
    busy_ = false;
  }
  StateChanged.Emit(state);
}

}  // namespace tarnvale
