// Text in drawn controls.
#pragma once

#include <QFont>

#include <map>
#include <tuple>

#include "ui/raster.h"

namespace tarnvale {

class QtTextPainter final : public TextPainter {
 public:
  Size Measure(const std::string& text, const TextLook& look) override;
  void Draw(Canvas& canvas, const std::string& text, const TextLook& look, Rect area) override;

 private:
  const QFont& FontFor(const Font& font, int scale);

  using Key = std::tuple<std::string, double, bool, bool, int>;
  std::map<Key, QFont> fonts_;
};

}  // namespace tarnvale
