// A line of progress on a terminal.
#pragma once

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <string>

namespace tarnvale {

/// Shows nothing unless standard error is a terminal. The line goes away with
/// the object.
class Progress {
 public:
  Progress() : terminal_(::isatty(STDERR_FILENO) == 1) {}
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress() { Clear(); }

  void Show(const char* work, int percent) {
    if (!terminal_ || (work == work_ && percent == percent_)) return;
    work_ = work;
    percent_ = percent;
    width_ = std::max(width_, std::fprintf(stderr, "\r%-10s %3d%%", work, percent));
    std::fflush(stderr);
  }

  /// For work whose end nobody knows: ten times a second at most.
  void ShowCount(const char* work, std::int64_t files, std::int64_t bytes) {
    constexpr std::chrono::milliseconds kInterval{100};
    constexpr std::int64_t kMebibyte = 1024 * 1024;
    if (!terminal_) return;
    const auto now = std::chrono::steady_clock::now();
    if (now - counted_ < kInterval) return;
    counted_ = now;
    std::string line = std::string(work) + " " + std::to_string(files) + " files";
    if (bytes > 0) line += ", " + std::to_string(bytes / kMebibyte) + " MiB";
    width_ = std::max(width_, std::fprintf(stderr, "\r%s", line.c_str()));
    std::fflush(stderr);
  }

  void Clear() {
    if (width_ > 0) std::fprintf(stderr, "\r%*s\r", width_, "");
    width_ = 0;
    percent_ = -1;
  }

 private:
  bool terminal_;
  int width_ = 0;
  std::chrono::steady_clock::time_point counted_{};
  const char* work_ = nullptr;
  int percent_ = -1;
};

}  // namespace tarnvale
