// The table of open files on Linux.
#pragma once

#include <sys/stat.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <future>
#include <map>
#include <span>

#include "hosts/linux/copy_data.h"
#include "hosts/linux/descriptor.h"
#include "hosts/linux/locator.h"
#include "platform/open_file_table.h"

namespace tarnvale {

/// Nothing is held in memory: what was written is in the file at once. Only the
/// steps of a copy are gathered, for the kernel to copy a larger piece at once, which
/// another thread waits for.
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
  /// dropped, and what was to follow it.
  void Settle(int number) override;

 private:
  /// A copy in steps. The kernel's calls have to be few and large, so steps are gathered, and
  /// another thread waits for the kernel, while more are.
  struct SteppedCopy {
    int from = 0;  ///< a number of the table
    CopiedRange gathered;
    std::int64_t from_length = 0;                       ///< as it was when it was last asked for
    std::future<std::chrono::nanoseconds> under_way{};  ///< the piece before what is gathered

    bool GoesOn(int source, std::int64_t source_position, std::int64_t target_position) const {
      return from == source && gathered.from + gathered.bytes == source_position &&
             gathered.to + gathered.bytes == target_position;
    }
  };

  /// Has what is gathered copied, up to the last whole page.
  void BeginPiece(int to);
  void EndCopy(int to);
  /// Raises what the piece under way raised.
  void Await(SteppedCopy& copy);
  /// Returns how long it took. By native numbers.
  static std::chrono::nanoseconds CopyPiece(int source, int target, CopiedRange piece);
  int FdOf(int number);
  /// Gathers less when a copy took too long, and more again when it didn't.
  void FitToMedium(std::chrono::nanoseconds took);
  Descriptor ForInput(const Path& file);
  Descriptor ForOutput(const Path& file, Rights rights);
  Descriptor ForBoth(const Path& file, bool& is_writable);
  Descriptor ForOwnUse(const Path& file);

  Locator& locator_;
  std::map<int, SteppedCopy> copies_;                    ///< by the number that is copied into
  std::int64_t most_gathered_ = std::int64_t{1} << 20U;  ///< bytes; follows the medium
};

}  // namespace tarnvale
