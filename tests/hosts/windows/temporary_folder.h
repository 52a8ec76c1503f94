// A native folder that goes with its test.
#pragma once

#include <windows.h>

#include <array>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace tarnvale::testing {

/// Deletes a file or a folder with all that is in it, read-only or not.
inline void RemoveNative(const std::filesystem::path& path) {
  std::error_code ignored;
  std::filesystem::recursive_directory_iterator entry(path, ignored);
  for (; entry != std::filesystem::end(entry); entry.increment(ignored)) {
    ::SetFileAttributesW(entry->path().c_str(), FILE_ATTRIBUTE_NORMAL);
  }
  ::SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
  std::filesystem::remove_all(path, ignored);
}

class TemporaryFolder {
 public:
  TemporaryFolder() {
    static std::atomic<int> count = 0;
    std::array<wchar_t, MAX_PATH> folder{};
    ::GetTempPathW(MAX_PATH, folder.data());
    path_ = std::filesystem::path(folder.data()) /
            ("tarnvale-" + std::to_string(::GetCurrentProcessId()) + "-" + std::to_string(++count));
    // Numbers of processes come again.
    RemoveNative(path_);
    std::filesystem::create_directories(path_);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() { RemoveNative(path_); }

  std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

 private:
  std::filesystem::path path_;
};

inline void WriteNative(const std::filesystem::path& file, const std::string& content) {
  std::ofstream(file, std::ios::binary | std::ios::trunc) << content;
}

inline std::string ReadNative(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace tarnvale::testing
