// Where applications keep the user's data, by the classic layout of folders.
#pragma once

#include <string>

#include "platform/files.h"

namespace tarnvale {

/// The folder of a user's profile, without a backslash at its end unless `user`
/// is empty.
Path ProfileRoot(const std::string& user);

/// Paths below the profile of a user, made of constants. Nothing is looked for
/// on the medium.
struct ProfilePaths {
  Path outlook_express;  ///< the mail store of one identity
  Path firefox;
  Path opera;
  Path thunderbird;
  Path favorites;
  Path outlook;
  Path cookies;
  Path history;
  Path temporary_files;
  bool operator==(const ProfilePaths&) const = default;
};
ProfilePaths ProfilePathsOf(const std::string& user, const std::string& identity);

}  // namespace tarnvale
