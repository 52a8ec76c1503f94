#include "tvz/native_output.h"

#include <algorithm>
#include <cerrno>
#include <system_error>

#include "platform/linux/descriptor.h"
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

std::string Shown(std::string_view text) {
  std::string shown(text);
  const auto is_control = [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x20 || byte == 0x7F;
  };
  std::replace_if(shown.begin(), shown.end(), is_control, '?');
  return shown;
}

}  // namespace tarnvale
