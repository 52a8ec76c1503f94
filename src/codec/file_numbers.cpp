#include "codec/file_numbers.h"

#include <algorithm>

#include "base/failure.h"
#include "base/numbers.h"

namespace tarnvale {

int FreeFileNumber(OpenFiles& open_files) {
  constexpr int kFirst = 256;
  constexpr int kLast = 511;
  for (int number = kFirst; number <= kLast; ++number) {
    if (!open_files.IsOpen(number)) return number;
  }
  throw ProgramError(kTooManyFiles);
}

int OpenUnderFreeNumber(OpenFiles& open_files, const Path& file) {
  const int number = FreeFileNumber(open_files);
  open_files.OpenBinary(number, file);
  return number;
}

void ReadWholeAndClose(OpenFiles& open_files, int number, ByteBuffer& bytes) {
  const auto size = static_cast<std::size_t>(ToInt32(open_files.Length(number)));
  bytes.Renew(size, size);
  const auto rest = bytes.Bytes().subspan(open_files.ReadInto(number, bytes.Bytes()));
  std::fill(rest.begin(), rest.end(), std::uint8_t{0});
  open_files.Close(number);
}

void WriteBytes(OpenFiles& open_files, int number, std::span<const std::uint8_t> bytes) {
  const void* const first = bytes.data();
  open_files.Write(number, {static_cast<const char*>(first), bytes.size()});
}

}  // namespace tarnvale
