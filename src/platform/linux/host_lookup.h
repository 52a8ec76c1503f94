// The addresses of a host.
#pragma once

#include <sys/socket.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/linux/descriptor.h"
#include "platform/socket_watch.h"

namespace tarnvale {

struct NativeAddress {
  sockaddr_storage storage{};
  socklen_t length = 0;
};

struct HostAddresses {
  int error = 0;  ///< SocketError; 0 when there are addresses
  std::vector<NativeAddress> addresses;
};

/// The address that a text like "127.0.0.1" or "::1" denotes; none when it is a
/// name.
std::vector<NativeAddress> NumericAddress(const std::string& host, std::uint16_t port);

/// Looks up a name without holding anybody up: the system's call, which can take
/// a minute, runs beside the program. Letting go of the lookup gives it up.
class HostLookup {
 public:
  using Done = std::function<void(const HostAddresses&)>;

  /// `done` is called from the event loop, after this call has returned, and
  /// lets go of the lookup.
  /// None when the process may have no more descriptors or threads.
  static std::unique_ptr<HostLookup> Start(SocketWatcher& watcher, const std::string& host,
                                           std::uint16_t port, Done done);

 private:
  HostLookup() = default;

  Descriptor end_;
  std::unique_ptr<SocketWatch> watch_;
};

}  // namespace tarnvale
