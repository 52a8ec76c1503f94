// The end of the user's session.
#pragma once

#include <functional>
#include <string_view>

#include "hosts/windows/windows_event_loop.h"

namespace tarnvale {

/// A window that is never seen and hears that the session is to end: one of the program's may
/// not have been made yet.
class SessionEnd {
 public:
  static constexpr std::wstring_view kWindowClass = L"TarnvaleSession";

  /// `may_end` is asked first and may show boxes; false keeps the session from ending. `ends`
  /// comes when it does end: the system ends the process as soon as that returns.
  SessionEnd(WindowsEventLoop& loop, std::function<bool()> may_end, std::function<void()> ends);
  SessionEnd(const SessionEnd&) = delete;
  SessionEnd& operator=(const SessionEnd&) = delete;
  ~SessionEnd();

 private:
  static LRESULT CALLBACK OnMessage(HWND window, UINT message, WPARAM first,
                                    LPARAM second) noexcept;

  WindowsEventLoop& loop_;
  std::function<bool()> may_end_;
  std::function<void()> ends_;
  HWND window_ = nullptr;
};

}  // namespace tarnvale
