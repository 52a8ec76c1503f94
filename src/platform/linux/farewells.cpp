#include "platform/linux/farewells.h"

#include <sys/socket.h>

#include <cerrno>
#include <chrono>
#include <utility>

namespace tarnvale {
namespace {

constexpr std::chrono::seconds kLimit{60};
constexpr std::size_t kMostAtOnce = 1 << 20;

bool IsPassing(int error) {
  return error == EAGAIN || error == EINTR;
}

}  // namespace

void Farewells::Take(Descriptor connection, std::string unsent) {
  const Place place = leaving_.emplace(leaving_.begin());
  place->connection = std::move(connection);
  place->unsent = std::move(unsent);
  place->limit = watcher_.NewAlarm([this, place] { leaving_.erase(place); });
  place->limit->Set(kLimit);
  place->watch = watcher_.Watch(place->connection.Get(),
                                [this, place](SocketReadiness ready) { OnReady(place, ready); });
  Want(place, place->wanted);
  SendRest(place);
}

void Farewells::Want(Place place, SocketReadiness wanted) {
  place->wanted = wanted;
  place->watch->Want(wanted);
}

void Farewells::OnReady(Place place, SocketReadiness ready) {
  ready.writable ? SendRest(place) : DropReply(place);
}

// Both may forget the connection, as their last deed.
void Farewells::SendRest(Place place) {
  while (place->sent < place->unsent.size()) {
    const ssize_t count = ::send(place->connection.Get(), place->unsent.data() + place->sent,
                                 place->unsent.size() - place->sent, MSG_NOSIGNAL | MSG_DONTWAIT);
    if (count < 0) {
      if (!IsPassing(errno)) leaving_.erase(place);
      return;
    }
    place->sent += static_cast<std::size_t>(count);
  }
  ::shutdown(place->connection.Get(), SHUT_WR);
  if (place->wanted.readable) {
    Want(place, {.readable = true});
  } else {
    leaving_.erase(place);
  }
}

void Farewells::DropReply(Place place) {
  const ssize_t count =
      ::recv(place->connection.Get(), nullptr, kMostAtOnce, MSG_DONTWAIT | MSG_TRUNC);
  if (count > 0 || (count < 0 && IsPassing(errno))) return;
  // A server that has said all may still be reading.
  if (count == 0 && place->wanted.writable) {
    Want(place, {.writable = true});
  } else {
    leaving_.erase(place);
  }
}

}  // namespace tarnvale
