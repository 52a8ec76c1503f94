// The screen for what follows a run: archive, upload and report.
#pragma once

#include "core/engine.h"
#include "kit/chameleon_button.h"
#include "kit/group_box.h"
#include "shell/tool_hooks.h"
#include "ui/controls.h"
#include "ui/window.h"

namespace tarnvale {

class AdvancedScreen {
 public:
  AdvancedScreen(Window& window, Engine& engine, const ToolHooks& tools);

  /// Gives the controls their places in the window and their texts.
  void LayOut();

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
  chameleonButton chameleonButton6;  ///< Sends a test report.
  TextBox Text15;                    ///< Hidden: the sender of reports.
  TextBox txtSubject;                ///< Hidden: the subject of reports.
  TextBox txtBody;                   ///< Hidden: the text of the present report.

 private:
  void Caption();
  void LinkAutoSettings();
  void AllowReport();

  Window& window_;
  BackupSettings& settings_;
};

}  // namespace tarnvale
