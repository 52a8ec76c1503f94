#include "tests/security/another_user.h"

#include <fcntl.h>
#include <grp.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <vector>

#include "hosts/linux/descriptor.h"

namespace tarnvale::testing {
namespace {

bool TakeHisNumber() {
  return ::setgroups(0, nullptr) == 0 && ::setgid(AnotherUser::kNumber) == 0 &&
         ::setuid(AnotherUser::kNumber) == 0;
}

// Enters a file into a list of the layer, here and for the programs that are started.
void List(const char* list, const std::string& native) {
  // Held, so that no other file gets its number when it has gone.
  static std::vector<Descriptor> held;
  held.emplace_back(::open(native.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
  struct stat info {};
  ASSERT_EQ(::fstat(held.back().Get(), &info), 0) << native;
  const char* const before = ::getenv(list);
  const std::string listed = (before == nullptr ? " " : before) + std::to_string(info.st_dev) +
                             ":" + std::to_string(info.st_ino) + " ";
  ASSERT_EQ(::setenv(list, listed.c_str(), 1), 0);
  ASSERT_EQ(::setenv("LD_PRELOAD", FAKED_OWNERS, 1), 0);
}

void GiveToHim(const std::string& native) {
  if (!AnotherUser::IsReal()) List("TARNVALE_OF_ANOTHER", native);
}

// What permissions say where no second user can try.
bool MayRead(const std::string& file) {
  for (std::size_t slash = file.find('/', 1); slash != std::string::npos;
       slash = file.find('/', slash + 1)) {
    if ((ModeOf(file.substr(0, slash)) & S_IXOTH) == 0) return false;
  }
  const bool is_his = StateOf(file).st_uid == AnotherUser::kNumber;
  return (ModeOf(file) & (is_his ? S_IRUSR : S_IROTH)) != 0;
}

}  // namespace

bool InAChild(const std::function<bool()>& part) {
  const pid_t child = ::fork();
  if (child == 0) {
    ::_exit(part() ? 0 : 1);
  }
  int status = 0;
  return child > 0 && ::waitpid(child, &status, 0) == child && WIFEXITED(status) &&
         WEXITSTATUS(status) == 0;
}

bool AnotherUser::IsReal() {
  static const bool is_real =
      ::getenv("TARNVALE_FAKE_OTHERS") == nullptr && InAChild(TakeHisNumber);
  return is_real;
}

bool AnotherUser::Does(const std::function<bool()>& attack) {
  return InAChild([&] {
    ::umask(0);
    return (!IsReal() || TakeHisNumber()) && attack();
  });
}

bool AnotherUser::BecomeHim() {
  if (IsReal()) return TakeHisNumber();
  return ::setenv("LD_PRELOAD", FAKED_OWNERS, 1) == 0 &&
         ::setenv("TARNVALE_AS_USER", std::to_string(kNumber).c_str(), 1) == 0;
}

void AnotherUser::PlantLink(const std::string& leads_to, const std::string& at) {
  ASSERT_TRUE(Does([&] {
    ::unlink(at.c_str());
    return ::symlink(leads_to.c_str(), at.c_str()) == 0;
  })) << at;
  GiveToHim(at);
}

void AnotherUser::PlantFile(const std::string& content, const std::string& at, mode_t mode) {
  ASSERT_TRUE(Does([&] {
    ::unlink(at.c_str());
    std::ofstream(at, std::ios::binary) << content;
    return ::chmod(at.c_str(), mode) == 0;
  })) << at;
  GiveToHim(at);
}

void AnotherUser::PlantFolder(const std::string& at, mode_t mode) {
  ASSERT_TRUE(Does([&] { return ::mkdir(at.c_str(), mode) == 0; })) << at;
  GiveToHim(at);
}

bool AnotherUser::CanRead(const std::string& file) {
  if (!IsReal()) return MayRead(file);
  return Does([&] { return ::open(file.c_str(), O_RDONLY | O_CLOEXEC) >= 0; });
}

void LayOnMedium(const std::string& native) {
  List("TARNVALE_ON_A_MEDIUM", native);
}

void AttackedStage::SetUp() {
  ASSERT_EQ(::chmod(folder.Path().c_str(), 0755), 0);
  std::filesystem::create_directories(OnDrive("Data/shared"));
  ASSERT_EQ(::chmod(OnDrive("Data/shared").c_str(), 0777), 0);
}

}  // namespace tarnvale::testing
