// The desktop host in one piece, for the composition root.
#pragma once

#include <optional>
#include <string>

#include "hosts/windows/paths.h"
#include "hosts/windows/windows_event_loop.h"
#include "hosts/windows/windows_file_dialogs.h"
#include "hosts/windows/windows_message_boxes.h"
#include "hosts/windows/windows_pictures.h"
#include "hosts/windows/windows_sockets.h"
#include "hosts/windows/windows_tray.h"
#include "hosts/windows/windows_window_host.h"
#include "platform/files.h"

namespace tarnvale {

/// Everything that the program needs of a Windows desktop. One to a thread.
class WindowsDesktop {
 public:
  /// `files` is what folder trees show. Both must outlive it.
  WindowsDesktop(FileSystem& files, const DrivePaths& drives)
      : windows_(loop_, files, boxes_,
                 [&drives](const std::wstring& native) { return drives.FromNative(native); }),
        dialogs_(windows_, drives),
        tray_(loop_,
              [](const std::string& name) { return IconNamed(name, SM_CXSMICON, SM_CYSMICON); }),
        sockets_(loop_) {}

  WindowsEventLoop& Loop() { return loop_; }
  WindowHost& Windows() { return windows_; }
  MessageBoxes& Boxes() { return boxes_; }
  FileDialogs& Dialogs() { return dialogs_; }
  NotificationArea& Tray() { return tray_; }
  Sockets& Network() { return sockets_; }
  Signal<>& SessionEnds() { return windows_.SessionEnds; }
  Property<std::optional<SystemColorTable>>& HighContrast() { return windows_.HighContrast; }
  Desktop& Surroundings() { return windows_.Surroundings(); }

 private:
  WindowsEventLoop loop_;
  WindowsMessageBoxes boxes_{windows_};
  WindowsWindowHost windows_;
  WindowsFileDialogs dialogs_;
  WindowsTray tray_;
  WindowsSockets sockets_;
};

}  // namespace tarnvale
