#include "codec/container_reader.h"

#include <algorithm>
#include <array>

#include "base/failure.h"
#include "codec/byte_order.h"

namespace tarnvale {
namespace {

constexpr std::size_t kAheadBytes = std::size_t{256} * 1024;

}  // namespace

ContainerReader::ContainerReader(OpenFiles& open_files, int number)
    : open_files_(open_files), number_(number), left_(open_files.Length(number)) {}

// `to` is no longer than what is left.
void ContainerReader::ReadBytes(std::span<std::uint8_t> to) {
  left_ -= static_cast<std::int64_t>(to.size());
  const std::size_t ready = std::min(to.size(), ahead_.Size() - taken_);
  const auto from = ahead_.View().subspan(taken_, ready);
  std::copy(from.begin(), from.end(), to.begin());
  taken_ += ready;
  to = to.subspan(ready);
  if (to.empty()) return;
  if (to.size() >= kAheadBytes) {
    if (open_files_.ReadInto(number_, to) < to.size()) throw ProgramError(kInputPastEnd);
    return;
  }
  ahead_.Renew(kAheadBytes, kAheadBytes);
  ahead_.Shrink(open_files_.ReadInto(number_, ahead_.Bytes()));
  if (ahead_.Size() < to.size()) throw ProgramError(kInputPastEnd);
  const auto rest = ahead_.View().first(to.size());
  std::copy(rest.begin(), rest.end(), to.begin());
  taken_ = to.size();
}

std::uint32_t ContainerReader::ReadNumber(std::size_t size_bytes) {
  std::array<std::uint8_t, 4> bytes{};
  CheckLength(static_cast<std::int32_t>(size_bytes));
  ReadBytes(std::span(bytes).first(size_bytes));
  return LoadLittle32(bytes.data());
}

std::size_t ContainerReader::CheckLength(std::int32_t length) const {
  if (length < 0) throw ProgramError(kInvalidCall);
  if (length > left_) throw ProgramError(kInputPastEnd);
  return static_cast<std::size_t>(length);
}

std::int32_t ContainerReader::ReadCount() {
  return static_cast<std::int32_t>(ReadNumber(4));
}

std::string ContainerReader::TakeName() {
  const std::size_t name_bytes = CheckLength(static_cast<std::int16_t>(ReadNumber(2)));
  ByteBuffer name(name_bytes);
  ReadBytes(name.Bytes());
  return std::string(name.Text());
}

std::string ContainerReader::ReadName() {
  std::string name = TakeName();
  PassBy(CheckLength(static_cast<std::int32_t>(ReadNumber(4))));
  return name;
}

void ContainerReader::PassBy(std::size_t count) {
  const std::size_t ready = std::min(count, ahead_.Size() - taken_);
  taken_ += ready;
  left_ -= static_cast<std::int64_t>(count);
  if (ready < count) open_files_.Seek(number_, open_files_.Length(number_) - left_);
}

void ContainerReader::ReadRecord(ContainerRecord& record) {
  record.name = TakeName();
  const std::size_t content_bytes = CheckLength(static_cast<std::int32_t>(ReadNumber(4)));
  record.content.Renew(content_bytes, content_bytes);
  ReadBytes(record.content.Bytes());
}

}  // namespace tarnvale
