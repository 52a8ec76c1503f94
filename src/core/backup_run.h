// The run: copies the list, writes the log, and hands on to the stages.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/backup_log.h"
#include "core/file_sync.h"
#include "core/hooks.h"
#include "core/run_failures.h"
#include "core/run_sources.h"
#include "core/run_state.h"
#include "core/run_targets.h"
#include "platform/system_parts.h"
#include "settings/backup_settings.h"
#include "ui/event_loop.h"
#include "ui/message_boxes.h"
#include "ui/window.h"

namespace tarnvale {

/// One object serves all runs of the program; each run starts its totals anew.
///
/// Every statement of a run that fails is passed over, a test that fails counts
/// as true, and the end says "Success" whatever happened. All of that is
/// required.
class BackupRun {
 public:
  BackupRun(SystemParts& system, EventLoop& loop, MessageBoxes& boxes, Desktop& desktop,
            BackupSettings& settings, RunState& state, ScreenHooks& screens, StageHooks& stages);

  /// A whole run. Returns after the last stage. Yields.
  void RunBackup();

  RunFailures& Failures() { return failures_; }
  /// What compares and copies the whole folders.
  FileSync& Sync() { return sync_; }

 private:
  template <class Statement>
  void Step(Statement&& statement);
  template <class Condition>
  bool Test(Condition&& condition);

  /// A folder that a run keeps in step with one of its items.
  struct FolderInStorage {
    Path location;
    std::string name;    ///< empty: the location itself
    std::string wanted;  ///< the same before it is paired with what is there
  };

  // In the order in which they run.
  void Prepare();
  void BuildRunFiles();
  void OpenLog();
  void ChooseTargets();
  std::vector<RunFolder> FolderItems() const;
  std::string NameInStorage(const Path& source, const std::string& name);
  void CopySingleFiles();
  void FileRound();
  void RoundBeyondTable();
  void CopyRow(const RunFile& row);
  void CopyToStorage(const RunFile& row);
  void CopyAlways(const RunFile& row);
  void CopyChanged(const RunFile& row);
  bool IsLost(const RunFile& row);
  void CountFile(const RunFile& row);
  void CopyWholeFolders();
  void FolderRound();
  void ChooseFolderDestination();
  void MakeFolderInStorage();
  void SyncItem(const Path& item, const FolderInStorage& folder, bool two_way);
  void CloseLog();
  void ShowEnd();
  void RunStages();

  bool NextIndex();
  void TakeItem();
  bool IsFolderItem();
  std::string TargetOf(const RunFile& row) const;
  std::string ListCount() const;
  std::string FromToOn() const;
  void ShowTotal();

  SystemParts& system_;
  EventLoop& loop_;
  MessageBoxes& boxes_;
  Desktop& desktop_;
  BackupSettings& settings_;
  RunState& state_;
  ScreenHooks& screens_;
  StageHooks& stages_;
  BackupLog log_;
  RunFailures failures_;
  FileSync sync_;
  RunSources sources_;
  RunTargets targets_;

  // The totals and work fields of one run.
  struct Locals {
    DateTime start = 0;
    DateTime date = 0;
    std::int32_t total_bytes = 0;
    std::int32_t files_counted = 0;  ///< never shown
    std::int64_t count = 0;          ///< of the list, taken once before the loops
    std::uint8_t attributes = 0;
    /// Since when copies in the storage location may not have reached their medium.
    std::optional<std::int64_t> unflushed_since_s;
    std::string folder_name;
    /// That folder, under the name that it has in the storage location; none when the
    /// medium has no room for it beside one of another case.
    std::optional<FolderInStorage> folder;
  };
  Locals run_;
  /// The target of the present row, for the failure handler.
  Path present_target_;
};

}  // namespace tarnvale
