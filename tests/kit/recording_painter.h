// A text painter that draws nothing and remembers its calls.
#pragma once

#include <string>
#include <vector>

#include "ui/raster.h"

namespace tarnvale::testing {

/// Every character is 6 pixels wide and 13 high.
class RecordingPainter : public TextPainter {
 public:
  struct Drawing {
    std::string text;
    TextLook look;
    Rect area;
  };

  Size Measure(const std::string& text, const TextLook&) override {
    measured.push_back(text);
    return {static_cast<int>(text.size()) * 6, 13};
  }
  void Draw(Canvas&, const std::string& text, const TextLook& look, Rect area) override {
    drawn.push_back({text, look, area});
  }

  std::vector<std::string> measured;
  std::vector<Drawing> drawn;
};

}  // namespace tarnvale::testing
