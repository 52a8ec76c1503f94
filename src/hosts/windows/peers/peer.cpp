#include "hosts/windows/peers/peer.h"

namespace tarnvale {
namespace {

// Whether a control and all of its containers have a flag set.
bool HasWithContainers(const Control& control, Property<bool> Control::*flag) {
  for (const Control* c = &control; c != nullptr; c = c->Parent()) {
    if (!(c->*flag)) return false;
  }
  return true;
}

}  // namespace

Peer::Peer(PeerContext& context, WindowsWindow& window, Control& record, const Rect& place,
           const Peer* container)
    : context_(context),
      window_(window),
      record_(record),
      area_(context.ToDevice(place)),
      is_shown_(HasWithContainers(record, &Control::Visible)),
      is_usable_(HasWithContainers(record, &Control::Enabled)) {
  seen_area_ = area_;
  if (container == nullptr) return;
  ::OffsetRect(&area_, container->area_.left, container->area_.top);
  ::IntersectRect(&seen_area_, &area_, &container->seen_area_);
}

Peer::~Peer() {
  context_.frames.Forget(*this);
}

void Peer::UpdateReach() {
  const bool is_shown = HasWithContainers(record_, &Control::Visible);
  const bool is_usable = HasWithContainers(record_, &Control::Enabled);
  if (std::exchange(is_usable_, is_usable) != is_usable) OnUsable(is_usable);
  if (std::exchange(is_shown_, is_shown) != is_shown) OnShown(is_shown);
}

void Peer::Report(const std::function<void()>& handler) {
  if (!context_.ending) context_.loop.Deliver(handler);
}

}  // namespace tarnvale
