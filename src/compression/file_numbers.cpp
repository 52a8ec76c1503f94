#include "compression/file_numbers.h"

#include "base/failure.h"

namespace tarnvale {

int FreeFileNumber(OpenFiles& open_files) {
  constexpr int kFirst = 256;
  constexpr int kLast = 511;
  for (int number = kFirst; number <= kLast; ++number) {
    if (!open_files.IsOpen(number)) return number;
  }
  throw ProgramError(kTooManyFiles);
}

void WriteBytes(OpenFiles& open_files, int number, std::span<const std::uint8_t> bytes) {
  const void* const first = bytes.data();
  open_files.Write(number, {static_cast<const char*>(first), bytes.size()});
}

}  // namespace tarnvale
