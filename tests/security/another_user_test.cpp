#include "tests/security/another_user.h"

#include <unistd.h>

namespace tarnvale::testing {
namespace {

using AnotherUserTest = AttackedStage;

TEST_F(AnotherUserTest, OwnsWhatHePlants) {
  AnotherUser::PlantLink("/etc/passwd", OnDrive("Data/shared/link"));
  AnotherUser::PlantFile("his", OnDrive("Data/shared/file"));
  EXPECT_EQ(StateOf(OnDrive("Data/shared/link")).st_uid, AnotherUser::kNumber);
  EXPECT_EQ(StateOf(OnDrive("Data/shared/file")).st_uid, AnotherUser::kNumber);
}

TEST_F(AnotherUserTest, ReadsWhatPermissionsLetHimRead) {
  WriteNative(OnDrive("Data/shared/open"), "x");
  WriteNative(OnDrive("Data/shared/closed"), "x");
  ASSERT_EQ(::chmod(OnDrive("Data/shared/open").c_str(), 0644), 0);
  ASSERT_EQ(::chmod(OnDrive("Data/shared/closed").c_str(), 0600), 0);
  EXPECT_TRUE(AnotherUser::CanRead(OnDrive("Data/shared/open")));
  EXPECT_FALSE(AnotherUser::CanRead(OnDrive("Data/shared/closed")));
}

}  // namespace
}  // namespace tarnvale::testing
