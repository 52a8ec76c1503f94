// The table of open files on Linux.
#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>

#include "platform/linux/descriptor.h"
#include "platform/linux/locator.h"
#include "platform/open_files.h"

namespace tarnvale {

/// Nothing is held in memory: what was written is in the file at once.
class LinuxOpenFiles : public OpenFiles {
 public:
  explicit LinuxOpenFiles(Locator& locator) : locator_(locator) {}

  void OpenInput(int number, const Path& file) override;
  void OpenOutput(int number, const Path& file) override;
  void OpenBinary(int number, const Path& file) override;
  void Write(int number, std::string_view bytes) override;
  std::string InputItem(int number) override;
  std::string Read(int number, std::size_t count) override;
  std::size_t ReadInto(int number, std::span<std::uint8_t> bytes) override;
  std::int64_t Length(int number) override;
  void Seek(int number, std::int64_t position) override;
  bool IsOpen(int number) override { return open_.count(number) != 0; }
  void Close(int number) override;
  void CloseAll() override { open_.clear(); }

  /// Whether the file with this state is open under any number.
  bool HoldsOpen(const struct stat& info) const;

 private:
  enum class Mode { kInput, kOutput, kBinary };
  struct OpenFile {
    Descriptor file;
    Mode mode = Mode::kInput;
    bool writable = false;
    std::int64_t position = 0;
    dev_t device = 0;
    ino_t inode = 0;
  };

  void CheckFree(int number) const;
  OpenFile& Require(int number);
  Located LocateForWriting(const Path& file);
  void Hold(int number, Descriptor file, Mode mode, bool writable);

  Locator& locator_;
  std::map<int, OpenFile> open_;
};

}  // namespace tarnvale
