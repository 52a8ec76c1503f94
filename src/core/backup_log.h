// The log file of a run.
#pragma once

#include <string>

#include "platform/open_files.h"

namespace tarnvale {

/// "Backup Log.txt" in the data folder, made anew at each run and held open
/// under file number 1 until the run's last copy. Lines end in carriage return
/// and line feed; a name that holds line ends of its own is written without them
/// (OneLine) and makes no lines. It is in the system's code page; from the first text that
/// this can't hold, the whole file is UTF-8 behind a mark. Every call raises what the table of open
/// files raises.
class BackupLog {
 public:
  explicit BackupLog(OpenFiles& files) : files_(files) {}

  static Path PathIn(const std::string& data_folder) { return data_folder + "\\Backup Log.txt"; }

  void Open(const std::string& data_folder);
  /// A text with a line end behind it.
  void PrintLine(const std::string& text);
  /// A text with nothing behind it. Required: entries of complete mode and of
  /// folders are written so, and run together on one line.
  void Print(const std::string& text);
  void Close();

 private:
  void Put(const std::string& text);
  void TurnIntoUtf8();

  OpenFiles& files_;
  Path path_;
  bool is_utf8_ = false;
};

}  // namespace tarnvale
