// The table of open files on Linux.
#pragma once

#include <sys/stat.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <span>

#include "hosts/linux/descriptor.h"
#include "hosts/linux/locator.h"
#include "platform/open_file_table.h"

namespace tarnvale {

/// Nothing is held in memory: what was written is in the file at once. Only the
/// steps of a copy are gathered, for the kernel to copy a larger piece at once.
class LinuxOpenFiles : public OpenFileTable {
 public:
  explicit LinuxOpenFiles(Locator& locator) : locator_(locator) {}
  LinuxOpenFiles(const LinuxOpenFiles&) = delete;
  LinuxOpenFiles& operator=(const LinuxOpenFiles&) = delete;
  ~LinuxOpenFiles() override { CloseAll(); }

  /// Whether the file with this state is open under any number.
  bool HoldsOpen(const struct stat& info) const;

  std::size_t Copy(int from, int to, std::span<std::uint8_t> buffer) override;

 protected:
  Opened OpenNative(Use use, const Path& file, Rights rights) override;
  /// Raises as CopyRange, and 62 when the source was cut short meanwhile; what failed is
  /// dropped.
  void Settle(int number) override;

 private:
  /// Steps of a copy that are still to be carried out.
  struct GatheredCopy {
    int from;  ///< a number of the table
    std::int64_t from_position;
    std::int64_t to_position;
    std::int64_t count = 0;        ///< of bytes
    std::int64_t from_length = 0;  ///< as it was when it was last asked for

    bool GoesOn(const GatheredCopy& next) const {
      return from == next.from && from_position + count == next.from_position &&
             to_position + count == next.to_position;
    }
  };

  /// All but the last `rest` bytes, which stay gathered.
  void CopyGathered(int to, std::int64_t rest = 0);
  /// Gathers less when a copy took too long, and more again when it didn't.
  void FitToMedium(std::chrono::nanoseconds took);
  Descriptor ForInput(const Path& file);
  Descriptor ForOutput(const Path& file, Rights rights);
  Descriptor ForBoth(const Path& file, bool& is_writable);
  Descriptor ForOwnUse(const Path& file);

  Locator& locator_;
  std::map<int, GatheredCopy> gathered_;                 ///< by the number that is copied into
  std::int64_t most_gathered_ = std::int64_t{1} << 20U;  ///< bytes; follows the medium
};

}  // namespace tarnvale
