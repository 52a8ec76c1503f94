// A window and nothing else: what any program costs under the same Wine.
#include "hosts/windows/system_headers.h"

int WINAPI WinMain(HINSTANCE module, HINSTANCE, LPSTR, int) {
  WNDCLASSW description{};
  description.lpfnWndProc = &::DefWindowProcW;
  description.hInstance = module;
  description.hbrBackground = ::GetSysColorBrush(COLOR_BTNFACE);
  description.lpszClassName = L"PlainWindow";
  ::RegisterClassW(&description);
  ::CreateWindowW(L"PlainWindow", L"Plain", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 440, 260,
                  nullptr, nullptr, module, nullptr);
  MSG message{};
  while (::GetMessageW(&message, nullptr, 0, 0) > 0) ::DispatchMessageW(&message);
  return 0;
}
