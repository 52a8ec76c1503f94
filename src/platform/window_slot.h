// A window that is made when it is first used, and anew after it was closed.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "platform/window.h"

namespace tarnvale {

/// The one window of its class. Closing it unloads it: its next use makes a new
/// one, with its design state. A closed window stays alive, hidden, until the
/// slot ends, as an operation of its own may still be running.
template <class W>
class WindowSlot {
 public:
  /// `make` makes one window, wired and complete. Both must outlive the slot's
  /// uses.
  WindowSlot(WindowHost& windows, std::function<std::unique_ptr<W>()> make)
      : windows_(windows), make_(std::move(make)) {}
  WindowSlot(const WindowSlot&) = delete;
  WindowSlot& operator=(const WindowSlot&) = delete;

  bool IsLoaded() const { return window_ != nullptr; }

  /// The loaded window; loads it, hidden, when there is none.
  W& Get() {
    if (!window_) {
      window_ = make_();
      windows_.Adopt(*window_);
      window_->Closed.Listen([this] { Unload(); });
    }
    return *window_;
  }

  void Show() { Get().Show(); }

 private:
  void Unload() {
    if (!window_) return;
    windows_.Drop(*window_);
    closed_.push_back(std::move(window_));
  }

  WindowHost& windows_;
  std::function<std::unique_ptr<W>()> make_;
  std::unique_ptr<W> window_;
  std::vector<std::unique_ptr<W>> closed_;
};

}  // namespace tarnvale
