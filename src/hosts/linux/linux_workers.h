// The other processors of a Linux system.
#pragma once

#include <sys/stat.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "hosts/linux/paths.h"
#include "platform/workers.h"

namespace tarnvale {

/// Begins threads for each Run and ReadAhead: that takes some ten microseconds, and none of them is
/// there while nobody needs it.
class LinuxWorkers final : public Workers {
 public:
  /// `drive` is where files are read.
  explicit LinuxWorkers(DrivePaths drive = DrivePaths("/")) : drive_(std::move(drive)) {}

  std::size_t Helpers() override;
  void Run(std::size_t most_helpers, const std::function<void()>& work) override;
  void LetOthersRun() override;
  void WillFill(std::span<std::uint8_t> bytes) override;
  void ReadAhead(std::vector<Path> files) override;
  std::optional<std::span<const std::uint8_t>> TakeRead(const Path& file) override;

 private:
  struct AheadFile {
    std::string native;
    struct stat info {};  ///< as it was before it was read
    std::optional<std::span<const std::uint8_t>> content;
  };
  struct Ahead {
    std::vector<AheadFile> files;
    std::unique_ptr<std::uint8_t[]> bytes;  ///< room for all of them
    std::atomic<std::size_t> count = 0;     ///< of these taken
    std::atomic<std::size_t> begun = 0;     ///< files
  };
  static void ReadAll(Ahead& ahead);
  static void ReadOne(AheadFile& file, Ahead& ahead);

  DrivePaths drive_;
  std::unique_ptr<Ahead> ready_ = std::make_unique<Ahead>();
  std::size_t next_taken_ = 0;                                  ///< of the ready ones
  std::unique_ptr<Ahead> in_work_ = std::make_unique<Ahead>();  ///< shared with the reader
  std::jthread reader_;
};

}  // namespace tarnvale
