#include "platform/linux/farewells.h"

#include <sys/socket.h>

#include <cerrno>
#include <utility>

namespace tarnvale {
namespace {

constexpr int kLimitMs = 60000;
constexpr std::size_t kMostAtOnce = 1 << 20;

bool IsPassing(int error) {
  return error == EAGAIN || error == EWOULDBLOCK || error == EINTR;
}

}  // namespace

void Farewells::Take(Descriptor connection, std::string unsent) {
  const Place place = leaving_.emplace(leaving_.begin());
  place->connection = std::move(connection);
  place->unsent = std::move(unsent);
  place->limit = std::make_unique<Timer>(loop_.Timers(), kLimitMs, true);
  place->limit->Tick.Listen([this, place] { Forget(place); });
  const int descriptor = place->connection.Get();
  place->readable =
      watches_.Watch(descriptor, Readiness::kRead, [this, place] { DropReply(place); });
  place->writable =
      watches_.Watch(descriptor, Readiness::kWrite, [this, place] { SendRest(place); });
  SendRest(place);
}

// Each is called no more once it has forgotten its connection.
void Farewells::SendRest(Place place) {
  while (place->sent < place->unsent.size()) {
    const ssize_t count = ::send(place->connection.Get(), place->unsent.data() + place->sent,
                                 place->unsent.size() - place->sent, MSG_NOSIGNAL | MSG_DONTWAIT);
    if (count < 0) {
      if (!IsPassing(errno)) Forget(place);
      return;
    }
    place->sent += static_cast<std::size_t>(count);
  }
  place->writable.reset();
  ::shutdown(place->connection.Get(), SHUT_WR);
  if (!place->readable) Forget(place);
}

void Farewells::DropReply(Place place) {
  const ssize_t count =
      ::recv(place->connection.Get(), nullptr, kMostAtOnce, MSG_DONTWAIT | MSG_TRUNC);
  if (count > 0 || (count < 0 && IsPassing(errno))) return;
  // A server that has said all may still be reading.
  if (count == 0 && place->writable) {
    place->readable.reset();
    return;
  }
  Forget(place);
}

void Farewells::Forget(Place place) {
  place->limit->Enabled = false;
  place->readable.reset();
  place->writable.reset();
  place->connection.Close();
  gone_.splice(gone_.begin(), leaving_, place);
  loop_.Post([this, life = std::weak_ptr<int>(life_)] {
    if (!life.expired()) gone_.clear();
  });
}

}  // namespace tarnvale
