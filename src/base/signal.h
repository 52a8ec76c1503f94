// Signals: a listener connects a handler, and is notified when they are emitted.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace tarnvale {

/// Holds one connection; letting go of it disconnects. Outliving the signal is
/// allowed.
class Subscription {
 public:
  Subscription() = default;
  explicit Subscription(std::shared_ptr<bool> alive) : alive_(std::move(alive)) {}
  Subscription(Subscription&& other) noexcept = default;
  Subscription& operator=(Subscription&& other) noexcept {
    if (this != &other) {
      Cancel();
      alive_ = std::move(other.alive_);
    }
    return *this;
  }
  Subscription(const Subscription&) = delete;
  Subscription& operator=(const Subscription&) = delete;
  ~Subscription() { Cancel(); }

  void Cancel() {
    if (alive_) *alive_ = false;
    alive_.reset();
  }

 private:
  std::shared_ptr<bool> alive_;
};

/// Calls its handlers in the order in which they connected. A handler may
/// connect, disconnect or emit again: one that connects during an emission is
/// first called at the next, one that disconnects is called no more.
template <class... Args>
class Signal {
 public:
  using Handler = std::function<void(Args...)>;

  Signal() = default;
  Signal(const Signal&) = delete;
  Signal& operator=(const Signal&) = delete;

  /// Connects for as long as the signal lives.
  void Listen(Handler handler) { Add(std::move(handler)); }

  /// Connects for as long as the subscription lives.
  [[nodiscard]] Subscription Subscribe(Handler handler) {
    return Subscription(Add(std::move(handler)));
  }

  void Emit(Args... args) {
    // The slots are shared: a nested emission may drop dead ones meanwhile.
    const std::vector<std::shared_ptr<Slot>> now = slots_;
    for (const auto& slot : now) {
      if (*slot->alive) slot->handler(args...);
    }
    DropDead();
  }

  bool HasListeners() const {
    for (const auto& slot : slots_) {
      if (*slot->alive) return true;
    }
    return false;
  }

 private:
  struct Slot {
    Handler handler;
    std::shared_ptr<bool> alive = std::make_shared<bool>(true);
  };

  std::shared_ptr<bool> Add(Handler handler) {
    // A signal that is never emitted doesn't keep what was connected for a while.
    DropDead();
    auto slot = std::make_shared<Slot>();
    slot->handler = std::move(handler);
    slots_.push_back(slot);
    return slot->alive;
  }

  void DropDead() {
    std::erase_if(slots_, [](const std::shared_ptr<Slot>& slot) { return !*slot->alive; });
  }

  std::vector<std::shared_ptr<Slot>> slots_;
};

}  // namespace tarnvale
