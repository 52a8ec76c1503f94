// One session with an FTP server: a thread with one libcurl handle.
//
// libcurl speaks FTP, and some of its calls wait for the server. They run on a
// thread that may be left to itself at any moment: a session that was dropped
// breaks its connections, touches no file and tells nothing any more, and ends
// when libcurl comes back. So does a local file whose medium has stopped answering:
// nothing is locked while it is read or written.
#pragma once

#include <curl/curl.h>

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <future>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "base/failure.h"
#include "platform/ftp_command.h"
#include "platform/ftp_transport.h"
#include "platform/transfer_files.h"
#include "ui/event_loop.h"

namespace tarnvale {

struct FtpLogin {
  std::string server;  ///< a URL that ends behind the host or its port
  std::string user;
  std::string password;

  bool operator==(const FtpLogin&) const = default;
};

/// How long a server may take that goes on moving.
struct FtpPatience {
  /// A listing that lasts longer or has more has failed: nobody reads it.
  std::chrono::milliseconds listing = std::chrono::minutes(1);
  std::uint64_t listing_bytes = std::uint64_t{1024} * 1024;
  /// A transfer must move so much in each such span: 1 KiB/s.
  std::chrono::milliseconds span = std::chrono::minutes(2);
  std::uint64_t span_bytes = std::uint64_t{120} * 1024;
};

struct FtpRequest {
  FtpVerb verb = FtpVerb::kList;
  std::string remote = {};                      ///< of an upload and a download
  std::shared_ptr<TransferSource> source = {};  ///< of an upload
  std::shared_ptr<TransferTarget> target = {};  ///< of a download
  std::int32_t silence_s = 0;                   ///< longest silence; 0: no limit
};

/// The number that tells what happened to the local file.
std::int32_t TransferErrorOf(const ProgramError& error, FtpVerb verb);

/// Its functions are for the thread of the event loop. None waits for the server.
class FtpSession : public std::enable_shared_from_this<FtpSession> {
 public:
  using Listener = std::function<void(TransportState, std::int32_t code)>;

  /// `listener` is called from the loop until the session is dropped, which must
  /// be before the loop goes. kError and kResponseCompleted end a request.
  FtpSession(EventLoop& loop, FtpLogin login, FtpPatience patience, Listener listener);
  FtpSession(const FtpSession&) = delete;
  FtpSession& operator=(const FtpSession&) = delete;

  const FtpLogin& Login() const { return login_; }

  /// Starts a request. None may be running.
  void Begin(FtpRequest request);
  /// Tells the listener this, later.
  void Tell(TransportState state, std::int32_t code = kTransferNoError);
  /// False when the server of the running request isn't worth waiting for any
  /// more. To be asked now and then.
  bool IsAlive();
  /// Closes the local file of a request that ended; `whole` gives a download its
  /// name first. Raises what the file raises.
  void CloseFile(bool whole);
  /// Ends everything, so that the server sees that a transfer isn't whole. The local
  /// file is closed, unless the thread is held up by it and closes it then. What
  /// comes back is ready when the thread has ended; not valid when there is none.
  std::future<void> Drop();

 private:
  using Clock = std::chrono::steady_clock;
  using Lock = std::unique_lock<std::mutex>;
  enum class Role { kControl, kData };

  template <class Result, class Step>
  static Result Called(void* self, Result refusal, Step&& step);

  // What libcurl calls, on the thread.
  static int OnDebug(CURL*, curl_infotype type, char* bytes, std::size_t count, void* self);
  static std::size_t OnHeader(char* bytes, std::size_t, std::size_t count, void* self);
  static std::size_t OnRead(char* bytes, std::size_t, std::size_t count, void* self);
  static std::size_t OnWrite(char* bytes, std::size_t, std::size_t count, void* self);
  static int OnResolve(void*, void*, void* self);
  static curl_socket_t OnOpen(void* self, curlsocktype, curl_sockaddr* address);
  static int OnClose(void* self, curl_socket_t socket);
  static int OnProgress(void* self, curl_off_t, curl_off_t, curl_off_t, curl_off_t);

  void Work();
  void SetUp();
  // From here on the mutex is held when a function is called. What takes the lock
  // lets it go meanwhile.
  void Perform(Lock& lock);
  CURLcode Speak(Lock& lock);
  bool CanSpeakPlainer(CURLcode result);
  std::int32_t ErrorOf(CURLcode result) const;
  void Post(TransportState state, std::int32_t code = kTransferNoError);
  void PostOnce(TransportState state);
  curl_socket_t OpenSocket(const curl_sockaddr& address);
  void NoteCommand(std::string_view line);
  bool NoteReply(std::string_view line);
  std::size_t ReadSource(std::span<char> bytes, Lock& lock);
  bool WaitUntilTaken(Lock& lock);
  std::size_t WriteTarget(std::span<const char> bytes, Lock& lock);
  template <class File, class Step>
  bool Use(std::shared_ptr<File> file, Lock& lock, Step&& step);
  void BreakData();
  std::optional<curl_socket_t> SocketOf(Role role) const;
  std::uint64_t Taken() const;

  EventLoop& loop_;
  const FtpLogin login_;
  const FtpPatience patience_;
  const Listener listener_;
  CURL* easy_ = nullptr;  ///< the thread's own

  std::mutex mutex_;
  std::condition_variable changed_;
  std::future<void> thread_;
  bool dropped_ = false;
  bool running_ = false;
  std::map<curl_socket_t, Role> sockets_;
  long encryption_ = CURLUSESSL_TRY;
  // Many servers want each data connection to resume the session, and those of TLS 1.3
  // can be resumed only once.
  long version_ = CURL_SSLVERSION_MAX_TLSv1_2;

  // The request.
  FtpRequest request_;
  TransportState last_ = TransportState::kResponseCompleted;
  std::string spoken_;  ///< the last command's first word
  bool in_reply_ = false;
  bool is_no_ftp_ = false;
  bool broke_ = false;
  std::optional<std::int32_t> local_error_;
  Clock::time_point moved_at_;

  // Its data.
  bool transferring_ = false;
  std::uint64_t bytes_ = 0;  ///< that passed between the file and libcurl
  std::uint64_t taken_ = 0;  ///< that had passed the network at the last look
  Clock::time_point began_at_;
  Clock::time_point span_at_;
  std::uint64_t span_taken_ = 0;
};

}  // namespace tarnvale
