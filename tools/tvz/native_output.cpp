#include "tvz/native_output.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

#include "tvz/command_failure.h"

namespace tarnvale {

void WriteAll(int file, std::span<const std::uint8_t> bytes, const std::string& subject) {
  while (!bytes.empty()) {
    const ssize_t done = ::write(file, bytes.data(), bytes.size());
    if (done < 0 && errno == EINTR) continue;
    if (done < 0) throw CommandFailure(subject, ReasonOf(errno));
    bytes = bytes.subspan(static_cast<std::size_t>(done));
  }
}

void WriteText(int file, std::string_view text, const std::string& subject) {
  const void* const first = text.data();
  WriteAll(file, {static_cast<const std::uint8_t*>(first), text.size()}, subject);
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
