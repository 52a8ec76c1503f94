#include "codec/extraction_names.h"

#include <algorithm>
#include <utility>

#include "base/failure.h"

namespace tarnvale {
namespace {

constexpr std::size_t kOrdinaryPath = 1000;  // bytes: every medium takes that many

bool LeadsStraightDown(std::string_view entry) {
  for (std::size_t at = 0; at <= entry.size();) {
    const std::size_t end = std::min(entry.find_first_of("\\/", at), entry.size());
    const std::string_view part = entry.substr(at, end - at);
    if (part.empty() || part == "." || part == "..") return false;
    at = end + 1;
  }
  return entry.find('/') == std::string_view::npos;
}

}  // namespace

std::optional<Path> ExtractionNames::PathOf(const std::string& entry) {
  Path path = target_;
  new_file_.reset();
  if (!LeadsStraightDown(entry)) {
    path += entry;
    files_.CreateFoldersOf(path);
    return path;
  }
  for (std::size_t at = 0;;) {
    const std::size_t end = std::min(entry.find('\\', at), entry.size());
    const bool is_last = end == entry.size();
    const std::string folder = entry.substr(0, at);
    Place* const place = PlaceAt(folder, path);
    if (place == nullptr) {
      // Nothing is below it either, and an archive's names may be deeper than any path.
      path += entry.substr(at);
      break;
    }
    const std::size_t known = place->names.size();
    const auto name =
        NameIn(*place, folder, entry.substr(at, end - at), is_last ? Kind::kFile : Kind::kFolder);
    if (!name) return std::nullopt;
    path += *name;
    if (is_last) break;
    path += '\\';
    at = end + 1;
    if (place->names.size() > known) {
      // A new folder is empty. Made by its own name, it needn't be looked for in another case
      // among all those beside it. A path that may be too long is left to the medium, which
      // refuses it before anything is made.
      path += entry.substr(at);
      if (path.size() <= kOrdinaryPath) Make(place->path, *name, Kind::kFolder);
      break;
    }
  }
  files_.CreateFoldersOf(path);
  return path;
}

// None where there is no such folder that can be opened.
ExtractionNames::Place* ExtractionNames::PlaceAt(const std::string& folder, const Path& path) {
  const auto [found, added] = places_.try_emplace(folder);
  Place& place = found->second;
  if (!added) return &place;
  place.path = path;
  PassedOver pass;
  pass.Step([&] { place.there = Held(path).Contents(); });
  if (pass.StandingError()) {
    places_.erase(found);
    return nullptr;
  }
  const auto add = [&](const std::string& name, auto& variants) {
    place.names.push_back(name);
    place.real.insert(name);
    variants[*place.folded.insert(files_.FoldCase(name)).first].push_back(name);
  };
  for (const FolderEntry& file : place.there.files) add(file.name, place.files);
  for (const std::string& name : place.there.folders) add(name, place.folders);
  return &place;
}

// The real name for one of the archive; none when the medium has no room for it.
std::optional<std::string> ExtractionNames::NameIn(Place& place, const std::string& folder,
                                                   const std::string& name, Kind kind) {
  if (const auto given = place.given.find(name); given != place.given.end()) return given->second;
  if (place.real.contains(name)) return name;
  const std::string folded = files_.FoldCase(name);
  auto& variants = kind == Kind::kFile ? place.files[folded] : place.folders[folded];
  for (auto variant = variants.begin(); variant != variants.end(); ++variant) {
    if (ArchiveHas(folder, *variant) || place.taken.contains(*variant)) continue;
    const std::string real = *variant;
    variants.erase(variant);
    place.given[name] = real;
    place.taken.insert(real);
    return real;
  }
  if (const auto found = FoundBy(place, name)) {
    // It stands for the name if it is of its kind and nobody else's. Whatever was made
    // since has its name from the archive.
    const bool was_file = *found < place.there.files.size();
    const std::string real(place.names[*found]);
    if ((kind == Kind::kFile) != was_file || ArchiveHas(folder, real) ||
        !place.taken.insert(real).second) {
      return std::nullopt;
    }
    place.given[name] = real;
    return real;
  }
  if (place.folded.insert(folded).second) {
    if (kind == Kind::kFile) new_file_ = NewFile{place.path, name};
  } else if (!Make(place.path, name, kind)) {
    // Something of another case is there, and there is no place beside it.
    return std::nullopt;
  }
  place.names.push_back(*place.real.insert(name).first);
  return name;
}

void ExtractionNames::MakeNewFile() {
  if (new_file_) Make(new_file_->folder, new_file_->name, Kind::kFile);
}

HeldFolder& ExtractionNames::Held(const Path& folder) {
  if (held_ == nullptr || held_path_ != folder) {
    held_.reset();
    held_ = files_.OpenFolder(folder);
    held_path_ = folder;
  }
  return *held_;
}

// The place in its names of what the medium finds by another one.
std::optional<std::size_t> ExtractionNames::FoundBy(const Place& place, const std::string& name) {
  std::optional<std::size_t> found;
  PassedOver pass;
  if (!place.names.empty()) pass.Step([&] { found = Held(place.path).FoundBy(name, place.names); });
  return found;
}

// Makes it by this very name, whatever of another case is there. False when the medium
// has no room for it; any other failure shows when it is used.
bool ExtractionNames::Make(const Path& folder, const std::string& name, Kind kind) {
  PassedOver pass;
  pass.Step([&] {
    HeldFolder& held = Held(folder);
    kind == Kind::kFile ? held.MakeFile(name) : held.MakeFolder(name);
  });
  const auto& failure = pass.StandingError();
  return !failure || failure->Number() != kFileAlreadyExists;
}

bool ExtractionNames::ArchiveHas(const std::string& folder, const std::string& name) {
  if (!archive_) {
    archive_ = read_names_();
    std::sort(archive_->begin(), archive_->end());
  }
  const std::string entry = folder + name;
  const std::string below = entry + "\\";
  const auto first_below = std::lower_bound(archive_->begin(), archive_->end(), below);
  return std::binary_search(archive_->begin(), archive_->end(), entry) ||
         (first_below != archive_->end() && first_below->starts_with(below));
}

}  // namespace tarnvale
