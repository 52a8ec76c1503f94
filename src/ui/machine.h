// Everything that the logic needs of a machine, in one bundle.
#pragma once

#include "platform/ftp_transport.h"
#include "platform/socket.h"
#include "platform/system_parts.h"
#include "ui/dialogs.h"
#include "ui/event_loop.h"
#include "ui/message_boxes.h"
#include "ui/tray.h"
#include "ui/window.h"

namespace tarnvale {

// References only: the hosts own what they refer to and outlive everything built
// on it.

/// The side of the event loop: what shows windows and takes answers.
struct DesktopParts {
  EventLoop& loop;
  MessageBoxes& boxes;
  Desktop& desktop;
  WindowHost& windows;
  FileDialogs& dialogs;
  NotificationArea& tray;
  Sockets& sockets;
  FtpTransport& ftp;
};

struct Machine : SystemParts, DesktopParts {};

}  // namespace tarnvale
