// The drawn percent of the splitter.
#pragma once

#include <cstdint>

#include "ui/owner_drawn.h"

namespace tarnvale {

/// A box that fills with the percent, and the percent as a text.
class ProgressPicture : public OwnerDrawn {
 public:
  static constexpr Size kSize{188, 16};

  /// Shows another percent.
  void Show(std::int16_t percent);

  void Paint(Canvas& canvas, TextPainter& text) override;
  Kind AccessibleKind() const override { return Kind::kProgressBar; }

 private:
  std::int16_t percent_ = 0;
};

}  // namespace tarnvale
