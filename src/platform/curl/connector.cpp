#include "platform/curl/connector.h"

#include <fcntl.h>
#include <sys/socket.h>

#include <algorithm>
#include <chrono>

#include "platform/ftp_transport.h"

namespace tarnvale {
namespace {

struct UrlCleanup {
  void operator()(CURLU* url) const { curl_url_cleanup(url); }
};

// A scheme that means plain TCP to libcurl; no word of it is ever sent.
constexpr const char* kPlainScheme = "http";
// To libcurl, 0 stands for a limit of its own.
constexpr long kNoLimitSeconds = 1000000;

// libcurl takes IPv6 addresses in brackets, with the zone's sign escaped.
std::string AsUrlHost(const std::string& host) {
  if (host.find(':') == std::string::npos) return host;
  std::string escaped = host;
  const auto zone = escaped.find('%');
  if (zone != std::string::npos) escaped.insert(zone + 1, "25");
  return "[" + escaped + "]";
}

// None when libcurl takes the two for no address.
std::optional<std::string> UrlOf(const std::string& host, int port) {
  const std::unique_ptr<CURLU, UrlCleanup> url(curl_url());
  const std::string url_host = AsUrlHost(host);
  const std::string url_port = std::to_string(port);
  char* text = nullptr;
  if (curl_url_set(url.get(), CURLUPART_SCHEME, kPlainScheme, 0) != CURLUE_OK ||
      curl_url_set(url.get(), CURLUPART_HOST, url_host.c_str(), 0) != CURLUE_OK ||
      curl_url_set(url.get(), CURLUPART_PORT, url_port.c_str(), 0) != CURLUE_OK ||
      curl_url_get(url.get(), CURLUPART_URL, &text, 0) != CURLUE_OK) {
    return std::nullopt;
  }
  std::string copy = text;
  curl_free(text);
  return copy;
}

std::int32_t ErrorOf(CURLcode result) {
  switch (result) {
    case CURLE_OK:
      return kTransferNoError;
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY:
    case CURLE_URL_MALFORMAT:
      return kTransferNameNotResolved;
    case CURLE_OPERATION_TIMEDOUT:
      return kTransferTimeOut;
    default:
      return kTransferCannotConnect;
  }
}

template <class Value>
void Set(CURL* easy, CURLoption option, Value value) {
  curl_easy_setopt(easy, option, value);
}

}  // namespace

Connector::GlobalCurl::GlobalCurl() {
  // Nothing but plain connections: neither secure ones nor anything else global.
  static const CURLcode done = curl_global_init(CURL_GLOBAL_NOTHING);
  static_cast<void>(done);
}

Connector::Connector(SocketWatcher& watcher, std::function<void()> moved)
    : watcher_(watcher),
      moved_(std::move(moved)),
      alarm_(watcher.NewAlarm([this] { Drive(CURL_SOCKET_TIMEOUT, 0); })),
      multi_(curl_multi_init()) {
  curl_multi_setopt(multi_.get(), CURLMOPT_SOCKETFUNCTION, &Connector::WatchSocket);
  curl_multi_setopt(multi_.get(), CURLMOPT_SOCKETDATA, this);
  curl_multi_setopt(multi_.get(), CURLMOPT_TIMERFUNCTION, &Connector::SetAlarm);
  curl_multi_setopt(multi_.get(), CURLMOPT_TIMERDATA, this);
}

Connector::~Connector() {
  Abandon();
}

bool Connector::IsHost(const std::string& host, int port) {
  return UrlOf(host, port).has_value();
}

bool Connector::SetUp(const std::string& host, int port) {
  const auto url = UrlOf(host, port);
  if (!url) return false;
  easy_.reset(curl_easy_init());
  CURL* easy = easy_.get();
  Set(easy, CURLOPT_URL, url->c_str());
  Set(easy, CURLOPT_CONNECT_ONLY, 1L);
  Set(easy, CURLOPT_PROXY, "");
  Set(easy, CURLOPT_NOSIGNAL, 1L);
  Set(easy, CURLOPT_TCP_KEEPALIVE, 1L);
  Set(easy, CURLOPT_FRESH_CONNECT, 1L);
  Set(easy, CURLOPT_DNS_CACHE_TIMEOUT, 0L);
  // Abandoning must not wait for a resolver that doesn't come back.
  Set(easy, CURLOPT_QUICK_EXIT, 1L);
  Set(easy, CURLOPT_OPENSOCKETFUNCTION, &Connector::Open);
  Set(easy, CURLOPT_OPENSOCKETDATA, this);
  return true;
}

bool Connector::Begin(const std::string& host, int port, std::int32_t limit_s) {
  Abandon();
  if (!SetUp(host, port)) return false;
  const long seconds = limit_s == 0 ? kNoLimitSeconds : std::min(long{limit_s}, kNoLimitSeconds);
  Set(easy_.get(), CURLOPT_CONNECTTIMEOUT, seconds);
  return curl_multi_add_handle(multi_.get(), easy_.get()) == CURLM_OK;
}

void Connector::Abandon() {
  if (easy_) curl_multi_remove_handle(multi_.get(), easy_.get());
  easy_.reset();
  watches_.clear();
  alarm_->Clear();
  trying_ = false;
  ended_.reset();
  socket_.Close();
}

curl_socket_t Connector::Open(void* self, curlsocktype, curl_sockaddr* address) {
  static_cast<Connector*>(self)->trying_ = true;
  return ::socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
}

int Connector::WatchSocket(CURL*, curl_socket_t socket, int what, void* self, void*) {
  Connector& connector = *static_cast<Connector*>(self);
  if (what == CURL_POLL_REMOVE) {
    connector.watches_.erase(socket);
    return 0;
  }
  auto& watch = connector.watches_[socket];
  if (!watch) {
    watch = connector.watcher_.Watch(socket, [&connector, socket](SocketReadiness ready) {
      connector.Drive(socket, ready.readable ? CURL_CSELECT_IN : CURL_CSELECT_OUT);
    });
  }
  watch->Want({.readable = (what & CURL_POLL_IN) != 0, .writable = (what & CURL_POLL_OUT) != 0});
  return 0;
}

int Connector::SetAlarm(CURLM*, long wait_ms, void* self) {
  Alarm& alarm = *static_cast<Connector*>(self)->alarm_;
  if (wait_ms < 0) {
    alarm.Clear();
  } else {
    alarm.Set(std::chrono::milliseconds(wait_ms));
  }
  return 0;
}

void Connector::Drive(curl_socket_t socket, int events) {
  int running = 0;
  curl_multi_socket_action(multi_.get(), socket, events, &running);
  ReadEnd();
  // The last thing: it may begin anew.
  moved_();
}

void Connector::ReadEnd() {
  int left = 0;
  while (const CURLMsg* message = curl_multi_info_read(multi_.get(), &left)) {
    if (message->msg == CURLMSG_DONE) End(message->data.result);
  }
}

void Connector::End(CURLcode result) {
  ended_ = ErrorOf(result);
  if (result != CURLE_OK) return;
  curl_socket_t active = CURL_SOCKET_BAD;
  curl_easy_getinfo(easy_.get(), CURLINFO_ACTIVESOCKET, &active);
  // libcurl closes its own with the handle; ours stays.
  const int kept = active == CURL_SOCKET_BAD ? -1 : ::fcntl(active, F_DUPFD_CLOEXEC, 0);
  if (kept < 0) ended_ = kTransferCannotConnect;
  socket_ = Connection(kept);
}

}  // namespace tarnvale
