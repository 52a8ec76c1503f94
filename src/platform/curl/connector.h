// Finding a host and connecting to it, by libcurl.
//
// libcurl resolves names beside the event loop, tries all addresses of a host
// (the second kind a moment after the first), and hands out the socket that got
// through. The FTP conversation isn't its own: libcurl's waits inside one call
// for the last reply of a transfer and for that of QUIT, up to a minute, and all
// windows would stand still.
#pragma once

#include <curl/curl.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "platform/curl/connection.h"
#include "platform/socket_watch.h"

namespace tarnvale {

class Connector {
 public:
  /// `moved` is called from the loop when one of the questions below may have a
  /// new answer. It may begin another connection or abandon this one.
  Connector(SocketWatcher& watcher, std::function<void()> moved);
  Connector(const Connector&) = delete;
  Connector& operator=(const Connector&) = delete;
  ~Connector();

  /// True for what can be a host's name or numeric address, whether there is such
  /// a host or not.
  static bool IsHost(const std::string& host, int port);

  /// Starts connecting; an earlier connection in the making is abandoned. Ends
  /// as a time-out after `limit_s`, 0 for none; a host's addresses share it.
  /// False when it can't start: `host` is none.
  bool Begin(const std::string& host, int port, std::int32_t limit_s);
  void Abandon();

  /// The host's address is known and a connection to it is tried.
  bool IsTrying() const { return trying_; }
  /// None while it goes on; then kTransferNoError, or why there is no
  /// connection.
  std::optional<std::int32_t> Ended() const { return ended_; }
  /// The connection, once.
  Connection Take() { return std::move(socket_); }

 private:
  struct GlobalCurl {
    GlobalCurl();
  };
  struct EasyCleanup {
    void operator()(CURL* easy) const { curl_easy_cleanup(easy); }
  };
  struct MultiCleanup {
    void operator()(CURLM* multi) const { curl_multi_cleanup(multi); }
  };

  static curl_socket_t Open(void* self, curlsocktype purpose, curl_sockaddr* address);
  static int WatchSocket(CURL* easy, curl_socket_t socket, int what, void* self, void* unused);
  static int SetAlarm(CURLM* multi, long wait_ms, void* self);
  bool SetUp(const std::string& host, int port);
  void Drive(curl_socket_t socket, int events);
  void ReadEnd();
  void End(CURLcode result);

  SocketWatcher& watcher_;
  std::function<void()> moved_;
  std::unique_ptr<Alarm> alarm_;
  std::map<curl_socket_t, std::unique_ptr<SocketWatch>> watches_;
  GlobalCurl global_;
  std::unique_ptr<CURLM, MultiCleanup> multi_;
  std::unique_ptr<CURL, EasyCleanup> easy_;
  bool trying_ = false;
  std::optional<std::int32_t> ended_;
  Connection socket_;
};

}  // namespace tarnvale
