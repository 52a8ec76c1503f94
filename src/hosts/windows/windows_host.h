// All of a Windows machine but its windows.
#pragma once

#include <string>

#include "hosts/windows/locator.h"
#include "hosts/windows/paths.h"
#include "hosts/windows/temporaries.h"
#include "hosts/windows/text_coding.h"
#include "hosts/windows/windows_application_folders.h"
#include "hosts/windows/windows_clock.h"
#include "hosts/windows/windows_files.h"
#include "hosts/windows/windows_locale_formats.h"
#include "hosts/windows/windows_open_files.h"
#include "hosts/windows/windows_processes.h"
#include "hosts/windows/windows_profile_files.h"
#include "hosts/windows/windows_random.h"
#include "hosts/windows/windows_registry.h"
#include "hosts/windows/windows_transfer_files.h"
#include "platform/system_parts.h"

namespace tarnvale {

/// The defaults are what the program runs with.
struct WindowsSurroundings {
  /// What C:\ stands for, as the only drive; empty for the drives as they are.
  std::wstring root;
  std::wstring program_file = OwnProgramFile();
  std::wstring state_folder = DefaultStateFolder(program_file);
  UINT code_page = CP_ACP;
  LCID locale = LOCALE_USER_DEFAULT;
  SetAttributesCall set_attributes = [](const std::wstring& native, DWORD attributes) {
    return ::SetFileAttributesW(native.c_str(), attributes) != 0;
  };
};

/// The system shows no boxes of its own: a drive without a medium is an error like any
/// other.
struct NoSystemBoxes {
  NoSystemBoxes() { ::SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX); }
};

/// Those boxes go first of all, since each part may use files at once.
class WindowsHost : private NoSystemBoxes {
 public:
  explicit WindowsHost(const WindowsSurroundings& surroundings = {})
      : drives(surroundings.root),
        temporaries(surroundings.state_folder),
        files(locator, temporaries, surroundings.program_file, surroundings.set_attributes),
        open_files(locator, TextCoding(surroundings.code_page)),
        profiles(locator, temporaries, TextCoding(surroundings.code_page)),
        processes(locator, surroundings.program_file),
        formats(surroundings.locale),
        applications(drives),
        transfer_files(locator, temporaries) {}
  WindowsHost(const WindowsHost&) = delete;
  WindowsHost& operator=(const WindowsHost&) = delete;

  /// The path of a native one.
  Path PathOf(const std::wstring& native) const { return drives.FromNative(native); }

  SystemParts Parts() {
    return {files, open_files, profiles, processes, clock, random, formats, registry, applications};
  }

  DrivePaths drives;
  Locator locator{drives};
  /// Sees first to what processes that were killed left in work.
  Temporaries temporaries;
  WindowsFiles files;
  WindowsOpenFiles open_files;
  WindowsProfileFiles profiles;
  WindowsProcesses processes;
  WindowsClock clock;
  WindowsRandom random;
  WindowsLocaleFormats formats;
  WindowsRegistry registry;
  WindowsApplicationFolders applications;
  WindowsTransferFiles transfer_files;
};

}  // namespace tarnvale
