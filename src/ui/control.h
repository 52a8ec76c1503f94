// The base of everything on a window.
#pragma once

#include <string>

#include "base/property.h"
#include "ui/input.h"
#include "ui/raster.h"

namespace tarnvale {

class ControlVisitor;
class Window;

/// A control is a record: its state is properties, what the user does arrives
/// as signals. The logic reads and writes records; a host mirrors each in both
/// directions and decides nothing. Records never move in memory: a window
/// declares them as members.
class Control {
 public:
  Control() = default;
  virtual ~Control() = default;
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  /// Calls the visitor's function for this kind of control.
  virtual void Accept(ControlVisitor& visitor) = 0;

  /// Takes part in the tab order while it can be seen and used.
  virtual bool TakesFocus() const { return false; }
  /// A click gives it the focus, before anything else that the click does.
  virtual bool TakesFocusByClick() const { return TakesFocus(); }

  /// Its own flag; a control in a hidden container is unseen all the same.
  Property<bool> Visible{true};
  Property<bool> Enabled{true};
  /// What a screen reader calls it. Empty: its caption, without the mark of the
  /// access key. A host must give every control that takes part in the tab order
  /// a name.
  Property<std::string> AccessibleName;
  Property<std::string> ToolTip;
  Property<PointerShape> Pointer{PointerShape::kDefault};
  /// What the pointer over it is with PointerShape::kPicture; points by its centre.
  /// Set before the shape.
  Property<Raster> PointerPicture;

  /// Emitted when the window's focus comes and goes. Set by Window::Focus.
  Signal<> GotFocus;
  Signal<> LostFocus;

  /// The window that the control was laid out on; none before that.
  Window* Owner() const { return owner_; }
  /// The control that contains it; none directly on the window.
  Control* Parent() const { return parent_; }

 private:
  friend class Window;
  Window* owner_ = nullptr;
  Control* parent_ = nullptr;
};

}  // namespace tarnvale
