// Other programs and the surroundings of this one.
#pragma once

#include <optional>
#include <string>

#include "platform/files.h"

namespace tarnvale {

class Processes {
 public:
  virtual ~Processes() = default;

  /// Opens a file with the program that the desktop has for its kind. Waits
  /// for nothing. False when the file is missing or nothing could be started.
  virtual bool OpenWithDesktop(const Path& file) = 0;

  /// Starts a program file, without arguments and without waiting. False when
  /// it is missing or isn't a program.
  virtual bool StartProgram(const Path& program) = 0;

  /// Starts a command line as it is, an unclosed quote included, with a
  /// minimised window and without waiting. Raises 53 when there is no such
  /// program, 5 where the first word is empty.
  virtual void StartMinimized(const std::string& command_line) = 0;

  /// A variable of the environment, by its name in either case; none when it isn't set.
  virtual std::optional<std::string> Variable(const std::string& name) = 0;

  /// True when another instance of this same program file was running for this
  /// user before the first call of this process. Ends with that instance, however it
  /// ends.
  virtual bool PreviousInstance() = 0;
};

}  // namespace tarnvale
