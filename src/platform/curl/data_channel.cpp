#include "platform/curl/data_channel.h"

#include <algorithm>
#include <cstdint>
#include <span>
#include <utility>

namespace tarnvale {
namespace {

// Larger buffers get slower again: they leave the processor's cache.
constexpr std::size_t kBufferBytes = std::size_t{256} * 1024;
// As much as a turn moves at most: less than a millisecond's worth in memory.
constexpr std::size_t kTurnBytes = std::size_t{1024} * 1024;
constexpr std::uint64_t kTrickleBytes = 1024;
constexpr std::uint64_t kLongestListing = std::uint64_t{64} * 1024 * 1024;

class Upload final : public DataChannel {
 public:
  explicit Upload(std::unique_ptr<TransferSource> source)
      : source_(std::move(source)), buffer_(kBufferBytes) {}

  SocketReadiness Wants() const override { return {.writable = true}; }

  Outcome Pump() override {
    for (std::size_t moved = 0; moved < kTurnBytes;) {
      if (sent_ == filled_ && !Refill()) return Outcome::kEnded;
      const StreamTurn turn = socket_.Send(std::span(buffer_).subspan(sent_, filled_ - sent_));
      if (turn.outcome == StreamTurn::Outcome::kBroken) return Outcome::kBroken;
      if (turn.outcome == StreamTurn::Outcome::kWouldWait) break;
      sent_ += turn.bytes;
      moved += turn.bytes;
      total_ += turn.bytes;
    }
    return Outcome::kGoesOn;
  }

  // The connection itself stays, so that what is under way can be asked for.
  void EndConnection() override { socket_.EndSending(); }

  // Bytes count when the other end has taken them: on a slow line the system
  // holds more than can be sent within the limit.
  bool Moved() override {
    const std::uint64_t unsent = socket_ ? socket_.Unsent() : 0;
    const std::uint64_t taken = total_ - std::min<std::uint64_t>(unsent, total_);
    if (taken <= taken_) return false;
    taken_ = taken;
    return true;
  }

 private:
  bool Refill() {
    sent_ = 0;
    filled_ = source_->Read(buffer_);
    return filled_ > 0;
  }

  std::unique_ptr<TransferSource> source_;
  std::vector<char> buffer_;
  std::size_t sent_ = 0;
  std::size_t filled_ = 0;
  std::uint64_t total_ = 0;
  std::uint64_t taken_ = 0;
};

class Receiving : public DataChannel {
 public:
  SocketReadiness Wants() const override { return {.readable = true}; }

  Outcome Pump() override {
    for (std::size_t moved = 0; moved < kTurnBytes;) {
      const StreamTurn turn = socket_.Receive(buffer_);
      if (turn.outcome == StreamTurn::Outcome::kBroken) return Outcome::kBroken;
      if (turn.outcome == StreamTurn::Outcome::kWouldWait) break;
      if (turn.outcome == StreamTurn::Outcome::kClosed) return Outcome::kEnded;
      moved += turn.bytes;
      total_ += turn.bytes;
      if (!Take(std::span(buffer_).first(turn.bytes))) return Outcome::kBroken;
    }
    return Outcome::kGoesOn;
  }

  // Some servers say their last word only then.
  void EndConnection() override { socket_.Close(); }

 protected:
  /// False when there is too much of it.
  virtual bool Take(std::span<const char> bytes) = 0;
  std::uint64_t Total() const { return total_; }

 private:
  std::vector<char> buffer_ = std::vector<char>(kBufferBytes);
  std::uint64_t total_ = 0;
};

class Download final : public Receiving {
 public:
  explicit Download(std::unique_ptr<TransferTarget> target) : target_(std::move(target)) {}

  bool Moved() override {
    const bool moved = Total() > noted_;
    noted_ = Total();
    return moved;
  }
  void Commit() override { target_->Commit(); }

 protected:
  bool Take(std::span<const char> bytes) override {
    target_->Write(bytes);
    return true;
  }

 private:
  std::unique_ptr<TransferTarget> target_;
  std::uint64_t noted_ = 0;
};

class Listing final : public Receiving {
 public:
  bool Moved() override {
    if (Total() - noted_ < kTrickleBytes) return false;
    noted_ = Total();
    return true;
  }

 protected:
  bool Take(std::span<const char>) override { return Total() <= kLongestListing; }

 private:
  std::uint64_t noted_ = 0;
};

}  // namespace

std::unique_ptr<DataChannel> MakeUpload(std::unique_ptr<TransferSource> source) {
  return std::make_unique<Upload>(std::move(source));
}

std::unique_ptr<DataChannel> MakeDownload(std::unique_ptr<TransferTarget> target) {
  return std::make_unique<Download>(std::move(target));
}

std::unique_ptr<DataChannel> MakeListing() {
  return std::make_unique<Listing>();
}

}  // namespace tarnvale
