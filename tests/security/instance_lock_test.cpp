// The lock of instances, which somebody else would like to hold.
#include <fcntl.h>
#include <sys/stat.h>

#include "base/stable_hash.h"
#include "hosts/linux/linux_processes.h"
#include "tests/hosts/contract/variable_for.h"
#include "tests/security/another_user.h"

namespace tarnvale::testing {
namespace {

using InstanceLockAttackTest = AttackedStage;

TEST_F(InstanceLockAttackTest, AnotherUserDoesNotPassForAnInstance) {
  const std::string shared = OnDrive("Data/shared");
  const VariableFor runtime("XDG_RUNTIME_DIR", shared.c_str());
  const VariableFor state("XDG_STATE_HOME", (folder / "state").c_str());
  surroundings.processes = ProcessSurroundings::Present();
  const std::string program =
      std::to_string(::geteuid()) + '\n' + surroundings.processes.program_file;
  // What is opened before counts, and he may well hand it on to others.
  const std::string file = shared + "/tarnvale-" + StableHash(program) + ".lock";
  AnotherUser::PlantFile("", file);
  const int his = ::open(file.c_str(), O_RDWR | O_CLOEXEC);
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_start = 1;
  lock.l_len = 1;
  ASSERT_EQ(::fcntl(his, F_OFD_SETLK, &lock), 0);

  LinuxHost host(surroundings);
  EXPECT_FALSE(host.processes.PreviousInstance());
  ::close(his);
}

TEST_F(InstanceLockAttackTest, AFolderOfAnotherUserIsNoPlaceForIt) {
  const std::string his = OnDrive("Data/shared/his");
  AnotherUser::PlantFolder(his, 0700);
  const VariableFor runtime("XDG_RUNTIME_DIR", his.c_str());
  EXPECT_NE(ProcessSurroundings::Present().lock_folder, his);
}

// As for root with the user's own HOME, the other way round.
TEST_F(InstanceLockAttackTest, AStateFolderOfAnotherUserIsNoPlaceForItEither) {
  const std::string his = OnDrive("Data/shared/his");
  AnotherUser::PlantFolder(his, 0777);
  surroundings.processes.lock_folder = his;
  LinuxHost first(surroundings);
  LinuxHost second(surroundings);
  EXPECT_FALSE(first.processes.PreviousInstance());
  EXPECT_FALSE(second.processes.PreviousInstance());
  EXPECT_TRUE(std::filesystem::is_empty(his));
  EXPECT_EQ(ModeOf(his), 0777U);
}

TEST_F(InstanceLockAttackTest, AnOwnStateFolderIsClosedToOthers) {
  const std::string own = OnDrive("Data/shared/own");
  std::filesystem::create_directory(own);
  ASSERT_EQ(::chmod(own.c_str(), 0777), 0);
  surroundings.processes.lock_folder = own;
  LinuxHost first(surroundings);
  LinuxHost second(surroundings);
  EXPECT_FALSE(first.processes.PreviousInstance());
  EXPECT_TRUE(second.processes.PreviousInstance());
  EXPECT_EQ(ModeOf(own), 0700U);
}

}  // namespace
}  // namespace tarnvale::testing
