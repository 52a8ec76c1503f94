#include "hosts/windows/peers/peer.h"

namespace tarnvale {
namespace {

bool IsShownWithContainers(const Control& control) {
  for (const Control* c = &control; c != nullptr; c = c->Parent()) {
    if (!c->Visible) return false;
  }
  return true;
}

bool IsEnabledWithContainers(const Control& control) {
  for (const Control* c = &control; c != nullptr; c = c->Parent()) {
    if (!c->Enabled) return false;
  }
  return true;
}

}  // namespace

Peer::Peer(PeerContext& context, WindowsWindow& window, Control& record, const Rect& place,
           const Peer* container)
    : context_(context),
      window_(window),
      record_(record),
      container_(container),
      area_(context.ToDevice(place)),
      is_shown_(IsShownWithContainers(record)),
      is_usable_(IsEnabledWithContainers(record)) {
  seen_area_ = area_;
  if (container == nullptr) return;
  ::OffsetRect(&area_, container->area_.left, container->area_.top);
  ::IntersectRect(&seen_area_, &area_, &container->seen_area_);
}

Peer::~Peer() {
  context_.frames.Forget(*this);
}

void Peer::UpdateReach() {
  const bool is_shown = IsShownWithContainers(record_);
  const bool is_usable = IsEnabledWithContainers(record_);
  if (std::exchange(is_usable_, is_usable) != is_usable) OnUsable(is_usable);
  if (std::exchange(is_shown_, is_shown) != is_shown) OnShown(is_shown);
}

void Peer::Report(const std::function<void()>& handler) {
  if (!context_.ending) context_.loop.Deliver(handler);
}

}  // namespace tarnvale
