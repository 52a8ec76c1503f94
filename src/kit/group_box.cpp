#include "kit/group_box.h"

#include "kit/group_drawing.h"
#include "kit/quietly.h"
#include "ui/caption_text.h"
#include "ui/window.h"

namespace tarnvale {

GroupBox::GroupBox() {
  const auto follow = [this](auto& property, const char* name) {
    property.WasSet.Listen([this, name] { PropertySet(name); });
  };
  follow(BackColor, "BackColor");
  follow(ForeColor, "ForeColor");
  follow(Enabled, "Enabled");
  follow(Font, "Font");
  follow(BorderStyle, "BorderStyle");
  follow(OLEDropMode, "OLEDropMode");
  follow(Caption, "Caption");
  follow(Appearance, "Appearance");
  BackStyle.WasSet.Listen([this] { BackStyleSet(); });
}

void GroupBox::PropertySet(const char* name) {
  if (!reading_) PropertyChanged.Emit(name);
  Refresh();
}

void GroupBox::BackStyleSet() {
  if (BackStyle == 0 && !reading_) {
    // Required: transparency exists, but can't be switched on.
    BackStyle.ModifyQuietly([this](std::int16_t& style) { style = back_style_; });
    if (boxes_ == nullptr) return;
    boxes_->Show({.text = "This feature has not yet been implemented!\n"
                          "I'm not quite sure how I am going to implement this feature"
                          ", as some controls are shaped."});
    return;
  }
  back_style_ = BackStyle;
  PropertySet("BackStyle");
}

void GroupBox::UseTheme(VisualTheme* theme) {
  theme_ = theme;
  Refresh();
}

void GroupBox::OLEDrag() {
  DragStep step;
  OLEStartDrag.Emit(step);
  // Requested when it is needed.
  if (step.data.empty()) OLESetData.Emit(step);
  DragAway.Emit(step);
  OLECompleteDrag.Emit(step);
}

void GroupBox::Paint(Canvas& canvas, TextPainter& text) {
  GroupLook look;
  look.caption = Caption;
  look.font = Font;
  look.back = TranslateColor(BackColor);
  look.fore = TranslateColor(ForeColor);
  look.enabled = Enabled;
  look.border_style = BorderStyle;
  look.back_style = BackStyle;
  look.appearance = Appearance;
  DrawGroup(look, canvas, text, theme_);
}

std::string GroupBox::AccessibleText() const {
  return ShownCaption(Caption);
}
char32_t GroupBox::AccessKeyChar() const {
  return AccessKeyOf(Caption);
}

// The first control in the frame takes the focus, as a frame's access key does.
void GroupBox::OnAccessKey() {
  if (Owner() == nullptr) return;
  for (const Placement& placement : Owner()->Placements()) {
    if (placement.container != this || !placement.control->TakesFocus()) continue;
    if (!Window::IsReachable(*placement.control)) continue;
    Owner()->Focus(*placement.control);
    return;
  }
}

void GroupBox::InitProperties(const std::string& display_name,
                              const tarnvale::Font& container_font) {
  Caption = display_name;
  Font = container_font;
}

void GroupBox::ReadProperties(const PropertyBag& bag, const std::string& display_name,
                              const tarnvale::Font& container_font) {
  const Quietly quietly(reading_);
  BackColor = bag.ReadColor("BackColor", SystemColorNumber(kColorButtonFace));
  ForeColor = bag.ReadColor("ForeColor", SystemColorNumber(kColorButtonText));
  Enabled = bag.ReadFlag("Enabled", true);
  Font = bag.ReadFont("Font", container_font);
  BorderStyle = bag.ReadInt32("BorderStyle", 1);
  OLEDropMode = bag.ReadInt16("OLEDropMode", 0);
  BackStyle = bag.ReadInt16("BackStyle", 1);
  Caption = bag.ReadText("Caption", display_name);
  Appearance = bag.ReadInt16("Appearance", 1);
}

void GroupBox::WriteProperties(PropertyBag& bag) const {
  bag.Write("BackColor", BackColor.Get());
  bag.Write("ForeColor", ForeColor.Get());
  bag.Write("Enabled", Enabled.Get());
  bag.Write("Font", Font.Get());
  bag.Write("BorderStyle", BorderStyle.Get());
  bag.Write("OLEDropMode", OLEDropMode.Get());
  bag.Write("BackStyle", BackStyle.Get());
  bag.Write("Caption", Caption.Get());
  bag.Write("Appearance", Appearance.Get());
}

}  // namespace tarnvale
