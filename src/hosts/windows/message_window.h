// A window that is never seen and takes messages for this thread.
#pragma once

#include <functional>
#include <optional>

#include "hosts/windows/system_headers.h"

namespace tarnvale {

/// Its messages come in whatever loop the thread runs, a message box's included;
/// those that are posted to a thread without a window are lost there.
class MessageWindow {
 public:
  /// The arguments of a message. Returns its answer; none for one that it has no use for.
  using Handler = std::function<std::optional<LRESULT>(UINT message, WPARAM first, LPARAM second)>;

  /// The first number that messages of a window's own may have.
  static constexpr UINT kFirstMessage = WM_APP;

  enum class Hears { kItsOwn, kBroadcasts };

  /// `handler` is called for every message but WM_CLOSE: for what the system sends to all
  /// windows on top, too, where it hears broadcasts. It must not raise.
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
