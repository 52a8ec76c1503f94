#include "ui/window.h"

#include <algorithm>
#include <utility>

namespace tarnvale {

void Window::Place(const std::vector<Placement>& placements) {
  for (const Placement& placement : placements) {
    placement.control->owner_ = this;
    placement.control->parent_ = placement.container;
    placements_.push_back(placement);
  }
}

void Window::Show() {
  const bool was_visible = Visible;
  Visible = true;
  if (!was_visible) Activated.Emit();
  Raised.Emit();
}

bool Window::Close() {
  CloseRequest request;
  CloseAsked.Emit(request);
  if (request.cancelled) return false;
  Visible = false;
  Closed.Emit();
  return true;
}

bool Window::IsReachable(const Control& control) {
  for (const Control* c = &control; c != nullptr; c = c->Parent()) {
    if (!c->Visible || !c->Enabled) return false;
  }
  return true;
}

void Window::Focus(Control& control) {
  if (focused_ == &control || !IsReachable(control)) return;
  focused_ = &control;
  FocusMoved.Emit();
  // Each handler may have moved the focus on already.
  if (focused_ != &control) return;
  if (Control* old = std::exchange(notified_, nullptr)) old->LostFocus.Emit();
  if (focused_ != &control) return;
  notified_ = &control;
  control.GotFocus.Emit();
}

void Window::FocusNext(bool forward) {
  const auto count = static_cast<std::ptrdiff_t>(placements_.size());
  if (count == 0) return;
  const auto present = std::find_if(placements_.begin(), placements_.end(),
                                    [&](const Placement& p) { return p.control == focused_; });
  std::ptrdiff_t at =
      present == placements_.end() ? (forward ? -1 : count) : present - placements_.begin();
  for (std::ptrdiff_t step = 0; step < count; ++step) {
    at = (at + (forward ? 1 : -1) + count) % count;
    Control& candidate = *placements_[static_cast<std::size_t>(at)].control;
    if (candidate.TakesFocus() && IsReachable(candidate)) {
      Focus(candidate);
      return;
    }
  }
}

}  // namespace tarnvale
