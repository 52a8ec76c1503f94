#include "core/file_sync.h"

#include <algorithm>
#include <utility>

#include "base/text.h"
#include "platform/name_pairs.h"

namespace tarnvale {
namespace {

constexpr std::size_t kNone = NamePairs::kNone;
// The second folder is the storage, which others may write to.
constexpr Rights kTowardsStorage = Rights::kSource;
constexpr Rights kTowardsComputer = Rights::kNewFile;

int DateStatus(const FolderEntry& first, const FolderEntry& second) {
  if (second.modified_s < first.modified_s) return difference::kFirstNewer;
  if (second.modified_s > first.modified_s) return difference::kSecondNewer;
  return difference::kNone;
}

SyncDirection DirectionOf(int status) {
  switch (status) {
    case difference::kNone:
    case difference::kAttributesDiffer:
      return SyncDirection::kNeither;
    case difference::kOnlyInFirst:
      return SyncDirection::kFirstToSecond;
    case difference::kOnlyInSecond:
      return SyncDirection::kSecondToFirst;
    default:
      return (status & 3) == difference::kSecondNewer ? SyncDirection::kSecondToFirst
                                                      : SyncDirection::kFirstToSecond;
  }
}

// For each name of the second folder, whether one of the first belongs to it.
std::vector<bool> Taken(const std::vector<std::size_t>& partners, std::size_t count) {
  std::vector<bool> taken(count, false);
  for (const std::size_t partner : partners) {
    if (partner != kNone) taken[partner] = true;
  }
  return taken;
}

bool IsIn(const LeftOutFolders& folders, HeldFolder& folder) {
  return std::any_of(folders.begin(), folders.end(),
                     [&](const HeldFolder* other) { return folder.Is(*other); });
}

// Whether there is one although it wasn't listed: one that came since, whose files are
// compared by the next run, or another one, which the medium takes for it.
bool HasFolder(HeldFolder& folder, const std::string& name) {
  PassedOver pass;
  return pass.Step([&] { folder.Inner(name); });
}

Path Below(const Path& folder, const std::string& name) {
  return folder.empty() ? name : WithBackslash(folder) + name;
}

}  // namespace

std::vector<FileSync::Row> FileSync::Compare(const FolderContents& first,
                                             const FolderContents& second, const NamePairs& pairs) {
  std::vector<Row> table;
  table.reserve(first.files.size());
  for (std::size_t i = 0; i < first.files.size(); ++i) {
    const FolderEntry& file = first.files[i];
    if (pairs.files[i] == kNone) {
      table.push_back({file.name, file.name, difference::kOnlyInFirst, file, std::nullopt});
      continue;
    }
    const FolderEntry& other = second.files[pairs.files[i]];
    int status = DateStatus(file, other);
    if (file.size_bytes != other.size_bytes) status += difference::kSizesDiffer;
    table.push_back({file.name, other.name, status, file, other});
  }
  const std::vector<bool> taken = Taken(pairs.files, second.files.size());
  for (std::size_t i = 0; i < second.files.size(); ++i) {
    const FolderEntry& file = second.files[i];
    if (taken[i]) continue;
    table.push_back({file.name, file.name, difference::kOnlyInSecond, std::nullopt, file});
  }
  return table;
}

NamePairs FileSync::Pair(const FolderPair& pair) {
  return PairNames(pair.in_first, pair.in_second,
                   NameRulesOf(files_, pair.first.get(), pair.second.get()));
}

std::vector<FileDifference> FileSync::CompareFolders(const Path& first, const Path& second) {
  FolderPair pair;
  PassedOver pass;
  pass.Step([&] {
    pair.first = files_.OpenFolder(first);
    pair.in_first = pair.first->Contents();
  });
  pass.Step([&] {
    pair.second = files_.OpenFolder(second);
    pair.in_second = pair.second->Contents();
  });
  std::vector<FileDifference> table;
  for (const Row& row : Compare(pair.in_first, pair.in_second, Pair(pair))) {
    const bool in_both = row.status >= difference::kNone;
    table.push_back({row.status == difference::kOnlyInSecond ? row.second : row.first, row.status});
    pass.Step([&] {
      if (!in_both) return;
      const int ours = files_.Attributes(WithBackslash(first) + row.first);
      const int theirs = files_.Attributes(WithBackslash(second) + row.second);
      if (ours != theirs) table.back().status += difference::kAttributesDiffer;
    });
  }
  return table;
}

void FileSync::SyncFiles(const Path& first, const Path& second, bool two_way) {
  FolderPair pair;
  PassedOver pass;
  pass.Step([&] { pair.first = files_.OpenFolder(first); });
  pass.Step([&] { pair.second = files_.OpenFolder(second); });
  pass.Step([&] { Read(pair); });
  SyncPair(pair, two_way);
}

// What each of the two holds, as far as they are there.
void FileSync::Read(FolderPair& pair) {
  if (pair.first) pair.in_first = pair.first->Contents();
  if (pair.second) pair.in_second = pair.second->Contents();
  pair.names = Pair(pair);
}

// Two folders that have this place below the roots.
void FileSync::Read(FolderPair& pair, const Companions& companions, const Path& below) {
  Read(pair);
  // Only where a name stands for another one do the other folders matter.
  if (!pair.names.has_variants) return;
  std::vector<FolderContents> others;
  if (below.empty()) others.push_back(companions.names);
  for (const Path& folder : companions.folders) {
    PassedOver pass;
    pass.Step([&] { others.push_back(files_.OpenFolder(folder)->Inner(below)->Contents()); });
  }
  pair.names = PairNamesAmong(pair.in_first, others, pair.in_second,
                              NameRulesOf(files_, pair.first.get(), pair.second.get()));
}

// Chosen: nothing is copied over what was made or changed since it was listed. The next
// run compares it anew.
// A name that the medium doesn't distinguish from another one is passed over, and that
// one stays as it is; so is a link where a folder has its place.
void FileSync::CopyFile(const HeldEntry& source, const HeldEntry& target,
                        const std::optional<FolderEntry>& target_as_listed, Rights rights) {
  if (target.folder.File(target.name) != target_as_listed) return;
  try {
    files_.CopyEntry(source, target, rights);
  } catch (const ProgramError& error) {
    if (error.Number() != kFileAlreadyExists) throw;
  }
}

// Chosen: what looks like its file and isn't, as its medium went away, is no copy.
bool FileSync::IsLost(const FolderPair& pair, const Row& row) {
  const bool same_time = (row.status & ~difference::kSizesDiffer) == difference::kNone;
  return suspect_since_s_ && same_time && pair.first && pair.second &&
         files_.Mistrust({*pair.first, row.first}, {*pair.second, row.second}, *suspect_since_s_);
}

void FileSync::SyncPair(const FolderPair& pair, bool two_way) {
  // Attributes cost two look-ups a file and decide no direction.
  std::vector<Row> table = Compare(pair.in_first, pair.in_second, pair.names);
  // Required: an empty table fails the pass. SyncFolders goes on all the same.
  if (table.empty()) throw ProgramError(kSubscriptOutOfRange);
  for (Row& row : table) {
    if (IsLost(pair, row)) {
      row.status = difference::kFirstNewer;
      row.listed_in_second = pair.second->File(row.second);
    }
    const SyncDirection direction = DirectionOf(row.status);
    const bool copies = direction == SyncDirection::kFirstToSecond ||
                        (direction == SyncDirection::kSecondToFirst && two_way);
    const bool both_are_there = pair.first && pair.second;
    if (copies && !both_are_there) throw ProgramError(kPathNotFound);
    if (both_are_there && OnCompared) {
      OnCompared(
          {{*pair.first, row.first}, {*pair.second, row.second}, row.status, direction, copies});
    }
    if (copies) {
      const HeldEntry ours{*pair.first, row.first};
      const HeldEntry theirs{*pair.second, row.second};
      if (direction == SyncDirection::kFirstToSecond) {
        CopyFile(ours, theirs, row.listed_in_second, kTowardsStorage);
      } else {
        CopyFile(theirs, ours, row.listed_in_first, kTowardsComputer);
      }
    }
    loop_.Yield();
  }
}

template <class Hold, class CopyWhole>
void FileSync::SyncFolders(const Path& first, Hold&& hold_second, CopyWhole&& copy_whole,
                           bool two_way, LeftOutFolders left_out, const Companions& companions) {
  Roots roots;
  roots.companions = companions;
  PassedOver pass;
  pass.Step([&] { roots.first = files_.OpenFolder(first); });
  pass.Step([&] { roots.second = hold_second(); });
  if (pass.StandingError()) {
    pass.Step([&] { copy_whole(left_out); });
    return;
  }
  // What a folder holds that can't be listed may be newer than all that would replace it.
  if (!pass.Step([&] { Read(roots, roots.companions, {}); })) return;
  // Chosen: what is met in itself isn't copied. The copies would be copied again, and
  // more of them with each run.
  roots.left_out = std::move(left_out);
  roots.left_out.push_back(roots.first.get());
  roots.left_out.push_back(roots.second.get());
  SyncTrees(roots, two_way);
}

void FileSync::SyncFolders(const Path& first, const Path& second, bool two_way) {
  SyncFolders(
      first, [&] { return files_.OpenFolder(second); },
      [&](const LeftOutFolders&) { files_.CopyTree(first, second, Yielding(), kTowardsStorage); },
      two_way, {}, {});
}

void FileSync::SyncFolders(const Path& first, const HeldEntry& second, bool two_way,
                           const Companions& companions) {
  // Held here as well: the caller's may go while this yields.
  std::unique_ptr<HeldFolder> storage;
  PassedOver pass;
  pass.Step([&] { storage = second.folder.Inner({}); });
  if (!storage) return;
  SyncFolders(
      first, [&, name = second.name] { return storage->Inner(name); },
      [&, name = second.name](const LeftOutFolders& left_out) {
        files_.CopyTree(first, {*storage, name}, Yielding(), kTowardsStorage, left_out);
      },
      two_way, {storage.get()}, companions);
}

// Both sides are found from the two folders that are held, so they stay these two.
// Nothing else is held while the folders within are walked, however deep.
void FileSync::SyncTrees(Roots& roots, bool two_way) {
  std::vector<Level> levels;
  PassedOver pass;
  pass.Step([&] { SyncPair(roots, two_way); });
  levels.push_back(LevelOf(roots, {}, {}));
  while (!levels.empty()) {
    Level& level = levels.back();
    if (level.next < level.folders.size()) {
      const SubFolders& folders = level.folders[level.next++];
      if (auto inner = EnterFolders(roots, level, folders, two_way)) {
        levels.push_back(std::move(*inner));
      } else {
        loop_.Yield();
      }
      continue;
    }
    if (two_way) {
      for (const std::string& name : level.only_in_second) {
        pass.Step([&] {
          const auto from = roots.second->Inner(level.second);
          if (IsIn(roots.left_out, *from->Inner(name))) return;
          const auto to = roots.first->Inner(level.first);
          if (HasFolder(*to, name)) return;
          files_.CopyTree({*from, name}, {*to, name}, Yielding(), kTowardsComputer, roots.left_out);
        });
      }
    }
    levels.pop_back();
    if (!levels.empty()) loop_.Yield();
  }
}

// Syncs the files of two folders within; none when there was but a whole copy to
// make.
std::optional<FileSync::Level> FileSync::EnterFolders(const Roots& roots, const Level& outer,
                                                      const SubFolders& folders, bool two_way) {
  const Path first = Below(outer.first, folders.first);
  const Path second = Below(outer.second, folders.second);
  FolderPair pair;
  PassedOver pass;
  pass.Step([&] { pair.first = roots.first->Inner(first); });
  if (folders.in_both) pass.Step([&] { pair.second = roots.second->Inner(second); });
  if ((pair.first && IsIn(roots.left_out, *pair.first)) ||
      (pair.second && IsIn(roots.left_out, *pair.second))) {
    return std::nullopt;
  }
  if (folders.in_both && !pass.StandingError() &&
      !pass.Step([&] { Read(pair, roots.companions, first); })) {
    return std::nullopt;
  }
  if (!folders.in_both || pass.StandingError()) {
    pass.Step([&] {
      const auto from = roots.first->Inner(outer.first);
      const auto to = roots.second->Inner(outer.second);
      if (!folders.in_both && HasFolder(*to, folders.second)) return;
      files_.CopyTree({*from, folders.first}, {*to, folders.second}, Yielding(), kTowardsStorage,
                      roots.left_out);
    });
    return std::nullopt;
  }
  pass.Step([&] { SyncPair(pair, two_way); });
  return LevelOf(pair, first, second);
}

FileSync::Level FileSync::LevelOf(const FolderPair& pair, const Path& first, const Path& second) {
  Level level{first, second, {}, {}, 0};
  for (std::size_t i = 0; i < pair.in_first.folders.size(); ++i) {
    const std::string& name = pair.in_first.folders[i];
    const std::size_t partner = pair.names.folders[i];
    const bool in_both = partner != kNone;
    level.folders.push_back({name, in_both ? pair.in_second.folders[partner] : name, in_both});
  }
  const std::vector<bool> taken = Taken(pair.names.folders, pair.in_second.folders.size());
  for (std::size_t i = 0; i < taken.size(); ++i) {
    if (!taken[i]) level.only_in_second.push_back(pair.in_second.folders[i]);
  }
  return level;
}

std::function<void()> FileSync::Yielding() {
  return [this] { loop_.Yield(); };
}

}  // namespace tarnvale
