#include "hosts/windows/peers/label_peer.h"

#include <algorithm>
#include <iterator>

#include "hosts/windows/peers/picture_box_peer.h"
#include "hosts/windows/shown_text.h"

namespace tarnvale {
namespace {

/// Between a link's text and the frame of the focus, on the sides.
constexpr int kRingGap = 3;
/// How far the last letter of a line may go beyond the width by which the system broke it: what
/// it measures isn't always what it draws.
constexpr int kOverhang = 4;

// With the room that each of them needs.
Rect PlaceOf(const Label& label, Rect place) {
  if (label.Role == TextRole::kLink) {
    place.left_px -= kRingGap;
    place.width_px += 2 * kRingGap;
  } else if (label.Wrap) {
    place.width_px += kOverhang;
  }
  return place;
}

constexpr wchar_t kEllipsis[] = L"\u2026";

int WidthOf(HDC dc, const std::wstring& text) {
  SIZE size{};
  ::GetTextExtentPoint32W(dc, text.c_str(), static_cast<int>(text.size()), &size);
  return size.cx;
}

bool IsSecondHalf(wchar_t c) {
  return c >= 0xDC00 && c <= 0xDFFF;
}

// What is left of a text when its middle gives way.
std::wstring WithoutMiddle(const std::wstring& text, std::size_t kept) {
  std::size_t head = kept - kept / 2;
  std::size_t tail = text.size() - kept / 2;
  if (head > 0 && head < text.size() && IsSecondHalf(text[head])) --head;
  if (tail < text.size() && IsSecondHalf(text[tail])) ++tail;
  return text.substr(0, head) + kEllipsis + text.substr(tail);
}

std::wstring ElidedInTheMiddle(HDC dc, const std::wstring& text, int width) {
  if (WidthOf(dc, text) <= width) return text;
  std::size_t fits = 0;
  std::size_t too_many = text.size();
  while (too_many - fits > 1) {
    const std::size_t middle = fits + (too_many - fits) / 2;
    (WidthOf(dc, WithoutMiddle(text, middle)) <= width ? fits : too_many) = middle;
  }
  return WithoutMiddle(text, fits);
}

}  // namespace

LabelPeer::LabelPeer(PeerContext& context, WindowsWindow& window, Label& label, const Rect& place,
                     const Peer* container)
    : DrawnPeer(context, window, label, PlaceOf(label, place), container), label_(label) {
  Follow(label_.Caption.Changed(), [this] { RequestFrame(); });
}

bool LabelPeer::IsBlock() const {
  return label_.Wrap || label_.Shown().find('\n') != std::string::npos;
}

// The heading of a group in the task panel lies in a bar of its own.
bool LabelPeer::IsPanelHeading() const {
  const auto* panel = dynamic_cast<const PictureBox*>(label_.Parent());
  return label_.Role == TextRole::kHeading && panel != nullptr &&
         panel->Background == PictureBox::Ground::kTaskPanel;
}

RECT LabelPeer::TextArea() const {
  RECT area = Area();
  if (IsLink()) {
    ::InflateRect(&area, -context_.ToDevice(kRingGap), 0);
  } else if (label_.Wrap) {
    area.right -= context_.ToDevice(kOverhang);
  }
  if (IsPanelHeading()) {
    area.left += context_.ToDevice(9);
    area.right -= context_.ToDevice(6);
  }
  return area;
}

UINT LabelPeer::Format() const {
  // What it may cover is the scene's affair.
  UINT format = DT_NOPREFIX | DT_NOCLIP;
  format |= IsBlock() ? UINT{DT_TOP} : DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS;
  if (label_.Wrap) format |= DT_WORDBREAK;
  switch (label_.Align) {
    case TextAlign::kLeft:
      break;
    case TextAlign::kCenter:
      format |= DT_CENTER;
      break;
    case TextAlign::kRight:
      format |= DT_RIGHT;
      break;
  }
  return format;
}

std::wstring LabelPeer::Fitting(HDC dc) const {
  std::wstring text = ToShown(label_.Shown());
  if (IsBlock() || label_.Role != TextRole::kValue) return text;
  const RECT area = TextArea();
  return ElidedInTheMiddle(dc, text, area.right - area.left);
}

void LabelPeer::PaintPanelHeading(Surface& surface) const {
  // How far the rows at the top begin within, for its round corners.
  constexpr int kCorner[] = {3, 1, 1};
  const RECT& bar = Area();
  const int last = std::max<int>(bar.right - bar.left - 1, 1);
  const Color from = context_.colors.panel_bar_from;
  const Color to = context_.colors.panel_bar_to;
  for (int x = bar.left; x < bar.right; ++x) {
    const auto mixed = [&](int first, int second) {
      return first + (second - first) * (x - bar.left) / last;
    };
    const int from_edge = std::min<int>(x - bar.left, bar.right - 1 - x);
    const auto cut = std::count_if(std::begin(kCorner), std::end(kCorner),
                                   [&](int within) { return from_edge < within; });
    surface.Fill({x, bar.top + static_cast<LONG>(cut), x + 1, bar.bottom},
                 MakeColor(mixed(RedOf(from), RedOf(to)), mixed(GreenOf(from), GreenOf(to)),
                           mixed(BlueOf(from), BlueOf(to))));
  }
}

void LabelPeer::Paint(Surface& surface) {
  if (IsPanelHeading()) PaintPanelHeading(surface);
  HDC dc = surface.Dc();
  const bool is_lit = IsLink() && IsUsable() && IsOver();
  const Selected font(dc, context_.fonts.OfRole(label_.Role, is_lit));
  const LookColors& colors = context_.colors;
  const Color color = is_lit ? colors.link_over : colors.OfRole(label_.Role, IsUsable());
  ::SetBkMode(dc, TRANSPARENT);
  ::SetTextColor(dc, ToColorRef(color));
  const std::wstring text = Fitting(dc);
  RECT area = TextArea();
  ::DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &area, Format());
  if (!IsLink() || !HasFocus()) return;
  RECT ring{0, 0, area.right - area.left, 0};
  ::DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &ring,
              (Format() | DT_CALCRECT) & ~UINT{DT_VCENTER});
  const LONG height = std::min(ring.bottom - ring.top, area.bottom - area.top);
  const LONG top = IsBlock() ? area.top : area.top + (area.bottom - area.top - height) / 2;
  const LONG gap = context_.ToDevice(kRingGap);
  const LONG width = std::min(ring.right - ring.left, area.right - area.left);
  surface.FrameDotted({area.left - gap, top, area.left + width + gap, top + height}, colors.link);
}

