// Loading and saving the settings file.
#pragma once

#include <optional>
#include <string>

#include "platform/system_parts.h"
#include "settings/backup_settings.h"
#include "ui/event_loop.h"
#include "ui/window.h"

namespace tarnvale {

/// Moves BackupSettings between memory and its SettingsFile, in the data folder
/// that "\Data.txt" beside the program names. Neither direction reports any
/// failure: a statement that fails is passed over.
///
/// Load and save are not mirror images. Required: the sync mode isn't stored
/// (`Syncro` is written from IncrementalFlag and only ever clears its flag), a
/// shrunk list's old tail stays in the file and comes back, `Wizard` is always
/// written as 1.
class SettingsStore {
 public:
  SettingsStore(SystemParts& system, EventLoop& loop, Desktop& desktop, BackupSettings& settings);

  /// Fills the record and appends the stored items to its list. Texts that the
  /// file doesn't hold become empty; flags and times that it doesn't hold stay.
  void LoadSettings();

  /// Writes the whole file in one step. Shows the busy pointer; yields after
  /// each list item whose write failed.
  void SaveChanges();

 private:
  std::optional<std::string> ReadProfileKey(const std::string& section, const std::string& key);
  bool Write(const std::string& section, const std::string& key, const std::string& value);
  void WriteFlag(const std::string& section, const std::string& key, bool value);

  void LoadDataFolder();
  void LoadTime(const std::string& key, Property<std::string>& text, DateTime& time);
  void LoadDays();
  void LoadSwitches();
  void LoadMode();
  void LoadTexts();
  void LoadEntries();

  void SaveTime(const std::string& key, const std::string& text, DateTime& time);
  void SaveSchedule();
  void SaveSwitches();
  void SaveTexts();
  void SaveEntries();

  SystemParts& system_;
  EventLoop& loop_;
  Desktop& desktop_;
  BackupSettings& settings_;
  Path path_;
};

}  // namespace tarnvale
