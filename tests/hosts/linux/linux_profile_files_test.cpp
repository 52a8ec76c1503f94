#include "hosts/linux/linux_profile_files.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <functional>
#include <memory>
#include <utility>

#include "tests/hosts/linux/call_hooks.h"
#include "tests/hosts/linux/linux_stage.h"

namespace tarnvale::testing {
namespace {

constexpr char kFile[] = "C:\\Data\\t.ini";

class LinuxProfileFilesTest : public LinuxStage {
 protected:
  std::string Read(const std::string& section, const std::string& key) {
    return host->profiles.Read(section, key, "(none)", 255, kFile);
  }
  bool Write(const std::string& key, const std::string& value) {
    return host->profiles.Write("A", key, value, kFile);
  }
  // By another instance.
  void SaveAs(const std::string& key, const std::string& value) {
    LinuxHost other(surroundings);
    EXPECT_TRUE(other.profiles.Write("A", key, value, kFile));
    EXPECT_TRUE(other.profiles.Flush(kFile));
  }
  std::vector<std::string> Names() const { return NativeNames(OnDrive("Data")); }

  std::unique_ptr<LinuxHost> host = std::make_unique<LinuxHost>(surroundings);
  const std::string native = OnDrive("Data/t.ini");
};

TEST_F(LinuxProfileFilesTest, FilesWhoseNamesDifferInCaseAreTwo) {
  constexpr char kOther[] = "C:\\Data\\T.ini";
  WriteNative(native, "[A]\r\nx=1\r\n");
  WriteNative(OnDrive("Data/T.ini"), "[A]\r\nx=2\r\n");
  EXPECT_EQ(Read("A", "x"), "1");
  EXPECT_EQ(host->profiles.Read("A", "x", "(none)", 255, kOther), "2");
  ASSERT_TRUE(Write("x", "3"));
  EXPECT_EQ(host->profiles.Read("A", "x", "(none)", 255, kOther), "2");
  ASSERT_TRUE(host->profiles.Write("A", "x", "4", kOther));
  ASSERT_TRUE(host->profiles.Flush(kFile));
  ASSERT_TRUE(host->profiles.Flush(kOther));
  EXPECT_EQ(ReadNative(native), "[A]\r\nx=3\r\n");
  EXPECT_EQ(ReadNative(OnDrive("Data/T.ini")), "[A]\r\nx=4\r\n");
}

TEST_F(LinuxProfileFilesTest, ANewFileIsItsOwnersAlone) {
  ASSERT_TRUE(Write("x", "1"));
  ASSERT_TRUE(host->profiles.Flush(kFile));
  EXPECT_EQ(ModeOf(native), 0600U);
}

TEST_F(LinuxProfileFilesTest, AnOldFileIsItsOwnersAloneAfterAWrite) {
  WriteNative(native, "[A]\r\nx=1\r\n");
  ASSERT_EQ(::chmod(native.c_str(), 0664), 0);
  ASSERT_TRUE(Write("x", "2"));
  ASSERT_TRUE(host->profiles.Flush(kFile));
  EXPECT_EQ(ReadNative(native), "[A]\r\nx=2\r\n");
  EXPECT_EQ(ModeOf(native), 0600U);
}

TEST_F(LinuxProfileFilesTest, AFileWhoseContentDidNotChangeIsItsOwnersAloneToo) {
  WriteNative(native, "[A]\r\nx=1\r\n");
  ASSERT_EQ(::chmod(native.c_str(), 0664), 0);
  SetModifiedNative(native, 1205492401);
  ASSERT_TRUE(Write("x", "2"));
  ASSERT_TRUE(Write("x", "1"));
  ASSERT_TRUE(host->profiles.Flush(kFile));
  EXPECT_EQ(ModeOf(native), 0600U);
  EXPECT_EQ(StateOf(native).st_mtim.tv_sec, 1205492401);
}

TEST_F(LinuxProfileFilesTest, AFolderThatSomebodyKeepsLockedHoldsNoSaveUp) {
  const Descriptor held(::open(OnDrive("Data").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  ASSERT_EQ(::flock(held.Get(), LOCK_EX), 0);
  ASSERT_TRUE(Write("x", "1"));
  const auto start = std::chrono::steady_clock::now();
  EXPECT_TRUE(host->profiles.Flush(kFile));
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(500));
  EXPECT_EQ(ReadNative(native), "[A]\r\nx=1\r\n");
}

// --- what another instance saves at the last moment

TEST_F(LinuxProfileFilesTest, WhatAnotherInstanceSavesRightBeforeTheExchangeIsKept) {
  WriteNative(native, "[A]\r\nx=0\r\n");
  RenameHook hook({[&] {
    LinuxHost other(surroundings);
    EXPECT_TRUE(other.profiles.Write("A", "y", "1", kFile));
    EXPECT_TRUE(other.profiles.Write("Other", "y", "1", kFile));
    EXPECT_TRUE(other.profiles.Flush(kFile));
  }});
  ASSERT_TRUE(Write("x", "1"));
  ASSERT_TRUE(host->profiles.Flush(kFile));
  EXPECT_TRUE(hook.WasCalled());
  EXPECT_EQ(ReadNative(native), "[A]\r\nx=1\r\ny=1\r\n[Other]\r\ny=1\r\n");
  EXPECT_EQ(Names(), (std::vector<std::string>{"t.ini"}));
}

TEST_F(LinuxProfileFilesTest, WhatAnotherInstanceSavesOverOursBeforeTheSecondExchangeIsKept) {
  WriteNative(native, "[A]\r\nx=0\r\n");
  // The first of them has gone when the second one reads the file.
  RenameHook hook({[&] { SaveAs("y", "1"); },
                   [&] {
                     SaveAs("y", "2");
                     SaveAs("z", "1");
                   }});
  ASSERT_TRUE(Write("x", "1"));
  ASSERT_TRUE(host->profiles.Flush(kFile));
  EXPECT_TRUE(hook.WasCalled());
  EXPECT_EQ(Read("A", "x"), "1");
  EXPECT_EQ(Read("A", "y"), "2") << "the later one counts";
  EXPECT_EQ(Read("A", "z"), "1");
}

TEST_F(LinuxProfileFilesTest, WhatTwoInstancesSaveIsTheLaterOnesWord) {
  WriteNative(native, "[A]\r\nx=0\r\n");
  RenameHook hook({[&] { SaveAs("x", "theirs"); }});
  ASSERT_TRUE(Write("x", "ours"));
  ASSERT_TRUE(host->profiles.Flush(kFile));
  EXPECT_EQ(Read("A", "x"), "ours");
}

TEST_F(LinuxProfileFilesTest, AFileThatAnotherInstanceMakesMeanwhileIsTakenIn) {
  RenameHook hook({[&] { SaveAs("y", "1"); }});
  ASSERT_TRUE(Write("x", "1"));
  ASSERT_TRUE(host->profiles.Flush(kFile));
  EXPECT_TRUE(hook.WasCalled());
  EXPECT_EQ(Read("A", "x"), "1");
  EXPECT_EQ(Read("A", "y"), "1");
}

TEST_F(LinuxProfileFilesTest, AMediumThatExchangesNothingHoldsASaveAll) {
  WriteNative(native, "[A]\r\nx=0\r\n");
  RenameHook hook({});
  hook.Refuse(EINVAL);
  ASSERT_TRUE(Write("x", "1"));
  ASSERT_TRUE(host->profiles.Flush(kFile));
  EXPECT_EQ(ReadNative(native), "[A]\r\nx=1\r\n");
  EXPECT_EQ(Names(), (std::vector<std::string>{"t.ini"}));
}

TEST_F(LinuxProfileFilesTest, AnExchangeThatFailsFailsTheSaveAndLeavesTheFileAlone) {
  WriteNative(native, "[A]\r\nx=0\r\n");
  RenameHook hook({});
  hook.Refuse(EIO);
  ASSERT_TRUE(Write("x", "1"));
  EXPECT_FALSE(host->profiles.Flush(kFile));
  EXPECT_EQ(ReadNative(native), "[A]\r\nx=0\r\n");
  EXPECT_EQ(Names(), (std::vector<std::string>{"t.ini"}));
  EXPECT_EQ(Read("A", "x"), "0");
}

// Each of them adds keys of its own and saves after each, as fast as it can.
TEST_F(LinuxProfileFilesTest, InstancesThatSaveAllTheTimeKeepEachOthersWrites) {
  constexpr int kKeys = 40;
  WriteNative(native, "[A]\r\nx=0\r\n");
  const auto add_keys = [&](const std::string& letter) {
    LinuxHost other(surroundings);
    for (int i = 0; i < kKeys; ++i) {
      if (!other.profiles.Write("A", letter + std::to_string(i), "1", kFile)) return false;
      if (!other.profiles.Flush(kFile)) return false;
    }
    return true;
  };
  const pid_t child = ::fork();
  if (child == 0) ::_exit(add_keys("c") ? 0 : 1);
  EXPECT_TRUE(add_keys("p"));
  int status = -1;
  ::waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
  int kept = 0;
  for (int i = 0; i < kKeys; ++i) {
    for (const char* letter : {"c", "p"}) kept += Read("A", letter + std::to_string(i)) == "1";
  }
  EXPECT_EQ(kept, 2 * kKeys);
}

TEST_F(LinuxProfileFilesTest, TheFileIsReplacedNotRewritten) {
  WriteNative(native, "[A]\r\nx=1\r\n");
  ASSERT_EQ(::link(native.c_str(), OnDrive("old").c_str()), 0);
  ASSERT_TRUE(Write("x", "2"));
  ASSERT_TRUE(host->profiles.Flush(kFile));
  EXPECT_EQ(ReadNative(OnDrive("old")), "[A]\r\nx=1\r\n");
}

TEST_F(LinuxProfileFilesTest, ALinkStaysAndItsFileIsReplaced) {
  std::filesystem::create_directory(OnDrive("Elsewhere"));
  WriteNative(OnDrive("Elsewhere/real.ini"), "[A]\r\nx=1\r\n");
  ASSERT_EQ(::symlink("../Elsewhere/real.ini", native.c_str()), 0);
  ASSERT_TRUE(Write("x", "2"));
  ASSERT_TRUE(host->profiles.Flush(kFile));
  EXPECT_TRUE(S_ISLNK(StateOf(native).st_mode));
  EXPECT_EQ(ReadNative(OnDrive("Elsewhere/real.ini")), "[A]\r\nx=2\r\n");
  EXPECT_EQ(Read("A", "x"), "2");
}

TEST_F(LinuxProfileFilesTest, ALinkThatLeadsNowhereGetsItsFile) {
  ASSERT_EQ(::symlink("real.ini", native.c_str()), 0);
  ASSERT_TRUE(Write("x", "1"));
  ASSERT_TRUE(host->profiles.Flush(kFile));
  EXPECT_TRUE(S_ISLNK(StateOf(native).st_mode));
  EXPECT_EQ(ReadNative(OnDrive("Data/real.ini")), "[A]\r\nx=1\r\n");
}

TEST_F(LinuxProfileFilesTest, LinksInACircleAreNoFile) {
  ASSERT_EQ(::symlink("t.ini", native.c_str()), 0);
  EXPECT_EQ(Read("A", "x"), "(none)");
  EXPECT_FALSE(Write("x", "1"));
}

TEST_F(LinuxProfileFilesTest, APipeIsNoProfileAndDoesNotHoldAnybodyUp) {
  ASSERT_EQ(::mkfifo(native.c_str(), 0600), 0);
  EXPECT_EQ(Read("A", "x"), "(none)");
  EXPECT_FALSE(Write("x", "1"));
}

TEST_F(LinuxProfileFilesTest, AFolderThatCannotBeWrittenIsReportedAtOnce) {
  // Nobody, root included, can make a file in a folder of this kind.
  EXPECT_FALSE(LinuxHost({.root = "/proc",
                          .state_folder = surroundings.state_folder,
                          .locale_name = "C",
                          .processes = surroundings.processes})
                   .profiles.Write("A", "x", "1", "C:\\t.ini"));
}

TEST_F(LinuxProfileFilesTest, TheTemporaryGoesWithItsOwner) {
  ASSERT_TRUE(Write("x", "1"));
  EXPECT_EQ(Names().size(), 1U);
  host.reset();
  EXPECT_TRUE(Names().empty());
}

// What names the temporary that a write couldn't make is its slot.
TEST_F(LinuxProfileFilesTest, ALeftoverOfAnEarlierWriteIsReplaced) {
  ASSERT_EQ(::symlink("../Away/real.ini", native.c_str()), 0);
  ASSERT_FALSE(Write("x", "1"));
  const std::string slots = surroundings.state_folder + "/copies";
  ASSERT_EQ(NativeNames(slots).size(), 1U);
  const std::string temporary = ReadNative(slots + "/" + NativeNames(slots).front()).c_str();
  std::filesystem::create_directory(OnDrive("Away"));
  WriteNative(temporary, "a longer text than the one that is written now");
  ASSERT_EQ(NativeNames(OnDrive("Away")).size(), 1U);
  EXPECT_TRUE(Write("x", "2"));
  EXPECT_TRUE(host->profiles.Flush(kFile));
  EXPECT_EQ(ReadNative(OnDrive("Away/real.ini")), "[A]\r\nx=2\r\n");
  EXPECT_EQ(NativeNames(OnDrive("Away")), std::vector<std::string>{"real.ini"});
}

TEST_F(LinuxProfileFilesTest, AFolderThatWasRemovedMeanwhileFailsTheFlush) {
  ASSERT_TRUE(Write("x", "1"));
  std::filesystem::remove_all(OnDrive("Data"));
  EXPECT_FALSE(host->profiles.Flush(kFile));
  EXPECT_FALSE(std::filesystem::exists(OnDrive("Data")));
}

TEST_F(LinuxProfileFilesTest, TwoInstancesKeepEachOthersWrites) {
  LinuxHost other(surroundings);
  WriteNative(native, "[A]\r\nx=0\r\ny=0\r\n");
  ASSERT_TRUE(Write("x", "1"));
  ASSERT_TRUE(other.profiles.Write("A", "y", "2", kFile));
  ASSERT_TRUE(host->profiles.Flush(kFile));
  ASSERT_TRUE(other.profiles.Flush(kFile));
  EXPECT_EQ(ReadNative(native), "[A]\r\nx=1\r\ny=2\r\n");
  EXPECT_EQ(Names().size(), 1U);
}

TEST_F(LinuxProfileFilesTest, TwoProfilesOfOneFolderCanBeHeldAtOnce) {
  ASSERT_TRUE(Write("x", "1"));
  ASSERT_TRUE(host->profiles.Write("B", "y", "2", "C:\\Data\\u.ini"));
  ASSERT_TRUE(host->profiles.Flush(kFile));
  ASSERT_TRUE(host->profiles.Flush("C:\\Data\\u.ini"));
  EXPECT_EQ(ReadNative(native), "[A]\r\nx=1\r\n");
  EXPECT_EQ(ReadNative(OnDrive("Data/u.ini")), "[B]\r\ny=2\r\n");
}

TEST_F(LinuxProfileFilesTest, WhatAKilledProcessLeftGoesAtTheNextFlush) {
  std::array<int, 2> ready{};
  ASSERT_EQ(::pipe(ready.data()), 0);
  const pid_t child = ::fork();
  if (child == 0) {
    LinuxHost other(surroundings);
    const bool written = other.profiles.Write("A", "x", "1", kFile);
    if (::write(ready[1], written ? "y" : "n", 1) != 1) ::_exit(1);
    while (true) ::pause();
  }
  char answer = 0;
  ASSERT_EQ(::read(ready[0], &answer, 1), 1);
  ASSERT_EQ(answer, 'y');
  ASSERT_EQ(Names().size(), 1U);
  ::kill(child, SIGKILL);
  ::waitpid(child, nullptr, 0);
  ::close(ready[0]);
  ::close(ready[1]);
  ASSERT_TRUE(Write("x", "2"));
  ASSERT_TRUE(host->profiles.Flush(kFile));
  EXPECT_EQ(Names(), std::vector<std::string>{"t.ini"});
}

TEST_F(LinuxProfileFilesTest, AListingOfFilesDoesNotShowTheTemporary) {
  ASSERT_TRUE(Write("x", "1"));
  EXPECT_TRUE(host->files.List("C:\\Data\\*.*", {.hidden = true, .system = true}).empty());
  ASSERT_TRUE(host->profiles.Flush(kFile));
}

}  // namespace
}  // namespace tarnvale::testing
