#include "codec/container_writer.h"

#include <algorithm>
#include <utility>

#include "base/failure.h"
#include "base/numbers.h"
#include "codec/file_numbers.h"

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

void ContainerWriter::WriteContent(std::span<const std::uint8_t> content) {
  const std::int32_t length = ToInt32(static_cast<std::int64_t>(content.size()));
  WriteNumber(static_cast<std::uint32_t>(length), 4);
  if (content.size() <= kPendingBytes) {
    std::copy(content.begin(), content.end(), Reserve(content.size()).begin());
    return;
  }
  Flush();
  WriteBytes(open_files_, number_, content);
}

}  // namespace tarnvale
