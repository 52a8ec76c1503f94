#include "platform/tree_copy.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "base/failure.h"
#include "platform/name_pairs.h"

namespace tarnvale {
namespace {

class ContentsCopy {
 public:
  ContentsCopy(FileSystem& files, Rights rights, const LeftOutFolders& left_out,
               const std::function<void()>& between)
      : files_(files), rights_(rights), left_out_(left_out), between_(between) {}

  void Run(HeldFolder& source, HeldFolder& target,
           const std::function<void(HeldFolder&, HeldFolder&)>& folder_done) {
    target_root_ = &target;
    Try([&] { Enter(source.Inner({}), target.Inner({}), false); });
    while (!levels_.empty()) {
      Level& level = levels_.back();
      if (level.next == level.contents.folders.size()) {
        if (level.was_made) Try([&] { folder_done(*level.source, *level.target); });
        levels_.pop_back();
        continue;
      }
      Try([&] { EnterNext(level); });
    }
    if (first_failure_) throw ProgramError(*first_failure_);
  }

 private:
  /// A folder whose files are copied; its folders are still to come.
  struct Level {
    std::unique_ptr<HeldFolder> source;
    std::unique_ptr<HeldFolder> target;
    FolderContents contents;         ///< of the source
    std::vector<std::string> there;  ///< the partners of its folders; empty without one
    std::size_t next = 0;
    bool was_made = false;
  };

  template <class Step>
  void Try(Step&& step) {
    try {
      step();
    } catch (const ProgramError& error) {
      if (!first_failure_) first_failure_ = error;
    }
  }

  void Enter(std::unique_ptr<HeldFolder> source, std::unique_ptr<HeldFolder> target,
             bool was_made) {
    Level level{std::move(source), std::move(target), {}, {}, 0, was_made};
    level.contents = level.source->Contents();
    const FolderContents there = level.target->Contents();
    const NamePairs pairs = PairNames(level.contents, there,
                                      NameRulesOf(files_, level.source.get(), level.target.get()));
    for (std::size_t i = 0; i < level.contents.files.size(); ++i) {
      const std::string& name = level.contents.files[i].name;
      const std::size_t partner = pairs.files[i];
      const std::string& copy = partner == NamePairs::kNone ? name : there.files[partner].name;
      Try([&] { files_.CopyEntry({*level.source, name}, {*level.target, copy}, rights_); });
      if (between_) between_();
    }
    for (const std::size_t partner : pairs.folders) {
      level.there.push_back(partner == NamePairs::kNone ? std::string() : there.folders[partner]);
    }
    levels_.push_back(std::move(level));
  }

  void EnterNext(Level& level) {
    const std::size_t at = level.next++;
    const std::string& name = level.contents.folders[at];
    auto source = level.source->Inner(name);
    const auto is_source = [&](const HeldFolder* folder) { return source->Is(*folder); };
    // A folder that is copied into itself: what is made doesn't belong to it.
    if (is_source(target_root_) || std::any_of(left_out_.begin(), left_out_.end(), is_source)) {
      return;
    }
    const bool is_new = level.there[at].empty();
    if (is_new) level.target->MakeFolder(name);
    auto target = level.target->Inner(is_new ? name : level.there[at]);
    Enter(std::move(source), std::move(target), is_new);
  }

  FileSystem& files_;
  const Rights rights_;
  const LeftOutFolders& left_out_;
  const std::function<void()>& between_;
  const HeldFolder* target_root_ = nullptr;
  std::vector<Level> levels_;
  std::optional<ProgramError> first_failure_;
};

}  // namespace

void CopyContents(FileSystem& files, HeldFolder& source, HeldFolder& target, Rights rights,
                  const LeftOutFolders& left_out, const std::function<void()>& between,
                  const std::function<void(HeldFolder&, HeldFolder&)>& folder_done) {
  ContentsCopy(files, rights, left_out, between).Run(source, target, folder_done);
}

}  // namespace tarnvale
