// Other programs, on Windows.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "hosts/windows/handle.h"
#include "hosts/windows/locator.h"
#include "platform/processes.h"

namespace tarnvale {

/// The native path of the running program's file.
std::wstring OwnProgramFile();

class WindowsProcesses : public Processes {
 public:
  /// `program_file` distinguishes instances of this program from other programs.
  WindowsProcesses(const Locator& locator, std::wstring program_file);

  bool OpenWithDesktop(const Path& file) override;
  bool StartProgram(const Path& program) override;
  /// A program that requires more rights than ours, as the registry's editor does, is
  /// started by the desktop, which asks the user.
  void StartMinimized(const std::string& command_line) override;
  std::optional<std::string> Variable(const std::string& name) override;
  /// Of this session: a mutex of the program file's name lives as long as its process.
  bool PreviousInstance() override;

 private:
  struct Command {
    std::wstring program;  ///< its native path; empty when there is no such program
    std::wstring line;
    std::wstring parameters;  ///< what follows the program in it
  };
  Command CommandOf(std::string_view line) const;
  std::wstring ProgramOf(const std::string& name) const;

  const Locator& locator_;
  std::wstring program_file_;
  std::optional<bool> had_predecessor_;
  Handle instance_;
};

}  // namespace tarnvale
