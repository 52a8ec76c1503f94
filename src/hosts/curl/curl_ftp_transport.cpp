#include "hosts/curl/curl_ftp_transport.h"

#include <algorithm>
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

constexpr const char* kBlanks = " \t\r\n";

// None for what can't be a host with or without a port, whether there is such a
// host or not.
std::optional<std::string> ServerUrl(const std::string& text) {
  const auto first = text.find_first_not_of(kBlanks);
  if (first == std::string::npos) return std::nullopt;
  std::string host = text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
  if (host.find_first_of(" \t\r\n/\\@?#\"") != std::string::npos) return std::nullopt;
  const bool is_bare_ipv6 = host.front() != '[' && std::count(host.begin(), host.end(), ':') > 1;
  if (is_bare_ipv6) host = "[" + host + "]";
  const std::unique_ptr<CURLU, void (*)(CURLU*)> url(curl_url(), &curl_url_cleanup);
  const std::string server = "ftp://" + host;
  if (curl_url_set(url.get(), CURLUPART_URL, server.c_str(), 0) != CURLUE_OK) return std::nullopt;
  return server;
}

bool IsEnd(TransportState state) {
  return state == TransportState::kError || state == TransportState::kResponseCompleted;
}

}  // namespace

CurlFtpTransport::CurlFtpTransport(EventLoop& loop, TransferFiles& files, FtpPatience patience)
    : loop_(loop), files_(files), patience_(patience), look_(loop.Timers(), kLookMs, false) {
  static const CURLcode ready = curl_global_init(CURL_GLOBAL_DEFAULT);
  static_cast<void>(ready);
  look_.Tick.Listen([this] { Look(); });
}

CurlFtpTransport::~CurlFtpTransport() {
  Cancel();
  const auto limit = std::chrono::steady_clock::now() + kFarewell;
  for (const std::future<void>& thread : leaving_) thread.wait_until(limit);
}

void CurlFtpTransport::SetProtocol(TransferProtocol protocol) {
  if (protocol != TransferProtocol::kFtp) throw ProgramError(kInvalidPropertyValue);
}

void CurlFtpTransport::SetRequestTimeout(std::int32_t seconds) {
  if (seconds < 0) throw ProgramError(kInvalidPropertyValue);
  timeout_s_ = seconds;
}

void CurlFtpTransport::Cancel() {
  DropSession();
  busy_ = false;
}

void CurlFtpTransport::Execute(const std::string& command) {
  if (busy_) throw ProgramError(kStillExecuting, kSource, "Still executing last request");
  const auto parsed = ParseFtpCommand(command);
  auto server = ServerUrl(host_);
  if (!parsed || !server) throw ProgramError(kMalformedCommand, kSource, "Malformed request");
  FtpLogin login = LoginAt(std::move(*server));
  if (session_ && session_->Login() != login) DropSession();
  if (!session_) StartSession(std::move(login));
  verb_ = parsed->verb;
  response_code_ = kTransferNoError;
  busy_ = true;
  Start(*parsed);
}

FtpLogin CurlFtpTransport::LoginAt(std::string server) const {
  if (!user_.empty()) return {std::move(server), user_, password_};
  return {std::move(server), kAnonymousUser, password_.empty() ? kAnonymousPassword : password_};
}

void CurlFtpTransport::StartSession(FtpLogin login) {
  session_ = std::make_shared<FtpSession>(
      loop_, std::move(login), patience_,
      [this](TransportState state, std::int32_t code) { OnTold(state, code); });
}

void CurlFtpTransport::DropSession() {
  look_.Enabled = false;
  if (!session_) return;
  std::erase_if(leaving_, [](const std::future<void>& thread) {
    return thread.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
  });
  std::future<void> thread = session_->Drop();
  if (thread.valid()) leaving_.push_back(std::move(thread));
  session_.reset();
}

// What can't be started is reported like everything that goes wrong later.
void CurlFtpTransport::Start(const FtpCommand& command) {
  const FtpLogin& login = session_->Login();
  const auto fail = [this](std::int32_t code) { session_->Tell(TransportState::kError, code); };
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

void CurlFtpTransport::Look() {
  if (session_->IsAlive()) return;
  FtpLogin login = session_->Login();
  DropSession();
  StartSession(std::move(login));
  session_->Tell(TransportState::kError, kTransferTimeOut);
}

void CurlFtpTransport::OnTold(TransportState state, std::int32_t code) {
  if (IsEnd(state)) {
    look_.Enabled = false;
    try {
      session_->CloseFile(state == TransportState::kResponseCompleted);
    } catch (const ProgramError& error) {
      state = TransportState::kError;
      code = TransferErrorOf(error, verb_);
    }
    if (verb_ == FtpVerb::kClose) DropSession();
    if (state == TransportState::kError) response_code_ = code;
    busy_ = false;
  }
  StateChanged.Emit(state);
}

}  // namespace tarnvale
