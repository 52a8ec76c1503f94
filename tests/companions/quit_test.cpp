#include "tests/companions/quit_stage.h"

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <filesystem>

namespace tarnvale::testing {
namespace {

namespace fs = std::filesystem;

using QuitTest = QuitStage;

bool IgnoreRequests() {
  return ::signal(SIGTERM, SIG_IGN) != SIG_ERR;
}

/// Makes a system call fail for this process as on a system without it.
bool DoWithout(std::uint32_t call) {
  std::array<sock_filter, 4> program{{
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, call, 0, 1),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | ENOSYS),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
  }};
  const sock_fprog filter{program.size(), program.data()};
  return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
         ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) == 0;
}

TEST_F(QuitTest, EveryInstanceOfTheProgramBesideItGetsARequestToEnd) {
  const std::string installed = Install("Program");
  const pid_t first = StartInstance(installed);
  const pid_t second = StartInstance(installed);
  EXPECT_EQ(Quit(installed), 0);
  EXPECT_EQ(EndOf(first), SIGTERM);
  EXPECT_EQ(EndOf(second), SIGTERM);
}

TEST_F(QuitTest, WithoutAnInstanceAllIsWell) {
  EXPECT_EQ(Quit(Install("Program")), 0);
}

TEST_F(QuitTest, AnInstanceThatDoesNotEndIsKilledWhenItsPatienceIsOver) {
  const std::string installed = Install("Program");
  const pid_t deaf = StartInstance(installed, IgnoreRequests);
  EXPECT_EQ(Quit(installed), 0);
  EXPECT_EQ(EndOf(deaf), SIGKILL);
}

TEST_F(QuitTest, ACopyInAnotherFolderLivesOn) {
  const std::string installed = Install("Program");
  const pid_t other = StartInstance(Install("Other"));
  const pid_t own = StartInstance(installed);
  EXPECT_EQ(Quit(installed), 0);
  EXPECT_EQ(EndOf(own), SIGTERM);
  EXPECT_TRUE(Lives(other));
}

TEST_F(QuitTest, AnotherProgramOfTheFolderLivesOn) {
  const std::string installed = Install("Program");
  fs::create_directories(installed + "/Tools");
  fs::copy_file("/bin/sleep", installed + "/Tools/tarnvale");
  const pid_t other = StartInstance(installed + "/Tools");
  EXPECT_EQ(Quit(installed), 0);
  EXPECT_TRUE(Lives(other));
}

TEST_F(QuitTest, AnInstanceIsKnownAfterItsFileWasReplaced) {
  const std::string installed = Install("Program");
  const pid_t earlier = StartInstance(installed);
  fs::copy_file("/bin/sleep", installed + "/new");
  fs::rename(installed + "/new", installed + "/tarnvale");
  const pid_t later = StartInstance(installed);
  EXPECT_EQ(Quit(installed), 0);
  EXPECT_EQ(EndOf(earlier), SIGTERM);
  EXPECT_EQ(EndOf(later), SIGTERM);
}

TEST_F(QuitTest, AnInstanceIsKnownAfterItsFolderWasMoved) {
  const pid_t instance = StartInstance(Install("Program"));
  fs::rename(folder / "Program", folder / "Moved");
  EXPECT_EQ(Quit(folder / "Moved"), 0);
  EXPECT_EQ(EndOf(instance), SIGTERM);
}

TEST_F(QuitTest, AnInstanceThatIsLeftIsAFailure) {
  const std::string installed = Install("Program");
  const pid_t instance = StartInstance(installed);
  // Which process a number means is sure only while that process is held.
  EXPECT_EQ(Quit(installed, [] { return DoWithout(SYS_pidfd_open); }), 1);
  EXPECT_TRUE(Lives(instance));
}

}  // namespace
}  // namespace tarnvale::testing
