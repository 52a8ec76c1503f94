// The properties of the button: what their changes do, and how they persist.
#include "kit/chameleon_button.h"
#include "kit/quietly.h"

namespace tarnvale {
namespace {

// What MousePointer may say.
constexpr int kHourglassPointer = 11;
constexpr int kCustomPointer = 99;

}  // namespace

void chameleonButton::FollowProperties() {
  // The ground is copied before the drawing that follows the new type.
  ButtonType.WasSet.Listen([this] {
    if (ButtonType == kTransparentButton && Visible && refreshing_) TakeGround();
    PropertySet("BTYPE");
  });
  Follow(Caption, "TX");
  Enabled.WasSet.Listen([this] {
    // A button that goes out of use under the finger gets no release.
    if (!Enabled) last_state_ = ButtonState::kNormal;
    PropertySet("ENAB");
  });
  Follow(Font, "FONT");
  Follow(ColorScheme, "COLTYPE");
  Follow(ShowFocusRect, "FOCUSR");
  Follow(BackColor, "BCOL");
  Follow(BackOver, "BCOLO");
  Follow(ForeColor, "FCOL");
  Follow(ForeOver, "FCOLO");
  Follow(MaskColor, "MCOL");
  MousePointer.Changed.Listen([this] { FollowPointer(); });
  MouseIcon.Changed.Listen([this] { FollowPointer(); });
  Follow(MousePointer, "MPTR");
  Follow(MouseIcon, "MICON");
  Follow(PictureNormal, "PICN");
  // Required: the change is reported as "PICO", while the value is stored as "PICH".
  Follow(PictureOver, "PICO");
  Follow(UseMaskColor, "UMCOL");
  Follow(SoftBevel, "SOFT");
  Follow(PicturePosition, "PICPOS");
  Follow(UseGreyscale, "NGREY");
  Follow(SpecialEffect, "FX");
  HandPointer.Changed.Listen([this] { MousePointer = HandPointer ? kCustomPointer : 0; });
  Follow(HandPointer, "HAND");
  Follow(CheckBoxBehaviour, "CHECK");
  Follow(Value, "VALUE");
  Visible.Changed.Listen([this] {
    // What is hidden lies under no pointer, and hears of no leaving.
    if (!Visible) OnMouseLeave();
    RedrawButton(last_state_, Redraw::kForced);
  });
  DisplayAsDefault.Changed.Listen([this] { RedrawButton(last_state_, Redraw::kForced); });
  Ambient.Changed.Listen([this] {
    if (ColorScheme != 2) RedrawButton(last_state_, Redraw::kForced);
  });
}

void chameleonButton::FollowPointer() {
  switch (MousePointer) {
    case kHourglassPointer:
      Pointer = PointerShape::kHourglass;
      break;
    case kCustomPointer:
      PointerPicture = MouseIcon.Get().image;
      Pointer = MouseIcon.Get().Empty() ? PointerShape::kHand : PointerShape::kPicture;
      break;
    default:
      Pointer = PointerShape::kDefault;
      break;
  }
}

void chameleonButton::InitProperties() {
  const AmbientLook& ambient = Ambient;
  {
    const Quietly quietly(reading_);
    Caption = ambient.name;
    Font = ambient.font;
    ButtonType = 2;
    ColorScheme = 1;
    Enabled = true;
    ShowFocusRect = true;
    MaskColor = 0xC0C0C0;
    BackColor = ambient.back;
    BackOver = ambient.back;
    ForeColor = ambient.fore;
    ForeOver = ambient.fore;
  }
  Refresh();
}

void chameleonButton::ReadProperties(const PropertyBag& bag) {
  TakeProperties(bag);
  Refresh();
}

void chameleonButton::TakeProperties(const PropertyBag& bag) {
  const Quietly quietly(reading_);
  const AmbientLook& ambient = Ambient;
  ButtonType = bag.ReadInt32("BTYPE", 2);
  Caption = bag.ReadText("TX", "");
  Enabled = bag.ReadFlag("ENAB", true);
  Font = bag.ReadFont("FONT", ambient.font);
  ColorScheme = bag.ReadInt32("COLTYPE", 1);
  ShowFocusRect = bag.ReadFlag("FOCUSR", true);
  BackColor = bag.ReadColor("BCOL", ambient.back);
  ForeColor = bag.ReadColor("FCOL", ambient.fore);
  SoftBevel = bag.ReadFlag("SOFT", false);
  // Hover colours that were never stored are as the face and the text are now.
  const ButtonColors colors = DeriveButtonColors({.scheme = ColorScheme,
                                                  .back = BackColor,
                                                  .back_over = BackColor,
                                                  .fore = ForeColor,
                                                  .fore_over = ForeColor,
                                                  .parent_back = ambient.back,
                                                  .parent_fore = ambient.fore,
                                                  .soft_bevel = SoftBevel});
  BackOver = bag.ReadColor("BCOLO", colors.face);
  ForeOver = bag.ReadColor("FCOLO", colors.text);
  MaskColor = bag.ReadColor("MCOL", 0xC0C0C0);
  MousePointer = bag.ReadInt32("MPTR", 0);
  MouseIcon = bag.ReadPicture("MICON");
  PictureNormal = bag.ReadPicture("PICN");
  PictureOver = bag.ReadPicture("PICH");
  UseMaskColor = bag.ReadFlag("UMCOL", true);
  PicturePosition = bag.ReadInt32("PICPOS", 0);
  UseGreyscale = bag.ReadFlag("NGREY", false);
  SpecialEffect = bag.ReadInt32("FX", 0);
  HandPointer = bag.ReadFlag("HAND", false);
  CheckBoxBehaviour = bag.ReadFlag("CHECK", false);
  Value = bag.ReadFlag("VALUE", false);
}

void chameleonButton::WriteProperties(PropertyBag& bag) const {
  bag.Write("BTYPE", ButtonType.Get());
  bag.Write("TX", Caption.Get());
  bag.Write("ENAB", Enabled.Get());
  bag.Write("FONT", Font.Get());
  bag.Write("COLTYPE", ColorScheme.Get());
  bag.Write("FOCUSR", ShowFocusRect.Get());
  bag.Write("BCOL", BackColor.Get());
  bag.Write("BCOLO", BackOver.Get());
  bag.Write("FCOL", ForeColor.Get());
  bag.Write("FCOLO", ForeOver.Get());
  bag.Write("MCOL", MaskColor.Get());
  bag.Write("MPTR", MousePointer.Get());
  bag.Write("MICON", MouseIcon.Get());
  bag.Write("PICN", PictureNormal.Get());
  bag.Write("PICH", PictureOver.Get());
  bag.Write("UMCOL", UseMaskColor.Get());
  bag.Write("SOFT", SoftBevel.Get());
  bag.Write("PICPOS", PicturePosition.Get());
  bag.Write("NGREY", UseGreyscale.Get());
  bag.Write("FX", SpecialEffect.Get());
  bag.Write("HAND", HandPointer.Get());
  bag.Write("CHECK", CheckBoxBehaviour.Get());
  bag.Write("VALUE", Value.Get());
}

}  // namespace tarnvale
