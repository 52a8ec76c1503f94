// What the program does to files, each thing on its own.
#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "tests/reliability/whole_program.h"
#include "tests/reliability/workbench.h"

namespace tarnvale::reliability {

/// Everything below a folder by its path from there: the content of files, where links
/// lead, and folders.
using Snapshot = std::map<std::string, std::string>;
Snapshot SnapshotOf(const std::filesystem::path& folder);

struct Operation {
  std::string name;
  std::function<void(WholeProgram&)> work;
  /// Paths below the drive that the operation writes in place or takes away before it
  /// writes them anew, because that is how it is meant: beginnings of them.
  std::vector<std::string> in_place;
  /// Texts that may be shown when something fails: beginnings of them. What is shown
  /// when nothing fails may be shown in any case.
  std::vector<std::string> messages;
  /// Beginnings of the paths that are on their medium when the operation says that it is
  /// finished, or are left to the system: not each before it has its name.
  std::vector<std::string> flushed_late = {};
  /// Whether doing it once more, undisturbed, leads to the result of the first time.
  bool is_repeatable = true;
  /// Whether it takes the FTP server, whose files are then those below "Server". One that is
  /// being uploaded has the beginning of the new one: no word of the protocol could tell.
  bool takes_server = false;
  /// What lies in its way when it has failed, until the user deletes it.
  std::string in_the_way = {};
  /// Whether nothing is shown when it fails, where a box says that it didn't.
  bool fails_in_silence = false;
};

/// Where no FTP server can be started, those that take it are left out.
const std::vector<Operation>& AllOperations();

/// The drive as it is before each operation.
void LayOutDrive(const std::filesystem::path& drive);

/// What may be besides the old and the new.
struct Allowed {
  /// After a folder couldn't be opened whole copies are made: older files replace newer ones
  /// then. Where the file isn't seen whose copy would have failed and ended a sync, others come.
  bool whole_copies = false;
  /// Beginnings of the paths on a medium that lost content which wasn't flushed.
  std::vector<std::string> lossy = {};
};

/// One operation in a folder of its own, before and after.
class Stage {
 public:
  explicit Stage(const Operation& operation);

  /// Does the operation in this process, after `preparation`.
  void DoHere(const std::function<void(WholeProgram&)>& preparation);
  /// The work of a child process: what is shown goes to where Shown finds it.
  std::function<void()> Work();
  /// Lays out the drive as it is before the operation, and forgets what was shown.
  void LayOut();
  /// Whether all that was there before is as it was or as the operation makes it, and
  /// nothing else has come but what the operation makes. Reports what isn't.
  void CheckNothingIsHarmed(const std::string& when, Findings& findings,
                            const Allowed& allowed = {});
  /// Starts the program anew and lets it end. Temporaries must be gone then.
  void CheckNextStart(const std::string& when, Findings& findings);
  /// Does the operation once more. No temporary is left then, and what comes of it is the
  /// same where it is repeatable.
  void CheckRepetition(const std::string& when, Findings& findings, const Allowed& allowed = {});
  /// Whether everything shown is prescribed, and what has to be shown is.
  void CheckMessages(const std::string& when, Findings& findings);

  std::chrono::microseconds Duration() const { return duration_; }
  /// What is on the drive, and on the server when it has served.
  Snapshot Now() const;
  const Snapshot& Before() const { return before_; }
  const Snapshot& After() const { return after_; }
  std::filesystem::path Drive() const { return work_.Path() / "drive"; }
  bool IsWrittenInPlace(const std::string& path) const;
  bool IsFlushedLate(const std::string& path) const;
  /// Prints what was shown so far, and how often.
  void PrintShown() const;
  int LeftByThem() const { return left_; }
  int CutShortOnServer() const { return cut_short_; }
  int TornBeforeTheirFlush() const { return torn_; }

 private:
  struct Shown;
  void Start();
  bool IsMixedSettings(const std::string& path, const std::string& state) const;
  bool IsWholeTwin(const std::string& path, const std::string& state) const;
  bool IsCutShort(const std::string& path, const std::string& state) const;
  bool MayBeTorn(const std::string& path, const Allowed& allowed);

  const Operation& operation_;
  WorkFolder work_;
  LinuxSurroundings surroundings_;
  std::shared_ptr<Shown> shown_;
  Snapshot before_;
  Snapshot after_;
  std::set<std::string> usual_messages_;
  std::map<std::string, int> all_shown_;
  std::chrono::microseconds duration_{};
  int left_ = 0;
  int cut_short_ = 0;
  int torn_ = 0;
};

}  // namespace tarnvale::reliability
