#include "platform/open_file_table.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/failure.h"
#include "platform/file_text.h"
#include "platform/input_item.h"

namespace tarnvale {
namespace {

constexpr int kHighestNumber = 511;

bool SameByte(std::uint8_t byte, char c) {
  return byte == static_cast<std::uint8_t>(c);
}

}  // namespace

void OpenFileTable::Open(int number, Use use, const Path& file, Rights rights) {
  if (number < 1 || number > kHighestNumber) throw ProgramError(kBadFileNumber);
  if (IsOpen(number)) throw ProgramError(kFileAlreadyOpen);
  open_.emplace(number, OpenFile{OpenNative(use, file, rights), use});
}

void OpenFileTable::OpenInput(int number, const Path& file) {
  Open(number, Use::kInput, file);
}

void OpenFileTable::OpenOutput(int number, const Path& file, Rights rights) {
  Open(number, Use::kOutput, file, rights);
}

void OpenFileTable::OpenBinary(int number, const Path& file) {
  Open(number, Use::kBinary, file);
}

void OpenFileTable::OpenOwn(int number, const Path& file) {
  Open(number, Use::kOwn, file);
}

OpenFileTable::OpenFile& OpenFileTable::Find(int number) {
  const auto open = open_.find(number);
  if (open == open_.end()) throw ProgramError(kBadFileNumber);
  return open->second;
}

OpenFileTable::OpenFile& OpenFileTable::RequireReadable(int number) {
  OpenFile& open = Find(number);
  if (open.use == Use::kOutput) throw ProgramError(kBadFileMode);
  return open;
}

OpenFileTable::OpenFile& OpenFileTable::RequireWritable(int number) {
  OpenFile& open = Find(number);
  if (open.use == Use::kInput) throw ProgramError(kBadFileMode);
  if (!open.opened.is_writable) throw ProgramError(kPathFileAccess);
  return open;
}

void OpenFileTable::Write(int number, std::string_view bytes) {
  OpenFile& open = RequireWritable(number);
  Settle(number);
  open.opened.file->WriteAt(open.position, bytes);
  open.position += static_cast<std::int64_t>(bytes.size());
}

std::string OpenFileTable::InputItem(int number) {
  OpenFile& open = Find(number);
  if (open.use != Use::kInput) throw ProgramError(kBadFileMode);
  Settle(number);
  std::array<std::uint8_t, 4096> chunk{};
  std::array<std::uint8_t, kUtf8Mark.size()> mark{};
  const bool begins_with_mark = open.position == 0 &&
                                open.opened.file->ReadAt(0, mark) == mark.size() &&
                                std::equal(mark.begin(), mark.end(), kUtf8Mark.begin(), SameByte);
  if (begins_with_mark) open.position = mark.size();
  InputItemScanner scanner;
  bool more = true;
  while (more) {
    const std::size_t count = open.opened.file->ReadAt(open.position, chunk);
    if (count == 0) break;
    std::size_t used = 0;
    while (more && used < count) more = scanner.Feed(static_cast<char>(chunk.at(used++)));
    open.position += static_cast<std::int64_t>(used);
  }
  if (!scanner.HasBegun()) throw ProgramError(kInputPastEnd);
  std::array<std::uint8_t, 1> next{};
  if (scanner.EndedInReturn() && open.opened.file->ReadAt(open.position, next) == 1 &&
      next[0] == '\n') {
    ++open.position;
  }
  return begins_with_mark ? scanner.Item() : TextFromFile(*this, scanner.Item());
}

std::string OpenFileTable::Read(int number, std::size_t count) {
  constexpr std::size_t kStep = std::size_t{1} << 20U;
  std::string bytes;
  while (true) {
    const std::size_t before = bytes.size();
    const std::size_t wanted = std::min(count - before, kStep);
    bytes.resize(before + wanted);
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): bytes as bytes
    auto* const place = reinterpret_cast<std::uint8_t*>(bytes.data() + before);
    const std::size_t got = ReadInto(number, {place, wanted});
    bytes.resize(before + got);
    if (got < wanted || bytes.size() == count) return bytes;
  }
}

std::size_t OpenFileTable::ReadInto(int number, std::span<std::uint8_t> bytes) {
  OpenFile& open = RequireReadable(number);
  Settle(number);
  const std::size_t got = open.opened.file->ReadAt(open.position, bytes);
  open.position += static_cast<std::int64_t>(got);
  return got;
}

std::int64_t OpenFileTable::Length(int number) {
  OpenFile& open = Find(number);
  Settle(number);
  return open.opened.file->Length();
}

void OpenFileTable::Seek(int number, std::int64_t position) {
  OpenFile& open = Find(number);
  if (position < 0) throw ProgramError(kInvalidCall);
  Settle(number);
  open.position = position;
}

void OpenFileTable::Close(int number) {
  if (!IsOpen(number)) return;
  PassedOver pass;
  pass.Step([&] { Settle(number); });
  pass.Step([&] { open_.extract(number).mapped().opened.file->Close(); });
  if (pass.StandingError()) throw ProgramError(*pass.StandingError());
}

void OpenFileTable::CloseAll() {
  PassedOver pass;
  for (auto& [number, open] : open_) pass.Step([this, n = number] { Settle(n); });
  for (auto& [number, open] : open_) pass.Step([&file = open.opened.file] { file->Close(); });
  open_.clear();
}

}  // namespace tarnvale
