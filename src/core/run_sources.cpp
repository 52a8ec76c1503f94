#include "core/run_sources.h"

#include <algorithm>
#include <unordered_map>

#include "base/failure.h"
#include "base/text.h"

namespace tarnvale {

void RunSources::Begin(const std::vector<Path>& paths) {
  End();
  std::unordered_map<std::string, Path> first_of;
  for (const Path& path : paths) {
    const auto [first, is_new] = first_of.try_emplace(files_.FoldCase(path), path);
    if (!is_new && first->second != path) twins_.insert({first->second, path});
  }
}

const Path& RunSources::At(const Path& path) {
  if (!twins_.contains(path)) return path;
  const std::string name = FileNameOf(path);
  const FolderContents there = files_.OpenFolder(FolderOf(path))->Contents();
  const auto is_it = [&name](const FolderEntry& file) { return file.name == name; };
  if (std::any_of(there.files.begin(), there.files.end(), is_it) ||
      std::find(there.folders.begin(), there.folders.end(), name) != there.folders.end()) {
    return path;
  }
  throw ProgramError(kFileNotFound);
}

std::string RunSources::NameOf(const Path& path) {
  std::string name = FileNameOf(path);
  if (name.empty() || twins_.contains(path)) return name;
  const Path folder = FolderOf(path);
  std::string real = name;
  PassedOver pass;
  pass.Step([&] {
    if (folder_ == nullptr || folder_path_ != folder) {
      folder_.reset();
      folder_ = files_.OpenFolder(folder);
      folder_path_ = folder;
    }
    if (folder_->File(name)) return;
    const std::string folded = files_.FoldCase(name);
    std::vector<std::string> there = files_.ListFolders(folder, {.hidden = true, .system = true});
    for (std::string& file : files_.List(folder + "*", {.hidden = true, .system = true})) {
      there.push_back(std::move(file));
    }
    // As looking it up does: exactly, or else the first by its bytes.
    const auto is_other = [&](const std::string& other) {
      return other != name && files_.FoldCase(other) != folded;
    };
    std::erase_if(there, is_other);
    if (there.empty() || std::find(there.begin(), there.end(), name) != there.end()) return;
    real = *std::min_element(there.begin(), there.end());
  });
  return real;
}

void RunSources::End() {
  twins_.clear();
  folder_.reset();
}

}  // namespace tarnvale
