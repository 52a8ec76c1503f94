#include "hosts/windows/peers/owner_drawn_peer.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "hosts/windows/dragging.h"
#include "hosts/windows/windows_window.h"
#include "ui/input_rules.h"

namespace tarnvale {

OwnerDrawnPeer::OwnerDrawnPeer(PeerContext& context, WindowsWindow& window, OwnerDrawn& drawn,
                               const Rect& place, const Peer* container)
    : DrawnPeer(context, window, drawn, place, container), drawn_(drawn) {
  Follow(drawn_.LookChanged, [this] {
    is_stale_ = true;
    RequestFrame();
  });
  Follow(drawn_.DragAway, [this](DragStep& step) { DragAway(step); });
  Follow(drawn_.Owner()->DefaultButton.Changed, [this] { Lend(); });
  if (auto* outer = dynamic_cast<OwnerDrawn*>(drawn_.Parent())) {
    Follow(outer->LookChanged, [this] { Lend(); });
  }
  Lend();
  Report([this] { drawn_.OnResize(LogicalSize()); });
}

OwnerDrawnPeer::~OwnerDrawnPeer() {
  Report([this] { drawn_.OnLent({}); });
}

Size OwnerDrawnPeer::LogicalSize() const {
  const int scale = Scale();
  return {(static_cast<int>(Area().right - Area().left) + scale - 1) / scale,
          (static_cast<int>(Area().bottom - Area().top) + scale - 1) / scale};
}

Point OwnerDrawnPeer::LogicalPoint(POINT at) const {
  const auto logical = [scale = Scale()](int device) {
    return device >= 0 ? device / scale : -((scale - 1 - device) / scale);
  };
  return {logical(at.x), logical(at.y)};
}

AmbientLook OwnerDrawnPeer::AmbientOfContainer() const {
  const auto* outer = dynamic_cast<const OwnerDrawn*>(drawn_.Parent());
  if (const auto lent = outer == nullptr ? std::nullopt : outer->LendsToContents()) return *lent;
  return {.name = {}, .font = {}, .back = context_.colors.ground, .fore = context_.colors.text};
}

Raster OwnerDrawnPeer::CopyOfContainer() const {
  constexpr std::uint32_t kOpaque = 0xFF000000U;
  Surface surface(Area());
  window_.PaintGroundOf(*this, surface);
  Raster copy{
      .width = Area().right - Area().left, .height = Area().bottom - Area().top, .pixels = {}};
  for (int y = Area().top; y < Area().bottom; ++y) {
    const std::uint32_t* row = surface.Row(y);
    std::transform(row, row + copy.width, std::back_inserter(copy.pixels), [](std::uint32_t rgb) {
      return kOpaque | (rgb & 0xFFU) << 16U | (rgb & 0xFF00U) | (rgb >> 16U & 0xFFU);
    });
  }
  return copy;
}

void OwnerDrawnPeer::Lend() {
  const LentByHost lent{.native_window = reinterpret_cast<std::uintptr_t>(window_.Native()),
                        .native_surface = 0,
                        .ambient = AmbientOfContainer(),
                        .is_default = drawn_.Owner()->DefaultButton.Get() == &drawn_,
                        .copy_of_container = [this] { return CopyOfContainer(); },
                        .boxes = &context_.boxes};
  Report([&] { drawn_.OnLent(lent); });
}

void OwnerDrawnPeer::OnColors() {
  is_stale_ = true;
  Lend();
}

void OwnerDrawnPeer::OnShown(bool is_shown) {
  if (is_shown) {
    Lend();
  } else {
    drawn_look_.Forget();
    is_stale_ = true;
  }
  DrawnPeer::OnShown(is_shown);
}

void OwnerDrawnPeer::Paint(Surface& surface) {
  if (is_stale_) {
    is_stale_ = false;
    Canvas canvas(LogicalSize(), Scale());
    Report([&] { drawn_.Paint(canvas, context_.text); });
    drawn_look_.Keep(canvas);
  }
  drawn_look_.Blend(surface, Area().left, Area().top);
  // A button's own frame is of one colour, which may not be seen on this ground.
  if (context_.colors.AreTheSystems() && drawn_.AccessibleKind() == OwnerDrawn::Kind::kButton) {
    surface.Frame(Area(), context_.colors.OfRole(TextRole::kBody, IsUsable()));
  }
}

void OwnerDrawnPeer::OnFrame() {
  Repaint();
  window_.FollowDrops();
  const AccessibleState now = drawn_.StateForReaders();
  const AccessibleState before = std::exchange(reported_, now);
  if (now.checked != before.checked || now.pressed != before.pressed) {
    NotifyReaders(EVENT_OBJECT_STATECHANGE);
  }
  if (now.range != before.range) NotifyReaders(EVENT_OBJECT_VALUECHANGE);
}

LONG OwnerDrawnPeer::RoleForReaders() const {
  switch (drawn_.AccessibleKind()) {
    case OwnerDrawn::Kind::kButton:
      return ROLE_SYSTEM_PUSHBUTTON;
    case OwnerDrawn::Kind::kCheckBox:
      return ROLE_SYSTEM_CHECKBUTTON;
    case OwnerDrawn::Kind::kProgressBar:
      return ROLE_SYSTEM_PROGRESSBAR;
    case OwnerDrawn::Kind::kGroup:
      return ROLE_SYSTEM_GROUPING;
    case OwnerDrawn::Kind::kOther:
      break;
  }
  return ROLE_SYSTEM_PANE;
}

void OwnerDrawnPeer::PressForReaders() {
  Report([this] { drawn_.Press(); });
}

void OwnerDrawnPeer::OnMouseDown(MouseButton button, POINT at) {
  DrawnPeer::OnMouseDown(button, at);
  Report([&] { drawn_.OnMouseDown(button, LogicalPoint(at)); });
}

void OwnerDrawnPeer::OnDoubleClick(MouseButton button, POINT at) {
  DrawnPeer::OnDoubleClick(button, at);
  Report([&] { drawn_.OnDoubleClick(button, LogicalPoint(at)); });
}

void OwnerDrawnPeer::OnMouseMove(MouseButton held, POINT at) {
  Report([&] { drawn_.OnMouseMove(held, LogicalPoint(at)); });
}

void OwnerDrawnPeer::OnMouseUp(MouseButton button, POINT at) {
  Report([&] { drawn_.OnMouseUp(button, LogicalPoint(at)); });
  DrawnPeer::OnMouseUp(button, at);
}

void OwnerDrawnPeer::OnClick(MouseButton button) {
  Report([&] { drawn_.OnClick(button); });
}

void OwnerDrawnPeer::OnPointerOver(bool is_over) {
  if (!is_over) Report([this] { drawn_.OnMouseLeave(); });
}

bool OwnerDrawnPeer::OnKeyDown(const KeyPress& press, bool) {
  Report([&] { drawn_.OnKeyDown(press); });
  return !press.alt;
}

void OwnerDrawnPeer::OnKeyUp(const KeyPress& press) {
  Report([&] { drawn_.OnKeyUp(press); });
}

void OwnerDrawnPeer::OnFocus(bool has_focus) {
  Report([&] { drawn_.OnFocusChanged(has_focus); });
}

void OwnerDrawnPeer::OnAccessKey() {
  Report([this] { drawn_.OnAccessKey(); });
}

int OwnerDrawnPeer::OnDrag(DragStep step, POINT at, int allowed_effects, bool is_drop) {
  step.at = LogicalPoint(at);
  Report([&] { is_drop ? drawn_.OnDragDrop(step) : drawn_.OnDragOver(step); });
  return AllowedEffect(step.effect, allowed_effects);
}

void OwnerDrawnPeer::DragAway(DragStep& step) {
  step.effect = DragTextAway(step.data, [&](int effect) {
    step.effect = effect;
    Report([&] { drawn_.OnGiveFeedback(step); });
  });
}

}  // namespace tarnvale
