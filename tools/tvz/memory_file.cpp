#include "tvz/memory_file.h"

#include <algorithm>

#include "base/failure.h"

namespace tarnvale {
namespace {

[[noreturn]] void Refuse() {
  throw ProgramError(kBadFileMode);
}

}  // namespace

void MemoryFile::OpenInput(int, const Path&) {
  Refuse();
}

void MemoryFile::OpenOutput(int, const Path&, Rights) {
  Refuse();
}

void MemoryFile::OpenBinary(int, const Path&) {
  Refuse();
}

void MemoryFile::OpenOwn(int, const Path&) {
  Refuse();
}

void MemoryFile::Write(int, std::string_view) {
  Refuse();
}

std::string MemoryFile::InputItem(int) {
  Refuse();
}

std::string MemoryFile::Read(int, std::size_t) {
  Refuse();
}

void MemoryFile::Seek(int, std::int64_t) {
  Refuse();
}

std::size_t MemoryFile::ReadInto(int number, std::span<std::uint8_t> bytes) {
  if (!IsOpen(number)) throw ProgramError(kBadFileNumber);
  const auto part = bytes_.subspan(position_, std::min(bytes.size(), bytes_.size() - position_));
  std::copy(part.begin(), part.end(), bytes.begin());
  position_ += part.size();
  return part.size();
}

std::int64_t MemoryFile::Length(int number) {
  if (!IsOpen(number)) throw ProgramError(kBadFileNumber);
  return static_cast<std::int64_t>(bytes_.size());
}

}  // namespace tarnvale
