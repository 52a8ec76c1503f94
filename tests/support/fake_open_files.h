// The table of open files, on files in memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>

#include "platform/open_files.h"
#include "tests/support/fake_files.h"
#include "tests/support/scripted_failures.h"

namespace tarnvale::testing {

/// Writes reach the files at once. A file that a test removed stays open; one on
/// a removed drive fails with 57.
class FakeOpenFiles : public OpenFiles, public ScriptedFailures {
 public:
  explicit FakeOpenFiles(FakeFiles& files);

  void OpenInput(int number, const Path& file) override;
  void OpenOutput(int number, const Path& file, Rights rights = Rights::kOwner) override;
  void OpenBinary(int number, const Path& file) override;
  void OpenOwn(int number, const Path& file) override;
  void Write(int number, std::string_view bytes) override;
  std::string InputItem(int number) override;
  std::string Read(int number, std::size_t count) override;
  std::size_t ReadInto(int number, std::span<std::uint8_t> bytes) override;
  std::int64_t Length(int number) override;
  void Seek(int number, std::int64_t position) override;
  bool IsOpen(int number) override { return open_.count(number) != 0; }
  void Close(int number) override;
  void CloseAll() override;

  /// How many numbers are open now.
  int OpenCount() const { return static_cast<int>(open_.size()); }

 private:
  enum class Mode { kInput, kOutput, kBinary };
  struct OpenFile {
    FakeFiles::NodePtr node;
    Mode mode = Mode::kInput;
    bool writable = false;
    std::size_t position = 0;
  };

  void CheckFree(int number) const;
  OpenFile& Require(int number);

  FakeFiles& files_;
  std::map<int, OpenFile> open_;
};

}  // namespace tarnvale::testing
