// The composition: every window, and what notifies what.
#pragma once

#include <memory>
#include <string>

#include "compressor/compressor_window.h"
#include "core/engine.h"
#include "registry/registry.h"
#include "shell/accept.h"
#include "shell/alerts.h"
#include "shell/form1.h"
#include "shell/splash.h"
#include "splitter/frm_main.h"
#include "transfer/frm_winsock.h"
#include "transfer/ftp_window.h"
#include "ui/machine.h"
#include "ui/window_slot.h"
#include "userdata/user_data_window.h"

namespace tarnvale {

/// The whole program on one machine.
class Program {
 public:
  /// Both must outlive it. `workers` code archives.
  explicit Program(Machine& machine, Workers& workers = ArchiveParts::nobody);
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  /// Shows the splash, loads the main window and serves events until the end.
  /// Returns the exit status.
  int Run();

  /// The first part of Run. False in a second instance, which ends.
  bool Start();

  // The parts, in the order in which they are made.
  Engine engine;
  Form1 form;
  splash Splash;
  WindowSlot<Accept> Agreement;
  Popups popups;
  WindowSlot<compression> Compressor;
  WindowSlot<frmMain> Splitter;
  WindowSlot<registry> RegistryBackup;
  WindowSlot<userdata> UserData;
  WindowSlot<frmWinsock> Mailer;
  WindowSlot<Main> Transfer;

 private:
  template <class W, class... Args>
  std::unique_ptr<W> Make(Args&&... args);
  std::unique_ptr<compression> MakeCompressor();
  std::unique_ptr<Main> MakeTransfer();

  SplashHooks HooksOfSplash();
  AgreementHooks HooksOfAgreement();
  void ConnectTools();
  void ConnectStages();

  Machine& machine_;
  Workers& workers_;
  /// Stays when the window of the conversation is unloaded.
  std::string last_reply_;
};

/// Shows each error that left its handler: it has ended that handler only. Lasts
/// as long as the machine.
void ShowFaults(const Machine& machine);

}  // namespace tarnvale
