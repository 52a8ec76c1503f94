// The main window: a task panel on the left, one of several screens on the
// right. What it does lies in form1*.cpp by topic, where things stand in
// form1_layout.cpp.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "controls/chameleon_button.h"
#include "controls/check_box.h"
#include "controls/group_box.h"
#include "controls/progress_bar.h"
#include "core/engine.h"
#include "dialogs/file_dialog.h"
#include "platform/controls.h"
#include "platform/window.h"
#include "shell/sys_tray.h"
#include "shell/tool_hooks.h"

namespace tarnvale {

class Form1 : public Window {
 public:
  explicit Form1(Engine& engine);

  /// The start of the program: tests for a second instance, loads the settings,
  /// minimises and shows the window. Runs to its end in a second instance too,
  /// whose window is then closed (IsDying).
  void Load();
  bool IsDying() const { return dying_; }

  /// Selects the whole text of the active window's focused field; does nothing
  /// for a control without a text.
  void FieldFocus();

  /// The right button on the tray icon: the menu pops up at the pointer.
  void gSysTray_RButtonUP();

  /// Leaves the program without a question.
  void Decline();

  /// The windows that its links open.
  ToolHooks Tools;

  /// Shows the window on its schedule screen a second later. Nothing calls it.
  void WizardClose() { engine_.timers.WizardPage().Enabled = true; }

 private:
  Engine& engine_;
  BackupSettings& settings_;
  RunState& run_;

 public:
  // The task panel.
  PictureBox TaskPanel;
  Label TasksHeading{TextRole::kHeading};
  Label Label49{TextRole::kLink};  ///< Backs up now.
  Label Label51{TextRole::kLink};  ///< Restore screen.
  Label WizardHeading{TextRole::kHeading};
  Label Label44{TextRole::kLink};  ///< Schedule screen.
  Label Label37{TextRole::kLink};  ///< List screen.
  Label Label36{TextRole::kLink};  ///< Storage screen.
  Label Label45{TextRole::kLink};  ///< Saves the settings.
  Label FeaturesHeading{TextRole::kHeading};
  Label Label38{TextRole::kLink};  ///< General screen.
  Label Label39{TextRole::kLink};  ///< Advanced screen.
  Label ToolsHeading{TextRole::kHeading};
  Label Label34{TextRole::kLink};  ///< Opens the user data window.
  Label Label42{TextRole::kLink};  ///< Opens the splitter.
  Label Label56{TextRole::kLink};  ///< Opens the registry window.
  Label Label46{TextRole::kLink};  ///< Opens the transfer window.
  Label Label41{TextRole::kLink};  ///< Opens the compressor on its panel for packing.

  // The list screen.
  GroupBox GroupBox1;
  PictureBox Picture1;       ///< Holds the tree.
  FolderTree ListTree;       ///< In Picture1.
  FileList File1;            ///< The files of the folder.
  CheckButton Check2;        ///< Filters by Text2.
  TextBox Text2;             ///< What a shown name must contain.
  CheckButton Check1;        ///< Shows hidden files.
  CheckButton Check3;        ///< Shows system files.
  CheckButton Check4;        ///< "Show Read-Only". Required: nothing reads it.
  CheckButton CheckBox3;     ///< A folder is added with its sub-folders.
  chameleonButton Command4;  ///< Adds the folder of the tree.
  chameleonButton Command5;  ///< Adds the selected files.
  Label ListHeading{TextRole::kStrong};
  ListBox List1;             ///< Entries.
  chameleonButton Command1;  ///< Removes the selected items.
  TextBox Text3;             ///< Hidden: the folder chosen in the tree.

  // The storage screen.
  GroupBox GroupBox2;
  Label StorageHeading{TextRole::kStrong};
  PictureBox picBrowse;    ///< Holds the tree.
  FolderTree StorageTree;  ///< In picBrowse.
  Label PathLabel;
  TextBox Text1;                     ///< DestinationDir.
  chameleonButton chameleonButton1;  ///< Takes the folder of the tree.

  // The progress screen.
  GroupBox GroupBox3;
  Label FromLabel{TextRole::kStrong};
  Label Label11;  ///< SourceCaption.
  Label ToLabel{TextRole::kStrong};
  Label Label13;  ///< TargetCaption.
  Label ProgressLabel{TextRole::kStrong};
  Label Label14;  ///< StatusCaption.
  Label FileProgressLabel{TextRole::kStrong};
  XP_ProgressBar XP_ProgressBar1;  ///< CopyBar.
  Label TotalProgressLabel{TextRole::kStrong};
  XP_ProgressBar XP_ProgressBar2;  ///< FileBar.
  Label OptionsLabel{TextRole::kStrong};
  Label Label50{TextRole::kLink};  ///< Opens the log.
  Label Label47{TextRole::kLink};  ///< Opens the compressor.

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

  // The general screen.
  GroupBox GroupBox5;
  Label ModeHeading{TextRole::kStrong};
  OptionButton Option1;  ///< BackupMode: complete.
  Label CompleteNote{TextRole::kNote};
  OptionButton Option2;  ///< BackupMode: incremental.
  Label IncrementalNote{TextRole::kNote};
  OptionButton Option3;  ///< BackupMode: sync.
  Label SyncNote{TextRole::kNote};
  Label OptionsHeading{TextRole::kStrong};
  CheckButton Check5;     ///< ShowAlert.
  CheckButton Checkbox1;  ///< SaveLog.

