#include "hosts/linux/paths.h"

#include <utility>

#include "platform/path_text.h"

namespace tarnvale {
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
  const auto parts = TakeApart(path);
  if (!parts || (parts->drive != 0 && parts->drive != 'C')) return std::nullopt;
  std::string native = root_;
  native.reserve(root_.size() + path.size() + 2);
  for (const std::string_view name : parts->names) {
    native += '/';
    native += name;
  }
  if (parts->names.empty()) native += "/.";
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
