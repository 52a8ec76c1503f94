// Bytes in memory as an open file.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "native/native_text.h"
#include "platform/open_files.h"

namespace tarnvale {

/// One file, open for reading under kNumber, so that a container which was
/// decoded in memory is read by ContainerReader. All else raises 54.
class MemoryFile final : public OpenFiles {
 public:
  static constexpr int kNumber = 1;

  /// The bytes must outlive it.
  explicit MemoryFile(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

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
  std::optional<std::string> FromCodePage(std::string_view bytes) const override {
    return FromNativeCodePage(bytes);
  }
  bool IsOpen(int number) override { return number == kNumber; }
  void Close(int) override {}
  void CloseAll() override {}

 private:
  std::span<const std::uint8_t> bytes_;
  std::size_t position_ = 0;
};

}  // namespace tarnvale