bool LabelPeer::OnKeyDown(const KeyPress& press, bool is_repeated) {
  if (!IsLink() || (press.key != Key::kSpace && press.key != Key::kEnter)) return false;
  if (!is_repeated) Click();
  return true;
}

void LabelPeer::OnFrame() {
  Repaint();
  NotifyReaders(EVENT_OBJECT_NAMECHANGE);
}

LONG LabelPeer::RoleForReaders() const {
  return IsLink() ? ROLE_SYSTEM_LINK : ROLE_SYSTEM_STATICTEXT;
}

PointerShape LabelPeer::Pointer() const {
  const PointerShape own = label_.Pointer;
  return own == PointerShape::kDefault && IsLink() ? PointerShape::kHand : own;
}

std::string LabelPeer::Tip() {
  const std::string& own = label_.ToolTip;
  if (!own.empty() || IsBlock()) return own;
  const Surface measure({0, 0, 1, 1});
  const Selected font(measure.Dc(), context_.fonts.OfRole(label_.Role));
  const RECT area = TextArea();
  const std::string text = label_.Shown();
  return WidthOf(measure.Dc(), ToShown(text)) > area.right - area.left ? text : own;
}

void LabelPeer::OnClick(MouseButton button) {
  if (button == MouseButton::kLeft) Click();
}

void LabelPeer::Click() {
  Report([this] { label_.Clicked.Emit(); });
}

}  // namespace tarnvale
