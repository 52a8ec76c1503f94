// A medium that fills up in the middle of a pass.
#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <string>

#include "core/file_sync.h"
#include "hosts/linux/linux_host.h"
#include "tests/reliability/checks.h"
#include "tests/reliability/counted_medium.h"
#include "tests/reliability/workbench.h"
#include "ui/headless_machine.h"

namespace tarnvale::reliability {
namespace {

namespace fs = std::filesystem;

constexpr int kFiles = 40;
constexpr std::size_t kOldBytes = 50'000;
constexpr std::size_t kNewBytes = 150'000;
// All of the old files fit, not half of the new ones.
constexpr std::uint64_t kMediumBytes = 3 * 1024 * 1024;

void WriteProc(const char* file, const std::string& text) {
  const int fd = ::open(file, O_WRONLY | O_CLOEXEC);
  if (fd >= 0) {
    if (::write(fd, text.data(), text.size()) < 0) std::perror(file);
    ::close(fd);
  }
}

// Mounts that only this process and its children see; ordinary users become
// their own root for it.
bool EnterMountNamespace() {
  if (::unshare(CLONE_NEWNS) == 0) {
    return ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
  }
  const uid_t user = ::getuid();
  const gid_t group = ::getgid();
  if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) return false;
  WriteProc("/proc/self/setgroups", "deny");
  WriteProc("/proc/self/uid_map", "0 " + std::to_string(user) + " 1");
  WriteProc("/proc/self/gid_map", "0 " + std::to_string(group) + " 1");
  return true;
}

std::string NameOf(int file) {
  return "file" + std::to_string(file) + ".dat";
}

void WriteTree(const fs::path& folder, int generation, std::size_t size_bytes) {
  fs::create_directories(folder);
  for (int file = 0; file < kFiles; ++file) {
    WriteFile(folder / NameOf(file), ContentOf(NameOf(file), generation, size_bytes));
    fs::last_write_time(folder / NameOf(file),
                        fs::file_time_type::clock::now() - std::chrono::hours(10 - generation));
  }
}

int ErrorOfCopy(const std::function<void()>& copy) {
  try {
    copy();
  } catch (const ProgramError& error) {
    return error.Number();
  }
  return 0;
}

void CheckTargets(const fs::path& target, Findings& findings) {
  int old_files = 0;
  int new_files = 0;
  for (int file = 0; file < kFiles; ++file) {
    const auto content = ReadFile(target / NameOf(file));
    if (content == ContentOf(NameOf(file), 1, kOldBytes)) {
      ++old_files;
    } else if (content == ContentOf(NameOf(file), 2, kNewBytes)) {
      ++new_files;
    } else {
      findings.Add(NameOf(file) + " is neither old nor new on the full medium");
    }
  }
  if (old_files == 0 || new_files == 0) findings.Add("the medium wasn't filled in the middle");
  if (CountTemporaries(target) > 0) findings.Add("a temporary is left on the full medium");
  std::printf("disk full: %d targets old, %d new, %d temporaries left\n", old_files, new_files,
              CountTemporaries(target));
}

// A small medium in the place of the target; where that isn't allowed, its room is
// counted instead.
void BringMedium(const fs::path& target) {
  const std::string size = "mode=700,size=" + std::to_string(kMediumBytes);
  if (EnterMountNamespace() &&
      ::mount("none", target.c_str(), "tmpfs", MS_NOSUID | MS_NODEV, size.c_str()) == 0) {
    return;
  }
  std::printf("disk full: no small medium can be mounted here (%s): its room is counted\n",
              std::strerror(errno));
  LimitRoom(target, kMediumBytes);
}

// Fills the target by a sync, then by a copy of the tree.
void FillMedium(const fs::path& work) {
  Findings findings;
  const fs::path drive = work / "drive";
  for (const std::string how : {"sync", "tree copy"}) {
    WriteTree(drive / "source", 1, kOldBytes);
    fs::remove_all(drive / "target" / "copy");
    LinuxHost host(SurroundingsIn(work));
    HeadlessMachine machine(host.Parts());
    FileSystem& files = host.files;
    files.CopyTree("C:\\source", "C:\\target\\copy", {});
    WriteTree(drive / "source", 2, kNewBytes);
    const int error = ErrorOfCopy([&] {
      if (how == "sync") {
        FileSync(machine.Parts().files, machine.Parts().loop)
            .SyncFiles("C:\\source", "C:\\target\\copy", false);
      } else {
        files.CopyTree("C:\\source", "C:\\target\\copy", {});
      }
    });
    std::printf("disk full: the %s raised %d\n", how.c_str(), error);
    if (error != kDiskFull) findings.Add("the " + how + " didn't raise 61");
    CheckTargets(drive / "target" / "copy", findings);
  }
  if (findings.Count() > 0) throw std::runtime_error("the medium that is full was handled badly");
}

}  // namespace

int CheckDiskFull() {
  const WorkFolder work;
  fs::create_directory(work.Path() / "drive" / "target");
  try {
    RunWhole([&] {
      BringMedium(work.Path() / "drive" / "target");
      FillMedium(work.Path());
    });
  } catch (const std::runtime_error& error) {
    std::printf("disk full: FAILED: %s\n", error.what());
    return 1;
  }
  return 0;
}

}  // namespace tarnvale::reliability
