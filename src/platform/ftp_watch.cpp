#include "platform/ftp_watch.h"

#include <algorithm>
#include <utility>

namespace tarnvale {

void FtpWatch::Begin(FtpVerb verb, std::int32_t silence_s, Nanoseconds now) {
  verb_ = verb;
  silence_ = std::chrono::seconds(silence_s);
  moved_at_ = now;
  taken_ = 0;
  is_in_data_ = false;
}

void FtpWatch::BeginData(Nanoseconds now) {
  if (is_in_data_) return;
  is_in_data_ = true;
  moved_at_ = began_at_ = span_at_ = now;
  span_taken_ = taken_;
}

void FtpWatch::EndData(Nanoseconds now) {
  is_in_data_ = false;
  moved_at_ = now;
}

void FtpWatch::AllowForUnsent(Nanoseconds now) {
  EndData(now);
  if (silence_.count() > 0) silence_ = std::max<Nanoseconds>(silence_, patience_.span);
}

// Silence is limited in everything, and a command's whole reply counts as one: it
// may trickle as it likes. In a transfer every byte counts that the other end has
// taken: the system holds more than a slow line carries within the limit.
bool FtpWatch::IsAlive(std::uint64_t taken, Nanoseconds now) {
  if (taken > taken_) {
    taken_ = taken;
    moved_at_ = now;
  }
  if (IsSilentFor(silence_, now)) return false;
  if (!is_in_data_) return true;
  if (verb_ == FtpVerb::kList && now - began_at_ >= patience_.listing) return false;
  if (now - span_at_ < patience_.span) return true;
  span_at_ = now;
  return taken_ - std::exchange(span_taken_, taken_) >= patience_.span_bytes;
}

}  // namespace tarnvale
