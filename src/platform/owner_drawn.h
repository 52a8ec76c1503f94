// Controls that the program draws itself.
#pragma once

#include <optional>

#include "platform/control.h"
#include "platform/controls.h"
#include "platform/geometry.h"
#include "platform/input.h"
#include "platform/raster.h"

namespace tarnvale {

/// How far something got, for a screen reader.
struct AccessibleRange {
  int value = 0;
  int min = 0;
  int max = 0;
  bool operator==(const AccessibleRange&) const = default;
};

/// What a screen reader tells of a control beside its kind and name. Whether it
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

/// Base of the kit's controls. The host keeps a canvas of the control's size,
/// asks for a drawing when the control says that its look changed, copies the
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
  /// The name for it when AccessibleName is empty, without access key marks.
  virtual std::string AccessibleText() const { return {}; }
  /// A change of it comes with LookChanged.
  virtual AccessibleState StateForReaders() const { return {}; }
  /// The character after the mark in the caption, in lower case; 0 for none.
  virtual char32_t AccessKeyChar() const { return 0; }
  /// Does what a click would do: a screen reader's press.
  virtual void Press() {}

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
  virtual void OnKeyDown(const KeyPress&) {}
  virtual void OnKeyUp(const KeyPress&) {}
  virtual void OnAccessKey() {}
  virtual void OnFocusChanged(bool /*has_focus*/) {}
  /// New size in logical pixels; before the first drawing and on each change.
  virtual void OnResize(Size) {}
};

}  // namespace tarnvale
