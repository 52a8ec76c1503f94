// The desktop host in one piece, for the composition root.
#pragma once

#include <QApplication>

#include <functional>
#include <string>

#include "hosts/qt/qt_event_loop.h"
#include "hosts/qt/qt_file_dialogs.h"
#include "hosts/qt/qt_message_boxes.h"
#include "hosts/qt/qt_sockets.h"
#include "hosts/qt/qt_tray.h"
#include "hosts/qt/qt_window_host.h"
#include "platform/files.h"

namespace tarnvale {

/// Owns Qt's application and everything that the program needs of it. One to a
/// process.
class QtHost {
 public:
  /// `argc` and `argv` are main's. `files` is what folder trees show
  /// and must outlive the host.
  QtHost(int& argc, char** argv, FileSystem& files, const PathTranslation& paths);

  QtEventLoop& Loop() { return loop_; }
  WindowHost& Windows() { return windows_; }
  TextPainter& Text() { return windows_.Text(); }
  MessageBoxes& Boxes() { return boxes_; }
  FileDialogs& Dialogs() { return dialogs_; }
  NotificationArea& Tray() { return tray_; }
  Sockets& Network() { return sockets_; }
  Desktop& Surroundings() { return windows_.Surroundings(); }

 private:
  /// Sets what has to stand before the application is made.
  struct Preparation {
    Preparation();
    bool chose_platform = false;
  };

  Preparation preparation_;
  QApplication application_;
  QtEventLoop loop_;
  QtWindowHost windows_;
  QtMessageBoxes boxes_;
  QtFileDialogs dialogs_;
  QtTray tray_;
  QtSockets sockets_;
};

}  // namespace tarnvale
