#include "hosts/windows/peers/native_peer.h"

#include <algorithm>
#include <utility>

#include "hosts/windows/accessible.h"
#include "hosts/windows/keys.h"
#include "hosts/windows/native_errors.h"
#include "hosts/windows/windows_window.h"
#include "ui/input_rules.h"

namespace tarnvale {
namespace {

// Where a window's peer is found; the system's controls have a use for their own places.
constexpr wchar_t kPeer[] = L"TarnvalePeer";

}  // namespace

NativePeer::~NativePeer() {
  for (const Followed& followed : followed_) {
    ::SetWindowLongPtrW(followed.window, GWLP_WNDPROC,
                        reinterpret_cast<LONG_PTR>(followed.procedure));
    ::RemovePropW(followed.window, kPeer);
  }
  if (native_ != nullptr) ::DestroyWindow(native_);
}

void NativePeer::Create(const wchar_t* window_class, DWORD style, DWORD extended_style) {
  style |= WS_CHILD | WS_CLIPSIBLINGS;
  if (IsShown()) style |= WS_VISIBLE;
  if (!IsUsable()) style |= WS_DISABLED;
  native_ = ::CreateWindowExW(extended_style, window_class, L"", style, Area().left, Area().top,
                              Area().right - Area().left, Area().bottom - Area().top,
                              window_.Native(), nullptr, ::GetModuleHandleW(nullptr), nullptr);
  if (native_ == nullptr) RaiseLast(Attempt::kChange);
  const auto font = reinterpret_cast<WPARAM>(context_.fonts.OfRole(TextRole::kBody));
  ::SendMessageW(native_, WM_SETFONT, font, 0);
  FollowWindow(native_);
}

void NativePeer::AddInner(HWND inner) {
  FollowWindow(inner);
}

void NativePeer::FollowWindow(HWND window) {
  ::SetPropW(window, kPeer, this);
  const LONG_PTR before =
      ::SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&NativePeer::Procedure));
  followed_.push_back({window, reinterpret_cast<WNDPROC>(before)});
}

LRESULT CALLBACK NativePeer::Procedure(HWND window, UINT message, WPARAM first,
                                       LPARAM second) noexcept {
  auto* peer = static_cast<NativePeer*>(::GetPropW(window, kPeer));
  if (peer == nullptr) return ::DefWindowProcW(window, message, first, second);
  LRESULT result = 0;
  peer->context_.loop.Deliver([&] { result = peer->Serve(window, message, first, second); });
  return result;
}

LRESULT NativePeer::PassOn(HWND window, UINT message, WPARAM first, LPARAM second) {
  const auto followed = std::find_if(followed_.begin(), followed_.end(),
                                     [&](const Followed& f) { return f.window == window; });
  if (followed == followed_.end()) return ::DefWindowProcW(window, message, first, second);
  return ::CallWindowProcW(followed->procedure, window, message, first, second);
}

LRESULT NativePeer::Serve(HWND window, UINT message, WPARAM first, LPARAM second) {
  if (context_.ending) return PassOn(window, message, first, second);
  if (IsPress(message)) {
    got_focus_by_press_ = Record().Owner()->Focused() != &Record();
    // The record's focus goes first: its old owner may show a box, and may call it back.
    Report([this] { Record().Owner()->Focus(Record()); });
    if (!MayTakePress(Record())) return 0;
  }
  switch (message) {
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN: {
      const KeyPress press = ToKeyPress(window, first);
      if (!KeepsKey(press.key) && window_.ServeKey(*this, press)) {
        DropTyped(window);
        return 0;
      }
      break;
    }
    case WM_SETFOCUS:
      Report([this] { Record().Owner()->Focus(Record()); });
      OnFocus(true);
      break;
    case WM_KILLFOCUS:
      OnFocus(false);
      break;
    case WM_GETOBJECT:
      if (WantsClientObject(second)) {
        const LRESULT answer = NativeForReaders(window_, *this, window, first);
        if (answer != 0) return answer;
      }
      break;
    default:
      break;
  }
  return OnMessage(window, message, first, second);
}

void NativePeer::TakeNativeFocus() {
  ::SetFocus(native_);
}

void NativePeer::Repaint() {
  ::InvalidateRect(native_, nullptr, TRUE);
}

void NativePeer::SetCovered(bool is_covered) {
  if (std::exchange(is_covered_, is_covered) == is_covered) return;
  NativePeer::OnShown(IsShown());
}

void NativePeer::OnShown(bool is_shown) {
  ::ShowWindow(native_, is_shown && !is_covered_ ? SW_SHOWNA : SW_HIDE);
}

void NativePeer::OnUsable(bool is_usable) {
  ::EnableWindow(native_, static_cast<BOOL>(is_usable));
}

}  // namespace tarnvale
