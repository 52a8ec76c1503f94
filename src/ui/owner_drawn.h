// Controls that the program draws itself.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "ui/control.h"
#include "ui/controls.h"
#include "ui/geometry.h"
#include "ui/input.h"
#include "ui/message_boxes.h"
#include "ui/raster.h"

namespace tarnvale {

/// How far something got, for a screen reader.
struct AccessibleRange {
  int value = 0;
  int min = 0;
  int max = 0;
  bool operator==(const AccessibleRange&) const = default;
};

/// What a screen reader says of a control beside its kind and name. Whether it
/// is enabled and has the focus, the host knows by itself.
struct AccessibleState {
  /// Ticked or not; none for a control that has no such state.
  std::optional<bool> checked = std::nullopt;
  /// A button that is held down.
  bool pressed = false;
  /// None for a control that shows no progress.
  std::optional<AccessibleRange> range = std::nullopt;
  bool operator==(const AccessibleState&) const = default;
};

/// What the container of a control lends to it.
struct AmbientLook {
  std::string name = {};  ///< the name of a new control
  tarnvale::Font font = {};
  Color back = kWhite;
  Color fore = kBlack;
  bool operator==(const AmbientLook&) const = default;
};

/// What a host lends to a control that draws itself.
struct LentByHost {
  /// The number of the native window that the control lies in; 0 without one.
  std::uintptr_t native_window = 0;
  /// The number of what the window is drawn on; 0 where surfaces have none.
  std::uintptr_t native_surface = 0;
  AmbientLook ambient = {};
  /// Enter on the window would press it.
  bool is_default = false;
  /// What the container shows under the control, in device pixels.
  std::function<Raster()> copy_of_container = {};
  MessageBoxes* boxes = nullptr;
};

/// The effects of a drop; 0 is none.
inline constexpr int kCopies = 1;
inline constexpr int kMoves = 2;

/// One step of dragging a text or files over a control, or a text away from it.
struct DragStep {
  std::string data;  ///< the paths of files, one to a line
  int effect = 0;
  MouseButton button = MouseButton::kNone;
  Point at;
};

/// Base of the kit's controls. The host keeps a canvas of the control's size,
/// has it drawn when the control reports that its look changed, copies the
/// canvas to the screen whenever that is needed, and hands on what the user does.
/// Coordinates are logical pixels from the control's upper left corner.
class OwnerDrawn : public Control {
 public:
  void Accept(ControlVisitor& visitor) override { visitor.Visit(*this); }

  /// Draws the whole control. The canvas comes transparent, in the control's
  /// size and the display's scale.
  virtual void Paint(Canvas& canvas, TextPainter& text) = 0;

  /// The look changed: the host calls Paint before the next screen update,
  /// once however often this was emitted.
  Signal<> LookChanged;

  /// What a screen reader says it is.
  enum class Kind { kButton, kCheckBox, kProgressBar, kGroup, kOther };
  virtual Kind AccessibleKind() const { return Kind::kOther; }
  /// Whether a screen reader may press it.
  bool CanBePressed() const {
    return AccessibleKind() == Kind::kButton || AccessibleKind() == Kind::kCheckBox;
  }
  /// The name for it when AccessibleName is empty, without access key marks.
  virtual std::string AccessibleText() const { return {}; }
  /// A change of it comes with LookChanged.
  virtual AccessibleState StateForReaders() const { return {}; }
  /// The character after the mark in the caption, in lower case; 0 for none.
  virtual char32_t AccessKeyChar() const { return 0; }
  /// Does what a click would do: a screen reader's press.
  virtual void Press() {}

  /// Before the first drawing, and whenever any of it changes. Holds until the
  /// next one.
  virtual void OnLent(const LentByHost&) {}
  /// What it lends as a container; none: what the window does. A change of it comes
  /// with LookChanged.
  virtual std::optional<AmbientLook> LendsToContents() const { return std::nullopt; }

  /// Gets the next two while something is dragged over it.
  virtual bool TakesDrops() const { return false; }
  /// The control sets the effect that a drop would have; 0 refuses it.
  virtual void OnDragOver(DragStep&) {}
  virtual void OnDragDrop(DragStep&) {}
  /// While its own data are dragged: the effect that a drop would have now.
  virtual void OnGiveFeedback(DragStep&) {}
  /// Emitted to have `data` dragged away; the host notes the effect and returns
  /// when it was dropped or given up. OnGiveFeedback comes whenever the effect changes.
  /// Yields.
  Signal<DragStep&> DragAway;

  virtual void OnMouseDown(MouseButton, Point) {}
  /// `button` is the one held down. Comes while one is held even from outside.
  virtual void OnMouseMove(MouseButton, Point) {}
  virtual void OnMouseUp(MouseButton, Point) {}
  /// After the mouse up of a press and release inside the control.
  virtual void OnClick(MouseButton) {}
  /// In the place of the second mouse down of a double click.
  virtual void OnDoubleClick(MouseButton, Point) {}
  /// The pointer has left the control.
  virtual void OnMouseLeave() {}
  /// While it has the focus: what Window::KeyDown, the default button and the tab order leave
  /// of the keys. One that is held down comes again and again, and goes up once.
  virtual void OnKeyDown(const KeyPress&) {}
  virtual void OnKeyUp(const KeyPress&) {}
  virtual void OnAccessKey() {}
  virtual void OnFocusChanged(bool /*has_focus*/) {}
  /// New size in logical pixels; before the first drawing and on each change.
  virtual void OnResize(Size) {}
};

}  // namespace tarnvale
