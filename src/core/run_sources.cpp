#include "core/run_sources.h"

#include <algorithm>
#include <unordered_map>

#include "base/failure.h"
#include "base/text.h"

namespace tarnvale {

void RunSources::Begin(const std::vector<Path>& paths) {
  twins_.clear();
  std::unordered_map<std::string, Path> first_of;
  for (const Path& path : paths) {
    const auto [first, is_new] = first_of.try_emplace(files_.FoldCase(path), path);
    if (!is_new && first->second != path) twins_.insert({first->second, path});
  }
}

const Path& RunSources::At(const Path& path) {
  if (!twins_.contains(path)) return path;
  const std::string name = FileNameOf(path);
  const FolderContents there =
      files_.OpenFolder(path.substr(0, path.size() - name.size()))->Contents();
  const auto is_it = [&name](const FolderEntry& file) { return file.name == name; };
  if (std::any_of(there.files.begin(), there.files.end(), is_it) ||
      std::find(there.folders.begin(), there.folders.end(), name) != there.folders.end()) {
    return path;
  }
  throw ProgramError(kFileNotFound);
}

}  // namespace tarnvale