  Label ExchangeHeading{TextRole::kStrong};
  chameleonButton chameleonButton2;  ///< Exports the settings.
  CheckBox CheckBox5;                ///< A file was chosen.
  Label Label30;
  CheckBox CheckBox6;  ///< The export went through.
  Label Label61;
  chameleonButton chameleonButton3;  ///< Imports settings.
  CheckBox CheckBox7;                ///< A file was chosen.
  Label Label63;
  CheckBox CheckBox8;  ///< The import went through.
  Label Label62;
  TextBox Text8;  ///< Hidden: the file exported to.
  TextBox Text9;  ///< Hidden: the file imported from.

  // The advanced screen.
  GroupBox GroupBox6;
  GroupBox GroupBox14;  ///< Frame of what follows a run.
  CheckButton Check6;   ///< AutoCompress.
  CheckButton Check7;   ///< AutoUpload.
  CheckButton Check12;  ///< AutoReport.
  GroupBox GroupBox11;  ///< Frame of the compression.
  Label CompressDirLabel;
  TextBox Text5;                     ///< CompressDir.
  chameleonButton chameleonButton4;  ///< Browses for Text5.
  chameleonButton chameleonButton5;  ///< Saves the settings.
  GroupBox GroupBox13;               ///< Frame of the upload.
  Label ServerNote{TextRole::kNote};
  chameleonButton chameleonButton7;  ///< Opens the transfer window.
  GroupBox GroupBox12;               ///< Frame of the reports.
  Label ServerLabel;
  TextBox txtServer;  ///< SmtpServer.
  Label ToAddressLabel;
  TextBox txtTo;  ///< ReportTo.
  Label AddressesNote{TextRole::kNote};
  chameleonButton chameleonButton6;          ///< Sends a test report.
  TextBox Text15{engine_.mail.Sender};       ///< Hidden: the sender of reports.
  TextBox txtSubject{engine_.mail.Subject};  ///< Hidden: the subject of reports.
  TextBox txtBody{engine_.mail.Body};        ///< Hidden: the text of the present report.

  // The restore screen.
  GroupBox GroupBox15;
  Label RestoreSourceLabel{TextRole::kStrong};
  PictureBox Picture2;           ///< Holds the tree.
  FolderTree RestoreSourceTree;  ///< In Picture2.
  TextBox Text27;                ///< The backup to restore.
  Label RestoreTargetLabel{TextRole::kStrong};
  PictureBox Picture3;           ///< Holds the tree.
  FolderTree RestoreTargetTree;  ///< In Picture3.
  TextBox Text28;                ///< Where to restore it.
  Label DeviceNote;
  Label RestoreStatusLabel{TextRole::kStrong};
  XP_ProgressBar XP_ProgressBar3;    ///< Moves while a backup is restored.
  chameleonButton chameleonButton8;  ///< Restores.

  // The menu.
  MenuItem mnuMenu{"File"};
  MenuItem mnuBackup{"&Backup Now"};
  MenuItem mnuwizard{"Backup &Wizard"};
  MenuItem mnuSchedule{"Schedule"};
  MenuItem mnufiles{"Backup Files"};
  MenuItem mnustorage{"Storage Location"};
  MenuItem mnusave{"Save Settings"};
  MenuItem mnuOptions{"Additional &Features"};
  MenuItem mnusettings{"General && Backup Settings"};
  MenuItem mnucompauto{"Advanced Auto Settings"};
  MenuItem mnutools{"Tarnvale &Tools"};
  MenuItem mnudata{"User Data Applications"};
  MenuItem mnusplitter{"Tarnvale Splitter"};
  MenuItem mnuregistry{"Registry Backup Maker"};
  MenuItem mnuFTP{"Server Upload && Download"};
  MenuItem mnuCompressor{"Tarnvale Compressor"};
  MenuItem mnuQuit{"&Exit"};

  /// The icon in the notification area.
  clsSysTray gSysTray;

 private:
  friend void LayOut(Form1& form);

  // Wiring, by topic.
  void WireTicks();
  void WireScreens();
  void WireMenu();
  void WireList();
  void WireStorage();
  void WireSchedule();
  void WireGeneral();
  void WireExchange();
  void WireAdvanced();
  void WireTools();
  void WireTray();
  void WireKeys();

  void PlaceFirstFocus();
  void OnKey(KeyEvent& event);

  // Screens.
  GroupBox& FrameOf(Screen screen);
  void SwitchTo(Screen shown, const std::vector<Screen>& hidden);
  void SwitchFromMenu(Screen shown, const std::vector<Screen>& hidden);

  // Commands.
  void AddChosenFolder();
  void AddChosenFiles();
  void RemoveSelectedItems();
  void SelectLocation();
  void SaveSettings(const char* announcement);
  void PrepareSettingsDialog();
  void ExportSettings();
  void ImportSettings();
  void FinishImportedFile();
  Path SettingsFile() const;
  void Restore();
  void AskBeforeClosing(CloseRequest& request);
  void Exit();
  ListScreen ListParts() { return {Text3.Text.Target(), File1, List1}; }

  // One tick each.
  void MirrorPaneFilters();
  void OpenTree(FolderTree& tree, int timer);
  void LinkAutoSettings();
  void AdvanceRestoreBar();
  void FollowFolderTrees();
  void ShowWizardPage();
  void ShowSummary();
  void AllowReport();
  void AllowSyncMode();

  CommonDialog CommonDialog1;
  bool list_has_focus_ = false;
  bool dying_ = false;
};

/// Gives every control of the main window its place and its texts.
void LayOut(Form1& form);

}  // namespace tarnvale
