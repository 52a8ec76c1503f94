// A drawn control for tests of the desktops.
#pragma once

#include <string>
#include <vector>

#include "ui/owner_drawn.h"

namespace tarnvale::testing {

using Heard = std::vector<std::string>;

/// Red in its upper left corner, and clear elsewhere. Writes down all that it hears.
class Recorder final : public OwnerDrawn {
 public:
  bool TakesFocus() const override { return true; }
  Kind AccessibleKind() const override { return Kind::kButton; }
  AccessibleState StateForReaders() const override { return state; }
  std::string AccessibleText() const override { return "Backup Selected Items"; }
  char32_t AccessKeyChar() const override { return access_key; }
  void Press() override { heard.push_back("press"); }
  void Paint(Canvas& canvas, TextPainter&) override {
    ++paints;
    scale = canvas.Scale();
    canvas.FillRect({0, 0, 10, 10}, color);
  }
  void OnMouseDown(MouseButton button, Point at) override { Hear("down", button, at); }
  void OnMouseMove(MouseButton button, Point at) override { Hear("move", button, at); }
  void OnMouseUp(MouseButton button, Point at) override { Hear("up", button, at); }
  void OnDoubleClick(MouseButton button, Point at) override { Hear("double", button, at); }
  void OnClick(MouseButton) override { heard.push_back("click"); }
  void OnMouseLeave() override { heard.push_back("leave"); }
  void OnKeyDown(const KeyPress& press) override {
    heard.push_back(press.key == Key::kSpace ? "space down" : "key down");
  }
  void OnKeyUp(const KeyPress& press) override {
    heard.push_back(press.key == Key::kSpace ? "space up" : "key up");
  }
  void OnAccessKey() override { heard.push_back("access key"); }
  void OnFocusChanged(bool has_focus) override { focused = has_focus; }
  void OnResize(Size to) override { size = to; }

  AccessibleState state;
  Heard heard;
  char32_t access_key = U'b';
  bool focused = false;
  int paints = 0;
  int scale = 0;
  Size size;
  Color color = MakeColor(255, 0, 0);

 private:
  void Hear(const char* what, MouseButton button, Point at) {
    const char* held = button == MouseButton::kLeft ? " left " : " none ";
    heard.push_back(what + std::string(held) + std::to_string(at.x_px) + "," +
                    std::to_string(at.y_px));
  }
};

}  // namespace tarnvale::testing
