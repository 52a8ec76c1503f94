// Flushing a medium that takes its time. The program that flushes is a script here,
// which waits for the test's word.
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <string>
#include <thread>

#include "hosts/linux/instance_lock.h"
#include "tests/hosts/contract/variable_for.h"
#include "tests/hosts/linux/call_hooks.h"
#include "tests/hosts/linux/linux_stage.h"
#include "tests/support/raised.h"

namespace tarnvale::testing {
namespace {

class LinuxMediumFlushTest : public LinuxStage {
 protected:
  LinuxMediumFlushTest() {
    std::filesystem::create_directories(folder / "bin");
    WriteNative(folder / "bin/sync",
                "#!/bin/sh\n"
                "cd -P . && { pwd; echo \"$@\"; ls -l /proc/$$/fd; } >'" +
                    (folder / "writing") + "'\n" + "echo $$ >>'" + (folder / "writing") +
                    "'\nmv '" + (folder / "writing") + "' '" + (folder / "began") +
                    "'\nwhile [ ! -e '" + (folder / "done") + "' ]; do [ -d '" + (folder / "bin") +
                    "' ] || exit 0; sleep 0.01; done\n. '" + (folder / "done") + "'\n");
    std::filesystem::permissions(folder / "bin/sync", std::filesystem::perms::owner_all);
  }
  // The script sees it, and the folder goes.
  ~LinuxMediumFlushTest() override { LetGo(); }

  void LetGo(const std::string& last_word = "exit 0") {
    WriteNative(folder / "word", last_word);
    std::filesystem::rename(folder / "word", folder / "done");
  }
  template <class Condition>
  static bool WaitFor(Condition&& condition) {
    constexpr int kPatience = 2000;
    for (int i = 0; i < kPatience; ++i) {
      if (condition()) return true;
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
  }
  bool WaitUntilItFlushes() {
    return WaitFor([this] { return std::filesystem::exists(folder / "began"); });
  }
  /// What the script said about itself.
  std::string Began() const { return ReadNative(folder / "began"); }

  std::string search_path_ = (folder / "bin") + ":/usr/bin:/bin";
  VariableFor variable_{"PATH", search_path_.c_str()};
  LinuxHost host{surroundings};
};

TEST_F(LinuxMediumFlushTest, ASlowMediumDoesNotStopTheCaller) {
  const auto flush = host.files.BeginFlush("C:\\Data");
  ASSERT_TRUE(WaitUntilItFlushes());
  EXPECT_FALSE(flush->IsDone());
  LetGo();
  EXPECT_TRUE(WaitFor([&] { return flush->IsDone(); }));
  EXPECT_TRUE(flush->IsDone()) << "and stays so";
  EXPECT_TRUE(Began().starts_with(OnDrive("Data") + "\n-f .\n")) << Began();
}

TEST_F(LinuxMediumFlushTest, AMediumThatFailsRaises57AtTheEnd) {
  SyncHook medium({});
  medium.Refuse(EIO);
  const auto flush = host.files.BeginFlush("C:\\Data");
  EXPECT_FALSE(flush->IsDone());
  LetGo("exit 1");
  EXPECT_EQ(RaisedBy([&] { WaitFor([&] { return flush->IsDone(); }); }), 57);
  EXPECT_EQ(RaisedBy([&] { flush->IsDone(); }), 57) << "and stays so";
}

// As a small one does that flushes all media or none.
TEST_F(LinuxMediumFlushTest, AProgramThatKnowsNoSingleMediumDoesNotMakeItFail) {
  const auto flush = host.files.BeginFlush("C:\\Data");
  LetGo("echo \"sync: invalid option -- 'f'\"; exit 1");
  EXPECT_TRUE(WaitFor([&] { return flush->IsDone(); }));
}

TEST_F(LinuxMediumFlushTest, TheHostMayEndBeforeItsMediumHasEverything) {
  {
    LinuxHost other(surroundings);
    const auto flush = other.files.BeginFlush("C:\\Data");
    ASSERT_TRUE(WaitUntilItFlushes());
  }
  LetGo();
  EXPECT_GT(::waitpid(-1, nullptr, 0), 0) << "nobody else does";
}

TEST_F(LinuxMediumFlushTest, WithoutTheProgramForItTheSystemFlushesAllTheSame) {
  const VariableFor none("PATH", folder.Path().c_str());
  const auto flush = host.files.BeginFlush("C:\\Data");
  EXPECT_TRUE(WaitFor([&] { return flush->IsDone(); }));
}

// Whatever a medium does, the process goes, and with it all that it held.
TEST_F(LinuxMediumFlushTest, AProcessThatIsEndedMeanwhileLeavesNothingBehind) {
  const std::string lock = folder / "lock";
  const pid_t program = ::fork();
  if (program == 0) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    ::close_range(STDOUT_FILENO, STDERR_FILENO, 0);
    InstanceLock first(lock);
    first.HasPredecessor();
    const auto flush = host.files.BeginFlush("C:\\Data");
    for (;;) ::pause();
  }
  ASSERT_TRUE(WaitUntilItFlushes());
  EXPECT_TRUE(InstanceLock(lock).HasPredecessor());
  ASSERT_EQ(::kill(program, SIGKILL), 0);
  ASSERT_EQ(::waitpid(program, nullptr, 0), program);
  EXPECT_FALSE(InstanceLock(lock).HasPredecessor());
  const std::string began = Began();
  EXPECT_EQ(began.find(lock), std::string::npos) << began;
  const pid_t flushing = std::stoi(began.substr(began.rfind('\n', began.size() - 2) + 1));
  EXPECT_EQ(::kill(flushing, 0), 0) << "it goes on";
}

}  // namespace
}  // namespace tarnvale::testing
