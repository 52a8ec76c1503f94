// The window for the FTP server: its settings, upload and download, and the
// upload that is part of a backup run.
#pragma once

#include <functional>
#include <string>

#include "kit/chameleon_button.h"
#include "kit/group_box.h"
#include "kit/progress_bar.h"
#include "platform/ftp_transport.h"
#include "settings/backup_settings.h"
#include "ui/controls.h"
#include "ui/machine.h"
#include "ui/timer.h"
#include "ui/window.h"

namespace tarnvale {

/// The name that an empty server field fills itself with, for the user to
/// replace.
inline constexpr const char* kExampleServer = "ftp.example.com";

/// The FTP window. It is made hidden at the start of the program: its fields
/// take part in the settings from then on, and the engine reads its status,
/// shown or not. One of it is loaded at a time (WindowSlot).
///
/// A flow gives a command and waits for its end; the outcome is never read from
/// the server. Nothing locks the window: a click during a flow starts another
/// one within it. A flow that is going on when the window is closed goes on.
class Main : public Window {
 public:
  /// Both must outlive the window. Loads the fields from the settings.
  Main(Machine& machine, BackupSettings& settings);

  /// Uploads "Auto Compressed.tvz" of CompressDir, always under the same remote
  /// name. Returns when the upload ended or failed, and doesn't say which. Shows
  /// no box. Yields.
  void CompressFTP();

  // What other windows do for this one; set by the composition root.
  std::function<void()> SaveChanges;  ///< Saves all settings. Not set: nothing.

  /// What goes on between the program and the server. The engine reads it.
  Property<std::string> ConnectionStatus{"Not Connected To Server"};

  // The task panel.
  PictureBox TaskPanel;
  Label TasksHeading{TextRole::kHeading};
  Label Label15{TextRole::kLink};  ///< Panel of the settings.
  Label Label49{TextRole::kLink};  ///< Panel of the upload.
  Label Label14{TextRole::kLink};  ///< Panel of the download.
  Label StatusHeading{TextRole::kHeading};
  Label Label6{TextRole::kBody, ConnectionStatus};  ///< ConnectionStatus.

  // The panel of the settings.
  GroupBox GroupBox1;
  Label ServerLabel;
  TextBox txtServer;  ///< FtpServer, copied there every second.
  Label UserLabel;
  TextBox txtUserID;  ///< FtpUsername, likewise.
  Label PasswordLabel;
  TextBox txtPassword{TextKind::kPassword};  ///< FtpPassword, likewise.
  chameleonButton chameleonButton2;          ///< Saves all settings.
  chameleonButton chameleonButton4;          ///< Verifies that the server answers.

  // The panel of the upload.
  GroupBox GroupBox2;
  Label LocalLabel;
  TextBox txtLocal;           ///< The file to upload.
  chameleonButton cmdBrowse;  ///< Chooses it.
  Label RemoteLabel;
  TextBox txtRemote;  ///< Its name on the server.
  Label SpacesNote{TextRole::kNote};
  chameleonButton chameleonButton1;  ///< Uploads.

  // The panel of the download.
  GroupBox GroupBox4;
  Label DownloadLabel;
  TextBox Text22;  ///< The name on the server, without its extension.
  Label ExtensionLabel;
  TextBox Text23;  ///< The extension.
  Label ExtensionNote{TextRole::kNote};
  chameleonButton chameleonButton3;  ///< Downloads.

  // What always stays in view.
  GroupBox GroupBox3;
  XP_ProgressBar XP_ProgressBar1;  ///< Moves during a transfer; shows no progress.
  XP_ProgressBar XP_ProgressBar2;  ///< Likewise.
  XP_ProgressBar XP_ProgressBar3;  ///< Likewise.

  // What talks to the server.
  FtpTransport& Inet1;

  // State that no panel shows; it isn't laid out.
  TextBox Text20;  ///< The whole remote name of the running download.
  TextBox Text21;  ///< The local path of the running download.

  // Timers.
  Timer Timer1;  ///< Takes the blanks out of the remote name.
  Timer Timer2;  ///< Enables the buttons of upload and download.
  Timer Timer3;  ///< Animates the bars during a transfer.
  Timer Timer4;  ///< Copies the fields into the settings.

 private:
  friend void LayOut(Main& window);

  void Load();
  void Unload();
  void WireCommands();
  void WireTimers();
  void ShowPanel(const GroupBox& panel);

  // The session.
  void ConfigureTransport();
  [[nodiscard]] bool WaitForTransport();
  [[nodiscard]] bool WaitUntilIdle();
  void Pause(int yields);
  void ShowState(TransportState state);
  void ShowError();

  // The flows.
  void Verify();
  void SaveSettings();
  void Browse();
  void Upload();
  void Download();
  Path AskForTarget();
  [[nodiscard]] bool SendFile();
  [[nodiscard]] bool FetchFile();

  // What the flows have in common.
  void CopyFields();
  void SetBars(int value);
  void EndTransfer();
  void EnableUpload(bool enabled);
  void Start(Timer& timer) { timer.Enabled = is_loaded_; }
  void ShowMessage(const char* text);
  void ShowFailure(const char* text, const char* title);

  // One tick each.
  void StripRemoteName();
  void EnableByFields();
  void Animate();
  void StoreFields();

  Machine& machine_;
  BackupSettings& settings_;
  bool is_loaded_ = true;
  Subscription notifications_;
};

/// Gives every control of the FTP window its place and its texts.
void LayOut(Main& window);

}  // namespace tarnvale
