// A window that is never seen and takes messages for this thread.
#pragma once

#include <functional>

#include "hosts/windows/system_headers.h"

namespace tarnvale {

/// Its messages come in whatever loop the thread runs, a message box's included;
/// those that are posted to a thread without a window are lost there.
class MessageWindow {
 public:
  /// The arguments of a message.
  using Handler = std::function<void(UINT message, WPARAM first, LPARAM second)>;

  /// The first number that messages of a window's own may have.
  static constexpr UINT kFirstMessage = WM_APP;

  enum class Hears { kItsOwn, kBroadcasts };

  /// `handler` is called for its own messages, for WM_TIMER, and, where it hears them, for
  /// WM_DEVICECHANGE and those that the system's parts register. It must not raise.
  explicit MessageWindow(Handler handler, Hears hears = Hears::kItsOwn);
  MessageWindow(const MessageWindow&) = delete;
  MessageWindow& operator=(const MessageWindow&) = delete;
  ~MessageWindow();

  HWND Get() const { return window_; }

 private:
  static LRESULT CALLBACK OnMessage(HWND window, UINT message, WPARAM first,
                                    LPARAM second) noexcept;

  Handler handler_;
  HWND window_ = nullptr;
};

}  // namespace tarnvale
