#pragma once

#include <string>

#include "hosts/windows/peers/drawn_peer.h"

namespace tarnvale {

/// A text on the window. Its caption may change at any pace: the screen follows
/// once a frame.
class LabelPeer final : public DrawnPeer {
 public:
  LabelPeer(PeerContext& context, WindowsWindow& window, Label& label, const Rect& place,
            const Peer* container);

  void Paint(Surface& surface) override;
  bool OnKeyDown(const KeyPress& press, bool is_repeated) override;
  PointerShape Pointer() const override;
  /// A text that is cut shows the whole.
  std::string Tip() override;
  void OnFrame() override;
  LONG RoleForReaders() const override;
  bool CanBePressed() const override { return IsLink(); }
  void PressForReaders() override { Click(); }

 protected:
  void OnClick(MouseButton button) override;
  bool ShowsPointer() const override { return IsLink(); }

 private:
  bool IsLink() const { return label_.Role == TextRole::kLink; }
  bool IsBlock() const;
  bool IsPanelHeading() const;
  RECT TextArea() const;
  UINT Format() const;
  std::wstring Fitting(HDC dc) const;
  void PaintPanelHeading(Surface& surface) const;
  void Click();

  Label& label_;
};

}  // namespace tarnvale
