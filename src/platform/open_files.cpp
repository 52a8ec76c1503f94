#include "platform/open_files.h"

namespace tarnvale {

std::size_t OpenFiles::Copy(int from, int to, std::span<std::uint8_t> buffer) {
  const std::size_t count = ReadInto(from, buffer);
  const void* const first = buffer.data();
  Write(to, {static_cast<const char*>(first), count});
  return count;
}

}  // namespace tarnvale
