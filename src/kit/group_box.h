// The frame with a caption that holds screens and groups of fields.
#pragma once

#include <cstdint>
#include <string>

#include "base/property.h"
#include "base/signal.h"
#include "kit/property_bag.h"
#include "kit/system_colors.h"
#include "kit/visual_theme.h"
#include "ui/message_boxes.h"
#include "ui/owner_drawn.h"

namespace tarnvale {

/// A frame with a caption. It follows the system's theme when the host offers
/// one, and is an etched or flat rectangle otherwise.
class GroupBox : public OwnerDrawn {
 public:
  GroupBox();

  Property<Color> BackColor{SystemColorNumber(kColorButtonFace)};
  Property<Color> ForeColor{SystemColorNumber(kColorButtonText)};
  Property<tarnvale::Font> Font;
  /// 0 draws nothing, not even the caption.
  Property<std::int32_t> BorderStyle{1};
  Property<std::int16_t> OLEDropMode{0};
  /// Setting 0 shows a box and changes nothing; a stored 0 makes the areas in
  /// the back colour transparent.
  Property<std::int16_t> BackStyle{1};
  /// "&" marks the access key.
  Property<std::string> Caption;
  /// 0 flat, otherwise etched.
  Property<std::int16_t> Appearance{1};

  /// The host's theme; none: the classic frame. Must outlive the control.
  void UseTheme(VisualTheme* theme);

  void Refresh() { LookChanged.Emit(); }
  /// Starts dragging: OLEStartDrag gives the data, OLECompleteDrag reports the effect.
  void OLEDrag();

  /// A control that is put onto a window for the first time is called by its
  /// name.
  void InitProperties(const std::string& display_name, const tarnvale::Font& container_font);
  void ReadProperties(const PropertyBag& bag, const std::string& display_name,
                      const tarnvale::Font& container_font);
  void WriteProperties(PropertyBag& bag) const;
  /// Emitted with the name of each property that was set.
  Signal<const std::string&> PropertyChanged;

  Signal<> Click;
  Signal<> DblClick;
  Signal<MouseButton, Point> MouseDown;
  Signal<MouseButton, Point> MouseMove;
  Signal<MouseButton, Point> MouseUp;
  Signal<DragStep&> OLECompleteDrag;
  Signal<DragStep&> OLEDragDrop;
  Signal<DragStep&> OLEDragOver;
  Signal<DragStep&> OLEGiveFeedback;
  Signal<DragStep&> OLESetData;
  Signal<DragStep&> OLEStartDrag;

  // What the host calls.
  void Paint(Canvas& canvas, TextPainter& text) override;
  /// With them, BackStyle has somebody to show its box.
  void OnLent(const LentByHost& lent) override { boxes_ = lent.boxes; }
  std::optional<AmbientLook> LendsToContents() const override {
    return AmbientLook{.name = {}, .font = Font, .back = BackColor, .fore = ForeColor};
  }
  bool TakesDrops() const override { return OLEDropMode != 0; }
  void OnDragOver(DragStep& step) override { OLEDragOver.Emit(step); }
  void OnDragDrop(DragStep& step) override { OLEDragDrop.Emit(step); }
  void OnGiveFeedback(DragStep& step) override { OLEGiveFeedback.Emit(step); }
  Kind AccessibleKind() const override { return Kind::kGroup; }
  std::string AccessibleText() const override;
  char32_t AccessKeyChar() const override;
  void OnMouseDown(MouseButton button, Point at) override { MouseDown.Emit(button, at); }
  void OnMouseMove(MouseButton button, Point at) override { MouseMove.Emit(button, at); }
  void OnMouseUp(MouseButton button, Point at) override { MouseUp.Emit(button, at); }
  void OnClick(MouseButton) override { Click.Emit(); }
  void OnDoubleClick(MouseButton, Point) override { DblClick.Emit(); }
  void OnAccessKey() override;
  void OnResize(Size) override { Refresh(); }

 private:
  void PropertySet(const char* name);
  void BackStyleSet();

  std::int16_t back_style_ = 1;  ///< the last one that was applied
  bool reading_ = false;
  MessageBoxes* boxes_ = nullptr;
  VisualTheme* theme_ = nullptr;
};

}  // namespace tarnvale
