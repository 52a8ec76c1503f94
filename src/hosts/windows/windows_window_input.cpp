// What the user does to a window: the focus, keys, the mouse, drags.
#include "hosts/windows/windows_window.h"

#include <commctrl.h>

#include <algorithm>
#include <utility>

#include "base/text.h"
#include "hosts/windows/keys.h"
#include "hosts/windows/windows_pictures.h"
#include "ui/input_rules.h"
#include "ui/owner_drawn.h"

namespace tarnvale {
namespace {

/// The bit of a key message that says that the key was down before.
constexpr LPARAM kWasDown = 1 << 30;

}  // namespace

// The focus.

void WindowsWindow::LeaveUnreachable() {
  const Control* focused = record_.Focused();
  if (focused == nullptr || Window::IsReachable(*focused) || ::GetActiveWindow() != native_) return;
  Report([this] { record_.FocusNext(); });
}

DrawnPeer* WindowsWindow::FocusedDrawn() const {
  const Control* focused = record_.Focused();
  return focused == nullptr ? nullptr : dynamic_cast<DrawnPeer*>(PeerOf(*focused));
}

void WindowsWindow::ShowFocus() {
  if (native_ == nullptr || record_.Focused() == nullptr) return;
  // Setting the focus into another window would make that one active.
  if (::GetActiveWindow() != native_) return;
  Peer* peer = PeerOf(*record_.Focused());
  if (peer == nullptr) return;
  peer->TakeNativeFocus();
  MarkFocused(dynamic_cast<DrawnPeer*>(peer));
}

void WindowsWindow::MarkFocused(DrawnPeer* peer) {
  if (marked_ == peer) return;
  if (DrawnPeer* before = std::exchange(marked_, peer)) before->OnFocus(false);
  if (peer == nullptr) return;
  peer->OnFocus(true);
  NotifyReaders(EVENT_OBJECT_FOCUS, *peer);
}

bool WindowsWindow::ServeKey(Peer& peer, const KeyPress& press) {
  if (press.alt && !press.control && ServeAccessKey(press.character)) return true;
  KeyEvent key{.press = press};
  Report([&] { record_.KeyDown.Emit(key); });
  if (key.handled) return true;
  if (press.key == Key::kEnter) {
    if (OwnerDrawn* button = PressedByEnter(peer.Record())) {
      Report([button] { button->Press(); });
      return true;
    }
  }
  if (press.key != Key::kTab || press.control || press.alt) return false;
  Report([&] { record_.FocusNext(!press.shift); });
  return true;
}

// Several controls with one key take turns in getting the focus.
bool WindowsWindow::ServeAccessKey(char32_t typed) {
  const char32_t key = InLowerCase(typed);
  if (key == 0) return false;
  std::vector<DrawnPeer*> known;
  for (const auto& peer : peers_) {
    auto* drawn = dynamic_cast<DrawnPeer*>(peer.get());
    if (drawn != nullptr && drawn->AccessKey() == key && drawn->IsShown() && drawn->IsUsable()) {
      known.push_back(drawn);
    }
  }
  if (known.empty()) return false;
  if (known.size() == 1) {
    known.front()->OnAccessKey();
    return true;
  }
  const auto present = std::find(known.begin(), known.end(), FocusedDrawn());
  DrawnPeer* next =
      present == known.end() || present + 1 == known.end() ? known.front() : present[1];
  Report([&] { record_.Focus(next->Record()); });
  return true;
}

bool WindowsWindow::ServeDrawnKey(UINT message, WPARAM first, LPARAM second) {
  DrawnPeer* peer = FocusedDrawn();
  if (peer == nullptr) return false;
  const KeyPress press = ToKeyPress(native_, first);
  if (message == WM_KEYUP || message == WM_SYSKEYUP) {
    peer->OnKeyUp(press);
    return message == WM_KEYUP;
  }
  if (!ServeKey(*peer, press) && !peer->OnKeyDown(press, (second & kWasDown) != 0)) return false;
  DropTyped(native_);
  return true;
}

// The mouse.

DrawnPeer* WindowsWindow::DrawnAt(POINT at) const {
  for (auto peer = scene_.rbegin(); peer != scene_.rend(); ++peer) {
    if ((*peer)->IsShown() && ::PtInRect(&(*peer)->SeenArea(), at) != 0) return *peer;
  }
  return nullptr;
}

void WindowsWindow::MoveOver(DrawnPeer* peer) {
  if (peer != nullptr && !peer->IsUsable()) peer = nullptr;
  if (over_ == peer) return;
  if (DrawnPeer* before = std::exchange(over_, peer)) before->OnPointerOver(false);
  if (peer != nullptr) peer->OnPointerOver(true);
  if (tips_ != nullptr) ::SendMessageW(tips_, TTM_POP, 0, 0);
}

void WindowsWindow::ServeMouse(UINT message, WPARAM first, LPARAM second) {
  const POINT at = PointOf(second);
  if (!hears_leaving_) {
    TRACKMOUSEEVENT leaving{sizeof leaving, TME_LEAVE, native_, 0};
    hears_leaving_ = ::TrackMouseEvent(&leaving) != 0;
  }
  if (pressed_ == nullptr) MoveOver(DrawnAt(at));
  DrawnPeer* peer = pressed_ != nullptr ? pressed_ : over_;
  const MouseButton button = ButtonOf(message);
  const auto within = [&] { return POINT{at.x - peer->Area().left, at.y - peer->Area().top}; };
  if (IsPress(message) || IsDoublePress(message)) {
    if (peer == nullptr) return;
    Control& control = peer->Record();
    // A handler that is called for the focus may have called it back.
    if (record_.Frame != WindowFrame::kPopup && control.TakesFocusByClick()) {
      Report([&] { record_.Focus(control); });
    }
    if (!MayTakePress(control)) return;
    pressed_ = peer;
    ::SetCapture(native_);
    if (IsPress(message)) {
      peer->OnMouseDown(button, within());
    } else {
      peer->OnDoubleClick(button, within());
    }
  } else if (peer == nullptr) {
    return;
  } else if (IsRelease(message)) {
    const bool is_last = pressed_ != nullptr && HeldButton(first) == MouseButton::kNone;
    if (is_last) {
      pressed_ = nullptr;
      ::ReleaseCapture();
    }
    peer->OnMouseUp(button, within());
    if (is_last) MoveOver(DrawnAt(at));
  } else {
    peer->OnMouseMove(HeldButton(first), within());
  }
}

void WindowsWindow::ServeMouseLeave() {
  hears_leaving_ = false;
  if (pressed_ == nullptr) MoveOver(nullptr);
}

// Somebody else took the mouse: the press has no end.
void WindowsWindow::ServeLostCapture() {
  DrawnPeer* lost = std::exchange(pressed_, nullptr);
  if (lost == nullptr) return;
  lost->OnPressLost();
  MoveOver(nullptr);
}

// What is dragged over it.

void WindowsWindow::FollowDrops() {
  const bool takes_drops = std::any_of(scene_.begin(), scene_.end(),
                                       [](const DrawnPeer* peer) { return peer->TakesDrops(); });
  if (!takes_drops) {
    drops_.reset();
  } else if (!drops_) {
    drops_.emplace(native_, context_.program_path,
                   [this](const DragStep& step, POINT screen, int allowed_effects, bool is_drop) {
                     return AnswerDrag(step, screen, allowed_effects, is_drop);
                   });
  }
}

// What lies on a control that takes drops lets them through.
DrawnPeer* WindowsWindow::DropTakerAt(POINT at) const {
  const Peer* over = At(at);
  for (const Control* c = over == nullptr ? nullptr : &over->Record(); c != nullptr;
       c = c->Parent()) {
    auto* drawn = dynamic_cast<DrawnPeer*>(PeerOf(*c));
    if (drawn != nullptr && drawn->TakesDrops() && drawn->IsUsable()) return drawn;
  }
  return nullptr;
}

int WindowsWindow::AnswerDrag(const DragStep& step, POINT screen, int allowed_effects,
                              bool is_drop) {
  ::ScreenToClient(native_, &screen);
  int effect = 0;
  Report([&] {
    DrawnPeer* taker = TakesInput() ? DropTakerAt(screen) : nullptr;
    if (taker == nullptr) return;
    const POINT within{screen.x - taker->Area().left, screen.y - taker->Area().top};
    effect = taker->OnDrag(step, within, allowed_effects, is_drop);
  });
  return effect;
}

// The pointer.

bool WindowsWindow::ServePointer(HWND over, UINT place) {
  if (place != HTCLIENT) return false;
  PointerShape shape = context_.desktop.Pointer;
  const Peer* peer = nullptr;
  if (shape == PointerShape::kDefault) {
    if (NativePeer* native = over == native_ ? nullptr : NativePeerOf(over)) {
      peer = native;
      shape = native->Record().Pointer;
      if (shape == PointerShape::kDefault) return false;
    } else if (over_ != nullptr) {
      peer = over_;
      shape = over_->Pointer();
    }
  }
  ::SetCursor(PointerShown(shape, peer));
  return true;
}

HCURSOR WindowsWindow::PointerShown(PointerShape shape, const Peer* over) {
  if (shape == PointerShape::kPicture && over != nullptr) {
    const Raster& picture = over->Record().PointerPicture;
    if (pointer_ != nullptr && picture == pointer_picture_) return pointer_;
    if (pointer_ != nullptr) ::DestroyCursor(pointer_);
    pointer_picture_ = picture;
    pointer_ = PointerOf(picture);
    if (pointer_ != nullptr) return pointer_;
  }
  const wchar_t* name = shape == PointerShape::kHourglass ? IDC_WAIT
                        : shape == PointerShape::kHand    ? IDC_HAND
                                                          : IDC_ARROW;
  return ::LoadCursorW(nullptr, name);
}

}  // namespace tarnvale
