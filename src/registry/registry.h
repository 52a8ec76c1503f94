// The window that saves the system's registry to a file. It composes a command
// line for the registry editor and starts it; it waits for nothing and checks
// nothing.
#pragma once

#include "kit/chameleon_button.h"
#include "kit/group_box.h"
#include "ui/controls.h"
#include "ui/machine.h"
#include "ui/timer.h"
#include "ui/window.h"

namespace tarnvale {

/// One of it is made (WindowSlot); closing it hides it, and it stays as it is.
class registry : public Window {
 public:
  explicit registry(Machine& machine);

  // What is saved, and where to.
  GroupBox GroupBox1;
  Label Label2{TextRole::kStrong};
  Label Label3;
  ComboBox Combo1;  ///< The branches; takes typed text too.
  Label Label4;
  TextBox Text2;  ///< A path below the branch.
  Label Label5{TextRole::kNote};
  Label Label1{TextRole::kStrong};
  TextBox Text3;                     ///< The file.
  chameleonButton chameleonButton1;  ///< Chooses the file.
  chameleonButton Command1;          ///< Saves.

  // State that isn't shown; it isn't laid out.
  TextBox Text4;  ///< The branch to save; empty for the whole registry.

  // Timers.
  Timer Timer1;  ///< Fills Text4, and enables what the fields allow.

 private:
  friend void LayOut(registry& window);

  void FollowFields();
  void ChooseFile();
  void SaveBranch();

  Machine& machine_;
};

/// Gives every control of the registry window its place and its texts.
void LayOut(registry& window);

}  // namespace tarnvale
