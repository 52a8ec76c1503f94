#include "core/run_failures.h"

namespace tarnvale {

AfterFailure RunFailures::OnFailure(const ProgramError& error, const Path& target, bool save_log) {
  // Required: the first action is an unconditional resume. Every failure of a
  // run passes in silence, and the table behind it is never reached from here.
  const int resume_at_next = 1;
  if (resume_at_next == 1) return AfterFailure::kNextStatement;
  return DecideByNumber(error, target, save_log);
}

AfterFailure RunFailures::DecideByNumber(const ProgramError& error, const Path& target,
                                         bool save_log) {
  if (save_log) noted_number_ = error.Number();
  switch (error.Number()) {
    case kInvalidCall:
    case kBadFileNumber:
    case kFileNotFound:
      return AfterFailure::kNextStatement;
    case kDeviceIoError:
      return AskToRetry("Backup Disk Is Not Ready!");
    case kDiskFull:
      return AskToRetry("Backup Disk Is Full!");
    case kPermissionDenied:
      return AskToRetry("Backup Directory or Backup Drive Are Protected!");
    case kDiskNotReady:
      return AskToRetry("Backup Disk Is Not Ready!");
    case kPathFileAccess:
      return UnprotectTarget(target);
    case kPathNotFound:
      return AskToRetry("Backup Directory Is Unavailable!");
    default:
      return AskToRetry("An Unexpected Error Has Occured!");
  }
}

AfterFailure RunFailures::AskToRetry(const char* text) {
  const BoxAnswer answer =
      boxes_.Show({.text = text, .icon = BoxIcon::kStop, .buttons = BoxButtons::kYesNo});
  return answer == BoxAnswer::kYes ? AfterFailure::kRetryCopy : AfterFailure::kEndOfLog;
}

AfterFailure RunFailures::UnprotectTarget(const Path& target) {
  files_.SetAttributes(target, files_.Attributes(target) - attribute::kReadOnly);
  return AfterFailure::kRetryCopy;
}

}  // namespace tarnvale
