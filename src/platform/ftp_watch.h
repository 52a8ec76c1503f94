// How long an FTP client waits for a server.
#pragma once

#include <chrono>
#include <cstdint>

#include "platform/ftp_command.h"

namespace tarnvale {

/// How long a server may take that goes on moving.
struct FtpPatience {
  /// A listing that lasts longer or has more has failed: nobody reads it.
  std::chrono::milliseconds listing = std::chrono::minutes(1);
  std::uint64_t listing_bytes = std::uint64_t{1024} * 1024;
  /// A transfer must move so much in each such span: 1 KiB/s.
  std::chrono::milliseconds span = std::chrono::minutes(2);
  std::uint64_t span_bytes = std::uint64_t{120} * 1024;
};

/// Whether the server of a running command is worth waiting for. All times are of one
/// clock that only goes forward.
class FtpWatch {
 public:
  using Nanoseconds = std::chrono::nanoseconds;

  explicit FtpWatch(const FtpPatience& patience) : patience_(patience) {}

  /// A command begins. `silence_s`: the longest silence; 0: no limit.
  void Begin(FtpVerb verb, std::int32_t silence_s, Nanoseconds now);
  /// The conversation got on.
  void NoteMove(Nanoseconds now) { moved_at_ = now; }
  /// Data begin to come or go.
  void BeginData(Nanoseconds now);
  void EndData(Nanoseconds now);
  bool IsInData() const { return is_in_data_; }
  /// The system holds nobody knows how much of what was sent: the silence behind it may
  /// last as long as a slow line needs.
  void AllowForUnsent(Nanoseconds now);

  /// False when it has been silent for too long, or moves too slowly. `taken`: the bytes
  /// of data that have passed the network since the command began.
  bool IsAlive(std::uint64_t taken, Nanoseconds now);
  /// Half of the longest silence is over.
  bool IsHalfOver(Nanoseconds now) const { return IsSilentFor(silence_ / 2, now); }

 private:
  bool IsSilentFor(Nanoseconds limit, Nanoseconds now) const {
    return silence_.count() > 0 && now - moved_at_ >= limit;
  }

  FtpPatience patience_;
  FtpVerb verb_ = FtpVerb::kList;
  Nanoseconds silence_{};
  Nanoseconds moved_at_{};
  std::uint64_t taken_ = 0;

  bool is_in_data_ = false;
  Nanoseconds began_at_{};
  Nanoseconds span_at_{};
  std::uint64_t span_taken_ = 0;
};

}  // namespace tarnvale
