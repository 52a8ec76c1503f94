// What the reliability checks share: files whose content says their age,
// children that are killed, and looking for what they left.
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <random>
#include <string>

#include "hosts/linux/linux_host.h"

namespace tarnvale::reliability {

/// The content of a file at a generation: every byte depends on both and on its
/// place, so that no mixture of two generations passes for either.
std::string ContentOf(const std::string& name, int generation, std::size_t size_bytes);

/// A folder that goes with its object.
class WorkFolder {
 public:
  WorkFolder();
  explicit WorkFolder(std::filesystem::path where);
  WorkFolder(const WorkFolder&) = delete;
  WorkFolder& operator=(const WorkFolder&) = delete;
  ~WorkFolder();
  const std::filesystem::path& Path() const { return path_; }

 private:
  std::filesystem::path path_;
};

/// Drive C: is `folder`/drive, the state folder is beside it.
LinuxSurroundings SurroundingsIn(const std::filesystem::path& folder);

void WriteFile(const std::filesystem::path& file, const std::string& bytes);
/// None when there is no such file.
std::optional<std::string> ReadFile(const std::filesystem::path& file);

/// How many temporaries of copies lie in a tree.
int CountTemporaries(const std::filesystem::path& tree);

/// Runs `work` in a child process and kills it with SIGKILL after a delay, if
/// it is still running then. True when it was.
bool RunAndKill(const std::function<void()>& work, std::chrono::microseconds delay);

/// Runs `work` in a child process to its end. Returns how long it took; raises
/// std::runtime_error when it failed.
std::chrono::microseconds RunWhole(const std::function<void()>& work);

/// When to kill: from the start of a run to about its end, whatever the machine's
/// pace. About three runs of four should be killed in their work.
class KillMoments {
 public:
  /// `whole` is how long an undisturbed run takes.
  explicit KillMoments(std::chrono::microseconds whole) : span_(whole) {}
  std::chrono::microseconds Next(std::mt19937_64& random) const;
  /// Whether the last run was still at work when it was killed.
  void Learn(bool killed);

 private:
  std::chrono::microseconds span_;
};

/// Counts what went wrong and reports the first few.
class Findings {
 public:
  void Add(const std::string& what);
  int Count() const { return count_; }

 private:
  int count_ = 0;
};

}  // namespace tarnvale::reliability
