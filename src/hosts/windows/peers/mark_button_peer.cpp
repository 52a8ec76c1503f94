#include "hosts/windows/peers/mark_button_peer.h"

#include <uxtheme.h>

#include <algorithm>

#include "hosts/windows/shown_text.h"
#include "hosts/windows/windows_window.h"
#include "ui/caption_text.h"

namespace tarnvale {
namespace {

/// The system's look of buttons; none where it has no looks.
class ButtonTheme {
 public:
  explicit ButtonTheme(HWND window) : theme_(::OpenThemeData(window, L"BUTTON")) {}
  ButtonTheme(const ButtonTheme&) = delete;
  ButtonTheme& operator=(const ButtonTheme&) = delete;
  ~ButtonTheme() {
    if (theme_ != nullptr) ::CloseThemeData(theme_);
  }
  HTHEME Get() const { return theme_; }

 private:
  HTHEME theme_;
};

// The states of both kinds of mark: those of one that is on come behind the others.
enum : int { kNormal = 1, kHot = 2, kDown = 3, kOff = 4, kChecked = 4 };

}  // namespace

MarkButtonPeer::MarkButtonPeer(PeerContext& context, WindowsWindow& window, Control& record,
                               const Rect& place, const Peer* container,
                               Property<std::string>& caption, Bound<bool>& value, Mark mark)
    : DrawnPeer(context, window, record, place, container),
      caption_(caption),
      value_(value),
      mark_(mark) {
  Follow(caption_.Changed, [this] { Repaint(); });
  Follow(value_.Changed(), [this] {
    Repaint();
    NotifyReaders(EVENT_OBJECT_STATECHANGE);
  });
}

LONG MarkButtonPeer::RoleForReaders() const {
  return mark_ == Mark::kRadio ? ROLE_SYSTEM_RADIOBUTTON : ROLE_SYSTEM_CHECKBUTTON;
}

int MarkButtonPeer::StateNumber() const {
  const int state = !IsUsable() ? kOff : is_down_ ? kDown : IsOver() ? kHot : kNormal;
  return value_ ? state + kChecked : state;
}

SIZE MarkButtonPeer::MarkSize() const {
  const LONG side = context_.ToDevice(13);
  return {side, side};
}

void MarkButtonPeer::PaintMark(HDC dc, const RECT& place) const {
  const ButtonTheme theme(window_.Native());
  if (theme.Get() != nullptr) {
    ::DrawThemeBackground(theme.Get(), dc, static_cast<int>(mark_), StateNumber(), &place, nullptr);
    return;
  }
  UINT look = mark_ == Mark::kRadio ? DFCS_BUTTONRADIO : DFCS_BUTTONCHECK;
  if (value_) look |= DFCS_CHECKED;
  if (!IsUsable()) look |= DFCS_INACTIVE;
  if (is_down_) look |= DFCS_PUSHED;
  RECT frame = place;
  ::DrawFrameControl(dc, &frame, DFC_BUTTON, look);
}

void MarkButtonPeer::PaintCaption(Surface& surface, RECT area) const {
  HDC dc = surface.Dc();
  const std::wstring text = ToShown(caption_.Get());
  const Selected font(dc, context_.fonts.OfRole(TextRole::kBody));
  ::SetBkMode(dc, TRANSPARENT);
  ::SetTextColor(dc, ToColorRef(context_.colors.OfRole(TextRole::kBody, IsUsable())));
  constexpr UINT kFormat = DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS;
  ::DrawTextW(dc, text.c_str(), -1, &area, kFormat);
  if (!HasFocus() || text.empty()) return;
  RECT ring = area;
  ::DrawTextW(dc, text.c_str(), -1, &ring, kFormat | DT_CALCRECT);
  const LONG height = ring.bottom - ring.top;
  const LONG top = area.top + (area.bottom - area.top - height) / 2;
  surface.FrameDotted({area.left - 2, top,
                       std::min(area.left + ring.right - ring.left + 2, area.right), top + height},
                      context_.colors.focus);
}

void MarkButtonPeer::Paint(Surface& surface) {
  const RECT& area = Area();
  const SIZE size = MarkSize();
  const LONG top = area.top + (area.bottom - area.top - size.cy) / 2;
  PaintMark(surface.Dc(), {area.left, top, area.left + size.cx, top + size.cy});
  PaintCaption(surface,
               {area.left + size.cx + context_.ToDevice(6), area.top, area.right, area.bottom});
}

void MarkButtonPeer::SetDown(bool is_down) {
  is_down_ = is_down;
  Repaint();
}

void MarkButtonPeer::OnMouseDown(MouseButton button, POINT at) {
  DrawnPeer::OnMouseDown(button, at);
  if (button == MouseButton::kLeft) SetDown(true);
}

// Each press counts, however fast.
void MarkButtonPeer::OnDoubleClick(MouseButton button, POINT at) {
  OnMouseDown(button, at);
}

void MarkButtonPeer::OnMouseUp(MouseButton button, POINT at) {
  if (button == MouseButton::kLeft) SetDown(false);
  DrawnPeer::OnMouseUp(button, at);
}

void MarkButtonPeer::OnPressLost() {
  DrawnPeer::OnPressLost();
  SetDown(false);
}

bool MarkButtonPeer::OnKeyDown(const KeyPress& press, bool) {
  switch (press.key) {
    case Key::kSpace:
      SetDown(true);
      return true;
    case Key::kLeft:
    case Key::kUp:
    case Key::kRight:
    case Key::kDown: {
      const bool is_forward = press.key == Key::kRight || press.key == Key::kDown;
      Report([&] { Record().Owner()->FocusNext(is_forward); });
      return true;
    }
    default:
      return false;
  }
}

void MarkButtonPeer::OnKeyUp(const KeyPress& press) {
  if (press.key != Key::kSpace || !is_down_) return;
  SetDown(false);
  Choose();
}

char32_t MarkButtonPeer::AccessKey() const {
  return AccessKeyOf(caption_);
}

void MarkButtonPeer::OnAccessKey() {
  Report([this] { Record().Owner()->Focus(Record()); });
  Choose();
}

void MarkButtonPeer::OnClick(MouseButton button) {
  if (button == MouseButton::kLeft) Choose();
}

CheckButtonPeer::CheckButtonPeer(PeerContext& context, WindowsWindow& window, CheckButton& check,
                                 const Rect& place, const Peer* container)
    : MarkButtonPeer(context, window, check, place, container, check.Caption, check.Value,
                     Mark::kCheck),
      check_(check) {}

void CheckButtonPeer::Choose() {
  Report([this] { check_.Value = !check_.Value; });
  Report([this] { check_.Clicked.Emit(); });
}

OptionButtonPeer::OptionButtonPeer(PeerContext& context, WindowsWindow& window,
                                   OptionButton& option, const Rect& place, const Peer* container)
    : MarkButtonPeer(context, window, option, place, container, option.Caption, option.Value,
                     Mark::kRadio),
      option_(option) {}

void OptionButtonPeer::Choose() {
  Report([this] { option_.Value = true; });
  Report([this] { option_.Clicked.Emit(); });
}

}  // namespace tarnvale
