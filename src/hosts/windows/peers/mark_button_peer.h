// Check boxes and radio buttons.
#pragma once

#include <string>

#include "hosts/windows/peers/drawn_peer.h"

namespace tarnvale {

/// What both have in common: a mark as the system draws it, and a caption.
class MarkButtonPeer : public DrawnPeer {
 public:
  void Paint(Surface& surface) override;
  void OnMouseDown(MouseButton button, POINT at) override;
  void OnDoubleClick(MouseButton button, POINT at) override;
  void OnMouseUp(MouseButton button, POINT at) override;
  void OnPressLost() override;
  bool OnKeyDown(const KeyPress& press, bool is_repeated) override;
  void OnKeyUp(const KeyPress& press) override;
  char32_t AccessKey() const override;
  void OnAccessKey() override;
  LONG RoleForReaders() const override;
  AccessibleState StateForReaders() const override {
    return {.checked = value_.Get(), .pressed = is_down_};
  }
  bool CanBePressed() const override { return true; }
  void PressForReaders() override { Choose(); }

 protected:
  /// The parts of the system's buttons.
  enum class Mark { kRadio = 2, kCheck = 3 };

  MarkButtonPeer(PeerContext& context, WindowsWindow& window, Control& record, const Rect& place,
                 const Peer* container, Property<std::string>& caption, Bound<bool>& value,
                 Mark mark);

  /// What the user does by a click.
  virtual void Choose() = 0;
  void OnClick(MouseButton button) override;
  bool ShowsPointer() const override { return true; }

 private:
  int StateNumber() const;
  SIZE MarkSize() const;
  void PaintMark(HDC dc, const RECT& place) const;
  void PaintCaption(Surface& surface, RECT area) const;
  void SetDown(bool is_down);

  Property<std::string>& caption_;
  Bound<bool>& value_;
  Mark mark_;
  bool is_down_ = false;
};

class CheckButtonPeer final : public MarkButtonPeer {
 public:
  CheckButtonPeer(PeerContext& context, WindowsWindow& window, CheckButton& check,
                  const Rect& place, const Peer* container);

 private:
  void Choose() override;

  CheckButton& check_;
};

/// Which other buttons go out is the record's affair; a click puts this one on.
class OptionButtonPeer final : public MarkButtonPeer {
 public:
  OptionButtonPeer(PeerContext& context, WindowsWindow& window, OptionButton& option,
                   const Rect& place, const Peer* container);

 private:
  void Choose() override;

  OptionButton& option_;
};

}  // namespace tarnvale
