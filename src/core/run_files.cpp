#include "core/run_files.h"

#include <algorithm>
#include <limits>

#include "base/characters.h"
#include "base/failure.h"
#include "base/numbers.h"

namespace tarnvale {
namespace {

// What an item and a pattern end in: "*.*".
constexpr std::size_t kPatternLength = 3;

// Chosen: a file of 2 GiB or more is kept in the table with the largest size
// that fits. Nothing reads the size again, and the file must be copied.
std::int32_t SizeOf(std::int64_t length_bytes) {
  return static_cast<std::int32_t>(
      std::min<std::int64_t>(length_bytes, std::numeric_limits<std::int32_t>::max()));
}

}  // namespace

const RunFile& RunFiles::Row(std::int64_t index) const {
  if (index < 0 || static_cast<std::size_t>(index) >= rows_.size()) {
    throw ProgramError(kSubscriptOutOfRange);
  }
  return rows_[static_cast<std::size_t>(index)];
}

void RunFiles::Write(FileSystem& files, std::size_t row, const std::string& path) {
  rows_[row].Path = path;
  rows_[row].Size = SizeOf(files.Length(path));
}

void RunFiles::AddFileToRun(FileSystem& files, const std::string& path) {
  const std::size_t row = UpperBound();
  Write(files, row, path);
  SetUpperBound(row + 1);
}

void RunFiles::AddFolderFilesToRun(FileSystem& files, MessageBoxes& boxes, std::string pattern) {
  try {
    AddMatches(files, std::move(pattern));
  } catch (const ProgramError& error) {
    boxes.Show({.text = "Error:\n\n" + ToText(error.Number()) + ":" + error.Description(),
                .icon = BoxIcon::kStop});
  }
}

void RunFiles::AddMatches(FileSystem& files, std::string pattern) {
  if (pattern.empty() || pattern.back() != '*') pattern += "*.*";
  const std::string base(WithoutLastCharacters(pattern, kPatternLength));
  std::size_t next = 0;
  if (UpperBound() != 1) {
    next = UpperBound() + 1;
    SetUpperBound(next);
  }
  const std::vector<std::string> names = files.List(pattern, {});
  for (std::size_t match = 0; match < names.size(); ++match) {
    if (match == 0) {
      Write(files, UpperBound() - 1, base + names[match]);
      continue;
    }
    Write(files, next, base + names[match]);
    ++next;
    SetUpperBound(next);
  }
}

void RunFiles::AddItem(FileSystem& files, MessageBoxes& boxes, const std::string& item) {
  if (item.empty() || item.back() != '*') {
    AddFileToRun(files, item);
    return;
  }
  AddFolderFilesToRun(files, boxes, std::string(WithoutLastCharacters(item, kPatternLength)));
}

}  // namespace tarnvale
