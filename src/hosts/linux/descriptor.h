// A file descriptor that closes itself, and writing to one.
#pragma once

#include <unistd.h>

#include <string_view>
#include <utility>

namespace tarnvale {

class Descriptor {
 public:
  Descriptor() = default;
  /// Takes over `fd`; -1 stands for none.
  explicit Descriptor(int fd) : fd_(fd) {}
  Descriptor(Descriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    if (this != &other) {
      Close();
      fd_ = std::exchange(other.fd_, -1);
    }
    return *this;
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() { Close(); }

  int Get() const { return fd_; }
  explicit operator bool() const { return fd_ >= 0; }
  /// Hands it over to the caller.
  int Release() { return std::exchange(fd_, -1); }

  /// Closes it; false when the system reports that something written before
  /// got lost. `errno` says why.
  bool Close() {
    const int fd = std::exchange(fd_, -1);
    return fd < 0 || ::close(fd) == 0;
  }

 private:
  int fd_ = -1;
};

/// Writes all of it, in as many pieces as the system takes it. False when that
/// fails, with `errno` set; some of it may then have been written.
bool WriteAll(int fd, std::string_view bytes);

}  // namespace tarnvale
