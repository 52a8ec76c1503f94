// Which of several instances came first.
#pragma once

#include <string>

#include "hosts/linux/descriptor.h"

namespace tarnvale {

/// Each instance that calls takes the next number and keeps the byte of that
/// number locked in one common file. The locks end with their processes, however
/// those end, and no child inherits them.
class InstanceLock {
 public:
  /// `file` is a native path in a folder of this user's own.
  explicit InstanceLock(std::string file) : file_(std::move(file)) {}

  /// True while an instance lives that called before this one first did. Where
  /// the file can't be made or locked, nobody is found.
  bool HasPredecessor();

 private:
  void TakeNumber();

  std::string file_;
  Descriptor locks_;
  long number_ = 0;  ///< 0: not taken yet
};

}  // namespace tarnvale
