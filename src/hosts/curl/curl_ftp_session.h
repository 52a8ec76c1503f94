// One session with an FTP server: a thread with one libcurl handle.
//
// libcurl speaks FTP, and some of its calls wait for the server. They run on a
// thread that may be left to itself at any moment: a session that was dropped
// breaks its connections, touches no file and reports nothing any more, and ends
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

#include "platform/ftp_watch.h"
#include "ui/event_loop.h"
#include "ui/ftp_session.h"

namespace tarnvale {

class CurlFtpSession final : public FtpSession,
                             public std::enable_shared_from_this<CurlFtpSession> {
 public:
  /// The loop takes posts from any thread.
  CurlFtpSession(EventLoop& loop, FtpLogin login, const FtpPatience& patience, Listener listener);

  void Begin(FtpRequest request) override;
  void Report(TransportState state, std::int32_t code) override;
  bool IsAlive() override;
  void CloseFile(bool whole) override;
  /// The server sees that a transfer isn't whole.
  void Drop() override;
  bool WaitForEnd(std::chrono::milliseconds most) override;

 private:
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
  const FtpPatience patience_;
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
  FtpWatch watch_;
  std::uint64_t bytes_ = 0;  ///< that passed between the file and libcurl
};

}  // namespace tarnvale
