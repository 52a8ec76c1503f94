// Where the controls of the main window stand, and what they say. Places are
// pixels at 96 dpi from the container's upper left corner; the order of the
// rows is the tab order.
#include "shell/form1_layout.h"

#include "shell/form1.h"

namespace tarnvale {
namespace {

constexpr Size kClient{896, 568};
constexpr Rect kPanel{0, 0, 224, 568};

void LayOutTaskPanel(Form1& f) {
  f.TasksHeading.Caption = "Tarnvale Tasks";
  f.Label49.Caption = "Perform A Quick Backup";
  f.Label51.Caption = "Restore A Selected Backup";
  f.WizardHeading.Caption = "Backup Wizard";
  f.Label44.Caption = "Schedule My Backup Process";
  f.Label37.Caption = "Include Files In My Backup List";
  f.Label36.Caption = "Storage Location For Backup";
  f.Label45.Caption = "Save My Backup Settings";
  f.FeaturesHeading.Caption = "Additional Features";
  f.Label38.Caption = "General && Backup Settings";
  f.Label39.Caption = "Advanced Auto Settings";
  f.ToolsHeading.Caption = "Tarnvale Tools";
  f.Label34.Caption = "User Data Applications";
  f.Label42.Caption = "Tarnvale Splitter";
  f.Label56.Caption = "Registry Backup Maker";
  f.Label46.Caption = "Server Upload && Download";
  f.Label41.Caption = "Tarnvale Compressor";
  f.TaskPanel.Background = PictureBox::Ground::kTaskPanel;

  Control* panel = &f.TaskPanel;
  f.Place({
      {&f.TaskPanel, nullptr, kPanel},
      {&f.TasksHeading, panel, {16, 16, 192, 24}},
      {&f.Label49, panel, {24, 46, 184, 20}},
      {&f.Label51, panel, {24, 72, 184, 20}},
      {&f.WizardHeading, panel, {16, 112, 192, 24}},
      {&f.Label44, panel, {24, 142, 184, 20}},
      {&f.Label37, panel, {24, 168, 184, 20}},
      {&f.Label36, panel, {24, 194, 184, 20}},
      {&f.Label45, panel, {24, 220, 184, 20}},
      {&f.FeaturesHeading, panel, {16, 260, 192, 24}},
      {&f.Label38, panel, {24, 290, 184, 20}},
      {&f.Label39, panel, {24, 316, 184, 20}},
      {&f.ToolsHeading, panel, {16, 356, 192, 24}},
      {&f.Label34, panel, {24, 386, 184, 20}},
      {&f.Label42, panel, {24, 412, 184, 20}},
      {&f.Label56, panel, {24, 438, 184, 20}},
      {&f.Label46, panel, {24, 464, 184, 20}},
      {&f.Label41, panel, {24, 490, 184, 20}},
  });
}

void CaptionScheduleScreen(Form1& f) {
  f.GroupBox4.Caption = "";
  f.GroupBox10.Caption = "Schedule For A Backup";
  f.Optionbutton1.Caption = "Always At This Time:";
  f.MaskEdBox1.AccessibleName = "Time Of The Backup, Hours And Minutes";
  f.Optionbutton2.Caption = "Each Time This Interval Has Passed:";
  f.MaskEdBox2.AccessibleName = "Interval Between Backups, Hours And Minutes";
  f.DaysLabel.Caption = "On These Days";
  f.Optionbutton3.Caption = "Every Day";
  f.GroupBox9.Caption = "Current Information";
  f.DateLabel.Caption = "Date:";
  f.TimeLabel.Caption = "Time:";
  f.NextLabel.Caption = "Next Schedule:";
  f.GroupBox8.Caption = "Backup && Tasks Information";
  f.ItemsLabel.Caption = "Items For Backup:";
  f.ReportsLabel.Caption = "E-Mail Reports:";
  f.CompressionLabel.Caption = "Compression Occurs:";
  f.UploadLabel.Caption = "FTP Server Upload Occurs:";
  f.DrivesLabel.Caption = "U3 Smart Drives Backups";
  f.CheckBox11.AccessibleName = "E-Mail Reports";
  f.CheckBox9.AccessibleName = "Compression Occurs";
  f.CheckBox10.AccessibleName = "FTP Server Upload Occurs";
}

void LayOutScheduleScreen(Form1& f) {
  static constexpr std::array<const char*, 7> kDays = {
      "Every Sunday",   "Every Monday", "Every Tuesday", "Every Wednesday",
      "Every Thursday", "Every Friday", "Every Saturday"};
  CaptionScheduleScreen(f);
  Control* screen = &f.GroupBox4;
  Control* schedule = &f.GroupBox10;
  f.Place({
      {screen, nullptr, kScreen},
      {schedule, screen, {16, 20, 616, 240}},
      {&f.Optionbutton1, schedule, {20, 32, 260, 24}},
      {&f.MaskEdBox1, schedule, {300, 32, 64, 24}},
      {&f.Optionbutton2, schedule, {20, 64, 260, 24}},
      {&f.MaskEdBox2, schedule, {300, 64, 64, 24}},
      {&f.DaysLabel, schedule, {20, 104, 300, 20}},
      {&f.Optionbutton3, schedule, {20, 130, 180, 22}},
  });
  // Three columns of days below "Every Day".
  for (std::size_t day = 0; day < kDays.size(); ++day) {
    f.Checkbox2[day].Caption = kDays[day];
    const int column = static_cast<int>(day) / 3;
    const int row = static_cast<int>(day) % 3;
    f.Place({{&f.Checkbox2[day], schedule, {20 + column * 190, 156 + row * 26, 180, 22}}});
  }
  Control* information = &f.GroupBox9;
  Control* tasks = &f.GroupBox8;
  f.Place({
      {information, screen, {16, 276, 616, 116}},
      {&f.DateLabel, information, {20, 28, 180, 20}},
      {&f.Label58, information, {210, 28, 390, 20}},
      {&f.TimeLabel, information, {20, 54, 180, 20}},
      {&f.Label29, information, {210, 54, 390, 20}},
      {&f.NextLabel, information, {20, 80, 180, 20}},
      {&f.Label60, information, {210, 80, 390, 20}},
      {tasks, screen, {16, 408, 616, 122}},
      {&f.ItemsLabel, tasks, {20, 28, 180, 20}},
      {&f.ItemCount, tasks, {210, 28, 100, 20}},
      {&f.ReportsLabel, tasks, {20, 56, 180, 20}},
      {&f.CheckBox11, tasks, {210, 56, 90, 20}},
      {&f.DrivesLabel, tasks, {20, 84, 180, 20}},
      {&f.CompressionLabel, tasks, {320, 28, 180, 20}},
      {&f.CheckBox9, tasks, {510, 28, 90, 20}},
      {&f.UploadLabel, tasks, {320, 56, 180, 20}},
      {&f.CheckBox10, tasks, {510, 56, 90, 20}},
  });
}

void LayOutListScreen(Form1& f) {
  f.GroupBox1.Caption = "Include Files In My Backup List";
  f.ListTree.AccessibleName = "Folders";
  f.File1.AccessibleName = "Files Of The Folder";
  f.Check2.Caption = "Filter With Extension";
  f.Text2.AccessibleName = "Extension";
  f.Check1.Caption = "Show Hidden";
  f.Check3.Caption = "Show System";
  f.Check4.Caption = "Show Read-Only";
  f.CheckBox3.Caption = "Include Sub Directories";
  f.Command4.Caption = " Backup This Directory's Contents";
  f.Command5.Caption = " Backup Selected Items";
  f.ListHeading.Caption = "Selected Files && Directories For Backup: ";
  f.List1.AccessibleName = "Selected Files And Directories For Backup";
  f.Command1.Caption = " Remove Selected Item(s) From Backup";

  Control* screen = &f.GroupBox1;
  f.Place({
      {screen, nullptr, kScreen},
      {&f.Picture1, screen, {16, 28, 250, 232}},
      {&f.ListTree, &f.Picture1, {0, 0, 250, 232}},
      {&f.File1, screen, {278, 28, 354, 172}},
      {&f.Check2, screen, {278, 208, 170, 24}},
      {&f.Text2, screen, {456, 208, 176, 24}},
      {&f.Check1, screen, {278, 238, 110, 22}},
      {&f.Check3, screen, {394, 238, 110, 22}},
      {&f.Check4, screen, {506, 238, 126, 22}},
      {&f.CheckBox3, screen, {16, 268, 250, 22}},
      {&f.Command4, screen, {16, 296, 250, 28}},
      {&f.Command5, screen, {278, 296, 354, 28}},
      {&f.ListHeading, screen, {16, 338, 616, 20}},
      {&f.List1, screen, {16, 362, 616, 132}},
      {&f.Command1, screen, {16, 504, 250, 28}},
  });
}

void LayOutStorageScreen(Form1& f) {
  f.GroupBox2.Caption = "Storage Location For Backup";
  f.StorageHeading.Caption = "Select Directory Where You Want To Backup Your Files";
  f.StorageTree.AccessibleName = "Folders For Storage";
  f.PathLabel.Caption = "Selected Backup Folder Path";
  f.Text1.AccessibleName = "Selected Backup Folder Path";
  f.chameleonButton1.Caption = "Select This Location For My Backup Files";

  Control* screen = &f.GroupBox2;
  f.Place({
      {screen, nullptr, kScreen},
      {&f.StorageHeading, screen, {16, 28, 616, 20}},
      {&f.picBrowse, screen, {16, 54, 616, 372}},
      {&f.StorageTree, &f.picBrowse, {0, 0, 616, 372}},
      {&f.PathLabel, screen, {16, 440, 616, 20}},
      {&f.Text1, screen, {16, 464, 616, 24}},
      {&f.chameleonButton1, screen, {16, 500, 300, 30}},
  });
}

void LayOutProgressScreen(Form1& f) {
  f.GroupBox3.Caption = "Backup Progress";
  f.FromLabel.Caption = "Current Backup From:";
  f.ToLabel.Caption = "Current Backup To:";
  f.ProgressLabel.Caption = "Current Backup Progress:";
  f.FileProgressLabel.Caption = "Current File Progress:";
  f.XP_ProgressBar1.AccessibleName = "Current File Progress";
  f.TotalProgressLabel.Caption = "Total Backup Progress:";
  f.XP_ProgressBar2.AccessibleName = "Total Backup Progress";
  f.OptionsLabel.Caption = "More Options:";
  f.Label50.Caption = "Read Log File To Check For Backup Errors And Success";
  f.Label47.Caption = "Tarnvale Compressor";
  f.XP_ProgressBar1.Scrolling = 9;
  f.XP_ProgressBar2.Scrolling = 9;

  Control* screen = &f.GroupBox3;
  f.Place({
      {screen, nullptr, kScreen},
      {&f.FromLabel, screen, {16, 32, 616, 20}},
      {&f.Label11, screen, {16, 56, 616, 20}},
      {&f.ToLabel, screen, {16, 92, 616, 20}},
      {&f.Label13, screen, {16, 116, 616, 20}},
      {&f.ProgressLabel, screen, {16, 152, 616, 20}},
      {&f.Label14, screen, {16, 176, 616, 20}},
      {&f.FileProgressLabel, screen, {16, 224, 616, 20}},
      {&f.XP_ProgressBar1, screen, {16, 250, 616, 22}},
      {&f.TotalProgressLabel, screen, {16, 292, 616, 20}},
      {&f.XP_ProgressBar2, screen, {16, 318, 616, 22}},
      {&f.OptionsLabel, screen, {16, 372, 616, 20}},
      {&f.Label50, screen, {24, 398, 400, 20}},
      {&f.Label47, screen, {24, 424, 400, 20}},
  });
}

}  // namespace

void LayOut(Form1& f) {
  f.Caption = "Tarnvale";
  f.Frame = WindowFrame::kFixed;
  f.ClientSize = kClient;
  LayOutTaskPanel(f);
  // Behind the others: some commands leave it standing and show their own.
  LayOutRestoreScreen(f);
  LayOutScheduleScreen(f);
  LayOutListScreen(f);
  LayOutStorageScreen(f);
  LayOutGeneralScreen(f);
  LayOutProgressScreen(f);
  LayOutAdvancedScreen(f);
  for (chameleonButton* button :
       {&f.Command1, &f.Command4, &f.Command5, &f.chameleonButton1, &f.chameleonButton2,
        &f.chameleonButton3, &f.chameleonButton4, &f.chameleonButton5, &f.chameleonButton6,
        &f.chameleonButton7, &f.chameleonButton8}) {
    button->ButtonType = 3;
  }
  // The window opens on the schedule, whose time fields take the first focus.
  for (GroupBox* screen :
       {&f.GroupBox1, &f.GroupBox2, &f.GroupBox3, &f.GroupBox5, &f.GroupBox6, &f.GroupBox15}) {
    screen->Visible = false;
  }
}

}  // namespace tarnvale
