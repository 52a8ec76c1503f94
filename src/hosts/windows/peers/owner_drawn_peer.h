#pragma once

#include "hosts/windows/packed_canvas.h"
#include "hosts/windows/peers/drawn_peer.h"
#include "ui/owner_drawn.h"

namespace tarnvale {

/// A control that draws itself: keeps what it drew, and hands on what the user does.
///
/// The canvas has the whole part of the display's scale. What is left of it (a quarter or a
/// half) goes into the control's size and its fonts, so that lines and texts stay crisp.
class OwnerDrawnPeer final : public DrawnPeer {
 public:
  OwnerDrawnPeer(PeerContext& context, WindowsWindow& window, OwnerDrawn& drawn, const Rect& place,
                 const Peer* container);
  ~OwnerDrawnPeer() override;

  void Paint(Surface& surface) override;
  void OnMouseDown(MouseButton button, POINT at) override;
  void OnDoubleClick(MouseButton button, POINT at) override;
  void OnMouseMove(MouseButton held, POINT at) override;
  void OnMouseUp(MouseButton button, POINT at) override;
  void OnPointerOver(bool is_over) override;
  bool OnKeyDown(const KeyPress& press, bool is_repeated) override;
  void OnKeyUp(const KeyPress& press) override;
  void OnFocus(bool has_focus) override;
  char32_t AccessKey() const override { return drawn_.AccessKeyChar(); }
  void OnAccessKey() override;
  bool TakesDrops() const override { return drawn_.TakesDrops(); }
  int OnDrag(DragStep step, POINT at, int allowed_effects, bool is_drop) override;
  void OnFrame() override;
  void OnColors() override;
  LONG RoleForReaders() const override;
  AccessibleState StateForReaders() const override { return drawn_.StateForReaders(); }
  bool CanBePressed() const override { return drawn_.CanBePressed(); }
  void PressForReaders() override;

 protected:
  void OnClick(MouseButton button) override;
  void OnShown(bool is_shown) override;

 private:
  int Scale() const { return context_.dpi / 96; }
  Size LogicalSize() const;
  Point LogicalPoint(POINT at) const;
  AmbientLook AmbientOfContainer() const;
  Raster CopyOfContainer() const;
  void Lend();
  void DragAway(DragStep& step);

  OwnerDrawn& drawn_;
  PackedCanvas drawn_look_;
  bool is_stale_ = true;
  AccessibleState reported_;
};

}  // namespace tarnvale
