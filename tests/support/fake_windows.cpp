#include "tests/support/fake_windows.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tarnvale::testing {

void FakeWindows::Adopt(Window& window) {
  adopted_.push_back(&window);
  const auto report = [this, &window] { loop_.Post([this, &window] { ReportState(window); }); };
  reported_[&window].changes = window.State.Changed.Subscribe(report);
  report();
}

void FakeWindows::ReportState(Window& window) {
  const auto reported = reported_.find(&window);
  if (reported == reported_.end() || reported->second.state == window.State.Get()) return;
  reported->second.state = window.State;
  window.Resized.Emit();
}

void FakeWindows::Drop(Window& window) {
  reported_.erase(&window);
  adopted_.erase(std::remove(adopted_.begin(), adopted_.end(), &window), adopted_.end());
}

void FakeWindows::PopUp(MenuItem& menu) {
  popped_up_.push_back(&menu);
  if (!actions_.empty()) {
    const auto action = std::move(actions_.front());
    actions_.pop_front();
    action();
  }
  if (choices_.empty()) return;
  MenuItem* chosen = choices_.front();
  choices_.pop_front();
  if (chosen != nullptr) chosen->Clicked.Emit();
}

bool FakeTray::Notify(TrayCommand command, const TrayRecord& record) {
  const bool adds = command == TrayCommand::kAdd;
  const bool taken = IsPresent && has_icon_ != adds;
  if (taken) {
    has_icon_ = command != TrayCommand::kDelete;
    shown_ = record;
  }
  log_.push_back({command, record, taken});
  return taken;
}

void FakeTray::Mouse(TrayMessage message) {
  ASSERT_TRUE(has_icon_ && shown_.hook != nullptr) << "there is no icon to click";
  shown_.hook->MouseMove.Emit(static_cast<double>(message) * kTwipsPerPixel, 0);
}

}  // namespace tarnvale::testing
