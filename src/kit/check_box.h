// A tick with a label.
#pragma once

#include <string>

#include "base/property.h"
#include "base/signal.h"
#include "kit/property_bag.h"
#include "kit/system_colors.h"
#include "ui/owner_drawn.h"

namespace tarnvale {

/// A check box made of a picture (`Picture1`, which shows `Image1` when ticked
/// and `Image2` when clear) and a label (`Label1`).
class CheckBox : public OwnerDrawn {
 public:
  CheckBox();
  /// A tick whose state is a record of the program, which must outlive it.
  explicit CheckBox(Property<bool>& checked);

  /// Setting it by the program shows the matching picture and raises no event.
  Bound<bool> Checked{false};
  /// Of `Label1`. "&" marks the access key.
  Property<std::string> Caption;
  Property<tarnvale::Font> Font;
  /// The weight of `Font`.
  Property<bool> Bold{false};
  Property<Color> ForeColor{SystemColorNumber(kColorButtonText)};

  /// A click on the picture, with `Checked` itself. What a handler writes there
  /// becomes the state, but the picture stays.
  Signal<bool&> ButtonClicked;

  /// True when `Picture1` shows `Image1`.
  bool ShowsTick() const { return shows_tick_; }

  /// A control that is put onto a window for the first time is clear and called
  /// by its name.
  void InitProperties(const std::string& display_name);
  void ReadProperties(const PropertyBag& bag, const std::string& display_name);
  void WriteProperties(PropertyBag& bag) const;
  /// Emitted with the name of each persisted property that was set.
  Signal<const std::string&> PropertyChanged;

  // What the host calls.
  void Paint(Canvas& canvas, TextPainter& text) override;
  bool TakesFocus() const override { return true; }
  Kind AccessibleKind() const override { return Kind::kCheckBox; }
  std::string AccessibleText() const override;
  AccessibleState StateForReaders() const override { return {.checked = Checked.Get()}; }
  char32_t AccessKeyChar() const override;
  /// As a click on the picture.
  void Press() override;
  void OnMouseDown(MouseButton button, Point at) override;
  void OnMouseUp(MouseButton button, Point at) override;
  void OnClick(MouseButton button) override;
  void OnKeyUp(const KeyPress& press) override;
  void OnAccessKey() override { Press(); }
  void OnFocusChanged(bool has_focus) override;
  void OnResize(Size size) override;

 private:
  void FollowProperties();
  void PropertySet(const char* name);
  Rect PicturePlace() const;

  Subscription checked_subscription_;
  Size size_;
  bool pressed_on_picture_ = false;
  bool released_on_picture_ = false;
  bool shows_tick_ = false;
  bool reading_ = false;
  bool has_focus_ = false;
};

}  // namespace tarnvale
