#include "userdata/profile_paths.h"

namespace tarnvale {

// Required: a constant, wherever the system keeps its profiles.
Path ProfileRoot(const std::string& user) {
  return "C:\\Documents and Settings\\" + user;
}

ProfilePaths ProfilePathsOf(const std::string& user, const std::string& identity) {
  const Path root = ProfileRoot(user);
  return {.outlook_express = root + "\\Local Settings\\Application Data\\Identities\\" + identity +
                             "\\Microsoft\\Outlook Express",
          .firefox = root + "\\Application Data\\Mozilla\\Firefox",
          .opera = root + "\\Application Data\\Opera",
          .thunderbird = root + "\\Application Data\\Thunderbird",
          .favorites = root + "\\Favorites",
          .outlook = root + "\\Local Settings\\Application Data\\Microsoft\\Outlook",
          .cookies = root + "\\Cookies",
          .history = root + "\\Local Settings\\History",
          .temporary_files = root + "\\Local Settings\\Temporary Internet Files"};
}

}  // namespace tarnvale
