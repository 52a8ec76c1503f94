#include "splitter/split_join.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>

#include "base/failure.h"
#include "base/numbers.h"

namespace tarnvale {
namespace {

constexpr int kFirstNumber = 1;
constexpr int kSecondNumber = 2;
// A split into this many segments or more is refused.
constexpr double kRatioLimit = 1000;

// A tail is moved in ever smaller steps, each with a buffer of its own.
constexpr std::array<std::size_t, 9> kStepSizes{12000, 6000, 3000, 1500, 500, 100, 25, 5, 1};

// The nine buffers, one behind the other.
std::array<std::uint8_t, 23131> buffers;

// The buffer for the next step; empty when no step fits.
std::span<std::uint8_t> BufferFor(std::int32_t remaining) {
  std::size_t offset = 0;
  for (const std::size_t size : kStepSizes) {
    if (remaining >= static_cast<std::int32_t>(size)) {
      return std::span(buffers).subspan(offset, size);
    }
    offset += size;
  }
  return {};
}

std::int16_t PercentOf(std::int32_t done, std::int32_t total) {
  if (total == 0) throw ProgramError(kDivisionByZero);
  const double percent = static_cast<double>(done) / total * 100;
  return ToInt16(static_cast<std::int64_t>(percent));
}

}  // namespace

// Looks from ever further in front for the next backslash.
LocatedName LocateName(const Path& path) {
  for (std::size_t i = 1; i < path.size(); ++i) {
    const auto found = path.find('\\', path.size() - i - 1);
    if (found != Path::npos) return {path.substr(0, found + 1), path.substr(found + 1)};
  }
  throw ProgramError(kInvalidCall);
}

Path PartName(const Path& file, std::int16_t number) {
  std::string digits = ToText(number);
  if (digits.size() < 3) digits.insert(0, 3 - digits.size(), '0');
  return file + "." + digits;
}

PartsCode modFHand::SplitFile(const Path& source, std::int32_t segment_bytes,
                              std::int16_t& part_count) {
  return Guarded([&] { return Split(source, segment_bytes, part_count); });
}

PartsCode modFHand::JoinFile(Path& part, std::int16_t& part_count) {
  return Guarded([&] { return Join(part, part_count); });
}

PartsCode modFHand::Guarded(const std::function<PartsCode()>& work) {
  try {
    return work();
  } catch (const ProgramError&) {
    // Required: all files of the program, also those of others, as the log of a
    // run that is going on.
    open_files_.CloseAll();
    return PartsCode::kFailed;
  }
}

PartsCode modFHand::Split(const Path& source, std::int32_t segment_bytes,
                          std::int16_t& part_count) {
  if (source.empty() || !IsListed(source)) return PartsCode::kNoFile;
  if (segment_bytes == 0) return PartsCode::kNothingToDo;
  const LocatedName located = LocateName(source);
  const std::int32_t length = ToInt32(files_.Length(source));
  if (static_cast<double>(length) / segment_bytes >= kRatioLimit) return PartsCode::kRefused;

  open_files_.OpenInput(kFirstNumber, source);
  Transfer transfer{.from = kFirstNumber, .to = kSecondNumber, .total = length};
  std::int16_t number = 0;
  do {
    number = Add16(number, 1);
    const Path target = screen_.target_folder.Get() + "\\" + located.name;
    MakeExactly(PartName(target, number));
    open_files_.OpenOwn(kSecondNumber, PartName(target, number));
    CopyStep(transfer, std::min(segment_bytes, Subtract32(length, transfer.done)));
    open_files_.Close(kSecondNumber);
    loop_.Yield();
  } while (transfer.done != length);
  open_files_.Close(kFirstNumber);
  part_count = number;
  screen_.spProg(0);
  return PartsCode::kDone;
}

// A part in another case is another file's, where the medium has room for both.
void modFHand::MakeExactly(const Path& part) {
  PassedOver pass;
  pass.Step([&] {
    const LocatedName located = LocateName(part);
    files_.OpenFolder(located.folder)->MakeFile(located.name, Rights::kOwner);
  });
}

PartsCode modFHand::Join(Path& part, std::int16_t& part_count) {
  if (part.empty() || !IsListed(part)) return PartsCode::kNoFile;
  const LocatedName located = LocateName(part);
  const Path output = located.folder + located.name.substr(0, located.name.rfind('.'));

  std::int16_t count = 0;
  std::int32_t total = 0;
  while (true) {
    const std::int16_t number = Add16(count, 1);
    const Path candidate = PartName(output, number);
    screen_.joined_file = output;
    // Required: parts behind a gap are left out without a word.
    if (!IsListed(candidate)) break;
    total = Add32(total, files_.Length(candidate));
    count = number;
  }
  if (count == 0) return PartsCode::kNothingToDo;
  if (IsListed(output)) return PartsCode::kRefused;

  open_files_.OpenOwn(kFirstNumber, output);
  Transfer transfer{.from = kSecondNumber, .to = kFirstNumber, .total = total};
  for (std::int16_t number = 1; number <= count; ++number) {
    part = PartName(output, number);
    open_files_.OpenInput(kSecondNumber, part);
    CopyStep(transfer, ToInt32(open_files_.Length(kSecondNumber)));
    open_files_.Close(kSecondNumber);
    loop_.Yield();
  }
  open_files_.Close(kFirstNumber);
  // Another join that was refused meanwhile has shown its own name.
  screen_.joined_file = output;
  part_count = count;
  screen_.spProg(0);
  return PartsCode::kDone;
}

// Moves the bytes of one part.
void modFHand::CopyStep(Transfer& transfer, std::int32_t remaining) {
  while (remaining != 0) {
    const std::span<std::uint8_t> buffer = BufferFor(remaining);
    if (buffer.empty()) {
      // Required: a negative rest never ends. The window stays alive meanwhile,
      // and the program can end.
      if (loop_.IsEnding()) throw ProgramError(kInvalidCall);
      loop_.WaitPass();
      continue;
    }
    // Chosen: a source that has become shorter is an error, so that no part is
    // filled up with bytes that the file never held.
    if (open_files_.Copy(transfer.from, transfer.to, buffer) != buffer.size()) {
      throw ProgramError(kInputPastEnd);
    }
    const auto moved = static_cast<std::int32_t>(buffer.size());
    remaining -= moved;
    transfer.done = Add32(transfer.done, moved);
    loop_.Yield();
    screen_.spProg(PercentOf(transfer.done, transfer.total));
    loop_.Yield();
  }
}

}  // namespace tarnvale
