// The table of open files, on files in memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>

#include "platform/open_file_table.h"
#include "tests/support/fake_files.h"
#include "tests/support/scripted_failures.h"

namespace tarnvale::testing {

/// Writes reach the files at once. A file that a test removed stays open; one on
/// a removed drive fails with 57. "Read" stands for both ways of reading.
class FakeOpenFiles : public OpenFileTable, public ScriptedFailures {
 public:
  explicit FakeOpenFiles(FakeFiles& files);
  FakeOpenFiles(const FakeOpenFiles&) = delete;
  FakeOpenFiles& operator=(const FakeOpenFiles&) = delete;
  ~FakeOpenFiles() override { OpenFileTable::CloseAll(); }

  void OpenInput(int number, const Path& file) override;
  void OpenOutput(int number, const Path& file, Rights rights = Rights::kOwner) override;
  void OpenBinary(int number, const Path& file) override;
  void OpenOwn(int number, const Path& file) override;
  void Write(int number, std::string_view bytes) override;
  std::string InputItem(int number) override;
  std::size_t ReadInto(int number, std::span<std::uint8_t> bytes) override;
  std::int64_t Length(int number) override;
  void Seek(int number, std::int64_t position) override;
  void Close(int number) override;
  void CloseAll() override;

  /// Each byte is one of the first 256 characters, instead of UTF-8.
  void UseWesternCodePage() { is_western_ = true; }
  std::optional<std::string> ToCodePage(std::string_view text) const override;
  std::optional<std::string> FromCodePage(std::string_view bytes) const override;

  /// How many numbers are open now.
  int OpenCount() const { return static_cast<int>(open_nodes_.size()); }

 protected:
  Opened OpenNative(Use use, const Path& file, Rights rights) override;

 private:
  FakeFiles& files_;
  bool is_western_ = false;
  std::multiset<const FakeNode*> open_nodes_;
};

}  // namespace tarnvale::testing
