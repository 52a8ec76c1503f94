#include "core/backup_log.h"

#include "base/text.h"

namespace tarnvale {
namespace {

constexpr int kLogFileNumber = 1;

}  // namespace

void BackupLog::Open(const std::string& data_folder) {
  files_.OpenOutput(kLogFileNumber, PathIn(data_folder));
}

void BackupLog::PrintLine(const std::string& text) {
  files_.Write(kLogFileNumber, OneLine(text) + "\r\n");
}

void BackupLog::Print(const std::string& text) {
  files_.Write(kLogFileNumber, OneLine(text));
}

void BackupLog::Close() {
  files_.Close(kLogFileNumber);
}

}  // namespace tarnvale
