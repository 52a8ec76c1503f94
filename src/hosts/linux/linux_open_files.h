// The table of open files on Linux.
#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "hosts/linux/descriptor.h"
#include "hosts/linux/locator.h"
#include "platform/open_files.h"

namespace tarnvale {

/// Nothing is held in memory: what was written is in the file at once. Only the
/// steps of a copy are gathered, for the kernel to copy a larger piece at once.
class LinuxOpenFiles : public OpenFiles {
 public:
  explicit LinuxOpenFiles(Locator& locator) : locator_(locator) {}
  LinuxOpenFiles(const LinuxOpenFiles&) = delete;
  LinuxOpenFiles& operator=(const LinuxOpenFiles&) = delete;
  ~LinuxOpenFiles() override { CloseAll(); }

  void OpenInput(int number, const Path& file) override;
  void OpenOutput(int number, const Path& file, Rights rights = Rights::kOwner) override;
  void OpenBinary(int number, const Path& file) override;
  void OpenOwn(int number, const Path& file) override;
  void Write(int number, std::string_view bytes) override;
  std::string InputItem(int number) override;
  std::string Read(int number, std::size_t count) override;
  std::size_t ReadInto(int number, std::span<std::uint8_t> bytes) override;
  std::size_t Copy(int from, int to, std::span<std::uint8_t> buffer) override;
  std::int64_t Length(int number) override;
  void Seek(int number, std::int64_t position) override;
  bool IsOpen(int number) override { return open_.count(number) != 0; }
  void Close(int number) override;
  void CloseAll() override;

  /// Whether the file with this state is open under any number.
  bool HoldsOpen(const struct stat& info) const;

 private:
  enum class Mode { kInput, kOutput, kBinary };
  /// Steps of a copy that are still to be carried out.
  struct GatheredCopy {
    int from = 0;  ///< a number of the table
    std::int64_t from_position = 0;
    std::int64_t to_position = 0;
    std::int64_t from_end = 0;  ///< the source's length when this began
    std::int64_t count = 0;     ///< of bytes

    /// Whether a step from these positions follows the last one.
    bool GoesOn(int number, std::int64_t source, std::int64_t target) const {
      return from == number && from_position + count == source && to_position + count == target;
    }
  };
  struct OpenFile {
    Descriptor file;
    Mode mode = Mode::kInput;
    bool writable = false;
    std::int64_t position = 0;
    std::optional<GatheredCopy> gathered;  ///< what is to be copied into it
  };

  void CheckFree(int number) const;
  /// The file open under a number, with all that was copied from or into it.
  OpenFile& Require(int number);
  OpenFile& Find(int number);
  OpenFile& RequireReadable(int number);
  OpenFile& RequireWritable(int number);
  /// Carries out what was gathered from or into a file. Raises as CopyRange, and
  /// 62 when the source was cut short meanwhile; what failed is dropped.
  void Settle(int number);
  void CopyGathered(OpenFile& to);
  /// Gathers less when a copy took too long, and more again when it didn't.
  void FitToMedium(std::chrono::nanoseconds took);
  Located LocateForWriting(const Path& file);
  void Hold(int number, Descriptor file, Mode mode, bool writable);

  Locator& locator_;
  std::map<int, OpenFile> open_;
  std::int64_t most_gathered_ = std::int64_t{1} << 20U;  ///< bytes; follows the medium
};

}  // namespace tarnvale
