#include "shell/sys_tray.h"

#include "base/characters.h"
#include "base/failure.h"
#include "base/numbers.h"

namespace tarnvale {

clsSysTray::clsSysTray(Machine& machine, Window& main_window)
    : machine_(machine), main_window_(main_window) {
  presence_ = machine_.tray.IsPresent.Changed.Subscribe([this] { FollowPresence(); });
}

void clsSysTray::SourceWindow(Window* window) {
  source_ = window;
  try {
    BuildHook();
  } catch (const ProgramError& error) {
    machine_.boxes.Show({.text = "Run-time error '" + std::to_string(error.Number()) + "':\n\n" +
                                 error.Description(),
                         .icon = BoxIcon::kStop,
                         .title = "Error"});
    machine_.loop.Quit(1);
  }
}

void clsSysTray::BuildHook() {
  if (source_ == nullptr) throw ProgramError(kObjectNotSet);
  pichook_ = std::make_unique<PictureBox>();
  pichook_->AccessibleName = "pichook";
  pichook_->Visible = false;
  source_->Place({{pichook_.get(), nullptr, {}}});
  pichook_->Picture = source_->Icon.Get();
  pichook_->MouseMove.Listen([this](double x_twips, double) { FollowMouse(x_twips); });
  record_.hook = pichook_.get();
}

void clsSysTray::ChangeToolTip(const std::string& tip) {
  tip_ = tip;
  record_.tip = FirstCharacters(tip + '\0', TrayRecord::kTipCharacters);
  machine_.tray.Notify(TrayCommand::kModify, record_);
}

void clsSysTray::ChangeIcon(const std::string& picture) {
  if (pichook_) pichook_->Picture = picture;
  record_.icon = picture;
  ++icon_handle_;
  machine_.tray.Notify(TrayCommand::kModify, record_);
}

void clsSysTray::IconInSysTray() {
  wants_icon_ = true;
  machine_.tray.Notify(TrayCommand::kAdd, record_);
}

void clsSysTray::RemoveFromSysTray() {
  wants_icon_ = false;
  record_.size = TrayRecord().size;
  record_.hook = pichook_.get();
  record_.id = TrayRecord().id;
  machine_.tray.Notify(TrayCommand::kDelete, record_);
}

void clsSysTray::MinToSysTray() {
  IconInSysTray();
  if (source_ == nullptr || !machine_.tray.IsPresent) return;
  source_->Hide();
  source_->InTaskBar = false;
}

// The host reports a mouse message as a move whose place is the message's number
// in pixels.
void clsSysTray::FollowMouse(double x_twips) {
  previous_message_ = last_message_;
  last_message_ = RoundToInt32(x_twips / kTwipsPerPixel);
  // What comes while a handler's menu is open is dropped.
  if (in_event_) return;
  struct InEvent {
    explicit InEvent(bool& set) : flag(set) { flag = true; }
    ~InEvent() { flag = false; }
    InEvent(const InEvent&) = delete;
    InEvent& operator=(const InEvent&) = delete;
    bool& flag;
  };
  const InEvent in_event(in_event_);
  Act(last_message_);
}

void clsSysTray::Act(std::int32_t message) {
  switch (message) {
    case kTrayLeftDown:
      LButtonDown.Emit();
      break;
    case kTrayLeftUp:
      LButtonUp.Emit();
      break;
    case kTrayLeftDouble:
      if (DefaultDblClk) RestoreWindow();
      LButtonDblClk.Emit();
      break;
    case kTrayRightDown:
      RButtonDown.Emit();
      break;
    case kTrayRightUp:
      RButtonUp.Emit();
      break;
    case kTrayRightDouble:
      RButtonDblClk.Emit();
      break;
    default:
      break;
  }
}

void clsSysTray::RestoreWindow() {
  if (source_ == nullptr) return;
  source_->InTaskBar = true;
  source_->State = WindowState::kNormal;
  source_->Show();
  main_window_.Show();
}

void clsSysTray::FollowPresence() {
  if (!wants_icon_ || source_ == nullptr) return;
  if (machine_.tray.IsPresent) {
    machine_.tray.Notify(TrayCommand::kAdd, record_);
    if (source_->State.Get() == WindowState::kMinimized) {
      source_->Hide();
      source_->InTaskBar = false;
    }
  } else if (!source_->InTaskBar) {
    source_->InTaskBar = true;
    source_->Visible = true;
  }
}

}  // namespace tarnvale
