#include "codec/container.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/failure.h"
#include "base/numbers.h"
#include "codec/bytes.h"
#include "codec/file_numbers.h"
#include "platform/file_text.h"

namespace tarnvale {
namespace {

constexpr std::size_t kPendingBytes = std::size_t{256} * 1024;

}  // namespace

ContainerWriter::ContainerWriter(OpenFiles& open_files, int number)
    : open_files_(open_files), number_(number), pending_(kPendingBytes) {}

ContainerWriter::~ContainerWriter() {
  PassedOver pass;
  pass.Step([this] { Flush(); });
}

// What a failed write was given is never written twice.
void ContainerWriter::Flush() {
  if (used_ == 0) return;
  WriteBytes(open_files_, number_, pending_.View().first(std::exchange(used_, 0)));
}

// Pieces are full, as a write that ends within a page costs more.
void ContainerWriter::Collect(std::span<const std::uint8_t> bytes) {
  while (!bytes.empty()) {
    if (used_ == 0 && bytes.size() > kPendingBytes) {
      const auto pieces = bytes.first(bytes.size() - bytes.size() % kPendingBytes);
      WriteBytes(open_files_, number_, pieces);
      bytes = bytes.subspan(pieces.size());
      continue;
    }
    const auto fitting = bytes.first(std::min(bytes.size(), kPendingBytes - used_));
    std::copy(fitting.begin(), fitting.end(), pending_.Data() + used_);
    used_ += fitting.size();
    bytes = bytes.subspan(fitting.size());
    if (used_ == kPendingBytes) Flush();
  }
}

void ContainerWriter::WriteNumber(std::uint32_t value, std::size_t size_bytes) {
  std::array<std::uint8_t, 4> bytes{};
  StoreLittle32(bytes.data(), value);
  Collect(std::span(bytes).first(size_bytes));
}

void ContainerWriter::WriteCount(std::int32_t records) {
  WriteNumber(static_cast<std::uint32_t>(records), 4);
}

void ContainerWriter::WriteName(std::string_view text) {
  const ByteBuffer name(TextToFile(open_files_, text));
  const std::int16_t length = ToInt16(static_cast<std::int64_t>(name.Size()));
  WriteNumber(static_cast<std::uint32_t>(length), 2);
  Collect(name.View());
}

void ContainerWriter::WriteContent(std::span<const std::uint8_t> content) {
  const std::int32_t length = ToInt32(static_cast<std::int64_t>(content.size()));
  WriteNumber(static_cast<std::uint32_t>(length), 4);
  Collect(content);
}

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

std::string ContainerReader::TakeName(std::size_t& name_bytes) {
  name_bytes = CheckLength(static_cast<std::int16_t>(ReadNumber(2)));
  ByteBuffer name(name_bytes);
  ReadBytes(name.Bytes());
  return TextFromFile(open_files_, name.Text());
}

std::string ContainerReader::ReadName() {
  std::size_t name_bytes = 0;
  std::string name = TakeName(name_bytes);
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
  record.name = TakeName(record.name_bytes);
  const std::size_t content_bytes = CheckLength(static_cast<std::int32_t>(ReadNumber(4)));
  record.content.Renew(content_bytes, content_bytes);
  ReadBytes(record.content.Bytes());
}

}  // namespace tarnvale
