// The agreement of the first start.
#pragma once

#include <functional>

#include "kit/chameleon_button.h"
#include "ui/controls.h"
#include "ui/machine.h"
#include "ui/window.h"

namespace tarnvale {

/// What the agreement does to the rest of the program. Set by whoever composes
/// it; one that isn't set does nothing.
struct AgreementHooks {
  std::function<void()> DisableMainWindow;
  std::function<void()> EnableMainWindow;
  /// Shows the main window without waiting.
  std::function<void()> ShowMainWindow;
  /// Saves all settings as they stand, unexamined.
  std::function<void()> SaveChanges;
  /// Ends the program, unasked. Returns when there is nothing to end it.
  std::function<void()> Decline;
};

/// Keeps the main window disabled while it exists: from when it is made
/// until it is closed, and it closes only by acceptance. Each is used once: make
/// it anew to show it again.
class Accept : public Window {
 public:
  Accept(Machine& machine, AgreementHooks hooks);

  TextBox RichTextBox1{TextKind::kMemo};  ///< The text of the agreement.
  chameleonButton chameleonButton1;       ///< Accepts.
  chameleonButton chameleonButton2;       ///< Declines, after a question.
  Timer Timer1;                           ///< Disables the main window.

 private:
  void LayOut();
  void AcceptAgreement();
  void AskToDecline();

  Machine& machine_;
  AgreementHooks hooks_;
  bool is_accepted_ = false;
};

}  // namespace tarnvale
