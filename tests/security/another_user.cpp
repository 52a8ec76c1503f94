#include "tests/security/another_user.h"

#include <fcntl.h>
#include <grp.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>

namespace tarnvale::testing {

bool AnotherUser::Does(const std::function<bool()>& attack) {
  const pid_t child = ::fork();
  if (child == 0) {
    ::umask(0);
    ::_exit(BecomeHim() && attack() ? 0 : 1);
  }
  int status = 0;
  return child > 0 && ::waitpid(child, &status, 0) == child && WIFEXITED(status) &&
         WEXITSTATUS(status) == 0;
}

bool AnotherUser::BecomeHim() {
  return ::setgroups(0, nullptr) == 0 && ::setgid(kNumber) == 0 && ::setuid(kNumber) == 0;
}

bool AnotherUser::CanBePlayed() {
  static const bool can = Does([] { return true; });
  return can;
}

void AnotherUser::PlantLink(const std::string& leads_to, const std::string& at) {
  ASSERT_TRUE(Does([&] {
    ::unlink(at.c_str());
    return ::symlink(leads_to.c_str(), at.c_str()) == 0;
  })) << at;
}

void AnotherUser::PlantFile(const std::string& content, const std::string& at, mode_t mode) {
  ASSERT_TRUE(Does([&] {
    ::unlink(at.c_str());
    std::ofstream(at, std::ios::binary) << content;
    return ::chmod(at.c_str(), mode) == 0;
  })) << at;
}

bool AnotherUser::CanRead(const std::string& file) {
  return Does([&] { return ::open(file.c_str(), O_RDONLY | O_CLOEXEC) >= 0; });
}

void AttackedStage::SetUp() {
  if (!AnotherUser::CanBePlayed()) {
    GTEST_SKIP() << "a second user can only be played by root";
  }
  ASSERT_EQ(::chmod(folder.Path().c_str(), 0755), 0);
  std::filesystem::create_directories(OnDrive("Data/shared"));
  ASSERT_EQ(::chmod(OnDrive("Data/shared").c_str(), 0777), 0);
}

}  // namespace tarnvale::testing
