// A medium without room.
#pragma once

#include <sys/resource.h>

#include <csignal>

namespace tarnvale::testing {

/// For as long as this lives, no file may grow over some bytes.
class FullMedium {
 public:
  explicit FullMedium(rlim_t most_bytes = 4) {
    old_handler_ = ::signal(SIGXFSZ, SIG_IGN);
    ::getrlimit(RLIMIT_FSIZE, &old_);
    rlimit none = old_;
    none.rlim_cur = most_bytes;
    ::setrlimit(RLIMIT_FSIZE, &none);
  }
  FullMedium(const FullMedium&) = delete;
  FullMedium& operator=(const FullMedium&) = delete;
  ~FullMedium() {
    ::setrlimit(RLIMIT_FSIZE, &old_);
    ::signal(SIGXFSZ, old_handler_);
  }

 private:
  rlimit old_{};
  void (*old_handler_)(int) = nullptr;
};

}  // namespace tarnvale::testing
