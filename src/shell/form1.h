// The main window: a task panel on the left, one of several screens on the
// right. Each screen is a class of its own in shell/screens.
#pragma once

#include "core/engine.h"
#include "shell/screens/advanced_screen.h"
#include "shell/screens/general_screen.h"
#include "shell/screens/list_screen.h"
#include "shell/screens/progress_screen.h"
#include "shell/screens/restore_screen.h"
#include "shell/screens/schedule_screen.h"
#include "shell/screens/storage_screen.h"
#include "shell/sys_tray.h"
#include "shell/tool_hooks.h"
#include "ui/controls.h"
#include "ui/window.h"

namespace tarnvale {

struct SwitchRow;

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

  /// Given, unused: shows the window on its schedule screen a second later.
  void WizardClose() { engine_.timers[EngineTimer::kWizardPage].Enabled = true; }

  /// The windows that its links open.
  ToolHooks Tools;

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

  // The screens.
  ListScreen List;
  StorageScreen Storage;
  ProgressScreen Progress;
  ScheduleScreen Schedule;
  GeneralScreen General;
  AdvancedScreen Advanced;
  RestoreScreen Restore;

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
  void LayOut();
  void LayOutTaskPanel();
  void WireScreens();
  void WireTaskPanel();
  void WireMenu();
  void WireTray();
  void WireTicks();

  void PlaceFirstFocus();
  void OnKey(KeyEvent& event);

  GroupBox& FrameOf(Screen screen);
  void SwitchTo(const SwitchRow& row);
  void SwitchFromMenu(const SwitchRow& row);

  void AskBeforeClosing(CloseRequest& request);
  void Exit();

  // One tick each.
  void OpenTree(FolderTree& tree, EngineTimer timer);
  void ShowWizardPage();

  Engine& engine_;
  bool dying_ = false;
};

}  // namespace tarnvale
