// A window that is made when it is first used.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <iterator>
#include <list>
#include <memory>

#include "ui/event_loop.h"
#include "ui/window.h"

namespace tarnvale {

enum class WhenClosed {
  kUnloaded,  ///< its next use makes a new one, with its design state
  kHidden,    ///< its next use finds it as it was
};

/// The one window of its class. One that is closed and unloaded is deleted when
/// nothing of it runs any more, as an operation of its own may go on unseen.
template <class W>
class WindowSlot {
 public:
  /// `make` makes one window, wired and complete. All must outlive the slot's
  /// uses.
  WindowSlot(EventLoop& loop, WindowHost& windows, std::function<std::unique_ptr<W>()> make,
             WhenClosed when_closed = WhenClosed::kUnloaded)
      : loop_(loop), windows_(windows), make_(std::move(make)), when_closed_(when_closed) {}
  WindowSlot(const WindowSlot&) = delete;
  WindowSlot& operator=(const WindowSlot&) = delete;

  bool IsLoaded() const { return window_ != nullptr; }

  /// The loaded window; loads it, hidden, when there is none. The caller keeps the
  /// reference no longer than its handler runs.
  W& Get() {
    if (!window_) Load();
    first_user_ = std::min(first_user_, loop_.RunningHandler());
    return *window_;
  }

  void Show() { Get().Show(); }

 private:
  void Load() {
    window_ = make_();
    first_user_ = loop_.RunningHandler();
    windows_.Adopt(*window_);
    if (when_closed_ == WhenClosed::kUnloaded) window_->Closed.Listen([this] { Unload(); });
  }

  void Unload() {
    if (!window_) return;
    closed_.push_back(std::move(window_));
    const auto closed = std::prev(closed_.end());
    loop_.AfterHandlersSince(first_user_, [this, closed, life = std::weak_ptr<int>(life_)] {
      if (life.expired()) return;
      windows_.Drop(**closed);
      closed_.erase(closed);
    });
  }

  EventLoop& loop_;
  WindowHost& windows_;
  std::function<std::unique_ptr<W>()> make_;
  WhenClosed when_closed_;
  std::unique_ptr<W> window_;
  /// The number of the earliest handler that may have a reference to the window.
  std::uint64_t first_user_ = 0;
  std::list<std::unique_ptr<W>> closed_;
  std::shared_ptr<int> life_ = std::make_shared<int>();
};

}  // namespace tarnvale
