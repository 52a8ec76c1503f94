#include "core/backup_log.h"

#include "base/text.h"

namespace tarnvale {
namespace {

constexpr int kLogFileNumber = 1;

}  // namespace

void BackupLog::Open(const std::string& data_folder) {
  machine_.open_files.OpenOutput(kLogFileNumber, PathIn(data_folder));
}

void BackupLog::PrintLine(const std::string& text) {
  machine_.open_files.Write(kLogFileNumber, OneLine(text) + "\r\n");
}

void BackupLog::Print(const std::string& text) {
  machine_.open_files.Write(kLogFileNumber, OneLine(text));
}

void BackupLog::Close() {
  machine_.open_files.Close(kLogFileNumber);
}

}  // namespace tarnvale
