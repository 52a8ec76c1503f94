#include "hosts/windows/message_window.h"

#include <utility>

#include "hosts/windows/native_errors.h"

namespace tarnvale {
namespace {

constexpr wchar_t kClass[] = L"TarnvaleMessages";

}  // namespace

MessageWindow::MessageWindow(Handler handler, Hears hears) : handler_(std::move(handler)) {
  HINSTANCE program = ::GetModuleHandleW(nullptr);
  WNDCLASSEXW description{};
  description.cbSize = sizeof description;
  description.lpfnWndProc = &MessageWindow::OnMessage;
  description.hInstance = program;
  description.lpszClassName = kClass;
  // It may be there already.
  ::RegisterClassExW(&description);
  const bool is_top = hears == Hears::kBroadcasts;
  window_ =
      ::CreateWindowExW(is_top ? WS_EX_TOOLWINDOW : 0, kClass, nullptr, is_top ? WS_POPUP : 0, 0, 0,
                        0, 0, is_top ? nullptr : HWND_MESSAGE, nullptr, program, nullptr);
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
  // A request to all windows of the program to close means those that a person sees.
  if (message == WM_CLOSE) return 0;
  if (self != nullptr) {
    if (const auto answer = self->handler_(message, first, second)) return *answer;
  }
  return ::DefWindowProcW(window, message, first, second);
}

}  // namespace tarnvale
