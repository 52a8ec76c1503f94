#include "compression/enumeration.h"

#include <utility>

#include "base/failure.h"
#include "base/numbers.h"
#include "base/text.h"

namespace tarnvale {
namespace {

// Runs `each` for the indexes 0 to `upper_bound`. Required: the bound is kept in
// 16 bits; one that doesn't fit is passed over, and the loop runs to the bound of
// the loop before it, which is why `bound` belongs to the caller.
template <class Each>
void ForEachIndex(PassedOver& pass, std::size_t upper_bound, std::int16_t& bound, Each&& each) {
  pass.Step([&] { bound = ToInt16(static_cast<std::int64_t>(upper_bound)); });
  for (int index = 0; index <= bound; ++index) each(static_cast<std::size_t>(index));
}

}  // namespace

void TextList::AppendToList(std::string value) {
  if (entries_[0].empty()) {
    entries_[0] = std::move(value);
  } else {
    entries_.push_back(std::move(value));
  }
}

TextList EnumerateFiles(FileSystem& files, std::string_view folder, bool recurse) {
  const std::string start = WithBackslash(folder);
  TextList found;
  PassedOver pass;
  pass.Step([&] {
    for (const std::string& name : files.List(start + "*.*", {})) found.AppendToList(start + name);
  });
  if (!recurse) return found;
  TextList folders;
  pass.Step([&] {
    for (const std::string& name : files.ListFolders(start, {})) folders.AppendToList(start + name);
  });
  if (folders.IsEmpty()) return found;
  std::int16_t folder_bound = 0;
  std::int16_t entry_bound = 0;
  ForEachIndex(pass, folders.UpperBound(), folder_bound, [&](std::size_t which) {
    const TextList below = EnumerateFiles(files, folders[which], recurse);
    if (below.IsEmpty()) return;
    ForEachIndex(pass, below.UpperBound(), entry_bound,
                 [&](std::size_t entry) { found.AppendToList(below[entry]); });
  });
  return found;
}

std::size_t FindLast(std::string_view text, std::string_view part) {
  if (part.empty()) return 0;
  const auto last = text.rfind(part);
  return last == std::string_view::npos ? 0 : last + 1;
}

SplitName SplitAtLastBackslash(std::string_view path) {
  const std::size_t end = FindLast(path, "\\");
  return {std::string(path.substr(0, end)), std::string(path.substr(end))};
}

}  // namespace tarnvale
