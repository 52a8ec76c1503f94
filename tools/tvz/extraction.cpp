#include "tvz/extraction.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

#include "base/characters.h"
#include "hosts/linux/paths.h"
#include "tvz/command_failure.h"
#include "tvz/leftovers.h"
#include "tvz/native_output.h"

namespace tarnvale {
namespace {

constexpr int kFolderFlags = O_PATH | O_DIRECTORY | O_CLOEXEC;
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

[[noreturn]] void RefuseOutside(const std::string& name) {
  throw CommandFailure(name, "leads out of the folder; --allow-outside lets it");
}

}  // namespace

TargetFolder::TargetFolder(std::string folder, bool allow_outside)
    : folder_(std::move(folder)), allow_outside_(allow_outside), work_name_(WorkName()) {
  OpenItself();
}

// None is opened while there is none.
void TargetFolder::OpenItself() {
  opened_ = Descriptor(::open(folder_.c_str(), kFolderFlags));
  if (!opened_) {
    if (errno == ENOENT) return;
    throw CommandFailure(folder_, ReasonOf(errno));
  }
  std::error_code error;
  real_path_ = std::filesystem::canonical(folder_, error).string();
  if (error) throw CommandFailure(folder_, error.message());
}

void TargetFolder::Make() {
  std::error_code error;
  if (!opened_) std::filesystem::create_directories(folder_, error);
  if (error) throw CommandFailure(folder_, error.message());
  OpenItself();
  if (!opened_) throw CommandFailure(folder_, ReasonOf(errno));
}

TargetFolder::Place TargetFolder::PlaceOf(const std::string& name) const {
  // Deeper than any path leads, nobody would find the file again.
  if (name.size() >= PATH_MAX) {
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
    const auto native = DrivePaths("/").ToNative(name);
    if (!native) throw CommandFailure(name, "there is no such drive here");
    place.from_root = true;
    place.folders = PartsOf(*native);
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

bool TargetFolder::IsInside(int folder_fd) const {
  std::array<char, PATH_MAX> path{};
  const std::string link = "/proc/self/fd/" + std::to_string(folder_fd);
  const ssize_t length = ::readlink(link.c_str(), path.data(), path.size());
  if (length <= 0 || static_cast<std::size_t>(length) == path.size()) return false;
  const std::string_view real(path.data(), static_cast<std::size_t>(length));
  return real == real_path_ ||
         real.starts_with(real_path_.ends_with('/') ? real_path_ : real_path_ + "/");
}

// One step down. None when there is no such folder and none is to be made. A
// link is judged by the folder that was opened through it, so that nobody can
// turn it meanwhile.
std::optional<Descriptor> TargetFolder::Enter(int folder_fd, const std::string& folder,
                                              const std::string& name, bool make) const {
  const char* const step = folder.c_str();
  Descriptor entered(::openat(folder_fd, step, kFolderFlags | O_NOFOLLOW));
  if (!entered && errno == ENOENT) {
    if (!make) return std::nullopt;
    if (::mkdirat(folder_fd, step, 0777) != 0 && errno != EEXIST) {
      throw CommandFailure(name, ReasonOf(errno));
    }
    entered = Descriptor(::openat(folder_fd, step, kFolderFlags | O_NOFOLLOW));
  }
  if (entered) return entered;
  if (errno != ELOOP && errno != ENOTDIR) throw CommandFailure(name, ReasonOf(errno));
  entered = Descriptor(::openat(folder_fd, step, kFolderFlags));
  if (!entered) throw CommandFailure(name, folder + " is no folder");
  if (!allow_outside_ && !IsInside(entered.Get())) RefuseOutside(name);
  return entered;
}

std::optional<Descriptor> TargetFolder::OpenFolder(const std::string& name, const Place& place,
                                                   bool make) {
  Descriptor at(place.from_root ? ::open("/", kFolderFlags)
                                : ::openat(opened_.Get(), ".", kFolderFlags));
  if (!at) throw CommandFailure(name, ReasonOf(errno));
  std::string path;
  for (const std::string& folder : place.folders) {
    std::optional<Descriptor> next = Enter(at.Get(), folder, name, make);
    if (!next) return std::nullopt;
    struct stat info {};
    // The folder above has another name, and so may one that a link leads to.
    const bool is_inner = make && folder != ".." &&
                          ::fstatat(at.Get(), folder.c_str(), &info, AT_SYMLINK_NOFOLLOW) == 0 &&
                          S_ISDIR(info.st_mode);
    at = std::move(*next);
    path += folder + "/";
    if (!is_inner) continue;
    RequireNoTwin(folders_, info, folder, name);
    folders_.try_emplace({info.st_dev, info.st_ino}, Named{path, folder});
  }
  return at;
}

// What was made here has one name: when another one finds it, the medium takes both for
// one, whatever they differ in.
void TargetFolder::RequireNoTwin(const Names& names, const struct stat& there,
                                 const std::string& name, const std::string& entry) {
  const auto found = names.find({there.st_dev, there.st_ino});
  if (found != names.end() && found->second.name != name) {
    throw Twin(entry, "left out: here it is the same as " + found->second.path);
  }
}

void TargetFolder::Check(const std::string& name) {
  const Place place = PlaceOf(name);
  if (opened_ || place.from_root) OpenFolder(name, place, false);
}

void TargetFolder::Write(const ContainerRecord& record) {
  const Place place = PlaceOf(record.name);
  if (!last_ || place.from_root || place.folders != last_folders_) {
    last_ = std::move(*OpenFolder(record.name, place, true));
    last_folders_ = place.folders;
    // Folders of the whole system may have the names of ours.
    if (place.from_root) last_folders_.insert(last_folders_.begin(), "/");
  }
  const Leftovers leftovers(last_.Get(), {{{work_name_}, {}, {}}});
  // Nobody may read or write it who couldn't the file that it replaces.
  mode_t mode = 0666;
  struct stat old {};
  std::string path;
  for (const std::string& folder : place.folders) path += folder + "/";
  path += place.file;
  if (::fstatat(last_.Get(), place.file.c_str(), &old, AT_SYMLINK_NOFOLLOW) == 0) {
    RequireNoTwin(files_, old, place.file, record.name);
    if (S_ISREG(old.st_mode)) mode &= old.st_mode;
  }
  Descriptor file(::openat(last_.Get(), work_name_.c_str(),
                           O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
  if (!file) throw CommandFailure(record.name, ReasonOf(errno));
  WriteBytes(file.Get(), record.content.View(), record.name);
  // Onto the medium first: a power cut leaves no name with half a file behind.
  struct stat made {};
  if (::fstat(file.Get(), &made) == 0) files_[{made.st_dev, made.st_ino}] = {path, place.file};
  if (::fsync(file.Get()) != 0 || !file.Close() ||
      ::renameat(last_.Get(), work_name_.c_str(), last_.Get(), place.file.c_str()) != 0) {
    throw CommandFailure(record.name, ReasonOf(errno));
  }
}

}  // namespace tarnvale
