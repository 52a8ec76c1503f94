// A line of progress on a terminal.
#pragma once

#include <unistd.h>

#include <cstdio>

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
    std::fprintf(stderr, "\r%-10s %3d%%", work, percent);
    std::fflush(stderr);
  }

  void Clear() {
    if (percent_ >= 0) std::fprintf(stderr, "\r%-15s\r", "");
    percent_ = -1;
  }

 private:
  bool terminal_;
  const char* work_ = nullptr;
  int percent_ = -1;
};

}  // namespace tarnvale
