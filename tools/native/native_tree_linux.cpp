#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "hosts/linux/own_links.h"
#include "hosts/linux/paths.h"
#include "native/native_tree.h"
#include "native/system_error.h"

namespace tarnvale {
namespace {

namespace fs = std::filesystem;

bool IsLinkOfOthers(const fs::directory_entry& entry) {
  struct stat info {};
  return !StateByOwnLinks(AT_FDCWD, entry.path().string(), info) && errno == EACCES;
}

bool IsMissing(const std::error_code& error) {
  return error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory ||
         error == std::errc::too_many_symbolic_link_levels;
}

// A link that leads nowhere is none.
bool IsFile(const fs::directory_entry& entry) {
  std::error_code error;
  const bool is_file = entry.is_regular_file(error);
  if (error && !IsMissing(error)) throw CommandFailure(entry.path().string(), error.message());
  return is_file;
}

void LookAt(const fs::directory_entry& entry, std::vector<TreeEntry>& entries) {
  TreeEntry found{.path = entry.path().string(), .name = entry.path().filename().string()};
  if (found.name.starts_with('.')) return;
  // What reading the folder said of an entry isn't looked up again.
  std::error_code error;
  const bool is_link = entry.is_symlink(error);
  found.is_folder = !is_link && entry.is_directory(error);
  if (!found.is_folder && !IsFile(entry)) return;
  if (is_link && IsLinkOfOthers(entry)) {
    found.left_out = "a link of another user";
  } else if (!CanBeNamed(found.name)) {
    found.left_out = "a backslash or a star can't stand in an archive";
  }
  entries.push_back(std::move(found));
}

}  // namespace

std::vector<TreeEntry> EntriesOf(const std::string& folder) {
  std::vector<TreeEntry> entries;
  std::error_code error;
  fs::directory_iterator entry(folder, error);
  if (error) throw CommandFailure(folder, error.message());
  // A step that fails ends the loop.
  for (; entry != fs::directory_iterator(); entry.increment(error)) LookAt(*entry, entries);
  if (error) throw CommandFailure(folder, error.message());
  return entries;
}

std::optional<std::int64_t> SizeOfPacked(const std::string& file) {
  struct stat info {};
  if (::access(file.c_str(), R_OK) != 0 || ::stat(file.c_str(), &info) != 0) {
    if (errno == ENOENT) return std::nullopt;
    throw CommandFailure(file, SystemError().what());
  }
  return info.st_size;
}

}  // namespace tarnvale
