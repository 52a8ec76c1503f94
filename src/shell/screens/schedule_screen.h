// The screen for the times and days of a backup, with the summary of what is
// set.
#pragma once

#include <array>

#include "core/engine.h"
#include "kit/check_box.h"
#include "kit/group_box.h"
#include "ui/controls.h"
#include "ui/window.h"

namespace tarnvale {

class ScheduleScreen {
 public:
  ScheduleScreen(Window& window, Engine& engine);

  /// Gives the controls their places in the window and their texts.
  void LayOut();

  /// The first focus of the window. It chooses the schedule's kind: the stored
  /// choice of fixed time or interval takes effect here.
  void FocusTimeField() { window_.Focus(engine_.settings.UseEach ? MaskEdBox2 : MaskEdBox1); }

  // The schedule screen.
  GroupBox GroupBox4;
  GroupBox GroupBox10;         ///< Frame of the times and days.
  OptionButton Optionbutton1;  ///< ScheduleAt.
  TextBox MaskEdBox1;          ///< AlwaysAtText.
  OptionButton Optionbutton2;  ///< ScheduleEach.
  TextBox MaskEdBox2;          ///< EachText.
  Label DaysLabel{TextRole::kStrong};
  OptionButton Optionbutton3;            ///< EveryDay.
  std::array<CheckButton, 7> Checkbox2;  ///< WeekDays, Sunday to Saturday.
  GroupBox GroupBox9;                    ///< Frame of date, time and next run.
  Label DateLabel;
  Label Label58;  ///< The date.
  Label TimeLabel;
  Label Label29;  ///< The time.
  Label NextLabel;
  Label Label60;       ///< The next run.
  GroupBox GroupBox8;  ///< Frame of the summary.
  Label ItemsLabel;
  Label ItemCount{TextRole::kValue};  ///< How long the list is.
  Label ReportsLabel;
  CheckBox CheckBox11;  ///< AutoReport.
  Label CompressionLabel;
  CheckBox CheckBox9;  ///< AutoCompress.
  Label UploadLabel;
  CheckBox CheckBox10;  ///< AutoUpload.
  Label DrivesLabel;

 private:
  void WireTimes();
  void Caption();
  void LayOutSchedule();
  void LayOutSummary();
  void ShowSummary();

  Window& window_;
  Engine& engine_;
};

}  // namespace tarnvale
