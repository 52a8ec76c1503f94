#include "hosts/linux/paths.h"

#include <utility>

namespace tarnvale {
namespace {

bool IsSeparator(char c) {
  return c == '\\' || c == '/';
}

// What stands behind the drive; none when it isn't ours or there is none.
std::optional<std::string_view> BehindDrive(std::string_view path) {
  if (path.size() >= 2 && path[1] == ':') {
    if (path[0] != 'C' && path[0] != 'c') return std::nullopt;
    return path.substr(2);
  }
  if (!path.empty() && IsSeparator(path[0])) return path;
  return std::nullopt;
}

}  // namespace

bool EndsInSeparator(const Path& path) {
  return !path.empty() && IsSeparator(path.back());
}

bool CanBeNamed(std::string_view native_name) {
  return native_name.find_first_of("\\*") == std::string_view::npos;
}

std::string_view NativeFolderOf(std::string_view native) {
  const auto slash = native.rfind('/');
  return slash == std::string_view::npos ? std::string_view() : native.substr(0, slash);
}

std::string_view NativeNameOf(std::string_view native) {
  return native.substr(native.rfind('/') + 1);
}

DrivePaths::DrivePaths(std::string root) : root_(std::move(root)) {
  while (!root_.empty() && root_.back() == '/') root_.pop_back();
}

std::optional<std::string> DrivePaths::ToNative(const Path& path) const {
  const auto rest = BehindDrive(path);
  if (!rest || rest->find('\0') != std::string_view::npos) return std::nullopt;
  std::string native = root_;
  native.reserve(root_.size() + rest->size() + 2);
  for (std::size_t at = 0; at < rest->size();) {
    std::size_t end = at;
    while (end < rest->size() && !IsSeparator((*rest)[end])) ++end;
    const std::string_view name = rest->substr(at, end - at);
    if (name == "..") {
      if (native.size() > root_.size()) native.resize(native.rfind('/'));
    } else if (!name.empty() && name != ".") {
      native += '/';
      native += name;
    }
    at = end + 1;
  }
  if (native.size() == root_.size()) native += "/.";
  return native;
}

Path DrivePaths::FromNative(std::string_view native) const {
  Path path = "C:";
  if (native.substr(0, root_.size()) != root_) return path;
  native.remove_prefix(root_.size());
  if (!native.empty() && native.front() != '/') return path;
  while (!native.empty() && native.back() == '/') native.remove_suffix(1);
  for (const char c : native) path += c == '/' ? '\\' : c;
  return path;
}

}  // namespace tarnvale
