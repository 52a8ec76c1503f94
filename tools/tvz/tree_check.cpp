#include "tvz/tree_check.h"

#include <limits>
#include <utility>

#include "codec/enumeration.h"
#include "native/command_failure.h"
#include "native/native_file.h"
#include "native/native_tree.h"

namespace tarnvale {
namespace {

constexpr std::int64_t kMostBytes = std::numeric_limits<std::int32_t>::max();
constexpr std::size_t kLongestName = 32767;
constexpr std::int64_t kLengthsBytes = 6;  // of one record

class TreeCheck {
 public:
  explicit TreeCheck(const std::string& root)
      : name_offset_(root.size() + (root.ends_with(kSeparator) ? 0 : 1)) {}

  // Folders behind links aren't entered, files behind links are taken.
  void Walk(const std::string& root) {
    folders_.push_back(root);
    while (!folders_.empty()) {
      const std::string folder = std::move(folders_.back());
      folders_.pop_back();
      for (const TreeEntry& entry : EntriesOf(folder)) LookAt(entry);
    }
  }

  const TreeSums& Sums() const { return sums_; }

 private:
  void LookAt(const TreeEntry& entry) {
    if (entry.left_out != nullptr) {
      sums_.left_out.push_back({entry.path, entry.left_out});
    } else if (HoldsDrive(entry.name)) {
      sums_.left_out.push_back(
          {entry.path, "nothing takes a name like that of a drive out of an archive"});
    } else if (entry.is_folder) {
      folders_.push_back(entry.path);
    } else {
      CountFile(entry.path);
    }
  }

  void CountFile(const std::string& file) {
    const auto found = SizeOfPacked(file);
    if (!found) return;  // gone meanwhile
    const std::int64_t size = *found;
    if (size > kMostBytes) throw CommandFailure(file, "is too large for an archive (2 GiB)");
    const std::size_t name_bytes = file.size() - name_offset_;
    if (name_bytes > kLongestName) throw CommandFailure(file, "has too long a name for an archive");
    ++sums_.files;
    sums_.container_bytes += kLengthsBytes + static_cast<std::int64_t>(name_bytes) + size;
  }

  std::size_t name_offset_;
  std::vector<std::string> folders_;  // to be looked at, the next one last
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
