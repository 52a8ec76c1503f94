#include "platform/curl/host_address.h"

#include <charconv>

namespace tarnvale {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

std::string_view WithoutBlanksAround(std::string_view text) {
  const auto first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::optional<int> ParsePort(std::string_view text) {
  int port = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, port);
  if (error != std::errc() || stop != end || !IsPort(port)) return std::nullopt;
  return port;
}

std::optional<HostAddress> WithPort(std::string_view host, std::string_view port_text) {
  const auto port = ParsePort(port_text);
  if (host.empty() || !port) return std::nullopt;
  return HostAddress{std::string(host), *port};
}

std::optional<HostAddress> WithoutPort(std::string_view host) {
  if (host.empty()) return std::nullopt;
  return HostAddress{std::string(host), kFtpPort};
}

}  // namespace

std::optional<HostAddress> ParseHostAddress(std::string_view text) {
  text = WithoutBlanksAround(text);
  if (text.substr(0, 1) == "[") {
    const auto close = text.find(']');
    if (close == std::string_view::npos) return std::nullopt;
    const std::string_view host = text.substr(1, close - 1);
    const std::string_view rest = text.substr(close + 1);
    if (rest.empty()) return WithoutPort(host);
    return rest.front() == ':' ? WithPort(host, rest.substr(1)) : std::nullopt;
  }
  const auto colon = text.find(':');
  if (colon == std::string_view::npos) return WithoutPort(text);
  const bool is_ipv6 = text.find(':', colon + 1) != std::string_view::npos;
  if (is_ipv6) return WithoutPort(text);
  return WithPort(text.substr(0, colon), text.substr(colon + 1));
}

}  // namespace tarnvale
