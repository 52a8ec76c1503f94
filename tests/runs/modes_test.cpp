#include "tests/runs/real_run.h"

namespace tarnvale::testing {
namespace {

using CompleteModeTest = RealRun;
using IncrementalModeTest = RealRun;
using SyncModeTest = RealRun;

TEST_F(CompleteModeTest, CopiesFilesAndWholeFoldersEachTime) {
  Write("Work/a.txt", "one");
  Write("Work/Letters/Old/b.txt", "two");
  engine.settings.Entries.Assign({"C:\\Work\\a.txt", "C:\\Work\\Letters\\*+++++*"});
  Run();
  EXPECT_EQ(Content("Store/a.txt"), "one");
  EXPECT_EQ(Content("Store/Letters/Old/b.txt"), "two");
  Write("Store/a.txt", "spoilt");
  Run();
  EXPECT_EQ(Content("Store/a.txt"), "one");
  EXPECT_EQ(Log(),
            "Tarnvale Started Backup At 3/14/2008 11:00:00 AM\r\n\r\n"
            "C:\\Work\\a.txt -> C:\\Store\\a.txt, Backup Status: OK!"
            "C:\\Work\\Letters -> C:\\Store\\Letters, Backup Status: OK!\r\n"
            "Success >> Copied 2 Files, 11:00 To 11:00 On 3/14/2008.\r\n");
}

TEST_F(CompleteModeTest, AFolderRightUnderTheDriveGoesStraightIntoTheStorage) {
  Write("Work/a.txt", "one");
  engine.settings.Entries.Assign({"C:\\Work\\*+++++*"});
  Run();
  EXPECT_EQ(Content("Store/a.txt"), "one");
}

TEST_F(CompleteModeTest, TheItemBehindAFileAndAFolderIsPassedOver) {
  Write("Work/a.txt", "one");
  Write("Work/Letters/b.txt", "two");
  Write("Work/c.txt", "three");
  engine.settings.Entries.Assign(
      {"C:\\Work\\a.txt", "C:\\Work\\Letters\\*+++++*", "C:\\Work\\c.txt"});
  Run();
  EXPECT_EQ(Content("Store/a.txt"), "one");
  EXPECT_EQ(Content("Store/Letters/b.txt"), "two");
  EXPECT_EQ(Content("Store/c.txt"), "(missing)");
}

TEST_F(CompleteModeTest, ALongDirectoryIsCutAtThreeRowsBeyondTheList) {
  for (const char* name : {"1", "2", "3", "4", "5", "6"}) Write("Work/" + std::string(name), name);
  engine.settings.Entries.Assign({"C:\\Work\\*.*"});
  Run();
  std::vector<std::string> copied;
  for (const auto& entry : std::filesystem::directory_iterator(Native("Store"))) {
    copied.push_back(entry.path().filename());
  }
  std::sort(copied.begin(), copied.end());
  // Rows 0 to count + 2. The first file takes row 0, the others go on from 1.
  EXPECT_EQ(copied, (std::vector<std::string>{"1", "2", "3", "4"}));
}

TEST_F(CompleteModeTest, HiddenFilesDontPushADirectorysFilesOut) {
  for (const char* name : {".1", ".2", ".3", ".4", "a", "b"}) {
    Write("Work/" + std::string(name), name);
  }
  engine.settings.Entries.Assign({"C:\\Work\\*.*"});
  Run();
  EXPECT_EQ(Content("Store/a"), "a");
  EXPECT_EQ(Content("Store/b"), "b");
  EXPECT_EQ(Content("Store/.1"), "(missing)");
}

TEST_F(CompleteModeTest, AMissingSourceHarmsNoOtherAndIsLoggedAsGood) {
  Write("Work/a.txt", "one");
  Write("Store/gone.txt", "the copy of before");
  engine.settings.Entries.Assign({"C:\\Work\\a.txt", "C:\\Work\\gone.txt"});
  Run();
  EXPECT_EQ(Content("Store/a.txt"), "one");
  EXPECT_EQ(Content("Store/gone.txt"), "the copy of before");
  EXPECT_NE(Log().find("C:\\Work\\gone.txt -> C:\\Store\\gone.txt, Backup Status: OK!"),
            std::string::npos);
}

TEST_F(IncrementalModeTest, ASecondRunCopiesOnlyWhatWasTouchedInBetween) {
  Write("Work/a.txt", "a1");
  Write("Work/b.txt", "b1");
  engine.settings.BackupMode.Incremental = true;
  engine.settings.Entries.Assign({"C:\\Work\\a.txt", "C:\\Work\\b.txt"});
  Run();
  EXPECT_EQ(Content("Store/a.txt"), "a1");
  EXPECT_EQ(Content("Store/b.txt"), "b1");
  EXPECT_EQ(AttributesOf("C:\\Work\\a.txt"), 0) << "the archive bit is cleared";

  Write("Store/a.txt", "untouched by the run");
  Write("Work/b.txt", "b2");
  Run();
  EXPECT_EQ(Content("Store/a.txt"), "untouched by the run");
  EXPECT_EQ(Content("Store/b.txt"), "b2");
  EXPECT_EQ(Log(),
            "Tarnvale Started Backup At 3/14/2008 11:00:00 AM\r\n\r\n"
            "C:\\Work\\b.txt -> C:\\Store\\b.txt, Backup Status: >> Ok\r\n\r\n"
            "Success >> Copied 2 Files, 11:00 To 11:00 On 3/14/2008.\r\n");
}

TEST_F(IncrementalModeTest, AReadOnlyFileKeepsItsBitAndLosesTheArchiveBit) {
  Write("Work/a.txt", "a1");
  std::filesystem::permissions(Native("Work/a.txt"), std::filesystem::perms::owner_read);
  EXPECT_EQ(AttributesOf("C:\\Work\\a.txt"), 33);
  engine.settings.BackupMode.Incremental = true;
  engine.settings.Entries.Assign({"C:\\Work\\a.txt"});
  Run();
  EXPECT_EQ(Content("Store/a.txt"), "a1");
  EXPECT_EQ(AttributesOf("C:\\Work\\a.txt"), 1);
}

TEST_F(IncrementalModeTest, AReadOnlyFileCountsAsChangedEachTime) {
  Write("Work/a.txt", "a1");
  system.files.SetAttributes("C:\\Work\\a.txt", 1);
  engine.settings.BackupMode.Incremental = true;
  engine.settings.Entries.Assign({"C:\\Work\\a.txt"});
  Run();
  EXPECT_EQ(Content("Store/a.txt"), "a1");
  EXPECT_EQ(AttributesOf("C:\\Work\\a.txt"), 1) << "one minus 32 is no value, and that passes";
  std::filesystem::remove(Native("Store/a.txt"));
  Run();
  EXPECT_EQ(Content("Store/a.txt"), "a1");
}

TEST_F(SyncModeTest, EachSideGetsWhatOnlyTheOtherHas) {
  Write("Work/Pair/mine.txt", "mine");
  Write("Work/Pair/Sub/deep.txt", "deep");
  Write("Store/theirs.txt", "theirs");
  Write("Store/OnlyThere/x.txt", "x");
  engine.settings.Entries.Assign({"C:\\Work\\Pair\\*+++++*"});
  engine.settings.BackupMode.Sync = true;
  Run();
  EXPECT_EQ(Content("Store/mine.txt"), "mine");
  EXPECT_EQ(Content("Store/Sub/deep.txt"), "deep");
  EXPECT_EQ(Content("Work/Pair/theirs.txt"), "theirs");
  EXPECT_EQ(Content("Work/Pair/OnlyThere/x.txt"), "x");
  EXPECT_EQ(engine.run.StatusCaption.Get(),
            "Success >> Synchronized 2 Folders, 11:00 To 11:00 On 3/14/2008.");
}

TEST_F(SyncModeTest, ASecondDecidesAndAtEqualTimesTheFirstSideWins) {
  Write("Work/Pair/newer-there.txt", "old");
  Write("Store/newer-there.txt", "new");
  SetModified("Work/Pair/newer-there.txt", 1000000000);
  SetModified("Store/newer-there.txt", 1000000001);
  Write("Work/Pair/newer-here.txt", "new");
  Write("Store/newer-here.txt", "old");
  SetModified("Work/Pair/newer-here.txt", 1000000001);
  SetModified("Store/newer-here.txt", 1000000000);
  Write("Work/Pair/size.txt", "short");
  Write("Store/size.txt", "much longer");
  SetModified("Work/Pair/size.txt", 1000000000);
  SetModified("Store/size.txt", 1000000000);
  Write("Work/Pair/same.txt", "here!");
  Write("Store/same.txt", "there");
  SetModified("Work/Pair/same.txt", 1000000000);
  SetModified("Store/same.txt", 1000000000);
  engine.settings.Entries.Assign({"C:\\Work\\Pair\\*+++++*"});
  engine.settings.BackupMode.Sync = true;
  Run();
  EXPECT_EQ(Content("Work/Pair/newer-there.txt"), "new");
  EXPECT_EQ(Content("Store/newer-here.txt"), "new");
  EXPECT_EQ(Content("Store/size.txt"), "short");
  EXPECT_EQ(Content("Store/same.txt"), "there") << "no difference was found";
}

// What the user saves while the folders are synced.
TEST_F(SyncModeTest, WhatTheUserMakesDuringTheSyncIsNotReplaced) {
  Write("Store/a.txt", "newer");
  Write("Store/b.txt", "theirs");
  Write("Store/c.txt", "newer");
  Write("Store/Folder/x.txt", "theirs");
  for (const char* name : {"Work/Pair/a.txt", "Work/Pair/c.txt"}) {
    Write(name, "old");
    SetModified(name, 1000000000);
  }
  bool saved = false;
  for (int pass = 1; pass <= 100; ++pass) {
    machine.loop.OnYield(pass, [&] {
      if (saved || Content("Work/Pair/a.txt") != "newer") return;
      saved = true;
      Write("Work/Pair/b.txt", "mine");
      Write("Work/Pair/c.txt", "just saved");
      SetModified("Work/Pair/c.txt", 1100000000);
      Write("Work/Pair/Folder/x.txt", "mine");
    });
  }
  engine.settings.Entries.Assign({"C:\\Work\\Pair\\*+++++*"});
  engine.settings.BackupMode.Sync = true;
  Run();
  ASSERT_TRUE(saved);
  EXPECT_EQ(Content("Work/Pair/b.txt"), "mine");
  EXPECT_EQ(Content("Work/Pair/c.txt"), "just saved");
  EXPECT_EQ(Content("Work/Pair/Folder/x.txt"), "mine");
}

TEST_F(SyncModeTest, WhatIsSavedInTheStorageDuringTheSyncIsNotReplaced) {
  Write("Work/Pair/a.txt", "newer");
  Write("Work/Pair/b.txt", "mine");
  Write("Work/Pair/c.txt", "newer");
  for (const char* name : {"Store/a.txt", "Store/c.txt"}) {
    Write(name, "older");
    SetModified(name, 1000000000);
  }
  bool saved = false;
  for (int pass = 1; pass <= 100; ++pass) {
    machine.loop.OnYield(pass, [&] {
      if (saved || Content("Store/a.txt") != "newer") return;
      saved = true;
      Write("Store/b.txt", "theirs");
      Write("Store/c.txt", "saved");
      SetModified("Store/c.txt", 1000000000, 1);
    });
  }
  engine.settings.Entries.Assign({"C:\\Work\\Pair\\*+++++*"});
  engine.settings.BackupMode.Sync = true;
  Run();
  ASSERT_TRUE(saved);
  EXPECT_EQ(Content("Store/b.txt"), "theirs");
  EXPECT_EQ(Content("Store/c.txt"), "saved");
}

TEST_F(SyncModeTest, ASingleFileIsCopiedAsInCompleteMode) {
  Write("Work/a.txt", "one");
  engine.settings.Entries.Assign({"C:\\Work\\a.txt"});
  engine.settings.BackupMode.Sync = true;
  Run();
  EXPECT_EQ(Content("Store/a.txt"), "one");
}

}  // namespace
}  // namespace tarnvale::testing
