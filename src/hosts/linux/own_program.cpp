#include "hosts/linux/own_program.h"

#include <unistd.h>

#include <array>
#include <climits>
#include <cstddef>

namespace tarnvale {

std::string OwnProgramFile() {
  std::array<char, PATH_MAX> file{};
  const ssize_t length = ::readlink("/proc/self/exe", file.data(), file.size());
  return length <= 0 ? std::string() : std::string(file.data(), static_cast<std::size_t>(length));
}

}  // namespace tarnvale
