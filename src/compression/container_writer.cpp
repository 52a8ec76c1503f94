#include "compression/container_writer.h"

#include <algorithm>

#include "base/numbers.h"
#include "compression/file_numbers.h"

namespace tarnvale {
namespace {

constexpr std::size_t kPendingBytes = std::size_t{256} * 1024;

}  // namespace

ContainerWriter::ContainerWriter(OpenFiles& open_files, int number)
    : open_files_(open_files), number_(number), pending_(kPendingBytes) {}

void ContainerWriter::Flush() {
  if (used_ == 0) return;
  WriteBytes(open_files_, number_, pending_.View().first(used_));
  used_ = 0;
}

// Room for at most kPendingBytes.
std::span<std::uint8_t> ContainerWriter::Reserve(std::size_t size_bytes) {
  if (size_bytes > pending_.Size() - used_) Flush();
  const auto room = pending_.Bytes().subspan(used_, size_bytes);
  used_ += size_bytes;
  return room;
}

void ContainerWriter::WriteNumber(std::uint32_t value, std::size_t size_bytes) {
  for (std::uint8_t& byte : Reserve(size_bytes)) {
    byte = static_cast<std::uint8_t>(value & 0xFFU);
    value >>= 8U;
  }
}

void ContainerWriter::WriteCount(std::int32_t records) {
  WriteNumber(static_cast<std::uint32_t>(records), 4);
}

void ContainerWriter::WriteName(std::string_view name) {
  const std::int16_t length = ToInt16(static_cast<std::int64_t>(name.size()));
  WriteNumber(static_cast<std::uint32_t>(length), 2);
  std::copy(name.begin(), name.end(), Reserve(name.size()).begin());
}

void ContainerWriter::WriteContent(int source_number) {
  const std::int32_t length = ToInt32(open_files_.Length(source_number));
  WriteNumber(static_cast<std::uint32_t>(length), 4);
  const auto size = static_cast<std::size_t>(length);
  const auto read = [&](std::span<std::uint8_t> to) {
    const std::size_t got = open_files_.ReadInto(source_number, to);
    std::fill(to.begin() + static_cast<std::ptrdiff_t>(got), to.end(), std::uint8_t{0});
  };
  if (size <= kPendingBytes) {
    read(Reserve(size));
    return;
  }
  Flush();
  ByteBuffer whole(size);
  read(whole.Bytes());
  WriteBytes(open_files_, number_, whole.View());
}

}  // namespace tarnvale
