#include "hosts/linux/linux_application_folders.h"

#include <sys/stat.h>

#include <cstdlib>
#include <utility>
#include <vector>

#include "hosts/linux/state_folder.h"

namespace tarnvale {
namespace {

bool IsFolder(const std::string& native) {
  struct stat info {};
  return ::stat(native.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

bool IsLink(const std::string& native) {
  struct stat info {};
  return ::lstat(native.c_str(), &info) == 0 && S_ISLNK(info.st_mode);
}

// The place of the package first, then those of the sandboxes.
std::vector<std::string> PlacesOf(Application application, const UserFolders& user) {
  switch (application) {
    case Application::kFirefox:
      return {user.home + "/.mozilla/firefox", user.config + "/mozilla/firefox",
              user.home + "/snap/firefox/common/.mozilla/firefox",
              user.home + "/.var/app/org.mozilla.firefox/.mozilla/firefox",
              user.home + "/.var/app/org.mozilla.firefox/config/mozilla/firefox"};
    case Application::kOpera:
      return {user.config + "/opera", user.home + "/snap/opera/current/.config/opera",
              user.home + "/.var/app/com.opera.Opera/config/opera"};
    case Application::kThunderbird:
      return {user.home + "/.thunderbird", user.home + "/snap/thunderbird/common/.thunderbird",
              user.home + "/.var/app/org.mozilla.Thunderbird/.thunderbird",
              user.home + "/.var/app/org.mozilla.thunderbird/.thunderbird",
              user.home + "/.var/app/net.thunderbird.Thunderbird/.thunderbird"};
  }
  return {};
}

}  // namespace

UserFolders UserFolders::Present() {
  UserFolders present;
  present.home = HomeFolder();
  // A relative value is to be ignored, says the directory standard.
  const char* config = std::getenv("XDG_CONFIG_HOME");
  present.config = config != nullptr && config[0] == '/' ? config : present.home + "/.config";
  return present;
}

LinuxApplicationFolders::LinuxApplicationFolders(DrivePaths drive, UserFolders folders)
    : drive_(std::move(drive)), folders_(std::move(folders)) {}

std::optional<Path> LinuxApplicationFolders::DataFolder(Application application) {
  const std::vector<std::string> places = PlacesOf(application, folders_);
  for (const std::string& place : places) {
    if (!IsFolder(place)) continue;
    // With the backslash a copy into it follows the link, as one out of it does.
    return drive_.FromNative(place) + (IsLink(place) ? "\\" : "");
  }
  return drive_.FromNative(places.front());
}

}  // namespace tarnvale
