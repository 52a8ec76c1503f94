#include "tvz/tree_check.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <limits>
#include <system_error>
#include <utility>

#include "codec/enumeration.h"
#include "hosts/linux/own_links.h"
#include "hosts/linux/paths.h"
#include "tvz/command_failure.h"
#include "tvz/native_output.h"

namespace tarnvale {
namespace {

namespace fs = std::filesystem;

constexpr std::int64_t kMostBytes = std::numeric_limits<std::int32_t>::max();
constexpr std::size_t kLongestName = 32767;
constexpr std::int64_t kLengthsBytes = 6;  // of one record

class TreeCheck {
 public:
  explicit TreeCheck(const std::string& root)
      : name_offset_(root.size() + (root.ends_with('/') ? 0 : 1)) {}

  // Folders behind links aren't entered, files behind links are taken.
  void Walk(fs::path root) {
    folders_.push_back(std::move(root));
    while (!folders_.empty()) {
      const fs::path folder = std::move(folders_.back());
      folders_.pop_back();
      std::error_code error;
      fs::directory_iterator entry(folder, error);
      if (error) throw CommandFailure(folder.string(), error.message());
      // A step that fails ends the loop.
      for (; entry != fs::directory_iterator(); entry.increment(error)) LookAt(*entry);
      if (error) throw CommandFailure(folder.string(), error.message());
    }
  }

  const TreeSums& Sums() const { return sums_; }

 private:
  void LookAt(const fs::directory_entry& entry) {
    const std::string name = entry.path().filename().string();
    if (name.starts_with('.')) return;
    // What reading the folder told of an entry isn't asked again.
    std::error_code error;
    const bool is_link = entry.is_symlink(error);
    const bool is_folder = !is_link && entry.is_directory(error);
    if (!is_folder && !IsFile(entry)) return;
    if (is_link && IsLinkOfOthers(entry)) {
      LeaveOut(entry, "a link of another user");
    } else if (!CanBeNamed(name)) {
      LeaveOut(entry, "a backslash or a star can't stand in an archive");
    } else if (HoldsDrive(name)) {
      LeaveOut(entry, "nothing takes a name like that of a drive out of an archive");
    } else if (is_folder) {
      folders_.push_back(entry.path());
    } else {
      CountFile(entry.path().string());
    }
  }

  void LeaveOut(const fs::directory_entry& entry, const char* reason) {
    sums_.left_out.push_back({entry.path().string(), reason});
  }

  static bool IsLinkOfOthers(const fs::directory_entry& entry) {
    struct stat info {};
    return !StateByOwnLinks(AT_FDCWD, entry.path().string(), info) && errno == EACCES;
  }

  // A link that leads nowhere is none.
  static bool IsFile(const fs::directory_entry& entry) {
    std::error_code error;
    const bool is_file = entry.is_regular_file(error);
    if (error && !IsMissing(error)) throw CommandFailure(entry.path().string(), error.message());
    return is_file;
  }

  static bool IsMissing(const std::error_code& error) {
    return error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory ||
           error == std::errc::too_many_symbolic_link_levels;
  }

  void CountFile(const std::string& file) {
    struct stat info {};
    if (::access(file.c_str(), R_OK) != 0 || ::stat(file.c_str(), &info) != 0) {
      if (errno == ENOENT) return;  // gone meanwhile
      throw CommandFailure(file, ReasonOf(errno));
    }
    if (info.st_size > kMostBytes) {
      throw CommandFailure(file, "is too large for an archive (2 GiB)");
    }
    const std::size_t name_bytes = file.size() - name_offset_;
    if (name_bytes > kLongestName) throw CommandFailure(file, "has too long a name for an archive");
    ++sums_.files;
    sums_.container_bytes += kLengthsBytes + static_cast<std::int64_t>(name_bytes) + info.st_size;
  }

  std::size_t name_offset_;
  std::vector<fs::path> folders_;  // to be looked at, the next one last
  TreeSums sums_;
};

}  // namespace

TreeSums CheckTree(const std::string& folder) {
  TreeCheck check(folder);
  check.Walk(folder);
  if (check.Sums().files == 0) throw CommandFailure(folder, "holds no files that can be packed");
  if (check.Sums().container_bytes > kMostBytes) {
    throw CommandFailure(folder, "is too large for one archive (2 GiB)");
  }
  return check.Sums();
}

}  // namespace tarnvale
