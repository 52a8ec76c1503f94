// The screen for the mode of a backup, with the way of the settings out of the
// program and in again.
#pragma once

#include "core/engine.h"
#include "kit/chameleon_button.h"
#include "kit/check_box.h"
#include "kit/group_box.h"
#include "ui/controls.h"
#include "ui/file_dialog.h"
#include "ui/window.h"

namespace tarnvale {

class GeneralScreen {
 public:
  GeneralScreen(Window& window, Engine& engine);

  /// Gives the controls their places in the window and their texts.
  void LayOut();

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

 private:
  void Caption();
  void CaptionExchange();
  void AllowSyncMode();
  void PrepareSettingsDialog();
  void ExportSettings();
  void ImportSettings();
  void FinishImportedFile();
  void FlushFolder(const Path& folder);

  Window& window_;
  Engine& engine_;
  CommonDialog CommonDialog1;
};

}  // namespace tarnvale
