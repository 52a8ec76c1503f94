#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "hosts/linux/descriptor.h"
#include "hosts/linux/own_links.h"
#include "hosts/linux/paths.h"
#include "native/held_folder_linux.h"
#include "native/leftovers_linux.h"
#include "native/native_archive.h"
#include "native/system_error.h"
#include "native/work_name.h"

namespace tarnvale {
namespace fs = std::filesystem;

std::string RealFolder(const std::string& folder, const std::string& given) {
  const Descriptor held = OpenByOwnLinks(AT_FDCWD, folder, kFolderFlags);
  if (!held && errno == ENOTDIR) throw CommandFailure(given, "is no folder");
  std::string real = held ? RealPathOf(held.Get()) : std::string();
  if (real.empty()) throw CommandFailure(given, SystemError().what());
  if (!CanBeNamed(real)) {
    throw CommandFailure(given, "the program can't name a path with a backslash or a star");
  }
  return real;
}

bool LiesIn(const std::string& folder, const std::string& outer) {
  return folder == outer || folder.starts_with(outer.ends_with('/') ? outer : outer + "/");
}

ArchivePlace PlaceOfArchive(const std::string& archive) {
  std::error_code error;
  fs::path path = archive;
  const fs::file_status status = fs::status(path, error);
  if (fs::exists(status)) {
    if (fs::is_directory(status)) throw CommandFailure(archive, "is a folder");
    if (!fs::is_regular_file(status)) throw CommandFailure(archive, "is no plain file");
    // Over what a link of somebody else leads to, nothing is written.
    std::string own = archive;
    struct stat info {};
    if (!GoByOwnLinks(AT_FDCWD, own, info)) throw CommandFailure(archive, SystemError().what());
    path = fs::canonical(own, error);
  }
  const std::string name = path.filename().string();
  if (name.empty() || name == "." || name == "..") throw CommandFailure(archive, "names no file");
  return {RealFolder(fs::absolute(path).parent_path().string(), archive), name};
}

struct NewArchive::State {
  explicit State(const ArchivePlace& to) : place(to) {}

  ArchivePlace place;
  std::string work = WorkName();
  std::string made = work + "/archive";
  Descriptor beside = OpenByOwnLinks(AT_FDCWD, place.folder, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  Leftovers leftovers{beside.Get(), {{{made}, {made + ".tmp"}, {work, true}}}};
};

NewArchive::NewArchive(const ArchivePlace& place) : state_(std::make_unique<State>(place)) {
  if (!state_->beside || ::mkdirat(state_->beside.Get(), state_->work.c_str(), 0700) != 0) {
    throw SystemError();
  }
}

NewArchive::~NewArchive() = default;

std::string NewArchive::InWork() const {
  return (fs::path(state_->place.folder) / state_->made).string();
}

void NewArchive::PutInPlace() {
  const int folder = state_->beside.Get();
  const char* const made = state_->made.c_str();
  Descriptor file(::openat(folder, made, O_RDONLY | O_CLOEXEC));
  if (!file || ::fsync(file.Get()) != 0 || !file.Close() ||
      ::renameat(folder, made, folder, state_->place.name.c_str()) != 0) {
    throw SystemError();
  }
}

}  // namespace tarnvale
