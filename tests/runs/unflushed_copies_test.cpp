// Copies whose medium went away, or whose power did, before they had reached it.
#include <ctime>

#include "tests/runs/real_run.h"

namespace tarnvale::testing {
namespace {

class UnflushedCopiesTest : public RealRun {
 protected:
  UnflushedCopiesTest() {
    Write("Work/one.txt", "first");
    Write("Work/Letters/two.txt", "second");
    engine.settings.Entries.Assign({"C:\\Work\\one.txt", "C:\\Work\\Letters\\*+++++*"});
  }

  void Choose(bool complete, bool incremental, bool sync) {
    engine.settings.BackupMode.Complete = complete;
    engine.settings.BackupMode.Incremental = incremental;
    engine.settings.IncrementalFlag = incremental;
    engine.settings.BackupMode.Sync = sync;
  }

  // Name, length and time stay, as on ext4 when it is shut down while it writes.
  void LoseBytes(const std::string& path) {
    struct stat info {};
    ASSERT_EQ(::stat(Native(path).c_str(), &info), 0);
    Write(path, std::string(static_cast<std::size_t>(info.st_size), '\0'));
    SetModified(path, info.st_mtim.tv_sec, info.st_mtim.tv_nsec);
  }

  // What a run leaves that didn't see its copies reach their medium.
  void BreakOff() { Write(kNote, ""); }
  bool IsNoted() const { return std::filesystem::exists(Native(kNote)); }

  void MakeReadOnly(const std::string& path) {
    std::filesystem::permissions(Native(path), std::filesystem::perms::owner_read);
  }

  const std::string kNote = "Store/.tarnvale-unflushed";
};

TEST_F(UnflushedCopiesTest, AreNotedAsLongAsARunMakesThem) {
  Run();
  bool noted = false;
  engine.backup.Sync().OnCompared = [&](const ComparedFile&) { noted = IsNoted(); };
  Run();
  EXPECT_TRUE(noted);
  EXPECT_FALSE(IsNoted());
}

TEST_F(UnflushedCopiesTest, AreMadeAnewByTheNextRunOfAFolderWhereBytesWereLost) {
  for (const bool is_sync : {false, true}) {
    Choose(!is_sync, false, is_sync);
    const std::string copy = is_sync ? "Store/two.txt" : "Store/Letters/two.txt";
    Run();
    LoseBytes(copy);
    Run();
    EXPECT_EQ(Content(copy), std::string(6, '\0')) << "nothing says that it may be lost";
    BreakOff();
    LoseBytes(copy);
    Run();
    EXPECT_EQ(Content(copy), "second");
    EXPECT_EQ(Content("Work/Letters/two.txt"), "second");
    EXPECT_FALSE(IsNoted());
  }
}

TEST_F(UnflushedCopiesTest, AreMadeAnewThoughTheyAreReadOnly) {
  MakeReadOnly("Work/one.txt");
  MakeReadOnly("Work/Letters/two.txt");
  Run();
  BreakOff();
  for (const char* copy : {"Store/one.txt", "Store/Letters/two.txt"}) {
    std::filesystem::permissions(Native(copy), std::filesystem::perms::owner_write,
                                 std::filesystem::perm_options::add);
    LoseBytes(copy);
    MakeReadOnly(copy);
  }
  Run();
  EXPECT_EQ(Content("Store/one.txt"), "first");
  EXPECT_EQ(Content("Store/Letters/two.txt"), "second");
  EXPECT_EQ(AttributesOf("C:\\Store\\one.txt") & attribute::kReadOnly, attribute::kReadOnly);
}

TEST_F(UnflushedCopiesTest, OfSingleFilesAreMadeAnewThoughTheFilesHaveNotChanged) {
  Choose(false, true, false);
  Run();
  BreakOff();
  LoseBytes("Store/one.txt");
  Run();
  EXPECT_EQ(Content("Store/one.txt"), "first");
}

TEST_F(UnflushedCopiesTest, StayWhereTheirFileIsTheOneThatWasLost) {
  Run();
  BreakOff();
  LoseBytes("Work/Letters/two.txt");
  Run();
  EXPECT_EQ(Content("Store/Letters/two.txt"), "second");
}

TEST_F(UnflushedCopiesTest, FromBeforeTheRunThatWasBrokenOffStay) {
  Run();
  LoseBytes("Store/Letters/two.txt");
  BreakOff();
  SetModified(kNote, ::time(nullptr) + 3600);
  Run();
  EXPECT_EQ(Content("Store/Letters/two.txt"), std::string(6, '\0'));
}

TEST_F(UnflushedCopiesTest, ThatWereChangedByHandSinceStay) {
  Run();
  BreakOff();
  Write("Store/Letters/two.txt", "edited");
  SetModified("Store/Letters/two.txt", ::time(nullptr) + 10);
  Run();
  EXPECT_EQ(Content("Store/Letters/two.txt"), "edited") << "it is newer";
}

TEST_F(UnflushedCopiesTest, HaveANoteThatIsNoFileOfTheFolder) {
  BreakOff();
  EXPECT_EQ(system.files.OpenFolder("C:\\Store")->Contents().files.size(), 0U);
  EXPECT_TRUE(system.files.List("C:\\Store\\*", {.hidden = true, .system = true}).empty());
}

}  // namespace
}  // namespace tarnvale::testing
