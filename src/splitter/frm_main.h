// The splitter's window: cuts an archive to the size of a medium and joins the
// parts again.
#pragma once

#include <cstdint>
#include <string>

#include "kit/chameleon_button.h"
#include "kit/group_box.h"
#include "kit/progress_bar.h"
#include "splitter/progress_picture.h"
#include "splitter/split_join.h"
#include "ui/controls.h"
#include "ui/machine.h"
#include "ui/window.h"

namespace tarnvale {

/// One of it is loaded at a time (WindowSlot): closing it unloads it. A split or
/// join that is going on then goes on.
class frmMain : public Window {
 public:
  explicit frmMain(Machine& machine);

  /// Shows how far a split or join is; 0 at its end.
  void spProg(std::int16_t percent);

  // The task list.
  PictureBox TaskPanel;
  Label Label43{TextRole::kHeading};
  Label Label41{TextRole::kLink};  ///< Shows what splits.
  Label Label42{TextRole::kLink};  ///< Shows what joins.
  Label Label3{TextRole::kLink};   ///< Closes the window.
  Label Label1{TextRole::kHeading};
  XP_ProgressBar XP_ProgressBar1;  ///< Moves while something is done.
  XP_ProgressBar XP_ProgressBar2;  ///< The percent.

  // Splitting.
  GroupBox GroupBox1;
  Label FileNameLabel;
  TextBox txtSFName;                 ///< The file to split.
  chameleonButton chameleonButton3;  ///< Chooses the file.
  Label MediumLabel;
  ComboBox Combo1;                   ///< The media; takes typed text too.
  TextBox txtSegSize;                ///< The segment size in MB.
  chameleonButton chameleonButton2;  ///< Splits.

  // Joining.
  GroupBox GroupBox2;
  Label PartNameLabel;
  TextBox txtSegfname;               ///< A part of the file to join.
  chameleonButton chameleonButton5;  ///< Chooses the part.
  chameleonButton chameleonButton1;  ///< Joins.

  // State that isn't shown; it isn't laid out.
  TextBox Text3;                ///< The target folder of a split.
  TextBox Text2;                ///< Folder and base name of a join.
  TextBox Text1;                ///< The final path of a join.
  ProgressPicture picProgress;  ///< The percent, drawn.

 private:
  friend void LayOut(frmMain& form);

  void WireCommands();
  void WireFiles();
  void ShowTask(bool splitting);
  void ChooseFile(const char* title, TextBox& field);

  // One tick, and what it is made of.
  void FollowFields();
  void TakeMedium(const char* row, const char* size_text);

  // Splitting.
  void SplitChosenFile();

  // Joining.
  void JoinChosenParts();
  void StoreJoinedFile(std::int16_t part_count);

  Machine& machine_;
  modFHand parts_;
  Timer Timer1;
};

/// Bytes of a segment size in MB, as far as the text is a number from its start;
/// 0 when it is none. Raises 6 from 2048 on.
std::int32_t SegmentBytes(const std::string& megabytes);

/// Gives every control of the splitter's window its place and its texts.
void LayOut(frmMain& form);

}  // namespace tarnvale
