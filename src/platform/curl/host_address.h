// The text that says which host to connect to.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarnvale {

inline constexpr int kFtpPort = 21;

inline bool IsPort(int number) {
  return number >= 1 && number <= 65535;
}

struct HostAddress {
  std::string host;  ///< a name or an address; IPv6 without brackets
  int port = kFtpPort;

  bool operator==(const HostAddress&) const = default;
};

/// Reads "host", "host:port", "[IPv6 address]:port" and a bare IPv6 address.
/// Blanks around it don't count. None when there is no host in it or the port
/// is none.
std::optional<HostAddress> ParseHostAddress(std::string_view text);

}  // namespace tarnvale
