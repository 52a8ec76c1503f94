// Peers of what is drawn onto the window itself.
#pragma once

#include "hosts/windows/peers/peer.h"
#include "hosts/windows/surface.h"
#include "ui/owner_drawn.h"
#include "ui/press.h"

namespace tarnvale {

/// A control in its window's scene: the window paints it and gives it what mouse and
/// keyboard do. It has the focus by its record; the system's is with the window.
class DrawnPeer : public Peer {
 public:
  /// Draws it over what lies below. The surface is clipped to what can be seen of it.
  virtual void Paint(Surface& surface) = 0;

  // By the window. Points are in device pixels from its upper left corner.
  virtual void OnMouseDown(MouseButton button, POINT) { press_.Down(button); }
  virtual void OnDoubleClick(MouseButton, POINT) { press_.Forget(); }
  virtual void OnMouseMove(MouseButton /*held*/, POINT) {}
  virtual void OnMouseUp(MouseButton button, POINT at);
  virtual void OnPressLost() { press_.Forget(); }
  virtual void OnPointerOver(bool is_over);
  /// False when the control doesn't know the key.
  virtual bool OnKeyDown(const KeyPress&, bool /*is_repeated*/) { return false; }
  virtual void OnKeyUp(const KeyPress&) {}
  virtual void OnFocus(bool has_focus);
  /// The access key of its caption; 0 for none.
  virtual char32_t AccessKey() const { return 0; }
  virtual void OnAccessKey() {}
  virtual bool TakesDrops() const { return false; }
  /// Returns the effect of a drop; 0 refuses it.
  virtual int OnDrag(DragStep, POINT, int /*allowed_effects*/, bool /*is_drop*/) { return 0; }
  /// What the pointer over it is while its record says nothing.
  virtual PointerShape Pointer() const { return Record().Pointer; }

  // For screen readers.
  virtual AccessibleState StateForReaders() const { return {}; }
  virtual bool CanBePressed() const { return false; }
  virtual void PressForReaders() {}

  void TakeNativeFocus() override;
  void Repaint() override;
  void OnFrame() override { Repaint(); }

 protected:
  using Peer::Peer;

  virtual void OnClick(MouseButton) {}
  /// It looks otherwise while the pointer is over it.
  virtual bool ShowsPointer() const { return false; }

  bool IsOver() const { return is_over_; }
  bool HasFocus() const { return has_focus_; }
  void OnShown(bool) override;
  void OnUsable(bool) override;
  /// Notifies screen readers: one of the system's events.
  void NotifyReaders(DWORD event);

  Press press_;

 private:
  bool is_over_ = false;
  bool has_focus_ = false;
};

}  // namespace tarnvale
