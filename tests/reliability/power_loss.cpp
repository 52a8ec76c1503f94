// What a loss of power could leave of each file: the system calls of an operation are
// recorded, and each file is looked at in every state that they allow.
//
// The medium may keep the entries of folders in any order, each before or after the
// content of what it names, and may lose of a content all that wasn't flushed. So a name
// holds, after a loss at any moment, any of the files that were given to it so far; and
// of a file that was not flushed then, anything. That is all which can be seen in one
// file: hence nothing is lost by looking at each name on its own.
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>

#include <cstdio>
#include <map>
#include <set>
#include <string>
#include <utility>

#include "tests/reliability/checks.h"
#include "tests/reliability/operations.h"
#include "tests/reliability/traced.h"

namespace tarnvale::reliability {
namespace {

namespace fs = std::filesystem;
using File = std::pair<dev_t, ino_t>;

class Recording {
 public:
  Recording(const Stage& stage, Findings& findings, std::string name)
      : stage_(stage), findings_(findings), name_(std::move(name)) {
    for (const auto& [path, state] : stage.Before()) names_[path] = FileAt(path);
    for (const auto& [path, state] : stage.After()) names_.try_emplace(path, File{});
  }

  void Before(const FileCall& call) {
    LookAtNames();
    ++moments_;
    states_ += static_cast<int>(names_.size());
    switch (call.number) {
      case SYS_write:
      case SYS_pwrite64:
      case SYS_writev:
      case SYS_ftruncate:
      case SYS_fallocate:
        Write(call, call.arguments[0]);
        break;
      case SYS_copy_file_range:
        Write(call, call.arguments[2]);
        break;
      case SYS_sendfile:
        Write(call, call.arguments[0]);
        break;
      case SYS_fsync:
      case SYS_fdatasync:
        unflushed_.erase(FileOf(call.process, call.arguments[0]));
        ++flushes_;
        break;
      case SYS_syncfs:
        unflushed_.clear();
        ++flushes_;
        break;
      case SYS_openat:
        if ((call.arguments[2] & O_TRUNC) != 0) Truncate(call);
        break;
      default:
        break;
    }
  }

  void End() {
    LookAtNames();
    for (const auto& [path, file] : names_) {
      if (late_.contains(path) && unflushed_.contains(file)) ++never_flushed_;
    }
  }
  int Late() const { return static_cast<int>(late_.size()); }
  int NeverFlushed() const { return never_flushed_; }
  int Moments() const { return moments_; }
  int States() const { return states_; }
  int Flushes() const { return flushes_; }
  const std::set<std::string>& Torn() const { return torn_; }

 private:
  File FileAt(const std::string& path) const {
    struct stat info {};
    if (::lstat((stage_.Drive() / path).c_str(), &info) != 0) return {};
    return {info.st_dev, S_ISREG(info.st_mode) ? info.st_ino : 0};
  }

  static File FileOf(pid_t process, std::uint64_t descriptor) {
    const std::string link =
        "/proc/" + std::to_string(process) + "/fd/" + std::to_string(static_cast<int>(descriptor));
    struct stat info {};
    if (::stat(link.c_str(), &info) != 0 || !S_ISREG(info.st_mode)) return {};
    return {info.st_dev, info.st_ino};
  }

  // What the call before has done to names.
  void LookAtNames() {
    for (auto& [path, file] : names_) {
      const File now = FileAt(path);
      if (now == file) continue;
      const bool goes =
          now == File{} && stage_.Before().contains(path) && stage_.After().contains(path);
      if (goes) Report(path, "is away for a moment");
      if (unflushed_.contains(now)) Report(path, "gets its name before its content is safe");
      file = now;
    }
  }

  void Write(const FileCall& call, std::uint64_t descriptor) {
    const File file = FileOf(call.process, descriptor);
    if (file == File{}) return;
    unflushed_.insert(file);
    WriteIn(file);
  }

  void Truncate(const FileCall& call) {
    struct stat info {};
    const std::string path = TextIn(call.process, call.arguments[1]);
    if (path.starts_with("/") && ::stat(path.c_str(), &info) == 0) {
      unflushed_.insert({info.st_dev, info.st_ino});
      WriteIn({info.st_dev, info.st_ino});
    }
  }

  void WriteIn(const File& file) {
    for (const auto& [path, named] : names_) {
      if (named == file) Report(path, "is written in its place");
    }
  }

  void Report(const std::string& path, const std::string& what) {
    if (stage_.IsWrittenInPlace(path)) return;
    if (stage_.IsFlushedLate(path)) {
      late_.insert(path);
      return;
    }
    if (torn_.insert(path).second) findings_.Add(name_ + ": " + path + " " + what);
  }

  const Stage& stage_;
  Findings& findings_;
  std::string name_;
  std::map<std::string, File> names_;
  std::set<File> unflushed_;
  std::set<std::string> torn_;
  std::set<std::string> late_;
  int never_flushed_ = 0;
  int moments_ = 0;
  int states_ = 0;
  int flushes_ = 0;
};

}  // namespace

int CheckPowerLoss(const std::string& only) {
  if (!CanTrace()) {
    std::printf("skipped: no process can be traced here\n");
    return -1;
  }
  Findings findings;
  int moments = 0;
  int states = 0;
  for (const Operation& operation : AllOperations()) {
    if (!only.empty() && operation.name != only) continue;
    Stage stage(operation);
    stage.LayOut();
    Recording recording(stage, findings, operation.name);
    RunTraced(stage.Work(), std::nullopt, [&](const FileCall& call) { recording.Before(call); });
    recording.End();
    std::printf(
        "power loss: %-18s %4d moments, %6d states, %2d flushes; %d files torn, %d safe at the "
        "end only, %d never flushed\n",
        operation.name.c_str(), recording.Moments(), recording.States(), recording.Flushes(),
        static_cast<int>(recording.Torn().size()), recording.Late(), recording.NeverFlushed());
    moments += recording.Moments();
    states += recording.States();
  }
  std::printf("power loss: %d moments, %d states of a file, %d failures\n", moments, states,
              findings.Count());
  return findings.Count();
}

}  // namespace tarnvale::reliability
