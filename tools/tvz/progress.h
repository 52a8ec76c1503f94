// A line of progress on a terminal, and where a command is stopped.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <string>

#include "native/console.h"

namespace tarnvale {

/// Shows nothing unless standard error is a terminal. The line goes away with
/// the object. Both calls raise Stopped (`native/console.h`).
class Progress {
 public:
  Progress() : terminal_(ErrorsAreSeen()) {}
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress() { Clear(); }

  void Show(const char* work, int percent) {
    StopIfAsked();
    if (!terminal_ || (work == work_ && percent == percent_)) return;
    work_ = work;
    percent_ = percent;
    std::string line = work;
    line.resize(std::max(line.size(), kWorkWidth), ' ');
    const std::string number = std::to_string(percent);
    line += std::string(number.size() < 4 ? 4 - number.size() : 0, ' ') + number + "%";
    Write(line);
  }

  /// For work whose end nobody knows: ten times a second at most.
  void ShowCount(const char* work, std::int64_t files, std::int64_t bytes) {
    constexpr std::chrono::milliseconds kInterval{100};
    constexpr std::int64_t kMebibyte = 1024 * 1024;
    StopIfAsked();
    if (!terminal_) return;
    const auto now = std::chrono::steady_clock::now();
    if (now - counted_ < kInterval) return;
    counted_ = now;
    std::string line = std::string(work) + " " + std::to_string(files) + " files";
    if (bytes > 0) line += ", " + std::to_string(bytes / kMebibyte) + " MiB";
    Write(line);
  }

  void Clear() {
    if (width_ > 0) PrintError("\r" + std::string(width_, ' ') + "\r");
    width_ = 0;
    percent_ = -1;
  }

 private:
  static constexpr std::size_t kWorkWidth = 10;

  void Write(const std::string& line) {
    PrintError("\r" + line);
    width_ = std::max(width_, line.size());
  }

  bool terminal_;
  std::size_t width_ = 0;
  std::chrono::steady_clock::time_point counted_{};
  const char* work_ = nullptr;
  int percent_ = -1;
};

}  // namespace tarnvale
