#include "core/backup_log.h"

#include <optional>

#include "base/text.h"
#include "platform/file_text.h"

namespace tarnvale {
namespace {

constexpr int kLogFileNumber = 1;

}  // namespace

void BackupLog::Open(const std::string& data_folder) {
  path_ = PathIn(data_folder);
  is_utf8_ = false;
  files_.OpenOutput(kLogFileNumber, path_);
}

void BackupLog::PrintLine(const std::string& text) {
  Put(OneLine(text) + "\r\n");
}

void BackupLog::Print(const std::string& text) {
  Put(OneLine(text));
}

void BackupLog::Put(const std::string& text) {
  const auto bytes = is_utf8_ ? std::optional(text) : files_.ToCodePage(text);
  if (!bytes && files_.IsOpen(kLogFileNumber)) TurnIntoUtf8();
  files_.Write(kLogFileNumber, bytes.value_or(text));
}

void BackupLog::TurnIntoUtf8() {
  files_.Close(kLogFileNumber);
  files_.OpenInput(kLogFileNumber, path_);
  const auto length = static_cast<std::size_t>(files_.Length(kLogFileNumber));
  const std::string written = files_.Read(kLogFileNumber, length);
  files_.Close(kLogFileNumber);
  files_.OpenOutput(kLogFileNumber, path_);
  is_utf8_ = true;
  files_.Write(kLogFileNumber,
               std::string(kUtf8Mark) + files_.FromCodePage(written).value_or(written));
}

void BackupLog::Close() {
  files_.Close(kLogFileNumber);
}

}  // namespace tarnvale
