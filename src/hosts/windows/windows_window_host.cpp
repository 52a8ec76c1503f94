#include "hosts/windows/windows_window_host.h"

#include <algorithm>
#include <utility>

#include "hosts/windows/windows_menus.h"

namespace tarnvale {
namespace {

constexpr int kPlainDpi = 96;

}  // namespace

int SystemDpi() {
  HDC screen = ::GetDC(nullptr);
  const int dpi = ::GetDeviceCaps(screen, LOGPIXELSY);
  ::ReleaseDC(nullptr, screen);
  return std::max(dpi, kPlainDpi);
}

WindowsWindowHost::WindowsWindowHost(WindowsEventLoop& loop, FileSystem& files, MessageBoxes& boxes,
                                     std::function<Path(const std::wstring& native)> program_path,
                                     int dpi)
    : fonts_(dpi),
      text_(fonts_, dpi / kPlainDpi),
      frames_(loop.Timers()),
      context_{.loop = loop,
               .frames = frames_,
               .fonts = fonts_,
               .text = text_,
               .files = files,
               .boxes = boxes,
               .desktop = desktop_,
               .program_path = std::move(program_path),
               .dpi = dpi} {
  FollowColors();
  subscriptions_.push_back(desktop_.Pointer.Changed.Subscribe([this] { ShowPointer(); }));
}

WindowsWindowHost::~WindowsWindowHost() {
  context_.ending = true;
}

void WindowsWindowHost::Adopt(Window& window) {
  windows_.push_back(std::make_unique<WindowsWindow>(context_, window, box_depth_));
}

void WindowsWindowHost::Drop(Window& window) {
  std::erase_if(windows_, [&](const auto& native) { return &native->Record() == &window; });
  if (desktop_.ActiveWindow.Get() == &window) desktop_.ActiveWindow = nullptr;
}

WindowsWindow* WindowsWindowHost::NativeOf(const Window& window) const {
  for (const auto& native : windows_) {
    if (&native->Record() == &window) return native.get();
  }
  return nullptr;
}

HWND WindowsWindowHost::OwnerFor(const Window* wanted) const {
  // A box or a dialog that is up is no record's.
  HWND const active = ::GetActiveWindow();
  if (box_depth_ > 0 && active != nullptr && ::IsWindowVisible(active) != 0) return active;
  for (const Window* window : {wanted, static_cast<const Window*>(desktop_.ActiveWindow.Get())}) {
    const WindowsWindow* native = window == nullptr ? nullptr : NativeOf(*window);
    HWND const handle = native == nullptr ? nullptr : native->Native();
    if (handle != nullptr && ::IsWindowVisible(handle) != 0 && ::IsIconic(handle) == 0)
      return handle;
  }
  return nullptr;
}

// The window that hears this is never seen: one of the program's may not have been made yet.
std::optional<LRESULT> WindowsWindowHost::OnBroadcast(UINT message, WPARAM first) {
  switch (message) {
    case WM_QUERYENDSESSION: {
      bool may_end = true;
      context_.loop.Deliver([&] { may_end = MaySessionEnd(); });
      return may_end ? TRUE : FALSE;
    }
    case WM_ENDSESSION:
      // The system ends the process as soon as this returns.
      if (first != FALSE) context_.loop.Deliver([this] { SessionEnds.Emit(); });
      return 0;
    case WM_SYSCOLORCHANGE:
    case WM_SETTINGCHANGE:
      context_.loop.Deliver([this] { FollowColors(); });
      return 0;
    default:
      return std::nullopt;
  }
}

void WindowsWindowHost::FollowColors() {
  const auto system = HighContrastColors();
  if (system == HighContrast.Get()) return;
  context_.colors = system ? LookColors(*system) : LookColors();
  HighContrast = system;
  for (const auto& window : windows_) window->FollowColors();
}

// The program's first window is the one that is asked, as by its close box. A question that is
// open already is no answer.
bool WindowsWindowHost::MaySessionEnd() {
  return windows_.empty() || box_depth_ > 0 || windows_.front()->Record().Close();
}

WindowsWindowHost::Modal::Modal(WindowsWindowHost& host, HWND owner) : host_(host) {
  ++host_.box_depth_;
  host_.ApplyEnabled(owner);
}

WindowsWindowHost::Modal::~Modal() {
  --host_.box_depth_;
  host_.ApplyEnabled(nullptr);
}

void WindowsWindowHost::ApplyEnabled(HWND but) {
  for (const auto& native : windows_) {
    if (but == nullptr || native->Native() != but) native->ApplyEnabled();
  }
}

void WindowsWindowHost::PopUp(MenuItem& menu) {
  HWND const active = OwnerFor(nullptr);
  PopUpMenu(active != nullptr ? active : UnseenOwner(), menu, context_.loop);
}

int WindowsWindowHost::ScreenWidthTwips() {
  return ::MulDiv(::GetSystemMetrics(SM_CXSCREEN), kPlainDpi * kTwipsPerPixel, context_.dpi);
}

int WindowsWindowHost::ScreenHeightTwips() {
  return ::MulDiv(::GetSystemMetrics(SM_CYSCREEN), kPlainDpi * kTwipsPerPixel, context_.dpi);
}

// The system asks the window under the pointer for its shape when the mouse moves.
void WindowsWindowHost::ShowPointer() {
  POINT at{};
  if (::GetCursorPos(&at) != 0) ::SetCursorPos(at.x, at.y);
}

}  // namespace tarnvale
