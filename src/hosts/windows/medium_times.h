// The times of files on media that keep local ones.
#pragma once

#include <cstdint>

namespace tarnvale {

/// FAT keeps local times. The system takes those for times of today's offset from UTC, so
/// that every time on the medium moves by an hour twice a year: these are as the clocks
/// showed them then. All are in units of 100 ns since 1601-01-01 UTC.
class MediumTimes {
 public:
  explicit MediumTimes(bool are_local) : are_local_(are_local) {}

  bool AreLocal() const { return are_local_; }
  /// The time of what the system says was written at `reported`.
  std::uint64_t FromMedium(std::uint64_t reported) const;
  /// What to give the system for a time.
  std::uint64_t ToMedium(std::uint64_t time) const;

 private:
  bool are_local_;
};

}  // namespace tarnvale
