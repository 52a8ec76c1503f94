#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <filesystem>
#include <utility>
#include <vector>

#include "hosts/linux/descriptor.h"
#include "hosts/linux/own_links.h"
#include "hosts/linux/paths.h"
#include "native/held_folder_linux.h"
#include "native/leftovers_linux.h"
#include "native/output_folder.h"
#include "native/work_name.h"

namespace tarnvale {
namespace {

namespace fs = std::filesystem;

FileIdentity IdentityOf(const struct stat& info) {
  return {info.st_dev, info.st_ino};
}

}  // namespace

struct OutputFolder::State {
  Descriptor opened;
};

OutputFolder::OutputFolder(std::unique_ptr<State> state) : state_(std::move(state)) {}
OutputFolder::OutputFolder(OutputFolder&& other) noexcept = default;
OutputFolder& OutputFolder::operator=(OutputFolder&& other) noexcept = default;
OutputFolder::~OutputFolder() = default;

std::optional<OutputFolder> OutputFolder::Open(const std::string& native) {
  Descriptor opened = OpenByOwnLinks(AT_FDCWD, native, kFolderFlags);
  if (!opened && errno == ENOENT) return std::nullopt;
  if (!opened) throw SystemError();
  return OutputFolder(std::make_unique<State>(State{std::move(opened)}));
}

// Made one in the other: a link that comes onto the way meanwhile isn't followed.
OutputFolder OutputFolder::Make(const std::string& native) {
  std::vector<std::string> missing;
  fs::path above = native;
  std::optional<OutputFolder> at = Open(native);
  while (!at) {
    missing.push_back(above.filename().string());
    above = above.parent_path();
    at = Open(above.empty() ? "." : above.string());
  }
  while (!missing.empty()) {
    const std::string name = std::exchange(missing.back(), {});
    missing.pop_back();
    if (name.empty()) continue;
    at->MakeInner(name);
    auto made = at->Enter(name);
    if (!made || made->by_link) throw SystemError(ENOTDIR);
    at = std::move(made->folder);
  }
  return std::move(*at);
}

OutputFolder OutputFolder::Again() const {
  Descriptor opened(::openat(state_->opened.Get(), ".", kFolderFlags));
  if (!opened) throw SystemError();
  return OutputFolder(std::make_unique<State>(State{std::move(opened)}));
}

// A link is judged by the folder that was opened through it, so that nobody can turn it
// meanwhile.
std::optional<OutputFolder::Inner> OutputFolder::Enter(const std::string& name) const {
  const int folder = state_->opened.Get();
  Descriptor entered(::openat(folder, name.c_str(), kFolderFlags | O_NOFOLLOW));
  if (!entered && errno == ENOENT) return std::nullopt;
  if (!entered && errno != ELOOP && errno != ENOTDIR) throw SystemError();
  const bool by_link = !entered;
  if (by_link) entered = OpenByOwnLinks(folder, name, kFolderFlags);
  if (!entered && errno == EACCES) throw SystemError();
  if (!entered) throw SystemError(name + " is no folder");
  return Inner{OutputFolder(std::make_unique<State>(State{std::move(entered)})), by_link};
}

void OutputFolder::MakeInner(const std::string& name) const {
  if (::mkdirat(state_->opened.Get(), name.c_str(), 0777) != 0 && errno != EEXIST) {
    throw SystemError();
  }
}

bool OutputFolder::LiesIn(const OutputFolder& outer) const {
  const std::string own = RealPathOf(state_->opened.Get());
  const std::string around = RealPathOf(outer.state_->opened.Get());
  if (own.empty() || around.empty()) return false;
  return own == around || own.starts_with(around.ends_with('/') ? around : around + "/");
}

std::optional<OutputFolder::Entry> OutputFolder::Find(const std::string& name) const {
  struct stat info {};
  if (::fstatat(state_->opened.Get(), name.c_str(), &info, AT_SYMLINK_NOFOLLOW) != 0) {
    return std::nullopt;
  }
  return Entry{IdentityOf(info), S_ISDIR(info.st_mode)};
}

FileIdentity OutputFolder::Write(const std::string& name,
                                 std::span<const std::uint8_t> bytes) const {
  const int folder = state_->opened.Get();
  const std::string work = WorkName();
  const Leftovers leftovers(folder, {{{work}, {}, {}}});
  mode_t mode = 0666;
  struct stat info {};
  if (::fstatat(folder, name.c_str(), &info, AT_SYMLINK_NOFOLLOW) == 0 && S_ISREG(info.st_mode)) {
    mode &= info.st_mode;
  }
  Descriptor file(
      ::openat(folder, work.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
  const void* const first = bytes.data();
  if (!file || !WriteAll(file.Get(), {static_cast<const char*>(first), bytes.size()}) ||
      ::fstat(file.Get(), &info) != 0) {
    throw SystemError();
  }
  // Onto the medium first: a power cut leaves no name with half a file behind.
  if (::fsync(file.Get()) != 0 || !file.Close() ||
      ::renameat(folder, work.c_str(), folder, name.c_str()) != 0) {
    throw SystemError();
  }
  return IdentityOf(info);
}

std::optional<RootedName> TakeRoot(const std::string& name) {
  auto native = DrivePaths("/").ToNative(name);
  if (!native) return std::nullopt;
  return RootedName{"/", std::move(*native)};
}

const char* WrongWithName(const std::string&) {
  return nullptr;
}

std::size_t LongestPath() {
  return PATH_MAX;
}

}  // namespace tarnvale
