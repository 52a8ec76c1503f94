// Message boxes.
#pragma once

#include "ui/message_boxes.h"

namespace tarnvale {

/// Modal boxes over the active window. The event loop's timers tick behind them.
/// A box with nothing but OK answers OK however it is closed.
class QtMessageBoxes final : public MessageBoxes {
 public:
  BoxAnswer Show(const BoxRequest& request) override;
};

}  // namespace tarnvale
