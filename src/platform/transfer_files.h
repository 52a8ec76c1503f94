// The files at this end of a transfer.
#pragma once

#include <cstddef>
#include <memory>
#include <span>

#include "platform/files.h"

namespace tarnvale {

/// A file that is sent. Closed when it goes.
class TransferSource {
 public:
  virtual ~TransferSource() = default;

  /// Reads on. Fewer bytes than requested only at the end, where it gives 0.
  /// Raises 57.
  virtual std::size_t Read(std::span<char> bytes) = 0;
};

/// A file that is received. Until Commit nothing is seen of it, and what had
/// its name is as it was; when it goes without Commit, that stays so.
class TransferTarget {
 public:
  virtual ~TransferTarget() = default;

  /// Raises 61, 57.
  virtual void Write(std::span<const char> bytes) = 0;

  /// Gives the file its name, replacing what has it. Raises 61, 57, 70, 75.
  virtual void Commit() = 0;
};

class TransferFiles {
 public:
  virtual ~TransferFiles() = default;

  /// Raises 53 (no such file), 70, 75 (no plain file), 76.
  virtual std::unique_ptr<TransferSource> OpenSource(const Path& file) = 0;

  /// Raises 61, 70, 75 (a read-only file or no plain file has the name), 76 (no
  /// such folder). One target is open at a time.
  virtual std::unique_ptr<TransferTarget> OpenTarget(const Path& file) = 0;
};

}  // namespace tarnvale
