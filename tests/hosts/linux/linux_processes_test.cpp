#include "hosts/linux/linux_processes.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <memory>

#include "tests/hosts/contract/variable_for.h"
#include "tests/hosts/linux/linux_stage.h"
#include "tests/support/raised.h"

namespace tarnvale::testing {
namespace {

// Programs report through a pipe with a name: reading it waits for
// them.
class LinuxProcessesTest : public LinuxStage {
 protected:
  LinuxProcessesTest() {
    EXPECT_EQ(::mkfifo(pipe_.c_str(), 0600), 0);
    surroundings.processes.desktop_opener = folder / "opener";
    host = std::make_unique<LinuxHost>(surroundings);
  }

  void WriteScript(const std::string& file, const std::string& text) {
    WriteNative(file, "#!/bin/sh\n" + text + "\n");
    ::chmod(file.c_str(), 0755);
  }
  std::string Output() const { return ReadNative(pipe_); }
  std::string ToPipe() const { return " > '" + pipe_ + "'"; }

  const std::string pipe_ = folder / "pipe";
  std::unique_ptr<LinuxHost> host;
};

TEST_F(LinuxProcessesTest, AProgramStartsWithoutArguments) {
  WriteScript(OnDrive("Data/Quit.exe"), "echo \"$0 $#\"" + ToPipe());
  EXPECT_TRUE(host->processes.StartProgram("C:\\Data\\quit.EXE"));
  EXPECT_EQ(Output(), OnDrive("Data/Quit.exe") + " 0\n");
}

TEST_F(LinuxProcessesTest, AFileThatMayNotRunIsNoProgram) {
  WriteNative(OnDrive("Data/notes.txt"), "#!/bin/sh\n");
  ::chmod(OnDrive("Data/notes.txt").c_str(), 0644);
  EXPECT_FALSE(host->processes.StartProgram("C:\\Data\\notes.txt"));
  EXPECT_EQ(RaisedBy([&] { host->processes.StartMinimized("C:\\Data\\notes.txt"); }), 53);
}

TEST_F(LinuxProcessesTest, AFileInNoProgramFormatIsNoProgram) {
  WriteNative(OnDrive("Data/broken.exe"), "MZ no program of this system");
  ::chmod(OnDrive("Data/broken.exe").c_str(), 0755);
  EXPECT_FALSE(host->processes.StartProgram("C:\\Data\\broken.exe"));
}

TEST_F(LinuxProcessesTest, ACommandLineHandsOnItsWordsAsTheyAre) {
  WriteScript(OnDrive("Data/show.exe"), "printf '<%s>' \"$@\"" + ToPipe());
  host->processes.StartMinimized("\"C:\\Data\\show.exe\" /e \"C:\\a b\\\" \"open end");
  EXPECT_EQ(Output(), "</e><C:\\a b\\><open end>");
}

TEST_F(LinuxProcessesTest, AProgramWithoutAFolderIsFoundOnTheSearchPath) {
  host->processes.StartMinimized("sh -c \"echo found" + ToPipe() + "\"");
  EXPECT_EQ(Output(), "found\n");
}

TEST_F(LinuxProcessesTest, OnlyWholePathsOfTheSearchPathCount) {
  WriteScript(folder / "tool", "echo found" + ToPipe());
  const auto here = std::filesystem::current_path();
  std::filesystem::current_path(folder.Path());
  for (const char* relative : {"", ".", ":", "::/nowhere", "../"}) {
    const VariableFor path("PATH", relative);
    EXPECT_EQ(RaisedBy([&] { host->processes.StartMinimized("tool"); }), 53) << relative;
  }
  {
    const VariableFor none("PATH", nullptr);
    EXPECT_EQ(RaisedBy([&] { host->processes.StartMinimized("tool"); }), 53);
  }
  std::filesystem::current_path(here);
  const VariableFor path("PATH", (":relative:" + folder.Path()).c_str());
  host->processes.StartMinimized("tool");
  EXPECT_EQ(Output(), "found\n");
}

TEST_F(LinuxProcessesTest, TheDesktopsOpenerGetsTheNativePath) {
  WriteScript(folder / "opener", "echo \"$*\"" + ToPipe());
  WriteNative(OnDrive("Data/a log.txt"), "hello");
  EXPECT_TRUE(host->processes.OpenWithDesktop("C:\\Data\\A LOG.txt"));
  EXPECT_EQ(Output(), OnDrive("Data/a log.txt") + "\n");
}

TEST_F(LinuxProcessesTest, WithoutAnOpenerNothingOpens) {
  WriteNative(OnDrive("Data/a.txt"), "hello");
  EXPECT_FALSE(host->processes.OpenWithDesktop("C:\\Data\\a.txt"));
}

TEST_F(LinuxProcessesTest, AStartedProgramIsNobodysChild) {
  // A flush that another test let go of is a child.
  while (::waitpid(-1, nullptr, 0) > 0) continue;
  WriteScript(OnDrive("Data/show.exe"), "echo started" + ToPipe());
  ASSERT_TRUE(host->processes.StartProgram("C:\\Data\\show.exe"));
  EXPECT_EQ(Output(), "started\n");
  errno = 0;
  EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD);
}

TEST_F(LinuxProcessesTest, AStartedProgramLeadsASessionOfItsOwn) {
  WriteScript(OnDrive("Data/show.exe"), "cut -d' ' -f6 /proc/$$/stat" + ToPipe());
  ASSERT_TRUE(host->processes.StartProgram("C:\\Data\\show.exe"));
  EXPECT_NE(std::stoi(Output()), ::getsid(0));
}

TEST_F(LinuxProcessesTest, AStartedProgramInheritsNoFileOfOurs) {
  WriteNative(OnDrive("Data/secret.txt"), "x");
  // One that was opened without a thought for children.
  const int careless = ::open(OnDrive("Data/secret.txt").c_str(), O_RDONLY);
  host->open_files.OpenInput(1, "C:\\Data\\secret.txt");
  EXPECT_FALSE(host->processes.PreviousInstance());
  WriteScript(OnDrive("Data/show.exe"), "ls -l /proc/$$/fd" + ToPipe());
  ASSERT_TRUE(host->processes.StartProgram("C:\\Data\\show.exe"));
  const std::string output = Output();
  ::close(careless);
  EXPECT_NE(output.find("/dev/null"), std::string::npos);
  EXPECT_EQ(output.find("secret.txt"), std::string::npos);
  EXPECT_EQ(output.find(".lock"), std::string::npos);
}

TEST_F(LinuxProcessesTest, AStartedProgramHearsSignalsAgain) {
  const auto old = ::signal(SIGPIPE, SIG_IGN);
  WriteScript(OnDrive("Data/show.exe"), "grep SigIgn /proc/self/status" + ToPipe());
  ASSERT_TRUE(host->processes.StartProgram("C:\\Data\\show.exe"));
  EXPECT_EQ(Output(), "SigIgn:\t0000000000000000\n");
  ::signal(SIGPIPE, old);
}

TEST_F(LinuxProcessesTest, ALaterInstanceFindsAnEarlierOne) {
  LinuxProcesses& first = host->processes;
  LinuxHost second(surroundings);
  EXPECT_FALSE(first.PreviousInstance());
  EXPECT_TRUE(second.processes.PreviousInstance());
  EXPECT_FALSE(first.PreviousInstance());
}

TEST_F(LinuxProcessesTest, TheEarlierInstanceEndsWithItsProcess) {
  LinuxHost second(surroundings);
  EXPECT_FALSE(host->processes.PreviousInstance());
  EXPECT_TRUE(second.processes.PreviousInstance());
  LinuxHost third(surroundings);
  EXPECT_TRUE(third.processes.PreviousInstance());
  host.reset();
  EXPECT_FALSE(second.processes.PreviousInstance());
  EXPECT_TRUE(third.processes.PreviousInstance());
}

TEST_F(LinuxProcessesTest, AnotherProgramIsNoInstance) {
  EXPECT_FALSE(host->processes.PreviousInstance());
  surroundings.processes.program_file = folder / "another";
  LinuxHost other(surroundings);
  EXPECT_FALSE(other.processes.PreviousInstance());
}

TEST_F(LinuxProcessesTest, AKilledInstanceIsGone) {
  std::array<int, 2> ready{};
  ASSERT_EQ(::pipe(ready.data()), 0);
  const pid_t child = ::fork();
  if (child == 0) {
    LinuxHost earlier(surroundings);
    const bool previous = earlier.processes.PreviousInstance();
    if (::write(ready[1], previous ? "y" : "n", 1) != 1) ::_exit(1);
    while (true) ::pause();
  }
  char answer = 0;
  ASSERT_EQ(::read(ready[0], &answer, 1), 1);
  EXPECT_EQ(answer, 'n');
  EXPECT_TRUE(host->processes.PreviousInstance());
  ::kill(child, SIGKILL);
  ::waitpid(child, nullptr, 0);
  ::close(ready[0]);
  ::close(ready[1]);
  EXPECT_FALSE(host->processes.PreviousInstance());
}

TEST_F(LinuxProcessesTest, AProgramThatAnInstanceStartedDoesNotStandForIt) {
  EXPECT_FALSE(host->processes.PreviousInstance());
  // Runs until somebody writes into the pipe.
  WriteScript(OnDrive("Data/wait.exe"), "read line < '" + pipe_ + "'");
  ASSERT_TRUE(host->processes.StartProgram("C:\\Data\\wait.exe"));
  LinuxHost second(surroundings);
  EXPECT_TRUE(second.processes.PreviousInstance());
  host.reset();
  EXPECT_FALSE(second.processes.PreviousInstance());
  WriteNative(pipe_, "end\n");
}

TEST_F(LinuxProcessesTest, WithoutAPlaceForTheLockNobodyIsFound) {
  surroundings.processes.lock_folder = "/proc/nowhere";
  LinuxHost first(surroundings);
  LinuxHost second(surroundings);
  EXPECT_FALSE(first.processes.PreviousInstance());
  EXPECT_FALSE(second.processes.PreviousInstance());
}

/// Where the lock of instances lies for a program that starts in `runtime`.
std::string LockFolderIn(const std::string& runtime) {
  const VariableFor variable("XDG_RUNTIME_DIR", runtime.c_str());
  return ProcessSurroundings::Present().lock_folder;
}

TEST_F(LinuxProcessesTest, TheLockLiesInTheRuntimeFolder) {
  EXPECT_EQ(LockFolderIn(folder.Path()), folder.Path());
}

TEST_F(LinuxProcessesTest, ARuntimeFolderThatOthersCanEnterHasNoLock) {
  const VariableFor state("XDG_STATE_HOME", (folder / "state").c_str());
  // What the session's manager made, if there is one.
  const std::string usual = "/run/user/" + std::to_string(::geteuid());
  const auto elsewhere = ::testing::AnyOf(folder / "state/tarnvale", usual);
  for (const mode_t open : {0777, 0770, 0750, 0701}) {
    ASSERT_EQ(::chmod(folder.Path().c_str(), open), 0);
    EXPECT_THAT(LockFolderIn(folder.Path()), elsewhere) << std::oct << open;
  }
}

TEST_F(LinuxProcessesTest, ALinkInPlaceOfTheRuntimeFolderHasNoLock) {
  const std::string link = folder / "link";
  ASSERT_EQ(::symlink(folder.Path().c_str(), link.c_str()), 0);
  EXPECT_NE(LockFolderIn(link), link);
}

TEST_F(LinuxProcessesTest, ThisProgramsFileIsKnown) {
  EXPECT_EQ(ProcessSurroundings::Present().program_file,
            std::filesystem::read_symlink("/proc/self/exe").string());
}

}  // namespace
}  // namespace tarnvale::testing
