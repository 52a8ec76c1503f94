#include "hosts/curl/curl_ftp_session.h"

#include <linux/sockios.h>
#include <poll.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <new>
#include <system_error>
#include <thread>
#include <utility>

namespace tarnvale {
namespace {

using std::chrono::milliseconds;

// Larger buffers get slower again: they leave the processor's cache.
constexpr long kBufferBytes = 256L * 1024;
// To libcurl, 0 stands for a limit of its own.
constexpr long kNoLimitSeconds = 1000000;
constexpr milliseconds kLookInterval{5};
constexpr long kClosingConnection = 421;
constexpr long kRefusals = 400;

template <class Value>
void Set(CURL* easy, CURLoption option, Value value) {
  curl_easy_setopt(easy, option, value);
}

std::chrono::nanoseconds Now() {
  return std::chrono::steady_clock::now().time_since_epoch();
}

std::string UrlOf(const FtpHost& host) {
  const bool is_ipv6 = host.name.find(':') != std::string::npos;
  const std::string name = is_ipv6 ? "[" + host.name + "]" : host.name;
  return "ftp://" + name + (host.port != 0 ? ":" + std::to_string(host.port) : "");
}

// What was sent isn't taken for the whole: the server sees a reset and no end.
// The number stays the socket's until libcurl closes it.
void Reset(curl_socket_t socket) {
  const sockaddr nobody{.sa_family = AF_UNSPEC, .sa_data = {}};
  static_cast<void>(::connect(socket, &nobody, sizeof nobody));
}

// Bytes that the other end hasn't taken yet.
std::uint64_t Unsent(curl_socket_t socket) {
  int count = 0;
  return ::ioctl(socket, SIOCOUTQ, &count) == 0 ? static_cast<std::uint64_t>(count) : 0;
}

bool IsBroken(curl_socket_t socket) {
  pollfd query{.fd = socket, .events = 0, .revents = 0};
  return ::poll(&query, 1, 0) != 0;
}

bool HasReplyCode(std::string_view line) {
  const auto is_digit = [](char c) { return c >= '0' && c <= '9'; };
  return line.size() > 3 && std::all_of(line.begin(), line.begin() + 3, is_digit) &&
         (line[3] == ' ' || line[3] == '-');
}

}  // namespace

// Nothing that is raised may pass through libcurl. Memory that can't be had ends the
// request, by what `refusal` means to libcurl.
template <class Result, class Step>
Result CurlFtpSession::Called(void* self, Result refusal, Step&& step) {
  CurlFtpSession& session = *static_cast<CurlFtpSession*>(self);
  Lock lock(session.mutex_);
  try {
    return step(session, lock);
  } catch (const std::bad_alloc&) {
    if (!lock.owns_lock()) lock.lock();
    session.local_error_ = kTransferWriteFault;
    return refusal;
  }
}

CurlFtpSession::CurlFtpSession(EventLoop& loop, FtpLogin login, const FtpPatience& patience,
                               Listener listener)
    : FtpSession(std::move(login), std::move(listener)),
      loop_(loop),
      patience_(patience),
      watch_(patience) {}

void CurlFtpSession::Begin(FtpRequest request) {
  const Lock lock(mutex_);
  if (request.verb == FtpVerb::kClose && !SocketOf(Role::kControl)) {
    return Post(TransportState::kResponseCompleted);
  }
  if (!thread_.valid()) {
    // The session holds the task, so the task lets go of the session at its end.
    std::packaged_task<void()> work([self = shared_from_this()]() mutable {
      const auto session = std::move(self);
      session->Work();
    });
    thread_ = work.get_future();
    try {
      std::thread([work = std::move(work)]() mutable {
        work.make_ready_at_thread_exit();
      }).detach();
    } catch (const std::system_error&) {
      thread_ = {};
      return Post(TransportState::kError, kTransferCannotConnect);
    }
  }
  request_ = std::move(request);
  broke_ = false;
  local_error_.reset();
  bytes_ = 0;
  watch_.Begin(request_.verb, request_.silence_s, Now());
  running_ = true;
  changed_.notify_all();
}

void CurlFtpSession::Report(TransportState state, std::int32_t code) {
  const Lock lock(mutex_);
  Post(state, code);
}

bool CurlFtpSession::IsAlive() {
  const Lock lock(mutex_);
  if (!watch_.IsAlive(Taken(), Now())) return false;
  // Chosen: some gateways know the older command only, and swallow what the
  // newer one leads to. libcurl goes on with the older one.
  const auto data = SocketOf(Role::kData);
  const bool waits_for_data = data && !watch_.IsInData() && spoken_ == "EPSV";
  if (waits_for_data && watch_.IsHalfOver(Now())) Reset(*data);
  return true;
}

void CurlFtpSession::CloseFile(bool whole) {
  const Lock lock(mutex_);
  const auto source = std::move(request_.source);
  const auto target = std::move(request_.target);
  if (whole && target) target->Commit();
}

void CurlFtpSession::Drop() {
  // Closed when the mutex is free again, as that may take long.
  FtpRequest request;
  const Lock lock(mutex_);
  dropped_ = true;
  for (const auto& [socket, role] : sockets_) {
    if (running_) {
      Reset(socket);
    } else {
      ::shutdown(socket, SHUT_RDWR);
    }
  }
  request = std::exchange(request_, {});
  changed_.notify_all();
}

bool CurlFtpSession::WaitForEnd(milliseconds most) {
  return !thread_.valid() || thread_.wait_for(most) == std::future_status::ready;
}

void CurlFtpSession::Work() {
  // Signals are the program's business, and a lost connection is no signal.
  sigset_t all;
  ::sigfillset(&all);
  ::pthread_sigmask(SIG_BLOCK, &all, nullptr);
  easy_ = curl_easy_init();
  SetUp();
  {
    Lock lock(mutex_);
    while (!dropped_) {
      if (running_) {
        Perform(lock);
      } else {
        changed_.wait(lock);
      }
    }
  }
  curl_easy_cleanup(easy_);
}

void CurlFtpSession::SetUp() {
  Set(easy_, CURLOPT_USERNAME, login_.user.c_str());
  Set(easy_, CURLOPT_PASSWORD, login_.password.c_str());
  Set(easy_, CURLOPT_PROXY, "");
  Set(easy_, CURLOPT_NOSIGNAL, 1L);
  Set(easy_, CURLOPT_TCP_KEEPALIVE, 1L);
  Set(easy_, CURLOPT_DNS_CACHE_TIMEOUT, 0L);
  // Ending must not wait for a resolver that doesn't come back.
  Set(easy_, CURLOPT_QUICK_EXIT, 1L);
  Set(easy_, CURLOPT_BUFFERSIZE, kBufferBytes);
  Set(easy_, CURLOPT_UPLOAD_BUFFERSIZE, kBufferBytes);
  // A name is what it is: no folder is changed to, and no size is requested.
  Set(easy_, CURLOPT_PATH_AS_IS, 1L);
  Set(easy_, CURLOPT_FTP_FILEMETHOD, static_cast<long>(CURLFTPMETHOD_NOCWD));
  Set(easy_, CURLOPT_IGNORE_CONTENT_LENGTH, 1L);
  Set(easy_, CURLOPT_FTP_SKIP_PASV_IP, 1L);
  // Whoever answers is taken for the server, as without encryption.
  Set(easy_, CURLOPT_FTPSSLAUTH, static_cast<long>(CURLFTPAUTH_TLS));
  Set(easy_, CURLOPT_SSL_VERIFYPEER, 0L);
  Set(easy_, CURLOPT_SSL_VERIFYHOST, 0L);

  Set(easy_, CURLOPT_VERBOSE, 1L);
  Set(easy_, CURLOPT_DEBUGFUNCTION, &CurlFtpSession::OnDebug);
  Set(easy_, CURLOPT_DEBUGDATA, this);
  Set(easy_, CURLOPT_HEADERFUNCTION, &CurlFtpSession::OnHeader);
  Set(easy_, CURLOPT_HEADERDATA, this);
  Set(easy_, CURLOPT_READFUNCTION, &CurlFtpSession::OnRead);
  Set(easy_, CURLOPT_READDATA, this);
  Set(easy_, CURLOPT_WRITEFUNCTION, &CurlFtpSession::OnWrite);
  Set(easy_, CURLOPT_WRITEDATA, this);
  Set(easy_, CURLOPT_RESOLVER_START_FUNCTION, &CurlFtpSession::OnResolve);
  Set(easy_, CURLOPT_RESOLVER_START_DATA, this);
  Set(easy_, CURLOPT_OPENSOCKETFUNCTION, &CurlFtpSession::OnOpen);
  Set(easy_, CURLOPT_OPENSOCKETDATA, this);
  Set(easy_, CURLOPT_CLOSESOCKETFUNCTION, &CurlFtpSession::OnClose);
  Set(easy_, CURLOPT_CLOSESOCKETDATA, this);
  Set(easy_, CURLOPT_NOPROGRESS, 0L);
  Set(easy_, CURLOPT_XFERINFOFUNCTION, &CurlFtpSession::OnProgress);
  Set(easy_, CURLOPT_XFERINFODATA, this);
}

void CurlFtpSession::Perform(Lock& lock) {
  CURLcode result = Speak(lock);
  while (CanSpeakPlainer(result)) result = Speak(lock);
  running_ = false;
  if (request_.verb == FtpVerb::kClose) {
    // However it went, the connection is gone; it may have been so before.
    if (spoken_ == "QUIT") {
      Post(TransportState::kDisconnecting);
      Post(TransportState::kDisconnected);
    }
    Post(TransportState::kResponseCompleted);
  } else if (result == CURLE_OK) {
    Post(TransportState::kResponseCompleted);
  } else {
    Post(TransportState::kError, ErrorOf(result));
  }
}

CURLcode CurlFtpSession::Speak(Lock& lock) {
  const bool closes = request_.verb == FtpVerb::kClose;
  char* const remote = curl_easy_escape(easy_, request_.remote.c_str(), 0);
  Set(easy_, CURLOPT_URL,
      (UrlOf(login_.host) + "/" + (request_.remote.empty() ? "" : remote)).c_str());
  curl_free(remote);
  Set(easy_, CURLOPT_UPLOAD, request_.verb == FtpVerb::kUpload ? 1L : 0L);
  // A request for nothing but QUIT. libcurl's own goodbye, to a connection that isn't kept, would
  // come behind a request without any command: what the server said unasked is then taken from
  // memory that was given back (libcurl before 8.6).
  Set(easy_, CURLOPT_NOBODY, closes ? 1L : 0L);
  Set(easy_, CURLOPT_FORBID_REUSE, closes ? 1L : 0L);
  const std::unique_ptr<curl_slist, void (*)(curl_slist*)> quit(
      closes ? curl_slist_append(nullptr, "QUIT") : nullptr, curl_slist_free_all);
  if (closes && !quit) return CURLE_OUT_OF_MEMORY;
  Set(easy_, CURLOPT_QUOTE, quit.get());
  Set(easy_, CURLOPT_USE_SSL, encryption_);
  Set(easy_, CURLOPT_SSLVERSION, version_);
  Set(easy_, CURLOPT_SERVER_RESPONSE_TIMEOUT,
      request_.silence_s == 0 ? kNoLimitSeconds : long{request_.silence_s});
  spoken_.clear();
  in_reply_ = is_no_ftp_ = false;
  watch_.EndData(Now());
  lock.unlock();
  const CURLcode result = curl_easy_perform(easy_);
  lock.lock();
  return result;
}

// Chosen: a server whose encryption fails is asked for the newest one, and then spoken to
// in clear, as one that offers none: first its data alone, then everything.
bool CurlFtpSession::CanSpeakPlainer(CURLcode result) {
  if (result != CURLE_SSL_CONNECT_ERROR || dropped_) return false;
  constexpr long kNewest = CURL_SSLVERSION_DEFAULT;
  if (spoken_ == "AUTH" && std::exchange(version_, kNewest) != kNewest) return true;
  const long plainer = spoken_ == "AUTH" ? CURLUSESSL_NONE : CURLUSESSL_CONTROL;
  return std::exchange(encryption_, plainer) != plainer;
}

std::int32_t CurlFtpSession::ErrorOf(CURLcode result) const {
  if (local_error_) return *local_error_;
  if (is_no_ftp_) return kTransferRefusedByServer;
  if (broke_) return kTransferConnectionAborted;
  long reply = 0;
  curl_easy_getinfo(easy_, CURLINFO_RESPONSE_CODE, &reply);
  if (reply == kClosingConnection) return kTransferConnectionAborted;
  switch (result) {
    case CURLE_COULDNT_RESOLVE_HOST:
      return kTransferNameNotResolved;
    case CURLE_COULDNT_CONNECT:
    case CURLE_SSL_CONNECT_ERROR:
      return kTransferCannotConnect;
    case CURLE_OPERATION_TIMEDOUT:
    case CURLE_WRITE_ERROR:  // too long a listing
      return kTransferTimeOut;
    case CURLE_LOGIN_DENIED:
      return spoken_ == "USER" ? kTransferWrongUserName : kTransferWrongPassword;
    case CURLE_PARTIAL_FILE:
      return reply >= kRefusals ? kTransferRefusedByServer : kTransferConnectionAborted;
    case CURLE_SEND_ERROR:
    case CURLE_RECV_ERROR:
    case CURLE_GOT_NOTHING:
      return kTransferConnectionAborted;
    default:
      return kTransferRefusedByServer;
  }
}

void CurlFtpSession::Post(TransportState state, std::int32_t code) {
  last_ = state;
  if (dropped_) return;
  loop_.Post([self = shared_from_this(), state, code] {
    {
      const Lock lock(self->mutex_);
      if (self->dropped_) return;
    }
    self->listener_(state, code);
  });
}

void CurlFtpSession::PostOnce(TransportState state) {
  if (last_ != state) Post(state);
}

void CurlFtpSession::NoteCommand(std::string_view line) {
  spoken_ = line.substr(0, line.find_first_of(" \r\n"));
  watch_.NoteMove(Now());
  Post(TransportState::kRequesting);
  Post(TransportState::kRequestSent);
}

// False for what ends the request: what no FTP server says, and the last word.
bool CurlFtpSession::NoteReply(std::string_view line) {
  if (last_ == TransportState::kConnecting) Post(TransportState::kConnected);
  const bool has_code = HasReplyCode(line);
  is_no_ftp_ = !has_code && !in_reply_;
  if (is_no_ftp_ || dropped_) return false;
  PostOnce(TransportState::kReceivingResponse);
  in_reply_ = !has_code || line[3] == '-';
  if (in_reply_) return true;
  Post(TransportState::kResponseReceived);
  watch_.NoteMove(Now());
  // An upload begins with every reply that isn't a refusal.
  const bool begins = line.front() == '1' || (spoken_ == "STOR" && line.front() < '4');
  if (begins && SocketOf(Role::kData)) watch_.BeginData(Now());
  // Whatever the answer: libcurl would say goodbye once more.
  return spoken_ != "QUIT";
}

// Reads or writes the local file, which may take for ever. False when that failed or
// the session was dropped meanwhile.
template <class File, class Step>
bool CurlFtpSession::Use(std::shared_ptr<File> file, Lock& lock, Step&& step) {
  const FtpVerb verb = request_.verb;
  std::optional<std::int32_t> failure;
  lock.unlock();
  try {
    step(*file);
  } catch (const ProgramError& error) {
    failure = TransferErrorOf(error, verb);
  }
  // A dropped session's file is closed here.
  file.reset();
  lock.lock();
  if (dropped_) return false;
  if (failure) local_error_ = failure;
  return !failure;
}

std::size_t CurlFtpSession::ReadSource(std::span<char> bytes, Lock& lock) {
  if (!request_.source) return CURL_READFUNC_ABORT;
  // What is sent belongs to the request.
  PostOnce(TransportState::kRequesting);
  std::size_t count = 0;
  if (!Use(request_.source, lock, [&](TransferSource& file) { count = file.Read(bytes); })) {
    BreakData();
    return CURL_READFUNC_ABORT;
  }
  bytes_ += count;
  if (count > 0) return count;
  broke_ = !WaitUntilTaken(lock);
  if (broke_) return CURL_READFUNC_ABORT;
  Post(TransportState::kRequestSent);
  return 0;
}

// libcurl hands the rest to the system and waits for the server's word no longer
// than for any other. On a slow line the system needs more for what it holds.
bool CurlFtpSession::WaitUntilTaken(Lock& lock) {
  for (;;) {
    const auto data = SocketOf(Role::kData);
    if (!data || IsBroken(*data)) return false;
    if (Unsent(*data) == 0) return true;
    changed_.wait_for(lock, kLookInterval);
  }
}

// A count of fewer bytes ends the transfer.
std::size_t CurlFtpSession::WriteTarget(std::span<const char> bytes, Lock& lock) {
  // What is received belongs to the response.
  PostOnce(TransportState::kReceivingResponse);
  bytes_ += bytes.size();
  if (request_.verb == FtpVerb::kList && bytes_ <= patience_.listing_bytes) return bytes.size();
  if (!request_.target) return 0;
  const bool is_written =
      Use(request_.target, lock, [&](TransferTarget& file) { file.Write(bytes); });
  return is_written ? bytes.size() : 0;
}

void CurlFtpSession::BreakData() {
  if (const auto data = SocketOf(Role::kData)) Reset(*data);
}

std::optional<curl_socket_t> CurlFtpSession::SocketOf(Role role) const {
  for (const auto& [socket, its_role] : sockets_) {
    if (its_role == role) return socket;
  }
  return std::nullopt;
}

std::uint64_t CurlFtpSession::Taken() const {
  const auto data = SocketOf(Role::kData);
  const bool counts = data && request_.verb == FtpVerb::kUpload;
  return bytes_ - (counts ? std::min(Unsent(*data), bytes_) : 0);
}

int CurlFtpSession::OnDebug(CURL*, curl_infotype type, char* bytes, std::size_t count, void* self) {
  if (type != CURLINFO_HEADER_OUT) return 0;
  return Called(self, 0, [&](CurlFtpSession& session, Lock&) {
    session.NoteCommand({bytes, count});
    return 0;
  });
}

std::size_t CurlFtpSession::OnHeader(char* bytes, std::size_t, std::size_t count, void* self) {
  return Called(self, std::size_t{0}, [&](CurlFtpSession& session, Lock&) {
    return session.NoteReply({bytes, count}) ? count : std::size_t{0};
  });
}

std::size_t CurlFtpSession::OnRead(char* bytes, std::size_t, std::size_t count, void* self) {
  return Called(self, std::size_t{CURL_READFUNC_ABORT}, [&](CurlFtpSession& session, Lock& lock) {
    return session.ReadSource({bytes, count}, lock);
  });
}

std::size_t CurlFtpSession::OnWrite(char* bytes, std::size_t, std::size_t count, void* self) {
  return Called(self, std::size_t{0}, [&](CurlFtpSession& session, Lock& lock) {
    return session.WriteTarget({bytes, count}, lock);
  });
}

// Numeric addresses come here too, those of data connections included.
int CurlFtpSession::OnResolve(void*, void*, void* self) {
  return Called(self, 1, [](CurlFtpSession& session, Lock&) {
    const bool for_session = session.spoken_.empty() && session.request_.verb != FtpVerb::kClose;
    if (for_session) session.Post(TransportState::kResolvingHost);
    return 0;
  });
}

curl_socket_t CurlFtpSession::OnOpen(void* self, curlsocktype, curl_sockaddr* address) {
  return Called(self, curl_socket_t{CURL_SOCKET_BAD},
                [&](CurlFtpSession& session, Lock&) { return session.OpenSocket(*address); });
}

curl_socket_t CurlFtpSession::OpenSocket(const curl_sockaddr& address) {
  // Nobody connects only to say goodbye.
  if (dropped_ || request_.verb == FtpVerb::kClose) return CURL_SOCKET_BAD;
  if (last_ == TransportState::kResolvingHost) {
    Post(TransportState::kHostResolved);
    Post(TransportState::kConnecting);
    watch_.NoteMove(Now());
  }
  const curl_socket_t socket =
      ::socket(address.family, address.socktype | SOCK_CLOEXEC, address.protocol);
  if (socket == CURL_SOCKET_BAD) return socket;
  try {
    sockets_[socket] = spoken_.empty() ? Role::kControl : Role::kData;
  } catch (const std::bad_alloc&) {
    ::close(socket);
    throw;
  }
  return socket;
}

int CurlFtpSession::OnClose(void* self, curl_socket_t socket) {
  return Called(self, 0, [&](CurlFtpSession& session, Lock&) {
    const auto known = session.sockets_.find(socket);
    if (known != session.sockets_.end() && known->second == Role::kData) {
      session.watch_.EndData(Now());
    }
    session.sockets_.erase(socket);
    return ::close(socket);
  });
}

int CurlFtpSession::OnProgress(void* self, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
  return Called(self, 1, [](CurlFtpSession& session, Lock&) {
    if (session.last_ == TransportState::kConnecting) {
      curl_off_t connected_after = 0;
      curl_easy_getinfo(session.easy_, CURLINFO_CONNECT_TIME_T, &connected_after);
      if (connected_after > 0) {
        session.Post(TransportState::kConnected);
        session.watch_.NoteMove(Now());
      }
    }
    return session.dropped_ ? 1 : 0;
  });
}

}  // namespace tarnvale
