#include "hosts/linux/state_folder.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

namespace tarnvale {

std::string HomeFolder() {
  const char* home = std::getenv("HOME");
  if (home == nullptr || home[0] != '/') {
    const passwd* user = ::getpwuid(::getuid());
    home = user != nullptr ? user->pw_dir : "/";
  }
  return home;
}

std::string DefaultStateFolder() {
  // A relative value is to be ignored, says the directory standard.
  const char* state = std::getenv("XDG_STATE_HOME");
  if (state != nullptr && state[0] == '/') return std::string(state) + "/tarnvale";
  return HomeFolder() + "/.local/state/tarnvale";
}

bool MakeStateFolder(const std::string& folder) {
  if (folder.empty()) return false;
  if (::mkdir(folder.c_str(), 0700) == 0 || errno == EEXIST) return true;
  if (errno != ENOENT) return false;
  const auto slash = folder.rfind('/');
  if (slash == std::string::npos || slash == 0) return false;
  if (!MakeStateFolder(folder.substr(0, slash))) return false;
  return ::mkdir(folder.c_str(), 0700) == 0 || errno == EEXIST;
}

}  // namespace tarnvale
