// What the run does about a statement that failed.
#pragma once

#include <functional>
#include <optional>

#include "base/failure.h"
#include "platform/files.h"
#include "ui/message_boxes.h"

namespace tarnvale {

enum class AfterFailure {
  kNextStatement,  ///< as if nothing had happened
  kRetryCopy,      ///< back to the copy of the present row
  kEndOfLog,       ///< on to the end of the log
};

/// The one failure handler of a run.
class RunFailures {
 public:
  RunFailures(FileSystem& files, MessageBoxes& boxes) : files_(files), boxes_(boxes) {}

  /// Entered by each failing statement. `target` is the file that the present
  /// row is copied to, `save_log` whether the run writes a log.
  AfterFailure OnFailure(const ProgramError& error, const Path& target, bool save_log);

  /// Given, unused: the decision by error number behind the resume.
  AfterFailure DecideByNumber(const ProgramError& error, const Path& target, bool save_log);

  /// The last error number that DecideByNumber noted for the log.
  std::optional<int> NotedNumber() const { return noted_number_; }

 private:
  AfterFailure AskToRetry(const char* text);
  AfterFailure UnprotectTarget(const Path& target);

  FileSystem& files_;
  MessageBoxes& boxes_;
  std::optional<int> noted_number_;
};

}  // namespace tarnvale
