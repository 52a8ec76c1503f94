#include "tvz/extraction.h"

#include <algorithm>
#include <utility>

#include "base/characters.h"

namespace tarnvale {
namespace {

constexpr const char* kSeparators = "\\/";

bool IsSeparator(char c) {
  return c == '\\' || c == '/';
}

bool BeginsWithDrive(std::string_view name) {
  const auto is_letter = [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); };
  return name.size() >= 2 && is_letter(name[0]) && name[1] == ':' &&
         (name.size() == 2 || IsSeparator(name[2]));
}

std::vector<std::string> PartsOf(std::string_view name) {
  std::vector<std::string> parts;
  while (!name.empty()) {
    const std::size_t end = std::min(name.find_first_of(kSeparators), name.size());
    if (const auto part = name.substr(0, end); !part.empty() && part != ".") {
      parts.emplace_back(part);
    }
    name.remove_prefix(std::min(end + 1, name.size()));
  }
  return parts;
}

std::string LastPartOf(std::string_view name) {
  const std::size_t separator = name.find_last_of(kSeparators);
  return std::string(separator == std::string_view::npos ? name : name.substr(separator + 1));
}

constexpr const char* kLeadsOutside = "leads out of the folder; --allow-outside lets it";

[[noreturn]] void RefuseOutside(const std::string& name) {
  throw CommandFailure(name, kLeadsOutside);
}

}  // namespace

TargetFolder::TargetFolder(std::string folder, bool allow_outside)
    : folder_(std::move(folder)), allow_outside_(allow_outside) {
  opened_ = About(folder_, [&] { return OutputFolder::Open(folder_); });
}

void TargetFolder::Make() {
  if (!opened_) opened_ = About(folder_, [&] { return OutputFolder::Make(folder_); });
}

TargetFolder::Place TargetFolder::PlaceOf(const std::string& name) const {
  // Deeper than any path leads, nobody would find the file again.
  if (name.size() >= LongestPath()) {
    throw CommandFailure("\"" + std::string(FirstCharacters(name, 40)) + "...\"",
                         "is too long for a path");
  }
  std::string last = LastPartOf(name);
  if (last.empty() || last == "." || last == ".." || name.find('\0') != std::string::npos) {
    throw CommandFailure("\"" + name + "\"", "is no name of a file");
  }
  Place place;
  if (IsSeparator(name[0]) || BeginsWithDrive(name)) {
    if (!allow_outside_) RefuseOutside(name);
    const auto rooted = TakeRoot(name);
    if (!rooted) throw CommandFailure(name, "there is no such drive here");
    place.root = rooted->root;
    place.folders = PartsOf(rooted->rest);
  } else {
    place.folders = PartsOf(name);
  }
  if (place.folders.empty()) throw CommandFailure("\"" + name + "\"", "is no name of a file");
  place.folders.pop_back();
  place.file = std::move(last);
  for (const std::string& folder : place.folders) {
    if (folder == ".." && !allow_outside_) RefuseOutside(name);
  }
  return place;
}

// One step down. None when there is no such folder and none is to be made.
std::optional<OutputFolder> TargetFolder::Enter(const OutputFolder& folder, const std::string& name,
                                                bool make) const {
  auto entered = folder.Enter(name);
  if (!entered) {
    if (!make) return std::nullopt;
    folder.MakeInner(name);
    entered = folder.Enter(name);
  }
  if (!entered) throw SystemError(name + " is no folder");
  if (entered->by_link && !allow_outside_ && !entered->folder.LiesIn(*opened_)) {
    throw SystemError(kLeadsOutside);
  }
  return std::move(entered->folder);
}

std::optional<OutputFolder> TargetFolder::OpenFolder(const std::string& name, const Place& place,
                                                     bool make) {
  std::optional<OutputFolder> at =
      place.root.empty() ? opened_->Again() : OutputFolder::Open(place.root);
  if (!at) throw CommandFailure(name, "there is no such drive here");
  std::string path;
  for (const std::string& folder : place.folders) {
    std::optional<OutputFolder> next = Enter(*at, folder, make);
    if (!next) return std::nullopt;
    // The folder above has another name, and so may one that a link leads to.
    std::optional<OutputFolder::Entry> entry;
    if (make && folder != "..") entry = at->Find(folder);
    at = std::move(next);
    path += folder + "/";
    if (!entry || !entry->is_plain_folder) continue;
    RequireNoTwin(folders_, entry->identity, folder, name);
    folders_.try_emplace(entry->identity, Named{path, folder});
  }
  return at;
}

// What was made here has one name: when another one finds it, the medium takes both for
// one, whatever they differ in.
void TargetFolder::RequireNoTwin(const Names& names, const FileIdentity& there,
                                 const std::string& name, const std::string& entry) {
  const auto found = names.find(there);
  if (found != names.end() && found->second.name != name) {
    throw LeftOutEntry(entry, "left out: here it is the same as " + found->second.path);
  }
}

void TargetFolder::Check(const std::string& name) {
  const Place place = PlaceOf(name);
  if (IsNameless(place) || (!opened_ && place.root.empty())) return;
  About(name, [&] { OpenFolder(name, place, false); });
}

// What no file can be called here keeps nobody from the rest.
bool TargetFolder::IsNameless(const Place& place) {
  const auto is_wrong = [](const std::string& name) {
    return name != ".." && WrongWithName(name) != nullptr;
  };
  return is_wrong(place.file) || std::any_of(place.folders.begin(), place.folders.end(), is_wrong);
}

void TargetFolder::Write(const ContainerRecord& record) {
  const Place place = PlaceOf(record.name);
  if (IsNameless(place)) throw LeftOutEntry(record.name, "left out: here nothing can be called so");
  About(record.name, [&] {
    if (!last_ || !place.root.empty() || place.folders != last_folders_) {
      last_ = OpenFolder(record.name, place, true);
      last_folders_ = place.folders;
      // Folders of the whole system may have the names of ours.
      if (!place.root.empty()) last_folders_.insert(last_folders_.begin(), "/");
    }
    std::string path;
    for (const std::string& folder : place.folders) path += folder + "/";
    path += place.file;
    if (const auto old = last_->Find(place.file)) {
      RequireNoTwin(files_, old->identity, place.file, record.name);
    }
    files_[last_->Write(place.file, record.content.View())] = {path, place.file};
  });
}

}  // namespace tarnvale
