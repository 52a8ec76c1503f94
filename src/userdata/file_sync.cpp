#include "userdata/file_sync.h"

#include <unordered_map>
#include <unordered_set>

#include "base/text.h"

namespace tarnvale {
namespace {

// Finds entries by name: exactly first, then without regard to case.
class EntriesByName {
 public:
  explicit EntriesByName(const std::vector<FolderEntry>& entries) {
    by_folded_name_.reserve(entries.size());
    for (const FolderEntry& entry : entries) by_folded_name_.emplace(ToLower(entry.name), &entry);
  }

  const FolderEntry* Find(const std::string& name) const {
    const auto [begin, end] = by_folded_name_.equal_range(ToLower(name));
    for (auto it = begin; it != end; ++it) {
      if (it->second->name == name) return it->second;
    }
    return begin == end ? nullptr : begin->second;
  }

 private:
  std::unordered_multimap<std::string, const FolderEntry*> by_folded_name_;
};

int DateStatus(const FolderEntry& first, const FolderEntry& second) {
  if (second.modified_s < first.modified_s) return difference::kFirstNewer;
  if (second.modified_s > first.modified_s) return difference::kSecondNewer;
  return difference::kNone;
}

enum class Direction { kNone, kFirstToSecond, kSecondToFirst };

Direction DirectionOf(int status) {
  switch (status) {
    case difference::kNone:
    case difference::kAttributesDiffer:
      return Direction::kNone;
    case difference::kOnlyInFirst:
      return Direction::kFirstToSecond;
    case difference::kOnlyInSecond:
      return Direction::kSecondToFirst;
    default:
      return (status & 3) == difference::kSecondNewer ? Direction::kSecondToFirst
                                                      : Direction::kFirstToSecond;
  }
}

}  // namespace

std::vector<FileDifference> FileSync::CompareFolders(const Path& first, const Path& second) {
  FolderPair pair{WithBackslash(first), WithBackslash(second), {}, {}};
  PassedOver pass;
  pass.Step([&] { pair.in_first = machine_.files.OpenFolder(first); });
  pass.Step([&] { pair.in_second = machine_.files.OpenFolder(second); });
  return Compare(pair, Attributes::kCompare);
}

std::vector<FileDifference> FileSync::Compare(const FolderPair& pair, Attributes attributes) {
  std::vector<FileDifference> table;
  table.reserve(pair.in_first.files.size());
  const EntriesByName in_second(pair.in_second.files);
  std::unordered_set<std::string> seen;
  seen.reserve(pair.in_first.files.size());
  PassedOver pass;
  for (const FolderEntry& file : pair.in_first.files) {
    FileDifference row{file.name, difference::kOnlyInFirst};
    seen.insert(ToLower(file.name));
    if (const FolderEntry* other = in_second.Find(file.name)) {
      row.status = DateStatus(file, *other);
      if (attributes == Attributes::kCompare) {
        pass.Step([&] {
          const int ours = machine_.files.Attributes(pair.first + file.name);
          const int theirs = machine_.files.Attributes(pair.second + other->name);
          if (ours != theirs) row.status += difference::kAttributesDiffer;
        });
      }
      if (file.size_bytes != other->size_bytes) row.status += difference::kSizesDiffer;
    }
    table.push_back(std::move(row));
  }
  for (const FolderEntry& file : pair.in_second.files) {
    if (!seen.contains(ToLower(file.name))) table.push_back({file.name, difference::kOnlyInSecond});
  }
  return table;
}

void FileSync::SyncFiles(const Path& first, const Path& second, bool two_way) {
  FolderPair pair{WithBackslash(first), WithBackslash(second), {}, {}};
  PassedOver pass;
  pass.Step([&] { pair.in_first = machine_.files.OpenFolder(first); });
  pass.Step([&] { pair.in_second = machine_.files.OpenFolder(second); });
  SyncPair(pair, two_way);
}

void FileSync::SyncPair(const FolderPair& pair, bool two_way) {
  // Attributes cost two look-ups a file and decide no direction.
  const std::vector<FileDifference> table = Compare(pair, Attributes::kIgnore);
  // Required: an empty table fails the pass. SyncFolders goes on all the same.
  if (table.empty()) throw ProgramError(kSubscriptOutOfRange);
  for (const FileDifference& row : table) {
    const Direction direction = DirectionOf(row.status);
    if (direction == Direction::kFirstToSecond) {
      machine_.files.CopyEntry(pair.first + row.name, pair.second + row.name);
    } else if (direction == Direction::kSecondToFirst && two_way) {
      machine_.files.CopyEntry(pair.second + row.name, pair.first + row.name);
    }
    machine_.loop.Yield();
  }
}

void FileSync::SyncFolders(const Path& first, const Path& second, bool two_way) {
  FolderPair pair{WithBackslash(first), WithBackslash(second), {}, {}};
  PassedOver pass;
  pass.Step([&] { pair.in_first = machine_.files.OpenFolder(first); });
  pass.Step([&] { pair.in_second = machine_.files.OpenFolder(second); });
  if (pass.StandingError()) {
    pass.Step([&] { CopyFolder(first, second); });
    return;
  }
  pass.Step([&] { SyncPair(pair, two_way); });
  SyncSubFolders(pair, two_way);
}

void FileSync::SyncSubFolders(const FolderPair& pair, bool two_way) {
  PassedOver pass;
  std::unordered_set<std::string> seen;
  for (const std::string& name : pair.in_first.folders) {
    seen.insert(ToLower(name));
    SyncFolders(pair.first + name, pair.second + name, two_way);
    machine_.loop.Yield();
  }
  if (!two_way) return;
  for (const std::string& name : pair.in_second.folders) {
    if (seen.contains(ToLower(name))) continue;
    pass.Step([&] { CopyFolder(pair.second + name, pair.first + name); });
  }
}

void FileSync::CopyFolder(const Path& source, const Path& target) {
  machine_.files.CopyTree(source, target, [this] { machine_.loop.Yield(); });
}

}  // namespace tarnvale
