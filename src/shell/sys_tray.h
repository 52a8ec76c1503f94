// The program's icon in the notification area.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "ui/controls.h"
#include "ui/machine.h"

namespace tarnvale {

/// Shows the icon of a window in the notification area, hides the window behind
/// it and turns what the mouse does on the icon into events. What the area
/// refuses changes nothing and isn't reported.
///
/// Chosen: on a desktop without a notification area the window stays on the
/// task bar; an area that comes later takes it, and when one goes away, the
/// window comes back to the task bar.
class clsSysTray {
 public:
  /// `main_window` is what a double click brings up beside the source window.
  clsSysTray(Machine& machine, Window& main_window);

  // The events.
  Signal<> LButtonDblClk;
  Signal<> LButtonDown;
  Signal<> LButtonUp;
  Signal<> RButtonDblClk;
  Signal<> RButtonDown;
  Signal<> RButtonUp;

  /// Setting it is ChangeToolTip.
  void ToolTip(const std::string& tip) { ChangeToolTip(tip); }
  const std::string& ToolTip() const { return tip_; }
  /// Setting it is ChangeIcon. The number stands for the icon set last; 0 for
  /// none.
  void Icon(const std::string& picture) { ChangeIcon(picture); }
  std::int32_t Icon() const { return icon_handle_; }
  /// The menu that RButtonUp opens, for an area that opens it by itself.
  void Menu(MenuItem* menu) { record_.menu = menu; }
  /// A double click with the left button brings the source window up.
  bool DefaultDblClk = true;
  /// Adds the hidden hook to the window's controls. A failure is shown in a box
  /// and ends the program.
  void SourceWindow(Window* window);
  Window* SourceWindow() const { return source_; }

  /// The icon shows the first 64 characters.
  void ChangeToolTip(const std::string& tip);
  void RemoveFromSysTray();
  void IconInSysTray();
  /// Adds the icon, hides the source window and takes it off the task bar.
  void MinToSysTray();
  void ChangeIcon(const std::string& picture);

 private:
  void BuildHook();
  void FollowMouse(double x_twips);
  void Act(std::int32_t message);
  void RestoreWindow();
  void FollowPresence();

  Machine& machine_;
  Window& main_window_;
  Window* source_ = nullptr;
  std::string tip_;
  /// Gets the mouse messages of the icon.
  std::unique_ptr<PictureBox> pichook_;
  bool in_event_ = false;
  std::int32_t last_message_ = 0;
  std::int32_t previous_message_ = 0;
  std::int32_t icon_handle_ = 0;
  TrayRecord record_;
  /// The icon is to be in the area, if there is one.
  bool wants_icon_ = false;
  Subscription presence_;
};

}  // namespace tarnvale
