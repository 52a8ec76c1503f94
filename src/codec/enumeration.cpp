#include "codec/enumeration.h"

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "base/failure.h"
#include "base/numbers.h"
#include "base/text.h"

namespace tarnvale {
namespace {

// A folder whose own files were read and whose folders are gone through. They are
// kept in a list and not on the stack: a tree may be deeper than that.
class OpenFolder {
 public:
  OpenFolder(FileSystem& files, std::string_view folder, bool recurse) {
    const std::string start = WithBackslash(folder);
    const auto append_all = [&](TextList& list, const std::vector<std::string>& names) {
      for (const std::string& name : names) list.AppendToList(start + name);
    };
    pass_.Step([&] { append_all(found, files.List(start + "*.*", {})); });
    if (!recurse) return;
    pass_.Step([&] { append_all(folders_, files.ListFolders(start, {})); });
    if (!folders_.IsEmpty()) KeepBound(folders_.UpperBound(), folder_bound_);
  }

  std::optional<std::string> NextFolder() {
    if (folders_.IsEmpty() || next_ > folder_bound_) return std::nullopt;
    return folders_[static_cast<std::size_t>(next_++)];
  }

  /// Appends what one folder gave.
  void Take(const TextList& below) {
    if (below.IsEmpty()) return;
    KeepBound(below.UpperBound(), entry_bound_);
    for (int entry = 0; entry <= entry_bound_; ++entry) {
      found.AppendToList(below[static_cast<std::size_t>(entry)]);
    }
  }

  TextList found;

 private:
  // Required: a bound is kept in 16 bits; one that doesn't fit is passed over, and
  // the loop runs to the bound of the loop before it.
  void KeepBound(std::size_t upper_bound, std::int16_t& bound) {
    pass_.Step([&] { bound = ToInt16(static_cast<std::int64_t>(upper_bound)); });
  }

  PassedOver pass_;
  TextList folders_;
  int next_ = 0;  // of `folders_`
  std::int16_t folder_bound_ = 0;
  std::int16_t entry_bound_ = 0;
};

}  // namespace

void TextList::AppendToList(std::string value) {
  if (entries_[0].empty()) {
    entries_[0] = std::move(value);
  } else {
    entries_.push_back(std::move(value));
  }
}

TextList EnumerateFiles(FileSystem& files, std::string_view folder, bool recurse) {
  std::vector<OpenFolder> open;
  open.emplace_back(files, folder, recurse);
  while (true) {
    OpenFolder& last = open.back();
    if (const std::optional<std::string> next = last.NextFolder()) {
      open.emplace_back(files, *next, recurse);
    } else if (open.size() == 1) {
      return std::move(last.found);
    } else {
      const TextList below = std::move(last.found);
      open.pop_back();
      open.back().Take(below);
    }
  }
}

std::size_t FindLast(std::string_view text, std::string_view part) {
  if (part.empty()) return 0;
  const auto last = text.rfind(part);
  return last == std::string_view::npos ? 0 : last + 1;
}

bool HoldsDrive(std::string_view name) {
  for (auto colon = name.find(':'); colon != std::string_view::npos;
       colon = name.find(':', colon + 1)) {
    const bool starts = colon == 1 || (colon > 1 && name[colon - 2] == '\\');
    const bool ends = colon + 1 == name.size() || name[colon + 1] == '\\';
    if (starts && ends && name[colon - 1] != '\\') return true;
  }
  return false;
}

SplitName SplitAtLastBackslash(std::string_view path) {
  const std::size_t end = FindLast(path, "\\");
  return {std::string(path.substr(0, end)), std::string(path.substr(end))};
}

}  // namespace tarnvale
