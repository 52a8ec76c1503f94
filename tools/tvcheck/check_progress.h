// How far a check has come.
#pragma once

#include <cstdint>

#include "tvz/progress.h"

namespace tarnvale {

class CheckProgress {
 public:
  void AddFile() {
    ++files_;
    line.ShowCount("checking", files_, bytes_);
  }
  void AddBytes(std::int64_t bytes) {
    bytes_ += bytes;
    line.ShowCount("checking", files_, bytes_);
  }

  Progress line;

 private:
  std::int64_t files_ = 0;
  std::int64_t bytes_ = 0;
};

}  // namespace tarnvale
