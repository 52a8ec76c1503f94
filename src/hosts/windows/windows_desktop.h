// The desktop host in one piece, for the composition root.
#pragma once

#include <functional>
#include <string>

#include "hosts/windows/windows_event_loop.h"
#include "hosts/windows/windows_pictures.h"
#include "hosts/windows/windows_sockets.h"
#include "hosts/windows/windows_tray.h"
#include "hosts/windows/windows_window_host.h"
#include "platform/files.h"
#include "ui/headless_machine.h"

namespace tarnvale {

/// Everything that the program needs of a Windows desktop. One to a thread.
class WindowsDesktop {
 public:
  /// `files` is what folder trees show and must outlive it. `program_path` gives a native
  /// path in the program's path language.
  WindowsDesktop(FileSystem& files, std::function<Path(const std::wstring& native)> program_path)
      : windows_(loop_, files, nobody_, std::move(program_path)),
        tray_(loop_,
              [](const std::string& name) { return IconNamed(name, SM_CXSMICON, SM_CYSMICON); }),
        sockets_(loop_) {}

  WindowsEventLoop& Loop() { return loop_; }
  WindowHost& Windows() { return windows_; }
  MessageBoxes& Boxes() { return nobody_; }
  FileDialogs& Dialogs() { return nobody_; }
  NotificationArea& Tray() { return tray_; }
  Sockets& Network() { return sockets_; }
  Desktop& Surroundings() { return windows_.Surroundings(); }

 private:
  WindowsEventLoop loop_;
  NoDesktop nobody_;
  WindowsWindowHost windows_;
  WindowsTray tray_;
  WindowsSockets sockets_;
};

}  // namespace tarnvale
