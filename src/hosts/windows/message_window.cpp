#include "hosts/windows/message_window.h"

#include <utility>

#include "hosts/windows/native_errors.h"

namespace tarnvale {
namespace {

constexpr wchar_t kClass[] = L"TarnvaleMessages";

}  // namespace

MessageWindow::MessageWindow(Handler handler) : handler_(std::move(handler)) {
  HINSTANCE program = ::GetModuleHandleW(nullptr);
  WNDCLASSEXW description{};
  description.cbSize = sizeof description;
  description.lpfnWndProc = &MessageWindow::OnMessage;
  description.hInstance = program;
  description.lpszClassName = kClass;
  // It may be there already.
  ::RegisterClassExW(&description);
  window_ =
      ::CreateWindowExW(0, kClass, nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, program, nullptr);
  if (window_ == nullptr) RaiseLast(Attempt::kChange);
  ::SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

MessageWindow::~MessageWindow() {
  ::SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
  ::DestroyWindow(window_);
}

LRESULT CALLBACK MessageWindow::OnMessage(HWND window, UINT message, WPARAM first,
                                          LPARAM second) noexcept {
  auto* self = reinterpret_cast<MessageWindow*>(::GetWindowLongPtrW(window, GWLP_USERDATA));
  const bool is_own = message >= kFirstMessage || message == WM_TIMER;
  if (self == nullptr || !is_own) return ::DefWindowProcW(window, message, first, second);
  self->handler_(message, first, second);
  return 0;
}

}  // namespace tarnvale
