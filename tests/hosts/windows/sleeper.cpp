// A program that waits to be ended: "polite" ends when its window is to close, with
// exit status 7; "deaf" has no window. Sets the event
// that its second argument names when it is ready; exit status 3 where no window can be had.
#include <windows.h>

#include <string>

#include "hosts/windows/wide.h"
#include "native/console.h"

namespace {

LRESULT CALLBACK Answer(HWND window, UINT message, WPARAM wide, LPARAM long_one) {
  if (message == WM_CLOSE) {
    ::PostQuitMessage(7);
    return 0;
  }
  return ::DefWindowProcW(window, message, wide, long_one);
}

bool HasAWindow() {
  WNDCLASSW kind{};
  kind.lpfnWndProc = &Answer;
  kind.lpszClassName = L"Sleeper";
  ::RegisterClassW(&kind);
  return ::CreateWindowW(kind.lpszClassName, L"", WS_OVERLAPPED, 0, 0, 9, 9, nullptr, nullptr,
                         nullptr, nullptr) != nullptr;
}

}  // namespace

int main(int argc, char** argv) {
  const auto arguments = tarnvale::Arguments(argc, argv);
  const bool has_window = arguments[0] == "polite";
  if (has_window && !HasAWindow()) return 3;
  const HANDLE ready =
      ::OpenEventW(EVENT_MODIFY_STATE, FALSE, tarnvale::Wide(arguments[1]).c_str());
  ::SetEvent(ready);
  if (!has_window) ::Sleep(INFINITE);
  MSG message{};
  while (::GetMessageW(&message, nullptr, 0, 0) > 0) ::DispatchMessageW(&message);
  return static_cast<int>(message.wParam);
}
