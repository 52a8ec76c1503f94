// Doing something right before the system is called.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <utility>
#include <vector>

namespace tarnvale::testing {

/// One thing each time, in order.
template <class Hooked>
class CallHook {
 public:
  explicit CallHook(std::vector<std::function<void()>> steps) : steps_(std::move(steps)) {
    present = this;
  }
  ~CallHook() { present = nullptr; }
  CallHook(const CallHook&) = delete;
  CallHook& operator=(const CallHook&) = delete;

  void Refuse(int error) { error_ = error; }
  bool WasCalled() const { return next_ == steps_.size(); }

  static inline CallHook* present = nullptr;
  /// The error to fail with; 0 for none.
  int Call() {
    if (next_ == steps_.size()) return error_;
    const auto& step = steps_[next_++];
    present = nullptr;
    step();
    present = this;
    return error_;
  }

 private:
  std::vector<std::function<void()>> steps_;
  std::size_t next_ = 0;
  int error_ = 0;
};

/// A file is exchanged, or put where none is.
using RenameHook = CallHook<struct Renaming>;
/// A link is made.
using LinkHook = CallHook<struct Linking>;
/// An entry of a folder is asked for.
using StateHook = CallHook<struct Asking>;
/// A file is deleted.
using RemoveHook = CallHook<struct Removing>;
/// A medium is flushed.
using SyncHook = CallHook<struct Syncing>;
/// A copy is written, and gets its time.
using TimeHook = CallHook<struct SettingTime>;
/// Bytes at a place are read.
using ReadHook = CallHook<struct Reading>;

/// For as long as this lives, reading a folder doesn't say what its entries are.
class SilentMedium {
 public:
  SilentMedium() { is_present = true; }
  ~SilentMedium() { is_present = false; }
  SilentMedium(const SilentMedium&) = delete;
  SilentMedium& operator=(const SilentMedium&) = delete;

  static inline bool is_present = false;
};

/// For as long as this lives, files have no extended attributes but FAT's byte, in which
/// the archive bit is set at first.
class FatMedium {
 public:
  FatMedium() { present = this; }
  ~FatMedium() { present = nullptr; }
  FatMedium(const FatMedium&) = delete;
  FatMedium& operator=(const FatMedium&) = delete;

  /// By number of the file.
  std::map<ino_t, std::uint32_t> bytes;
  bool is_read_only = false;

  static inline FatMedium* present = nullptr;
  /// As the system's call.
  int Control(ino_t file, bool set, std::uint32_t& byte);
};

}  // namespace tarnvale::testing
