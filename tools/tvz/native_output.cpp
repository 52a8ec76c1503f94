#include "tvz/native_output.h"

#include <cerrno>
#include <system_error>

#include "hosts/linux/descriptor.h"
#include "tvz/command_failure.h"

namespace tarnvale {

void WriteBytes(int file, std::span<const std::uint8_t> bytes, const std::string& subject) {
  const void* const first = bytes.data();
  WriteText(file, {static_cast<const char*>(first), bytes.size()}, subject);
}

void WriteText(int file, std::string_view text, const std::string& subject) {
  if (!WriteAll(file, text)) throw CommandFailure(subject, ReasonOf(errno));
}

std::string ReasonOf(int error) {
  return std::generic_category().message(error);
}

}  // namespace tarnvale
