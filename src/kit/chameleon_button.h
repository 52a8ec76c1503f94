// The program's command button.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "base/property.h"
#include "base/signal.h"
#include "kit/button_look.h"
#include "kit/picture.h"
#include "kit/property_bag.h"
#include "kit/system_colors.h"
#include "ui/owner_drawn.h"

namespace tarnvale {

/// An owner-drawn button of fourteen looks, of which all but type 3 are given, unused,
/// with a look for hovering, a pressed one, a picture, and a check box mode.
///
/// What it shows is a record that RedrawButton takes; Paint draws that record
/// and nothing else, so a painting that the host starts never shows more than
/// the last redraw did. Each setting of a property is reported and draws anew,
/// also to the value that it has.
class chameleonButton : public OwnerDrawn {
 public:
  chameleonButton();

  Property<int> ButtonType{2};
  /// "&" marks the access key.
  Property<std::string> Caption;
  Property<tarnvale::Font> Font;
  Property<int> ColorScheme{1};
  Property<bool> ShowFocusRect{true};
  Property<Color> BackColor{SystemColorNumber(kColorButtonFace)};
  Property<Color> BackOver{SystemColorNumber(kColorButtonFace)};
  Property<Color> ForeColor{SystemColorNumber(kColorButtonText)};
  Property<Color> ForeOver{SystemColorNumber(kColorButtonText)};
  Property<Color> MaskColor{0xC0C0C0};
  Property<int> MousePointer{0};
  Property<Picture> MouseIcon;
  Property<Picture> PictureNormal;
  Property<Picture> PictureOver;
  Property<bool> UseMaskColor{true};
  Property<bool> SoftBevel{false};
  /// 0 left, 1 right, 2 top, 3 bottom, 4 behind.
  Property<int> PicturePosition{0};
  Property<bool> UseGreyscale{false};
  /// 0 none, 1 engraved, 2 embossed, 3 and above a drop shadow.
  Property<int> SpecialEffect{0};
  Property<bool> HandPointer{false};
  Property<bool> CheckBoxBehaviour{false};
  Property<bool> Value{false};

  /// What the window lends to the control. A change works out the colours anew,
  /// but for scheme 2.
  Property<AmbientLook> Ambient{{.name = {},
                                 .font = {},
                                 .back = SystemColorNumber(kColorButtonFace),
                                 .fore = SystemColorNumber(kColorButtonText)}};
  /// Enter on the window would press this button.
  Property<bool> DisplayAsDefault{false};

  std::string Version() const { return "2.0.6"; }
  /// The native window's number, as the host set it; 0 without one.
  std::uintptr_t hWnd() const { return native_window_; }

  /// Until Refresh nothing is drawn, so that several properties can change.
  void DisableRefresh() { refreshing_ = false; }
  /// Takes the ground of type 11 anew, resumes drawing and redraws.
  void Refresh();

  /// What the container shows under the button, in device pixels, for type 11.
  /// Not set: the button leaves its ground transparent instead.
  std::function<Raster()> CopyOfContainer;

  /// Settings of a control that is put onto a window for the first time.
  void InitProperties();
  /// Raises 13 or 6 when a stored value is of no use; what was read before it
  /// stays.
  void ReadProperties(const PropertyBag& bag);
  void WriteProperties(PropertyBag& bag) const;
  /// Emitted with the key of each property that was set.
  Signal<const std::string&> PropertyChanged;

  Signal<> Click;
  Signal<MouseButton, Point> MouseDown;
  Signal<MouseButton, Point> MouseMove;
  Signal<MouseButton, Point> MouseUp;
  /// For each character, after KeyDown.
  Signal<const tarnvale::KeyPress&> KeyPress;
  Signal<const tarnvale::KeyPress&> KeyDown;
  Signal<const tarnvale::KeyPress&> KeyUp;
  Signal<> MouseOver;
  Signal<> MouseOut;

  /// The pointer is over this button, as far as the host reported.
  bool IsMouseOver() const;
  /// A double click took the mouse: until the button goes up, the host reports
  /// the pointer from outside as well.
  bool HasCapture() const { return captured_; }

  enum class Redraw { kIfChanged, kForced };
  /// Takes the record of what is shown and requests a painting. Does nothing
  /// when state and caption are as drawn last (unless forced), while the control
  /// is hidden or drawing is stopped, or without a height.
  void RedrawButton(ButtonState state, Redraw how);

  /// What was drawn last; none before the first drawing.
  const std::optional<ButtonLook>& Drawn() const { return drawn_; }

  // What the host calls.
  void Paint(Canvas& canvas, TextPainter& text) override;
  bool TakesFocus() const override { return true; }
  void OnLent(const LentByHost& lent) override;
  Kind AccessibleKind() const override {
    return CheckBoxBehaviour ? Kind::kCheckBox : Kind::kButton;
  }
  std::string AccessibleText() const override;
  AccessibleState StateForReaders() const override;
  char32_t AccessKeyChar() const override;
  void Press() override { OnAccessKey(); }
  void OnMouseDown(MouseButton button, Point at) override;
  void OnMouseMove(MouseButton button, Point at) override;
  void OnMouseUp(MouseButton button, Point at) override;
  void OnClick(MouseButton button) override;
  void OnDoubleClick(MouseButton button, Point at) override;
  void OnMouseLeave() override;
  void OnKeyDown(const tarnvale::KeyPress& press) override;
  void OnKeyUp(const tarnvale::KeyPress& press) override;
  void OnAccessKey() override;
  void OnFocusChanged(bool has_focus) override;
  void OnResize(Size size) override;

 private:
  template <class T>
  void Follow(Property<T>& property, const char* key) {
    property.WasSet.Listen([this, key] { PropertySet(key); });
  }
  void FollowProperties();
  void TakeProperties(const PropertyBag& bag);
  void PropertySet(const char* key);
  void FollowPointer();
  void TakeGround();
  ButtonLook TakeLook(ButtonState state) const;
  void ToggleInCheckBoxMode();
  void ClickWithLastButton();
  void OverTimerTick();
  void MoveFocus(bool forward);

  Size size_;
  ButtonState last_state_ = ButtonState::kNormal;
  std::string last_caption_;
  std::optional<ButtonLook> drawn_;
  Raster ground_;
  std::optional<Point> pointer_;  ///< none while it is elsewhere
  bool over_ = false;
  bool over_timer_on_ = false;
  bool has_focus_ = false;
  bool captured_ = false;
  bool refreshing_ = true;
  bool reading_ = false;
  MouseButton last_button_ = MouseButton::kNone;
  Key last_key_ = Key::kOther;
  std::uintptr_t native_window_ = 0;
};

}  // namespace tarnvale
