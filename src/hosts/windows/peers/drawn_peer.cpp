#include "hosts/windows/peers/drawn_peer.h"

#include "hosts/windows/windows_window.h"

namespace tarnvale {

void DrawnPeer::OnMouseUp(MouseButton button, POINT at) {
  const RECT inside{0, 0, Area().right - Area().left, Area().bottom - Area().top};
  if (press_.Up(button, ::PtInRect(&inside, at) != 0)) OnClick(button);
}

void DrawnPeer::OnPointerOver(bool is_over) {
  is_over_ = is_over;
  if (ShowsPointer()) Repaint();
}

void DrawnPeer::OnFocus(bool has_focus) {
  has_focus_ = has_focus;
  Repaint();
}

void DrawnPeer::TakeNativeFocus() {
  ::SetFocus(window_.Native());
}

void DrawnPeer::Repaint() {
  if (IsShown()) window_.Invalidate(SeenArea());
}

void DrawnPeer::OnShown(bool is_shown) {
  window_.Invalidate(SeenArea());
  NotifyReaders(is_shown ? EVENT_OBJECT_SHOW : EVENT_OBJECT_HIDE);
}

void DrawnPeer::OnUsable(bool) {
  Repaint();
  NotifyReaders(EVENT_OBJECT_STATECHANGE);
}

void DrawnPeer::NotifyReaders(DWORD event) {
  window_.NotifyReaders(event, *this);
}

}  // namespace tarnvale
