#include "userdata/profile_paths.h"

#include <gtest/gtest.h>

namespace tarnvale::testing {
namespace {

TEST(ProfilePathsTest, AreConstantsBelowTheUsersProfile) {
  const ProfilePaths paths = ProfilePathsOf("ann", "{1A2B}");
  EXPECT_EQ(
      paths.outlook_express,
      R"(C:\Documents and Settings\ann\Local Settings\Application Data\Identities\{1A2B}\Microsoft\Outlook Express)");
  EXPECT_EQ(paths.firefox, R"(C:\Documents and Settings\ann\Application Data\Mozilla\Firefox)");
  EXPECT_EQ(paths.opera, R"(C:\Documents and Settings\ann\Application Data\Opera)");
  EXPECT_EQ(paths.thunderbird, R"(C:\Documents and Settings\ann\Application Data\Thunderbird)");
  EXPECT_EQ(paths.favorites, R"(C:\Documents and Settings\ann\Favorites)");
  EXPECT_EQ(paths.outlook,
            R"(C:\Documents and Settings\ann\Local Settings\Application Data\Microsoft\Outlook)");
  EXPECT_EQ(paths.cookies, R"(C:\Documents and Settings\ann\Cookies)");
  EXPECT_EQ(paths.history, R"(C:\Documents and Settings\ann\Local Settings\History)");
  EXPECT_EQ(paths.temporary_files,
            R"(C:\Documents and Settings\ann\Local Settings\Temporary Internet Files)");
}

TEST(ProfilePathsTest, AnEmptyUserLeavesTwoBackslashesAtTheJoin) {
  EXPECT_EQ(ProfileRoot(""), "C:\\Documents and Settings\\");
  EXPECT_EQ(ProfilePathsOf("", "x").favorites, R"(C:\Documents and Settings\\Favorites)");
}

TEST(ProfilePathsTest, AnEmptyIdentityLeavesTwoBackslashesInItsPlace) {
  EXPECT_EQ(
      ProfilePathsOf("ann", "").outlook_express,
      R"(C:\Documents and Settings\ann\Local Settings\Application Data\Identities\\Microsoft\Outlook Express)");
}

}  // namespace
}  // namespace tarnvale::testing
