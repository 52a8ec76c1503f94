// A small medium that can be taken out in the middle of what a program does with it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/reliability/workbench.h"

namespace tarnvale::reliability {

/// This machine, or this user, has no such medium.
struct NoMedium : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// What is lost of what was written and not flushed: nothing, contents and not their names,
/// or all. The numbers are the system's.
enum class Loss : std::uint32_t { kNothing = 0, kContents = 1, kAll = 2 };

/// An ext4 file system in a file, mounted where nobody but this process and its children
/// sees it. It goes with its object, or with the process. All of it raises NoMedium.
class Medium {
 public:
  Medium();
  ~Medium();
  Medium(const Medium&) = delete;
  Medium& operator=(const Medium&) = delete;

  /// Moves these folders of a drive onto it, which is emptied before; they keep their paths.
  void Take(const std::filesystem::path& drive, const std::vector<std::string>& folders);
  /// From now on all that has to be read from it or written to it fails with EIO.
  void GoAway(Loss loss);
  /// Takes it out: the paths lead to empty folders then.
  void TakeOut();
  /// Puts it back; its journal says what it holds.
  void PutBack();

 private:
  std::filesystem::path Image() const { return work_.Path() / "image"; }

  WorkFolder work_;
  std::filesystem::path root_;
  std::filesystem::path drive_;
  std::vector<std::string> folders_;
  std::vector<std::filesystem::path> mounted_;
};

}  // namespace tarnvale::reliability
