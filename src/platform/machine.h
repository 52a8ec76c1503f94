// Everything that the logic asks of a machine, in one bundle.
#pragma once

#include "platform/application_folders.h"
#include "platform/clock.h"
#include "platform/dialogs.h"
#include "platform/event_loop.h"
#include "platform/files.h"
#include "platform/ftp_transport.h"
#include "platform/locale_formats.h"
#include "platform/message_boxes.h"
#include "platform/open_files.h"
#include "platform/processes.h"
#include "platform/profile_files.h"
#include "platform/random_source.h"
#include "platform/registry.h"
#include "platform/socket.h"
#include "platform/tray.h"
#include "platform/window.h"

namespace tarnvale {

// References only: the hosts own what they refer to and outlive everything built
// on it.

/// The system's side: files, programs, time.
struct SystemParts {
  FileSystem& files;
  OpenFiles& open_files;
  ProfileFiles& profiles;
  Processes& processes;
  Clock& clock;
  RandomSource& random;
  LocaleFormats& formats;
  Registry& registry;
  ApplicationFolders& applications;
};

/// The side of the event loop: who is there to look and to answer.
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
