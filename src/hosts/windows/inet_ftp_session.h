// One session with an FTP server: a thread with WinINet's handles.
//
// WinINet's calls wait for the server. They run on a thread that may be left to itself at
// any moment: a session that was dropped touches no file and reports nothing any more, and
// a call that then goes on waiting is ended by closing its handles. What WinINet reports goes by
// the session's number, so that late reports are nobody's.
#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "hosts/windows/system_headers.h"
#include "hosts/windows/threads.h"
#include "platform/ftp_watch.h"
#include "ui/event_loop.h"
#include "ui/ftp_session.h"

namespace tarnvale {

class InetFtpSession final : public FtpSession,
                             public std::enable_shared_from_this<InetFtpSession> {
 public:
  InetFtpSession(EventLoop& loop, FtpLogin login, const FtpPatience& patience, Listener listener);
  ~InetFtpSession() override;

  void Begin(FtpRequest request) override;
  void Report(TransportState state, std::int32_t code) override;
  bool IsAlive() override;
  void CloseFile(bool whole) override;
  void Drop() override;
  bool WaitForEnd(std::chrono::milliseconds most) override;

  /// What WinINet reports, on the thread that called it; `status` is one of its
  /// INTERNET_STATUS_.
  void OnStatus(DWORD status, DWORD count);

 private:
  using InetHandle = void*;
  /// How a call ended: nothing, or the error.
  using Failure = std::optional<std::int32_t>;

  void Work();
  // The lock isn't held in these: they wait for the server.
  Failure Perform();
  Failure Connect();
  Failure List();
  Failure Transfer();
  Failure Receive(InetHandle remote);
  Failure Send(InetHandle remote);
  Failure End(InetHandle remote);
  bool IsConnected();
  void Close();
  void Disconnect();
  void CloseConnection();
  /// Ends a call that goes on waiting.
  void BreakOff();
  Failure ErrorOfCall();
  template <class File, class Step>
  Failure Use(std::shared_ptr<File> FtpRequest::*file, Step&& step);

  // The lock is held in these.
  void Post(TransportState state, std::int32_t code = kTransferNoError);
  void PostOnce(TransportState state);

  EventLoop& loop_;
  const DWORD_PTR number_;

  CriticalSection lock_;
  Handle changed_;  ///< an event: there is something for the thread to do
  Handle thread_;
  InetHandle inet_ = nullptr;  ///< all others are below it
  bool dropped_ = false;
  bool running_ = false;
  TransportState last_ = TransportState::kResponseCompleted;

  FtpRequest request_;
  FtpWatch watch_;
  std::uint64_t listing_bytes_;
  std::uint64_t bytes_ = 0;

  // The thread's own.
  FtpRequest task_;  ///< without its files
  InetHandle connect_ = nullptr;
  // What the thread's calls report.
  std::atomic<bool> is_closing_ = false;  ///< the connection's end is the command's own doing
  std::atomic<bool> awaits_reply_ = false;
  std::atomic<int> replies_ = 0;             ///< since the connection was begun
  std::atomic<bool> goes_on_ = false;        ///< what the server said last wasn't its last word
  std::atomic<bool> is_connecting_ = false;  ///< until the login has ended
  std::atomic<bool> heard_ = false;  ///< the server has said something since the command began
};

}  // namespace tarnvale
