#include "hosts/linux/temporaries.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <memory>
#include <thread>

#include "hosts/linux/replacement.h"
#include "platform/temporary_name.h"
#include "tests/hosts/linux/call_hooks.h"
#include "tests/hosts/linux/linux_drive.h"

namespace tarnvale {
namespace {

using Names = std::vector<std::string>;

class TemporariesTest : public LinuxDriveTest {
 protected:
  /// Has a process begin a copy into a folder and killed in the middle. Returns
  /// the name that it left.
  std::string LeaveOne(const std::string& place) {
    const pid_t child = ::fork();
    if (child == 0) {
      Temporaries temporaries(state_);
      TemporarySlot slot(temporaries);
      std::ofstream(slot.Begin(Native(place))) << "half";
      ::raise(SIGKILL);
    }
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status));
    const Names names = NamesIn(place);
    EXPECT_EQ(names.size(), 1U);
    return names.empty() ? std::string() : names.front();
  }
};

TEST_F(TemporariesTest, TheNextStartDeletesWhatAKilledProcessLeft) {
  MakeFolder("z");
  EXPECT_TRUE(IsTemporaryName(LeaveOne("z")));
  LinuxHost next_run(With(state_));
  EXPECT_EQ(NamesIn("z"), Names{});
  EXPECT_TRUE(std::filesystem::is_empty(state_ + "/copies"));
}

TEST_F(TemporariesTest, TheNextStartDeletesWhatCouldNotBeDeletedInAnyFolder) {
  for (const char* place : {"y", "z"}) {
    MakeFolder(place);
    Write(std::string(place) + "/target", "old");
  }
  Write("source", "source");
  {
    LinuxHost run(With(state_));
    const auto copy_into = [&](const Path& folder) {
      const auto from = run.files.OpenFolder("C:\\");
      const auto to = run.files.OpenFolder(folder);
      run.files.CopyEntry({*from, "source"}, {*to, "target"});
    };
    testing::RemoveHook medium({});
    medium.Refuse(EIO);
    copy_into("C:\\y");
    copy_into("C:\\z");
  }
  EXPECT_EQ(NamesIn("y").size(), 2U);
  EXPECT_EQ(NamesIn("z").size(), 2U);
  LinuxHost next_run(With(state_));
  EXPECT_EQ(NamesIn("y"), Names{"target"});
  EXPECT_EQ(NamesIn("z"), Names{"target"});
  EXPECT_EQ(Read("z/target"), "source");
  EXPECT_TRUE(std::filesystem::is_empty(state_ + "/copies"));
}

TEST_F(TemporariesTest, OpeningAFolderDeletesLeftoversThatNoSlotNames) {
  MakeFolder("z");
  LeaveOne("z");
  std::filesystem::remove_all(state_);
  EXPECT_EQ(files_.OpenFolder("C:\\z")->Contents().files.size(), 0U);
  EXPECT_EQ(NamesIn("z"), Names{});
}

TEST_F(TemporariesTest, TheFirstCopyIntoAFolderDeletesLeftoversThatNoSlotNames) {
  MakeFolder("z");
  LeaveOne("z");
  std::filesystem::remove_all(state_);
  Write("source", "");
  files_.CopyWhole("C:\\source", "C:\\z\\target");
  EXPECT_EQ(NamesIn("z"), Names{"target"});
}

TEST_F(TemporariesTest, CopyingATreeDeletesLeftoversOnBothSides) {
  MakeFolder("a");
  MakeFolder("z");
  LeaveOne("a");
  LeaveOne("z");
  std::filesystem::remove_all(state_);
  files_.CopyTree("C:\\a", "C:\\z", {});
  EXPECT_EQ(NamesIn("a"), Names{});
  EXPECT_EQ(NamesIn("z"), Names{});
}

TEST_F(TemporariesTest, TheTemporaryOfALivingProcessIsLeftAlone) {
  MakeFolder("z");
  Temporaries temporaries(state_);
  TemporarySlot alive(temporaries);
  const std::string path = alive.Begin(Native("z"));
  std::ofstream(path) << "in work";
  EXPECT_EQ(files_.OpenFolder("C:\\z")->Contents().files.size(), 0U);
  EXPECT_EQ(NamesIn("z").size(), 1U);
}

TEST_F(TemporariesTest, SomebodyElsesTemporaryIsNeitherListedNorDeleted) {
  MakeFolder("z");
  const std::string foreign = ".tarnvale-0123456789abcdef-fedcba9876543210.part";
  ASSERT_TRUE(IsTemporaryName(foreign));
  Write("z/" + foreign, "theirs");
  EXPECT_EQ(files_.OpenFolder("C:\\z")->Contents().files.size(), 0U);
  EXPECT_EQ(files_.List("C:\\z\\*", {.hidden = true}), Names{});
  EXPECT_EQ(NamesIn("z"), Names{foreign});
}

TEST_F(TemporariesTest, NamesThatOnlyResembleOneAreOrdinaryFiles) {
  for (const char* name :
       {".tarnvale-", ".tarnvale-0123456789abcdef-fedcba987654321.part",
        ".tarnvale-0123456789abcdef-fedcba9876543210.parts",
        ".tarnvale-0123456789ABCDEF-fedcba9876543210.part", "tarnvale-0123456789abcdef"}) {
    EXPECT_FALSE(IsTemporaryName(name)) << name;
  }
  Write(".tarnvale-notes.part", "");
  EXPECT_EQ(files_.OpenFolder("C:\\")->Contents().files.size(), 1U);
}

