#include "hosts/windows/session_end.h"

#include <utility>

#include "hosts/windows/native_errors.h"

namespace tarnvale {

SessionEnd::SessionEnd(WindowsEventLoop& loop, std::function<bool()> may_end,
                       std::function<void()> ends)
    : loop_(loop), may_end_(std::move(may_end)), ends_(std::move(ends)) {
  HINSTANCE program = ::GetModuleHandleW(nullptr);
  WNDCLASSEXW description{};
  description.cbSize = sizeof description;
  description.lpfnWndProc = &SessionEnd::OnMessage;
  description.hInstance = program;
  description.lpszClassName = kWindowClass.data();
  // It may be there already.
  ::RegisterClassExW(&description);
  window_ = ::CreateWindowExW(WS_EX_TOOLWINDOW, kWindowClass.data(), nullptr, WS_POPUP, 0, 0, 0, 0,
                              nullptr, nullptr, program, nullptr);
  if (window_ == nullptr) RaiseLast(Attempt::kChange);
  ::SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

SessionEnd::~SessionEnd() {
  ::SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
  ::DestroyWindow(window_);
}

LRESULT CALLBACK SessionEnd::OnMessage(HWND window, UINT message, WPARAM first,
                                       LPARAM second) noexcept {
  auto* self = reinterpret_cast<SessionEnd*>(::GetWindowLongPtrW(window, GWLP_USERDATA));
  // Whoever asks all windows of the program to close means those that a person sees.
  if (message == WM_CLOSE) return 0;
  if (self != nullptr && message == WM_QUERYENDSESSION) {
    bool may_end = true;
    self->loop_.Deliver([&] { may_end = self->may_end_(); });
    return may_end ? TRUE : FALSE;
  }
  if (self != nullptr && message == WM_ENDSESSION) {
    if (first != FALSE) self->loop_.Deliver(self->ends_);
    return 0;
  }
  return ::DefWindowProcW(window, message, first, second);
}

}  // namespace tarnvale
