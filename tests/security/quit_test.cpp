// `Quit.exe` and processes that only look like an instance of this user.
#include <sched.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "tests/companions/quit_stage.h"
#include "tests/security/another_user.h"

namespace tarnvale::testing {
namespace {

constexpr const char* kTwoUsers = "only root can start processes of two users";

class QuitOfOneUserTest : public QuitStage {
 protected:
  void SetUp() override { ASSERT_EQ(::chmod(folder.Path().c_str(), 0755), 0); }
};

TEST_F(QuitOfOneUserTest, LeavesTheInstanceOfAnotherUser) {
  const std::string installed = Install("Program");
  const pid_t own = StartInstance(installed);
  ASSERT_NE(own, 0);
  EXPECT_EQ(Quit(installed, AnotherUser::BecomeHim), 0);
  EXPECT_TRUE(Lives(own));
}

TEST_F(QuitOfOneUserTest, RootEndsItsOwnInstanceOnly) {
  if (!AnotherUser::IsReal()) GTEST_SKIP() << kTwoUsers;
  const std::string installed = Install("Program");
  const pid_t his = StartInstance(installed, AnotherUser::BecomeHim);
  const pid_t own = StartInstance(installed);
  ASSERT_NE(his, 0);
  EXPECT_EQ(Quit(installed), 0);
  EXPECT_EQ(EndOf(own), SIGTERM);
  EXPECT_TRUE(Lives(his));
}

TEST_F(QuitOfOneUserTest, AnotherUserEndsHisOwnInstanceOnly) {
  if (!AnotherUser::IsReal()) GTEST_SKIP() << kTwoUsers;
  const std::string installed = Install("Program");
  const pid_t his = StartInstance(installed, AnotherUser::BecomeHim);
  const pid_t own = StartInstance(installed);
  ASSERT_NE(his, 0);
  EXPECT_EQ(Quit(installed, AnotherUser::BecomeHim), 0);
  EXPECT_EQ(EndOf(his), SIGTERM);
  EXPECT_TRUE(Lives(own));
}

/// Lets another file take a path's place for this process alone.
bool PutOver(const std::string& path, const std::string& other) {
  const bool apart = ::unshare(CLONE_NEWNS) == 0 || ::unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0;
  return apart && ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
         ::mount(other.c_str(), path.c_str(), nullptr, MS_BIND, nullptr) == 0;
}

using QuitAmongContainersTest = QuitStage;

TEST_F(QuitAmongContainersTest, AnotherFileWithTheSamePathIsAnotherProgram) {
  const std::string installed = Install("Program");
  const std::string another = folder / "another";
  std::filesystem::copy_file("/bin/sleep", another);
  const pid_t apart =
      StartInstance(installed, [&] { return PutOver(installed + "/tarnvale", another); });
  if (apart == 0) GTEST_SKIP() << "this machine lets nobody have mounts of his own";
  EXPECT_EQ(Quit(installed), 0);
  EXPECT_TRUE(Lives(apart));

  // Nor when that file has gone.
  std::filesystem::remove(another);
  EXPECT_EQ(Quit(installed), 0);
  EXPECT_TRUE(Lives(apart));
}

}  // namespace
}  // namespace tarnvale::testing