TEST_F(TemporariesTest, ASlotThatNamesAStrangersFileDeletesNothing) {
  Write("precious", "");
  std::filesystem::create_directories(state_ + "/copies");
  std::ofstream(state_ + "/copies/0123456789abcdef") << Native("precious");
  LinuxHost next_run(With(state_));
  EXPECT_TRUE(Exists("precious"));
  EXPECT_TRUE(std::filesystem::is_empty(state_ + "/copies"));
}

TEST_F(TemporariesTest, AFreshFileReplacesALeftover) {
  MakeFolder("z");
  TemporarySlot slot(host_.temporaries);
  const std::string path = slot.Begin(Native("z"));
  std::ofstream(path) << "half";
  ASSERT_TRUE(CreateFresh(AT_FDCWD, path.c_str(), 0600));
  EXPECT_EQ(NamesIn("z").size(), 1U);
  EXPECT_EQ(std::filesystem::file_size(path), 0U);
}

TEST_F(TemporariesTest, AFreshFileReplacesALinkAndLeavesWhereItLedAlone) {
  Write("precious", "content");
  std::filesystem::create_symlink(Native("precious"), Native("fresh"));
  ASSERT_TRUE(CreateFresh(AT_FDCWD, Native("fresh").c_str(), 0600));
  EXPECT_FALSE(std::filesystem::is_symlink(Native("fresh")));
  EXPECT_EQ(Read("precious"), "content");
}

TEST_F(TemporariesTest, AFolderInItsPlaceIsNoFreshFile) {
  MakeFolder("z");
  EXPECT_FALSE(CreateFresh(AT_FDCWD, Native("z").c_str(), 0600));
}

TEST_F(TemporariesTest, CopiesWorkWithoutAStateFolder) {
  Write("state_is_a_file", "");
  LinuxHost stateless(With(Native("state_is_a_file")));
  Write("source", "content");
  Write("target", "old");
  stateless.files.CopyWhole("C:\\source", "C:\\target");
  EXPECT_EQ(Read("target"), "content");
}

TEST_F(TemporariesTest, WithoutAStateFolderWhatIsInWorkIsStillLeftAlone) {
  Write("state_is_a_file", "");
  LinuxHost stateless(With(Native("state_is_a_file")));
  MakeFolder("z");
  const auto target = stateless.transfer_files.OpenTarget("C:\\z\\target");
  EXPECT_TRUE(stateless.files.List("C:\\z\\*", {}).empty());
  target->Commit();
  EXPECT_EQ(NamesIn("z"), Names{"target"});
}

// As a download does whose session was dropped: its thread ends when its medium answers.
TEST_F(TemporariesTest, WorkOfAnotherThreadMayOutliveTheHost) {
  auto host = std::make_unique<LinuxHost>(With(state_));
  std::unique_ptr<TransferTarget> download = host->transfer_files.OpenTarget("C:\\file");
  ASSERT_EQ(NamesIn(".").size(), 1U);
  host.reset();
  std::thread([file = std::move(download)]() mutable { file.reset(); }).join();
  EXPECT_EQ(NamesIn("."), Names{});
  EXPECT_TRUE(std::filesystem::is_empty(state_ + "/copies"));
}

TEST_F(TemporariesTest, NothingIsLeftInTheStateFolderAfterAnOrderlyEnd) {
  Write("source", "content");
  Write("target", "old");
  {
    LinuxHost run(With(state_));
    run.files.CopyWhole("C:\\source", "C:\\target");
    EXPECT_FALSE(std::filesystem::is_empty(state_ + "/copies"));
  }
  EXPECT_TRUE(std::filesystem::is_empty(state_ + "/copies"));
}

TEST_F(TemporariesTest, AMediumThatIsAwayKeepsItsLeftoverNamedUntilItIsBack) {
  MakeFolder("z");
  LeaveOne("z");
  std::filesystem::rename(Native("z"), Native("away"));
  // Asking for it fails: it isn't known to have gone.
  Link("z", "z");
  { LinuxHost next_run(With(state_)); }
  EXPECT_FALSE(std::filesystem::is_empty(state_ + "/copies"));
  std::filesystem::remove(Native("z"));
  std::filesystem::rename(Native("away"), Native("z"));
  { LinuxHost later_run(With(state_)); }
  EXPECT_EQ(NamesIn("z"), Names{});
  EXPECT_TRUE(std::filesystem::is_empty(state_ + "/copies"));
}

TEST_F(TemporariesTest, AFreshLinkReplacesALeftover) {
  MakeFolder("z");
  TemporarySlot slot(host_.temporaries);
  Replacement link(slot, Native("z"));
  std::ofstream(link.Path()) << "half";
  ASSERT_TRUE(link.CreateLink("there"));
  EXPECT_EQ(std::filesystem::read_symlink(link.Path()), "there");
}

}  // namespace
}  // namespace tarnvale
