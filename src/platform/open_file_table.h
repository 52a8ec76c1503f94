// The numbers of open files, for hosts: what is left to them is one file.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "platform/open_files.h"

namespace tarnvale {

/// An open file of a system.
class NativeFile {
 public:
  virtual ~NativeFile() = default;

  /// Reads from a position into `bytes`; returns how many: fewer only at the end.
  /// Raises 57.
  virtual std::size_t ReadAt(std::int64_t position, std::span<std::uint8_t> bytes) = 0;
  /// Raises 61, 57.
  virtual void WriteAt(std::int64_t position, std::string_view bytes) = 0;
  virtual std::int64_t Length() = 0;
  /// Puts onto the medium what was written. Raises 61, 57; it is closed all the same.
  virtual void Close() = 0;
};

class OpenFileTable : public OpenFiles {
 public:
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

 protected:
  enum class Use { kInput, kOutput, kBinary, kOwn };
  struct Opened {
    std::unique_ptr<NativeFile> file;
    bool is_writable = true;
  };
  /// Opens a file as the function of OpenFiles that `use` names, and raises as it does.
  virtual Opened OpenNative(Use use, const Path& file, Rights rights) = 0;

  bool Holds(const std::function<bool(NativeFile&)>& is_it) const {
    return std::any_of(open_.begin(), open_.end(),
                       [&](const auto& open) { return is_it(*open.second.opened.file); });
  }

  struct OpenFile {
    Opened opened;
    Use use;
    std::int64_t position = 0;
  };
  OpenFile& Find(int number);
  OpenFile& RequireReadable(int number);
  OpenFile& RequireWritable(int number);

  /// Called before a number is used otherwise than by Copy: carries out what a host has
  /// gathered from or into it.
  virtual void Settle(int) {}

 private:
  void Open(int number, Use use, const Path& file, Rights rights = Rights::kOwner);

  std::map<int, OpenFile> open_;
};

}  // namespace tarnvale
