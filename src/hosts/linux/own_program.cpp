#include "hosts/linux/own_program.h"

#include <unistd.h>

#include <array>
#include <climits>
#include <cstddef>
#include <cstdlib>

#include "hosts/linux/paths.h"
#include "hosts/linux/state_folder.h"

namespace tarnvale {

std::string OwnProgramFile() {
  std::array<char, PATH_MAX> file{};
  const ssize_t length = ::readlink("/proc/self/exe", file.data(), file.size());
  return length <= 0 ? std::string() : std::string(file.data(), static_cast<std::size_t>(length));
}

std::string OwnProgramFolder() {
  std::string folder(NativeFolderOf(OwnProgramFile()));
  if (folder.empty() || ::access((folder + "/installed").c_str(), F_OK) != 0) return folder;
  const char* data = std::getenv("XDG_DATA_HOME");
  const bool is_set = data != nullptr && data[0] == '/';
  return (is_set ? std::string(data) : HomeFolder() + "/.local/share") + "/tarnvale";
}

}  // namespace tarnvale
