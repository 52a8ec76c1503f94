#include "tvz/packing.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "base/failure.h"
#include "codec/archive.h"
#include "hosts/linux/descriptor.h"
#include "hosts/linux/linux_host.h"
#include "hosts/linux/own_links.h"
#include "hosts/linux/paths.h"
#include "tvz/command_failure.h"
#include "tvz/leftovers.h"
#include "tvz/native_output.h"
#include "ui/headless_machine.h"

namespace tarnvale {
namespace {

namespace fs = std::filesystem;

constexpr const char* kArchiveInWork = "archive";

// The real native path of a folder. `given` is how the person wrote it.
std::string RealFolder(const fs::path& folder, const std::string& given) {
  std::error_code error;
  const fs::path real = fs::canonical(folder, error);
  if (error) throw CommandFailure(given, error.message());
  if (!fs::is_directory(real, error)) throw CommandFailure(given, "is no folder");
  if (!CanBeNamed(real.string())) {
    throw CommandFailure(given, "the program can't name a path with a backslash or a star");
  }
  return real.string();
}

bool LiesIn(const std::string& folder, const std::string& outer) {
  return folder == outer || folder.starts_with(outer.ends_with('/') ? outer : outer + "/");
}

// Where the new archive goes.
struct Target {
  std::string folder;
  std::string name;
};

Target TargetOf(const std::string& archive) {
  std::error_code error;
  fs::path path = archive;
  const fs::file_status status = fs::status(path, error);
  if (fs::exists(status)) {
    if (fs::is_directory(status)) throw CommandFailure(archive, "is a folder");
    if (!fs::is_regular_file(status)) throw CommandFailure(archive, "is no plain file");
    // Over what a link of somebody else leads to, nothing is written.
    std::string own = archive;
    struct stat info {};
    if (!GoByOwnLinks(AT_FDCWD, own, info)) throw CommandFailure(archive, ReasonOf(errno));
    path = fs::canonical(own, error);
  }
  const std::string name = path.filename().string();
  if (name.empty() || name == "." || name == "..") throw CommandFailure(archive, "names no file");
  return {RealFolder(fs::absolute(path).parent_path(), archive), name};
}

void BuildArchive(const std::string& native, const std::string& folder, const TreeSums& expected,
                  Progress& progress) {
  const DrivePaths drive("/");
  LinuxHost host;
  HeadlessMachine machine(host.Parts());
  usercontrol11 builder(ArchiveParts(machine.Parts(), host.workers));
  builder.BuildArchiveProgress.Listen([&](std::int16_t done) { progress.Show("adding", done); });
  builder.CompressArchiveProgress.Listen(
      [&](std::int16_t done) { progress.Show("packing", done); });
  const std::int32_t records =
      builder.SaveFilesToArchiv(drive.FromNative(folder), drive.FromNative(native), true);
  // The program's list stops short in trees of more than 32,768 entries.
  if (records != expected.files) {
    throw CommandFailure(folder, "has " + std::to_string(expected.files) +
                                     " files, of which an archive would hold " +
                                     std::to_string(records));
  }
}

// Onto the medium and under its name.
void PutInPlace(int folder_fd, const std::string& from, const std::string& to,
                const std::string& archive) {
  Descriptor file(::openat(folder_fd, from.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file || ::fsync(file.Get()) != 0 || !file.Close() ||
      ::renameat(folder_fd, from.c_str(), folder_fd, to.c_str()) != 0) {
    throw CommandFailure(archive, ReasonOf(errno));
  }
}

std::string Explain(const ProgramError& error) {
  if (error.Number() == kOverflow) return "is too large for one archive (256 MiB packed)";
  return error.Description();
}

}  // namespace

std::vector<LeftOut> PackFolder(const std::string& archive, const std::string& folder,
                                Progress& progress) {
  const std::string root = RealFolder(folder, folder);
  const Target target = TargetOf(archive);
  if (LiesIn(target.folder, root)) {
    throw UsageError(archive + ": can't lie in the folder that is packed");
  }
  const TreeSums sums = CheckTree(root);
  const Descriptor beside(::open(target.folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!beside) throw CommandFailure(archive, ReasonOf(errno));
  const std::string work = WorkName();
  const std::string made = work + "/" + kArchiveInWork;
  const Leftovers leftovers(beside.Get(), {{{made}, {made + ".tmp"}, {work, true}}});
  if (::mkdirat(beside.Get(), work.c_str(), 0700) != 0) {
    throw CommandFailure(archive, ReasonOf(errno));
  }
  try {
    BuildArchive((fs::path(target.folder) / made).string(), root, sums, progress);
  } catch (const ProgramError& error) {
    throw CommandFailure(error.Number() == kDiskFull ? archive : folder, Explain(error));
  }
  PutInPlace(beside.Get(), made, target.name, archive);
  return sums.left_out;
}

}  // namespace tarnvale
