#include "platform/linux/host_lookup.h"

#include <fcntl.h>
#include <netdb.h>

#include <cstring>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/socket.h"

namespace tarnvale {
namespace {

int NumberOf(int lookup_error) {
  switch (lookup_error) {
    case EAI_NONAME:
      return kHostNotFound;
    case EAI_AGAIN:
      return kHostNotFoundTryAgain;
    case EAI_NODATA:
    case EAI_ADDRFAMILY:
      return kNoAddressForName;
    default:
      return kNameServerFailure;
  }
}

HostAddresses LookUp(const std::string& host, std::uint16_t port, int flags) {
  // The system would stop reading at a zero byte and find another host.
  if (host.find('\0') != std::string::npos) return {kHostNotFound, {}};
  addrinfo hints{};
  hints.ai_socktype = SOCK_STREAM;
  hints.ai_flags = flags | AI_NUMERICSERV;
  addrinfo* first = nullptr;
  const int error = ::getaddrinfo(host.c_str(), std::to_string(port).c_str(), &hints, &first);
  if (error != 0) return {NumberOf(error), {}};
  HostAddresses found;
  for (const addrinfo* entry = first; entry != nullptr; entry = entry->ai_next) {
    NativeAddress address;
    std::memcpy(&address.storage, entry->ai_addr, entry->ai_addrlen);
    address.length = entry->ai_addrlen;
    found.addresses.push_back(address);
  }
  ::freeaddrinfo(first);
  return found;
}

// The writing end goes with the lookup's thread: its closing is the signal, and
// what the thread wrote before stands by then.
bool LookUpBeside(const std::shared_ptr<HostAddresses>& found, Descriptor writing_end,
                  const std::string& host, std::uint16_t port) {
  try {
    std::thread([found, host, port, end = std::move(writing_end)]() mutable {
      *found = LookUp(host, port, 0);
      end.Close();
    }).detach();
    return true;
  } catch (const std::system_error&) {
    return false;
  }
}

}  // namespace

std::vector<NativeAddress> NumericAddress(const std::string& host, std::uint16_t port) {
  return LookUp(host, port, AI_NUMERICHOST).addresses;
}

std::unique_ptr<HostLookup> HostLookup::Start(SocketWatcher& watcher, const std::string& host,
                                              std::uint16_t port, Done done) {
  int ends[2] = {-1, -1};
  if (::pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) return nullptr;
  std::unique_ptr<HostLookup> lookup(new HostLookup);
  lookup->end_ = Descriptor(ends[0]);
  const auto found = std::make_shared<HostAddresses>();
  if (!LookUpBeside(found, Descriptor(ends[1]), host, port)) return nullptr;
  lookup->watch_ =
      watcher.Watch(lookup->end_.Get(),
                    // Who is told may let go of the lookup.
                    [found, done = std::move(done)](SocketReadiness) { done(*found); });
  lookup->watch_->Want({.readable = true});
  return lookup;
}

}  // namespace tarnvale
