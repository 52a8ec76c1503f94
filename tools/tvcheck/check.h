// The check: follows a run that copies nothing, and compares.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "core/file_sync.h"
#include "core/run_state.h"
#include "tvcheck/check_progress.h"
#include "tvcheck/contents.h"
#include "tvcheck/findings.h"
#include "tvcheck/packed_copies.h"
#include "tvcheck/planned_files.h"

namespace tarnvale {

/// Looks at what a run would copy when the run reports it; single files at the end of
/// the run, as later ones may take the names of earlier ones.
class Check final : public RunWatch {
 public:
  struct Options {
    Path location;          ///< the storage location, with a backslash at its end
    bool contents = false;  ///< bytes are compared
    bool incremental = false;
    PackedCopies* archive = nullptr;  ///< in place of the storage location
  };
  Check(NativeHost& host, const Options& options, CheckProgress& progress);

  /// The run whose rows are looked at in its end. `items` is the list's count.
  void Follow(const RunState& run, std::size_t items);
  void OnCompared(const ComparedFile& file);

  void OnRow(const Path& file, const std::optional<ProgramError>& error) override;
  void OnListed(const Path& folder, const std::optional<ProgramError>& error) override;
  void OnAsked(const Path& file, int attributes) override;
  void OnFile(const Path& source, const std::string& target, bool has_room) override;
  void OnTree(const TreeEnd& source, const TreeEnd& target,
              const LeftOutFolders& left_out) override;
  void OnRead(const NativeEntry& folder, const FolderContents& contents) override;
  void OnEnd() override;

  /// After the run. With an archive, what it should hold is only then complete.
  Findings Finish();

 private:
  /// What the run copies to a name in the storage location.
  struct SingleFile {
    std::string source;  ///< native, as the others
    std::string target;
    Rule rule = Rule::kNone;  ///< why it may not be copied again
    bool has_room = true;     ///< not where the medium has another one in its place
  };

  bool IsLocation(const std::string& native) const;
  bool LiesInLocation(const std::string& native) const;
  void Add(Finding finding);
  void AddUnreadable(const std::string& native, const std::string& reason);
  void PassOver(const std::string& native, Rule rule);
  void AddTree(HeldFolder& source, const TreeEnd& from, const TreeEnd& to,
               const LeftOutFolders& left_out);
  void AddMissing(const std::string& source, const std::string& copy);
  Finding Judge(const ComparedFile& file, const NativeEntry& source, const NativeEntry& copy);
  Finding Judge(const SingleFile& file);
  void PassOverLeftRows(const RunState& run);
  Rule RuleOfLeftRow(const Path& file, std::int64_t row) const;
  void PassOverNames(const NativeEntry& folder, bool files_only);

  NativeHost& host_;
  Options options_;
  CheckProgress& progress_;
  Contents contents_;
  Findings findings_;
  std::string location_;  ///< a compared path
  const RunState* run_ = nullptr;
  std::int64_t items_ = 0;

  std::vector<Path> rows_;               ///< of files that are there, in order
  std::unordered_map<Path, int> asked_;  ///< attributes
  std::unordered_set<Path> seen_rows_;
  std::unordered_set<Path> failed_rows_;
  std::unordered_set<Path> copied_;
  std::unordered_set<std::string> read_folders_;
  std::vector<SingleFile> singles_;
};

}  // namespace tarnvale
