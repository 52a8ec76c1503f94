// Small native operations for the Linux host's tests.
#pragma once

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace tarnvale::testing {

inline void WriteNative(const std::string& file, const std::string& content) {
  std::ofstream(file, std::ios::binary | std::ios::trunc) << content;
}

inline std::string ReadNative(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

inline struct stat StateOf(const std::string& file) {
  struct stat info {};
  ::lstat(file.c_str(), &info);
  return info;
}

inline mode_t ModeOf(const std::string& file) {
  return StateOf(file).st_mode & 07777;
}

inline void SetModifiedNative(const std::string& file, time_t seconds) {
  const std::array<timespec, 2> times{timespec{seconds, 0}, timespec{seconds, 0}};
  ::utimensat(AT_FDCWD, file.c_str(), times.data(), 0);
}

inline std::vector<std::string> NativeNames(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace tarnvale::testing
