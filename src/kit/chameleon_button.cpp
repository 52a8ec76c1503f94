#include "kit/chameleon_button.h"

#include "kit/button_shape.h"
#include "ui/caption_text.h"
#include "ui/window.h"

namespace tarnvale {

chameleonButton::chameleonButton() {
  FollowProperties();
}

void chameleonButton::PropertySet(const char* key) {
  if (reading_) return;
  PropertyChanged.Emit(key);
  RedrawButton(last_state_, Redraw::kForced);
}

void chameleonButton::TakeGround() {
  ground_ = CopyOfContainer ? CopyOfContainer() : Raster{};
}

void chameleonButton::Refresh() {
  if (ButtonType == kTransparentButton) TakeGround();
  refreshing_ = true;
  RedrawButton(last_state_, Redraw::kForced);
}

ButtonLook chameleonButton::TakeLook(ButtonState state) const {
  ButtonLook look;
  look.type = ButtonType;
  look.state = state;
  look.enabled = Enabled;
  look.over = over_;
  look.has_focus = has_focus_;
  look.is_default = DisplayAsDefault;
  look.show_focus_rect = ShowFocusRect;
  look.caption = Caption;
  look.font = Font;
  look.scheme = ColorScheme;
  look.colors = DeriveButtonColors({.scheme = ColorScheme,
                                    .back = over_ ? BackOver : BackColor,
                                    .back_over = BackOver,
                                    .fore = ForeColor,
                                    .fore_over = ForeOver,
                                    .parent_back = Ambient.Get().back,
                                    .parent_fore = Ambient.Get().fore,
                                    .soft_bevel = SoftBevel});
  look.special_effect = SpecialEffect;
  look.picture_position = PicturePosition;
  look.picture_normal = PictureNormal;
  look.picture_over = PictureOver;
  look.mask_color = TranslateColor(MaskColor);
  look.use_mask_color = UseMaskColor;
  look.use_greyscale = UseGreyscale;
  if (ButtonType == kTransparentButton) look.ground = ground_;
  return look;
}

void chameleonButton::RedrawButton(ButtonState state, Redraw how) {
  if (CheckBoxBehaviour && Value) state = ButtonState::kPressed;
  const bool as_before = state == last_state_ && Caption.Get() == last_caption_;
  if (how == Redraw::kIfChanged && as_before) return;
  if (!Visible || !refreshing_ || size_.height_px <= 0) return;
  last_state_ = state;
  last_caption_ = Caption;
  drawn_ = TakeLook(state);
  LookChanged.Emit();
}

void chameleonButton::Paint(Canvas& canvas, TextPainter& text) {
  if (drawn_) DrawButton(*drawn_, canvas, text);
}

std::string chameleonButton::AccessibleText() const {
  return ShownCaption(Caption);
}
AccessibleState chameleonButton::StateForReaders() const {
  // In check box mode it stays down for as long as it is ticked.
  if (CheckBoxBehaviour) return {.checked = Value.Get()};
  return {.pressed = last_state_ == ButtonState::kPressed};
}
char32_t chameleonButton::AccessKeyChar() const {
  return AccessKeyOf(Caption);
}

void chameleonButton::OnLent(const LentByHost& lent) {
  native_window_ = lent.native_window;
  CopyOfContainer = lent.copy_of_container;
  // A name of its own is for a new control, which only a designer makes.
  AmbientLook ambient = lent.ambient;
  ambient.name = Ambient.Get().name;
  Ambient = ambient;
  DisplayAsDefault = lent.is_default;
}

bool chameleonButton::IsMouseOver() const {
  return pointer_ && IsInButtonRegion(ButtonType, size_, *pointer_);
}

void chameleonButton::OnMouseDown(MouseButton button, Point at) {
  if (!Enabled) return;
  pointer_ = at;
  MouseDown.Emit(button, at);
  last_button_ = button;
  if (button != MouseButton::kRight) RedrawButton(ButtonState::kPressed, Redraw::kIfChanged);
}

void chameleonButton::OnMouseMove(MouseButton button, Point at) {
  pointer_ = at;
  if (Enabled) {
    MouseMove.Emit(button, at);
    if (button == MouseButton::kNone || button == MouseButton::kLeft) {
      if (!IsMouseOver()) {
        RedrawButton(ButtonState::kNormal, Redraw::kIfChanged);
      } else if (button == MouseButton::kLeft) {
        over_ = true;
        RedrawButton(ButtonState::kPressed, Redraw::kIfChanged);
        // Required: the button that was pressed and moved on is hovered anew
        // after its release.
        over_ = false;
      } else if (!over_) {
        over_timer_on_ = true;
        over_ = true;
        RedrawButton(ButtonState::kNormal, Redraw::kForced);
        MouseOver.Emit();
      }
    }
  }
  // While a button is held, the pointer leaves without a leave notification.
  OverTimerTick();
}

void chameleonButton::OnMouseUp(MouseButton button, Point at) {
  if (!Enabled) return;
  pointer_ = at;
  captured_ = false;
  MouseUp.Emit(button, at);
  if (button != MouseButton::kRight) RedrawButton(ButtonState::kNormal, Redraw::kIfChanged);
}

void chameleonButton::OnClick(MouseButton button) {
  last_button_ = button;
  ClickWithLastButton();
}

void chameleonButton::ToggleInCheckBoxMode() {
  if (CheckBoxBehaviour) Value = !Value;
}

void chameleonButton::ClickWithLastButton() {
  if (last_button_ != MouseButton::kLeft || !Enabled) return;
  ToggleInCheckBoxMode();
  RedrawButton(ButtonState::kNormal, Redraw::kForced);
  Click.Emit();
}

void chameleonButton::OnDoubleClick(MouseButton button, Point at) {
  if (!Enabled || button != MouseButton::kLeft) return;
  OnMouseDown(button, at);
  captured_ = true;
}

// The over timer, 3 ms, exists to notice that the pointer has gone where nothing
// reports it. A host does: so its tick is taken at each report of the pointer,
// which is the first moment at which its answer could differ.
// Between two reports a tick would find what it found before, and change nothing.
void chameleonButton::OverTimerTick() {
  if (!over_timer_on_ || IsMouseOver()) return;
  over_timer_on_ = false;
  over_ = false;
  RedrawButton(ButtonState::kNormal, Redraw::kForced);
  MouseOut.Emit();
}

void chameleonButton::OnMouseLeave() {
  pointer_.reset();
  OverTimerTick();
}

void chameleonButton::MoveFocus(bool forward) {
  if (Owner() != nullptr) Owner()->FocusNext(forward);
}

void chameleonButton::OnKeyDown(const tarnvale::KeyPress& press) {
  if (!Enabled) return;
  KeyDown.Emit(press);
  last_key_ = press.key;
  switch (press.key) {
    case Key::kSpace:
      RedrawButton(ButtonState::kPressed, Redraw::kIfChanged);
      break;
    case Key::kLeft:
    case Key::kUp:
      MoveFocus(false);
      break;
    case Key::kRight:
    case Key::kDown:
      MoveFocus(true);
      break;
    default:
      break;
  }
  if (press.character != 0) KeyPress.Emit(press);
}

void chameleonButton::OnKeyUp(const tarnvale::KeyPress& press) {
  if (!Enabled) return;
  KeyUp.Emit(press);
  if (last_key_ != Key::kSpace || press.key != Key::kSpace) return;
  ToggleInCheckBoxMode();
  RedrawButton(ButtonState::kNormal, Redraw::kIfChanged);
  Click.Emit();
}

void chameleonButton::OnAccessKey() {
  last_button_ = MouseButton::kLeft;
  ClickWithLastButton();
}

void chameleonButton::OnFocusChanged(bool has_focus) {
  has_focus_ = has_focus;
  RedrawButton(last_state_, Redraw::kForced);
}

void chameleonButton::OnResize(Size size) {
  size_ = size;
  RedrawButton(last_state_, Redraw::kForced);
}

}  // namespace tarnvale
