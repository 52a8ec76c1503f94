#include "kit/check_box.h"

#include <algorithm>

#include "kit/drawing.h"
#include "kit/quietly.h"
#include "kit/tick_pictures.h"
#include "ui/caption_text.h"

namespace tarnvale {
namespace {

constexpr int kLabelLeft = kTickSidePx + 6;

}  // namespace

CheckBox::CheckBox() {
  FollowProperties();
}
CheckBox::CheckBox(Property<bool>& checked) : Checked(checked) {
  shows_tick_ = checked;
  FollowProperties();
}

void CheckBox::FollowProperties() {
  checked_subscription_ = Checked.WasSet().Subscribe([this] {
    shows_tick_ = Checked;
    PropertySet("Checked");
  });
  Enabled.WasSet.Listen([this] { PropertySet("Enabled"); });
  Caption.WasSet.Listen([this] { PropertySet("Caption"); });
  Font.Changed.Listen([this] {
    Bold = Font.Get().bold;
    LookChanged.Emit();
  });
  Bold.Changed.Listen([this] {
    tarnvale::Font font = Font;
    font.bold = Bold;
    Font = font;
  });
  ForeColor.Changed.Listen([this] { LookChanged.Emit(); });
}

void CheckBox::PropertySet(const char* name) {
  if (!reading_) PropertyChanged.Emit(name);
  LookChanged.Emit();
}

Rect CheckBox::PicturePlace() const {
  return {0, (size_.height_px - kTickSidePx) / 2, kTickSidePx, kTickSidePx};
}

void CheckBox::Paint(Canvas& canvas, TextPainter& text) {
  const int scale = canvas.Scale();
  canvas.BlitDevice(shows_tick_ ? TickedPicture(scale) : ClearPicture(scale), 0,
                    (canvas.HeightPx() - kTickSidePx) / 2);
  if (Caption.Get().empty()) return;
  TextLook look;
  look.font = Font;
  look.color = TranslateColor(ForeColor);
  look.access_key_marks = true;
  const Rect label{kLabelLeft, 0, canvas.WidthPx() - kLabelLeft, canvas.HeightPx()};
  text.Draw(canvas, Caption, look, label);
  if (!has_focus_) return;
  const Size measured = text.Measure(Caption, look);
  const int width = std::min(measured.width_px + 4, label.width_px + 2);
  const int height = std::min(measured.height_px + 2, label.height_px);
  DrawFocusRect(canvas, {kLabelLeft - 2, (canvas.HeightPx() - height) / 2, width, height});
}

std::string CheckBox::AccessibleText() const {
  return ShownCaption(Caption);
}
char32_t CheckBox::AccessKeyChar() const {
  return AccessKeyOf(Caption);
}

void CheckBox::Press() {
  if (!Enabled) return;
  Checked = !Checked;
  // Required: a handler's change by the reference reaches the state, not the picture.
  Checked.Target().ModifyQuietly([this](bool& checked) { ButtonClicked.Emit(checked); });
}

// The picture is clicked, not the label: press and release are both on it.
void CheckBox::OnMouseDown(MouseButton, Point at) {
  pressed_on_picture_ = PicturePlace().Contains(at);
}

void CheckBox::OnMouseUp(MouseButton, Point at) {
  released_on_picture_ = PicturePlace().Contains(at);
}

void CheckBox::OnClick(MouseButton button) {
  if (button == MouseButton::kLeft && pressed_on_picture_ && released_on_picture_) Press();
}

void CheckBox::OnKeyUp(const KeyPress& press) {
  if (press.key == Key::kSpace) Press();
}

void CheckBox::OnFocusChanged(bool has_focus) {
  has_focus_ = has_focus;
  LookChanged.Emit();
}

void CheckBox::OnResize(Size size) {
  size_ = size;
  LookChanged.Emit();
}

void CheckBox::InitProperties(const std::string& display_name) {
  Checked = false;
  Caption = display_name;
}

void CheckBox::ReadProperties(const PropertyBag& bag, const std::string& display_name) {
  const Quietly quietly(reading_);
  Checked = bag.ReadFlag("Checked", false);
  Enabled = bag.ReadFlag("Enabled", true);
  Caption = bag.ReadText("Caption", display_name);
}

void CheckBox::WriteProperties(PropertyBag& bag) const {
  bag.Write("Checked", Checked.Get());
  bag.Write("Enabled", Enabled.Get());
  bag.Write("Caption", Caption.Get());
}

}  // namespace tarnvale
