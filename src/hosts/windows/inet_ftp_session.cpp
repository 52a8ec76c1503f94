#include "hosts/windows/inet_ftp_session.h"

#include <wininet.h>

#include <algorithm>
#include <array>
#include <map>
#include <mutex>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "hosts/windows/windows_clock.h"

// A macro of the system's that has a name of ours.
#undef FtpCommand

namespace tarnvale {
namespace {

// WinINet fills what it reads into: so much must come within the longest silence.
constexpr std::size_t kBufferBytes = 16384;
// How long a call may go on in a connection that is given up before its handle is taken from it.
constexpr std::chrono::milliseconds kGrace{500};
// A login is left to itself for longer: Wine's WinINet, which takes 60 s to give up a server
// that says nothing, frees its session twice when it loses the handle meanwhile.
constexpr std::chrono::seconds kLoginGrace{90};

std::chrono::nanoseconds Now() {
  return WindowsClock().Uptime();
}

/// The sessions that WinINet may report to, by their numbers.
class Sessions {
 public:
  DWORD_PTR Add(InetFtpSession* session) {
    const std::lock_guard lock(lock_);
    known_[++last_] = session;
    return last_;
  }
  void Remove(DWORD_PTR number) {
    const std::lock_guard lock(lock_);
    known_.erase(number);
  }
  std::shared_ptr<InetFtpSession> Find(DWORD_PTR number) {
    const std::lock_guard lock(lock_);
    const auto found = known_.find(number);
    return found != known_.end() ? found->second->weak_from_this().lock() : nullptr;
  }

