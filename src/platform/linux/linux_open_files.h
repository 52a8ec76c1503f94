// The table of open files on Linux.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
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
  std::int64_t Length(int number) override;
  void Seek(int number, std::int64_t position) override;
  bool IsOpen(int number) override { return open_.count(number) != 0; }
  void Close(int number) override;
  void CloseAll() override { open_.clear(); }

 private:
  enum class Mode { kInput, kOutput, kBinary };
  struct OpenFile {
    Descriptor file;
    Mode mode = Mode::kInput;
    bool writable = false;
    std::int64_t position = 0;
  };

  void CheckFree(int number) const;
  OpenFile& Require(int number);
  Located LocateForWriting(const Path& file);

  Locator& locator_;
  std::map<int, OpenFile> open_;
};

}  // namespace tarnvale
