// Message boxes.
#pragma once

#include <string>

namespace tarnvale {

enum class BoxIcon { kNone, kInformation, kQuestion, kExclamation, kStop };
enum class BoxButtons { kOk, kOkCancel, kYesNo };
enum class BoxAnswer { kOk, kCancel, kYes, kNo };

struct BoxRequest {
  std::string text;  ///< lines end in "\n"
  BoxIcon icon = BoxIcon::kNone;
  BoxButtons buttons = BoxButtons::kOk;
  std::string title = "Tarnvale";
};

class MessageBoxes {
 public:
  virtual ~MessageBoxes() = default;

  /// Shows a box, modal to the whole program and owned by its active window if there is
  /// one, and returns when it was answered; closing it by other
  /// means answers Cancel or No, whichever it has, and OK where there is nothing
  /// else. Yields: timers go on ticking meanwhile.
  virtual BoxAnswer Show(const BoxRequest& request) = 0;
};

}  // namespace tarnvale
