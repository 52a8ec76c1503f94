// All of a Linux machine but its windows.
#pragma once

#include <string>

#include "hosts/linux/linux_application_folders.h"
#include "hosts/linux/linux_clock.h"
#include "hosts/linux/linux_files.h"
#include "hosts/linux/linux_locale_formats.h"
#include "hosts/linux/linux_open_files.h"
#include "hosts/linux/linux_processes.h"
#include "hosts/linux/linux_profile_files.h"
#include "hosts/linux/linux_random.h"
#include "hosts/linux/linux_registry.h"
#include "hosts/linux/linux_transfer_files.h"
#include "hosts/linux/locator.h"
#include "hosts/linux/paths.h"
#include "hosts/linux/state_folder.h"
#include "hosts/linux/temporaries.h"
#include "platform/system_parts.h"

namespace tarnvale {

/// Native paths; what is here is what the program runs with.
struct LinuxSurroundings {
  /// What C:\ stands for.
  std::string root = "/";
  std::string state_folder = DefaultStateFolder();
  /// Empty: the environment's.
  std::string locale_name;
  ProcessSurroundings processes = ProcessSurroundings::Present();
  UserFolders user = UserFolders::Present();
};

class LinuxHost {
 public:
  explicit LinuxHost(const LinuxSurroundings& surroundings = {})
      : temporaries(surroundings.state_folder),
        locator(DrivePaths(surroundings.root), temporaries),
        files(locator, temporaries, surroundings.state_folder),
        open_files(locator),
        profiles(locator, temporaries),
        processes(locator, surroundings.processes),
        formats(surroundings.locale_name),
        applications(DrivePaths(surroundings.root), surroundings.user),
        transfer_files(locator, temporaries) {
    files.RefuseToDeleteOpen(open_files);
  }
  LinuxHost(const LinuxHost&) = delete;
  LinuxHost& operator=(const LinuxHost&) = delete;

  /// The path of an absolute native one; empty when no path can name it, for one
  /// of its names.
  Path PathOf(const std::string& native) const {
    return CanBeNamed(native) ? locator.Drive().FromNative(native) : Path();
  }
  /// The native path of what is there, found as every path is; empty when there
  /// is nothing.
  std::string NativeOf(const Path& path) {
    const Located located = locator.Locate(path);
    return located.found ? located.Native() : std::string();
  }

  SystemParts Parts() {
    return {files, open_files, profiles, processes, clock, random, formats, registry, applications};
  }

  Temporaries temporaries;
  Locator locator;
  LinuxFiles files;
  LinuxOpenFiles open_files;
  LinuxProfileFiles profiles;
  LinuxProcesses processes;
  LinuxClock clock;
  LinuxRandom random;
  LinuxLocaleFormats formats;
  LinuxRegistry registry;
  LinuxApplicationFolders applications;
  LinuxTransferFiles transfer_files;
};

}  // namespace tarnvale
