// Other programs, on Linux.
#pragma once

#include <optional>
#include <string>

#include "hosts/linux/instance_lock.h"
#include "hosts/linux/locator.h"
#include "platform/processes.h"

namespace tarnvale {

/// Where a process finds what is not in the path language. All native paths.
struct ProcessSurroundings {
  /// What distinguishes instances of this program from other programs.
  std::string program_file;
  /// A folder of this user's own for the lock of instances; made when missing.
  std::string lock_folder;
  /// Opens the file that it is given with the program for its kind; a name is
  /// looked for on the search path.
  std::string desktop_opener = "xdg-open";

  /// This process's file; the user's runtime folder or, without one that is
  /// closed to others, the state folder.
  static ProcessSurroundings Present();
};

/// A started program has no parent here and inherits no open file. Windows open
/// as the desktop likes: there is no general way to request a minimised one.
class LinuxProcesses : public Processes {
 public:
  LinuxProcesses(Locator& locator, const ProcessSurroundings& surroundings);

  bool OpenWithDesktop(const Path& file) override;
  bool StartProgram(const Path& program) override;
  /// A program named in the path language is looked for there, another on the
  /// search path. The other words of the line stay as they are.
  void StartMinimized(const std::string& command_line) override;
  /// Exactly this name first, then without regard to case.
  std::optional<std::string> Variable(const std::string& name) override;
  bool PreviousInstance() override;

 private:
  std::string NativeProgram(const std::string& name);

  Locator& locator_;
  ProcessSurroundings surroundings_;
  std::optional<InstanceLock> lock_;  // made when it is first needed
};

}  // namespace tarnvale
