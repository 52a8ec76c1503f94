// Message boxes.
#pragma once

#include "ui/message_boxes.h"

namespace tarnvale {

class WindowsWindowHost;

/// The system's boxes over the active window. The event loop's timers tick behind them.
/// The program's end closes them, which answers as closing them by other means does.
class WindowsMessageBoxes final : public MessageBoxes {
 public:
  /// `windows` may be made after it, and must be there when a box is shown.
  explicit WindowsMessageBoxes(WindowsWindowHost& windows) : windows_(windows) {}

  BoxAnswer Show(const BoxRequest& request) override;

 private:
  WindowsWindowHost& windows_;
};

}  // namespace tarnvale
