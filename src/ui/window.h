// Windows.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "base/property.h"
#include "base/signal.h"
#include "ui/control.h"
#include "ui/geometry.h"
#include "ui/input.h"
#include "ui/menu.h"
#include "ui/raster.h"

namespace tarnvale {

enum class WindowState { kNormal, kMinimized };

enum class WindowFrame {
  kFixed,   ///< title bar with minimise and close, size fixed
  kDialog,  ///< title bar with close, size fixed
  kPlain,   ///< no frame, centred: splash
  kPopup,   ///< no frame, above all others, doesn't take the focus
};

/// The place of one control. `place` counts from the container's upper left
/// corner. The order of placements is the tab order, and the order in depth: a later
/// control covers an earlier one of the same container.
struct Placement {
  Control* control = nullptr;
  Control* container = nullptr;  ///< null: the window itself
  Rect place;
};

/// A key event that the window sees before its controls.
struct KeyEvent {
  KeyPress press;
  /// Set by a handler that used the key up; the control then doesn't get it.
  bool handled = false;
};

struct CloseRequest {
  bool cancelled = false;
};

class Window {
 public:
  Window() = default;
  virtual ~Window() = default;
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  // What a host reads once, when it makes the window.
  WindowFrame Frame = WindowFrame::kFixed;
  Size ClientSize;
  /// The menus of the menu bar; empty: no bar. The bar's height comes on top
  /// of ClientSize.
  std::vector<MenuItem*> MenuBar;
  const std::vector<Placement>& Placements() const { return placements_; }
  /// Adds controls in tab order; a container comes before what it contains.
  void Place(const std::vector<Placement>& placements);

  // State, mirrored both ways.
  Property<std::string> Caption;
  Property<bool> Visible{false};
  Property<WindowState> State{WindowState::kNormal};
  Property<bool> Enabled{true};
  /// Shown on the task bar.
  Property<bool> InTaskBar{true};
  /// Upper left corner in twips from that of the screen; popups only.
  Property<int> LeftTwips{0};
  Property<int> TopTwips{0};
  /// 0 clear to 255 solid.
  Property<int> Alpha{255};
  /// The name of an icon resource, which the host has in several sizes.
  Property<std::string> Icon;

  /// Makes it visible, on top of the program's other windows, without waiting.
  /// A window that was hidden is activated, minimised or not.
  void Show();
  void Hide() { Visible = false; }
  /// Emitted by Show on a visible window: the host brings it forward.
  Signal<> Raised;

  /// Requests the window to close, as its close box does: CloseAsked may cancel;
  /// otherwise it is hidden and Closed emitted. False when cancelled.
  bool Close();
  Signal<CloseRequest&> CloseAsked;
  Signal<> Closed;

  // What happens to it.
  Signal<> Activated;  ///< by Show, and whenever it becomes the active window
  Signal<> Resized;    ///< its state or size changed
  Signal<KeyEvent&> KeyDown;

  // The focus. The record is the truth; hosts follow it and report to it.
  /// Moves the focus: LostFocus of the old control, then GotFocus of the new.
  /// Nothing happens when it has it already, or can't take it for being hidden
  /// or disabled.
  void Focus(Control& control);
  /// What becomes of the focus of a control that is hidden or disabled: input_rules.h.
  Control* Focused() const { return focused_; }
  Signal<> FocusMoved;
  /// What Enter presses while no other button has the focus, and shows it; none
  /// for a window that has no such button.
  Property<Control*> DefaultButton{nullptr};
  /// To the next (or previous) control that takes part in the tab order.
  void FocusNext(bool forward = true);

  /// Can be seen and used: visible and enabled with all its containers.
  static bool IsReachable(const Control& control);

 private:
  std::vector<Placement> placements_;
  Control* focused_ = nullptr;
  // The control whose GotFocus was emitted last.
  Control* notified_ = nullptr;
};

/// What is common to all windows of the program.
struct Desktop {
  Property<PointerShape> Pointer{PointerShape::kDefault};
  /// The window that is active, none when another program's is.
  Property<Window*> ActiveWindow{nullptr};
};

/// Makes native windows for records.
class WindowHost {
 public:
  virtual ~WindowHost() = default;

  /// Mirrors a window from now on. No window owns another one: the one shown or activated
  /// last is on top, only popups stay above. Its placements, frame and menus must be
  /// complete. The record must live until it is dropped or the loop has ended; the
  /// host may outlive it and then doesn't touch it.
  virtual void Adopt(Window& window) = 0;

  /// Deletes the native window of an adopted one, whose record may go then. To be
  /// called when nothing of either runs any more (EventLoop::AfterHandlersSince).
  virtual void Drop(Window& window) = 0;

  /// Opens a menu at the pointer and returns when it has closed, the chosen
  /// row's Clicked emitted. Yields.
  virtual void PopUp(MenuItem& menu) = 0;

  /// The screen that holds the task bar, in twips.
  virtual int ScreenWidthTwips() = 0;
  virtual int ScreenHeightTwips() = 0;

  virtual Desktop& Surroundings() = 0;
};

}  // namespace tarnvale