 private:
  CriticalSection lock_;
  DWORD_PTR last_ = 0;
  std::map<DWORD_PTR, InetFtpSession*> known_;
};

// Threads that were left to themselves may outlast the program's own objects.
Sessions& AllSessions() {
  static auto& sessions = *new Sessions;
  return sessions;
}

void CALLBACK OnInetStatus(HINTERNET, DWORD_PTR number, DWORD status, void* information,
                           DWORD length) noexcept {
  const bool is_count = information != nullptr && length == sizeof(DWORD);
  if (const auto session = AllSessions().Find(number)) {
    session->OnStatus(status, is_count ? *static_cast<const DWORD*>(information) : 0);
  }
}

/// The server's last words to this thread.
std::string LastReply() {
  std::array<char, 4096> text{};
  DWORD error = 0;
  DWORD length = text.size() - 1;
  if (::InternetGetLastResponseInfoA(&error, text.data(), &length) == 0) return {};
  const std::string_view said(text.data());
  // Of several lines the last one.
  const auto end = said.find_last_not_of("\r\n");
  const auto begin = said.find_last_of('\n', end);
  return std::string(said.substr(begin == std::string_view::npos ? 0 : begin + 1));
}

// A reply that refuses nothing is that to the command before: the connection broke.
std::int32_t RefusalOf(const std::string& reply) {
  const bool is_older = reply.starts_with('2') || reply.starts_with('3');
  return is_older ? kTransferConnectionAborted : kTransferRefusedByServer;
}

}  // namespace

InetFtpSession::InetFtpSession(EventLoop& loop, FtpLogin login, const FtpPatience& patience,
                               Listener listener)
    : FtpSession(std::move(login), std::move(listener)),
      loop_(loop),
      number_(AllSessions().Add(this)),
      changed_(::CreateEventW(nullptr, FALSE, FALSE, nullptr)),
      watch_(patience),
      listing_bytes_(patience.listing_bytes) {}

InetFtpSession::~InetFtpSession() {
  AllSessions().Remove(number_);
}

void InetFtpSession::Begin(FtpRequest request) {
  const std::lock_guard lock(lock_);
  if (!thread_) thread_ = StartThread([self = shared_from_this()] { self->Work(); });
  if (!thread_) return Post(TransportState::kError, kTransferCannotConnect);
  request_ = std::move(request);
  bytes_ = 0;
  watch_.Begin(request_.verb, request_.silence_s, Now());
  running_ = true;
  ::SetEvent(changed_.Get());
}

void InetFtpSession::Report(TransportState state, std::int32_t code) {
  const std::lock_guard lock(lock_);
  Post(state, code);
}

bool InetFtpSession::IsAlive() {
  const std::lock_guard lock(lock_);
  const bool lists_too_much = request_.verb == FtpVerb::kList && bytes_ > listing_bytes_;
  return !lists_too_much && watch_.IsAlive(bytes_, Now());
}

void InetFtpSession::CloseFile(bool whole) {
  const std::lock_guard lock(lock_);
  const auto source = std::move(request_.source);
  const auto target = std::move(request_.target);
  if (whole && target) target->Commit();
}

void InetFtpSession::Drop() {
  // Closed when the lock is free again, as that may take long.
  FtpRequest request;
  const std::lock_guard lock(lock_);
  dropped_ = true;
  request = std::exchange(request_, {});
  ::SetEvent(changed_.Get());
  if (inet_ == nullptr) return;
  StartThread([self = shared_from_this()] { self->BreakOff(); });
}

// The thread closes the handle as soon as its call returns; only a call that waits for the
// server has it closed beneath it. That may wait for the server, too.
void InetFtpSession::BreakOff() {
  WaitForEnd(kGrace);
  if (is_connecting_) WaitForEnd(kLoginGrace);
  CloseConnection();
}

bool InetFtpSession::WaitForEnd(std::chrono::milliseconds most) {
  return !thread_ ||
         ::WaitForSingleObject(thread_.Get(), static_cast<DWORD>(most.count())) == WAIT_OBJECT_0;
}

void InetFtpSession::Work() {
  for (;;) {
    ::WaitForSingleObject(changed_.Get(), INFINITE);
    {
      const std::lock_guard lock(lock_);
      if (dropped_) break;
      if (!running_) continue;
      task_ = {.verb = request_.verb, .remote = request_.remote, .silence_s = request_.silence_s};
    }
    const Failure failure = Perform();
    const std::lock_guard lock(lock_);
    running_ = false;
    if (failure) {
      Post(TransportState::kError, *failure);
    } else {
      Post(TransportState::kResponseCompleted);
    }
  }
  Disconnect();
}

InetFtpSession::Failure InetFtpSession::Perform() {
  const auto speak = [this]() -> Failure {
    heard_ = awaits_reply_ = false;
    if (!IsConnected()) return kTransferConnectionAborted;
    return task_.verb == FtpVerb::kList ? List() : Transfer();
  };
  if (task_.verb == FtpVerb::kClose) {
    Close();
    return {};
  }
  const bool was_kept = connect_ != nullptr;
  if (!was_kept) {
    if (const Failure failure = Connect()) return failure;
  }
  Failure failure = speak();
  // The server may have hung up since the last command.
  if (failure == kTransferConnectionAborted && was_kept && !heard_ && bytes_ == 0) {
    Disconnect();
    failure = Connect();
    if (!failure) failure = speak();
  }
  if (failure == kTransferConnectionAborted) Disconnect();
  return failure;
}

InetFtpSession::Failure InetFtpSession::Connect() {
  heard_ = awaits_reply_ = false;
  replies_ = 0;
  goes_on_ = false;
  InetHandle inet = ::InternetOpenW(L"Tarnvale", INTERNET_OPEN_TYPE_DIRECT, nullptr, nullptr, 0);
  if (inet == nullptr) return kTransferCannotConnect;
  ::InternetSetStatusCallbackA(inet, &OnInetStatus);
  // The loop looks after the limits; those of WinINet must not come before them.
  DWORD limit_ms = task_.silence_s == 0 ? INFINITE : static_cast<DWORD>(task_.silence_s) * 1000;
  for (const DWORD option : {INTERNET_OPTION_CONNECT_TIMEOUT, INTERNET_OPTION_SEND_TIMEOUT,
                             INTERNET_OPTION_RECEIVE_TIMEOUT}) {
    ::InternetSetOptionW(inet, option, &limit_ms, sizeof limit_ms);
  }
  DWORD tries = 1;
  ::InternetSetOptionW(inet, INTERNET_OPTION_CONNECT_RETRIES, &tries, sizeof tries);
  {
    const std::lock_guard lock(lock_);
    if (dropped_) {
      ::InternetCloseHandle(inet);
      return kTransferConnectionAborted;
    }
    inet_ = inet;
  }
  const auto port = login_.host.port != 0 ? login_.host.port : INTERNET_DEFAULT_FTP_PORT;
  is_connecting_ = true;
  connect_ = ::InternetConnectA(inet, login_.host.name.c_str(), port, login_.user.c_str(),
                                login_.password.c_str(), INTERNET_SERVICE_FTP,
                                INTERNET_FLAG_PASSIVE, number_);
  const Failure failure = connect_ != nullptr ? Failure() : ErrorOfCall();
  is_connecting_ = false;
  if (!failure) return {};
  Disconnect();
  return failure;
}

// Not once the connection is given up. That closes all handles below it, and their
// numbers may be another session's by now.
bool InetFtpSession::IsConnected() {
  const std::lock_guard lock(lock_);
  return inet_ != nullptr && !dropped_;
}

// Nobody reads what comes.
InetFtpSession::Failure InetFtpSession::List() {
  {
    const std::lock_guard lock(lock_);
    watch_.BeginData(Now());
  }
  WIN32_FIND_DATAA entry{};
  InetHandle found = ::FtpFindFirstFileA(
      connect_, nullptr, &entry, INTERNET_FLAG_RELOAD | INTERNET_FLAG_NO_CACHE_WRITE, number_);
  const DWORD error = ::GetLastError();
  if (found == nullptr) {
    // An empty folder is none to some systems, and a refusal to others.
    const bool is_empty = error == ERROR_NO_MORE_FILES || LastReply().starts_with("226");
    ::SetLastError(error);
    return is_empty && !awaits_reply_ && error != ERROR_INTERNET_TIMEOUT ? Failure()
                                                                         : ErrorOfCall();
  }
  while (IsConnected() && ::InternetFindNextFileA(found, &entry) != 0) continue;
  return End(found);
}

InetFtpSession::Failure InetFtpSession::Transfer() {
  const bool sends = task_.verb == FtpVerb::kUpload;
  InetHandle remote = ::FtpOpenFileA(
      connect_, task_.remote.c_str(), sends ? GENERIC_WRITE : GENERIC_READ,
      FTP_TRANSFER_TYPE_BINARY | INTERNET_FLAG_RELOAD | INTERNET_FLAG_NO_CACHE_WRITE, number_);
  if (remote == nullptr) return ErrorOfCall();
  {
    const std::lock_guard lock(lock_);
    watch_.BeginData(Now());
  }
  const Failure failure = sends ? Send(remote) : Receive(remote);
  const Failure last_word = End(remote);
  return failure ? failure : last_word;
}

// Reads or writes the local file, which may take for ever. Dropped meanwhile, it is closed
// here.
template <class File, class Step>
InetFtpSession::Failure InetFtpSession::Use(std::shared_ptr<File> FtpRequest::*which, Step&& step) {
  std::shared_ptr<File> file;
  {
    const std::lock_guard lock(lock_);
    file = request_.*which;
  }
  if (!file) return kTransferConnectionAborted;
  try {
    step(*file);
    return {};
  } catch (const ProgramError& error) {
    return TransferErrorOf(error, task_.verb);
  }
}

InetFtpSession::Failure InetFtpSession::Receive(InetHandle remote) {
  std::vector<char> bytes(kBufferBytes);
  for (;;) {
    DWORD count = 0;
    if (!IsConnected() ||
        ::InternetReadFile(remote, bytes.data(), static_cast<DWORD>(bytes.size()), &count) == 0) {
      return kTransferConnectionAborted;
    }
    if (count == 0) return {};
    const std::span<const char> got(bytes.data(), count);
    const auto failure =
        Use(&FtpRequest::target, [got](TransferTarget& target) { target.Write(got); });
    if (failure) return failure;
    const std::lock_guard lock(lock_);
    // What is received belongs to the response.
    PostOnce(TransportState::kReceivingResponse);
    bytes_ += count;
  }
}

InetFtpSession::Failure InetFtpSession::Send(InetHandle remote) {
  std::vector<char> bytes(kBufferBytes);
  for (;;) {
    {
      const std::lock_guard lock(lock_);
      // What is sent belongs to the request.
      PostOnce(TransportState::kRequesting);
    }
    std::size_t count = 0;
    const auto failure =
        Use(&FtpRequest::source, [&](TransferSource& source) { count = source.Read(bytes); });
    if (failure) return failure;
    if (count == 0) break;
    for (std::size_t done = 0; done < count;) {
      DWORD sent = 0;
      if (!IsConnected() ||
          ::InternetWriteFile(remote, bytes.data() + done, static_cast<DWORD>(count - done),
                              &sent) == 0 ||
          sent == 0) {
        return kTransferConnectionAborted;
      }
      done += sent;
      const std::lock_guard lock(lock_);
      bytes_ += sent;
    }
  }
  const std::lock_guard lock(lock_);
  Post(TransportState::kRequestSent);
  watch_.AllowForUnsent(Now());
  return {};
}

// The server's last word on a transfer or a listing.
InetFtpSession::Failure InetFtpSession::End(InetHandle remote) {
  {
    const std::lock_guard lock(lock_);
    if (task_.verb == FtpVerb::kDownload) watch_.EndData(Now());
  }
  if (!IsConnected()) return kTransferConnectionAborted;
  ::InternetCloseHandle(remote);
  if (awaits_reply_) return kTransferConnectionAborted;
  const std::string reply = LastReply();
  // Chosen: where WinINet doesn't hand on the last word, the first ones take its place.
  if (reply.starts_with('1') || reply.starts_with('2')) return {};
  return RefusalOf(reply);
}

void InetFtpSession::Close() {
  if (connect_ == nullptr || !IsConnected()) return;
  is_closing_ = true;
  InetHandle none = nullptr;
  ::FtpCommandA(connect_, FALSE, FTP_TRANSFER_TYPE_ASCII, "QUIT", number_, &none);
  Disconnect();
  is_closing_ = false;
}

void InetFtpSession::Disconnect() {
  connect_ = nullptr;
  CloseConnection();
}

void InetFtpSession::CloseConnection() {
  InetHandle inet = nullptr;
  {
    const std::lock_guard lock(lock_);
    inet = std::exchange(inet_, nullptr);
  }
  if (inet != nullptr) ::InternetCloseHandle(inet);
}

InetFtpSession::Failure InetFtpSession::ErrorOfCall() {
  const DWORD error = ::GetLastError();
  switch (error) {
    case ERROR_INTERNET_TIMEOUT:
      return kTransferTimeOut;
    case ERROR_INTERNET_NAME_NOT_RESOLVED:
      return kTransferNameNotResolved;
    case ERROR_INTERNET_CANNOT_CONNECT:
      return kTransferCannotConnect;
    case ERROR_INTERNET_INCORRECT_USER_NAME:
      return kTransferWrongUserName;
    case ERROR_INTERNET_INCORRECT_PASSWORD:
    case ERROR_INTERNET_LOGIN_FAILURE:
      // The greeting, and the answer to the name.
      return replies_ <= 2 ? kTransferWrongUserName : kTransferWrongPassword;
    case ERROR_INTERNET_CONNECTION_ABORTED:
    case ERROR_INTERNET_CONNECTION_RESET:
    case ERROR_INTERNET_OPERATION_CANCELLED:
    case ERROR_FTP_DROPPED:
    case ERROR_FTP_TRANSFER_IN_PROGRESS:
      return kTransferConnectionAborted;
    default:
      return awaits_reply_ ? kTransferConnectionAborted : RefusalOf(LastReply());
  }
}

void InetFtpSession::OnStatus(DWORD status, DWORD count) {
  const std::lock_guard lock(lock_);
  const auto note = [this](TransportState state) {
    watch_.NoteMove(Now());
    Post(state);
  };
  switch (status) {
    case INTERNET_STATUS_RESOLVING_NAME:
      return note(TransportState::kResolvingHost);
    case INTERNET_STATUS_NAME_RESOLVED:
      return note(TransportState::kHostResolved);
    case INTERNET_STATUS_CONNECTING_TO_SERVER:
      return note(TransportState::kConnecting);
    case INTERNET_STATUS_CONNECTED_TO_SERVER:
      return note(TransportState::kConnected);
    case INTERNET_STATUS_SENDING_REQUEST:
      return note(TransportState::kRequesting);
    case INTERNET_STATUS_REQUEST_SENT:
      return note(TransportState::kRequestSent);
    case INTERNET_STATUS_RECEIVING_RESPONSE:
      awaits_reply_ = true;
      // Wine reports few requests. What is neither the greeting nor goes on with a reply
      // answers one.
      if (replies_ > 0 && !goes_on_ && last_ != TransportState::kRequestSent) {
        Post(TransportState::kRequesting);
        Post(TransportState::kRequestSent);
      }
      return note(TransportState::kReceivingResponse);
    case INTERNET_STATUS_RESPONSE_RECEIVED: {
      const std::string reply = LastReply();
      // Maybe a part of it: a server that trickles doesn't get on by that.
      awaits_reply_ = false;
      heard_ = true;
      ++replies_;
      if (request_.verb == FtpVerb::kList) bytes_ += count;
      Post(TransportState::kResponseReceived);
      goes_on_ = reply.starts_with('1') || (reply.size() > 3 && reply[3] == '-');
      // WinINet would go on talking to a server that takes nobody. A closing ends by itself.
      if (reply.starts_with("421") && request_.verb != FtpVerb::kClose) {
        Post(TransportState::kError, kTransferConnectionAborted);
      }
      return;
    }
    case INTERNET_STATUS_CLOSING_CONNECTION:
      if (is_closing_) Post(TransportState::kDisconnecting);
      return;
    case INTERNET_STATUS_CONNECTION_CLOSED:
      if (is_closing_) Post(TransportState::kDisconnected);
      return;
    default:
      return;
  }
}

void InetFtpSession::Post(TransportState state, std::int32_t code) {
  last_ = state;
  if (dropped_) return;
  loop_.Post([self = shared_from_this(), state, code] {
    {
      const std::lock_guard lock(self->lock_);
      if (self->dropped_) return;
    }
    self->listener_(state, code);
  });
}

void InetFtpSession::PostOnce(TransportState state) {
  if (last_ != state) Post(state);
}

}  // namespace tarnvale
