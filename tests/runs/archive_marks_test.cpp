// Incremental runs over files whose archive marks the user moves about.
#include <cstdlib>

#include "tests/runs/real_run.h"

namespace tarnvale::testing {
namespace {

class ArchiveMarksTest : public RealRun {
 protected:
  ArchiveMarksTest() { engine.settings.BackupMode.Incremental = true; }

  // As a person does it on a command line: with times, and with all attributes.
  void CopyAll(const std::string& from, const std::string& to) const {
    const std::string command = "cp -a '" + Native(from) + "' '" + Native(to) + "'";
    ASSERT_EQ(std::system(command.c_str()), 0);
  }
  void Rename(const std::string& from, const std::string& to) const {
    std::filesystem::rename(Native(from), Native(to));
  }

  void RunOf(const std::vector<std::string>& items) {
    engine.settings.Entries.Assign(items);
    Run();
  }

  // What a run of these items copies: their copies are spoilt before.
  std::vector<std::string> CopiedBy(const std::vector<std::string>& names) {
    std::vector<std::string> items;
    for (const std::string& name : names) {
      Write("Store/" + name, "spoilt");
      items.push_back("C:\\Work\\" + name);
    }
    RunOf(items);
    std::vector<std::string> copied;
    for (const std::string& name : names) {
      if (Content("Store/" + name) != "spoilt") copied.push_back(name);
    }
    return copied;
  }
};

TEST_F(ArchiveMarksTest, AFileThatWasCopiedWithItsMarkIsBackedUp) {
  Write("Work/a.txt", "a");
  RunOf({"C:\\Work\\a.txt"});
  CopyAll("Work/a.txt", "Work/b.txt");
  RunOf({"C:\\Work\\b.txt"});
  EXPECT_EQ(Content("Store/b.txt"), "a");
}

TEST_F(ArchiveMarksTest, AMarkCopiedOverAnotherFileHidesNoChange) {
  Write("Work/a.txt", "old a");
  Write("Work/b.txt", "new b");
  RunOf({"C:\\Work\\a.txt", "C:\\Work\\b.txt"});
  CopyAll("Work/b.txt", "Work/a.txt");
  RunOf({"C:\\Work\\a.txt", "C:\\Work\\b.txt"});
  EXPECT_EQ(Content("Store/a.txt"), "new b");
}

TEST_F(ArchiveMarksTest, AFileOfTheSameSizeAndTimeCopiedOverAnotherIsBackedUp) {
  for (const char* name : {"a.txt", "b.txt", "c.txt"}) {
    Write(std::string("Work/") + name, name);
    SetModified(std::string("Work/") + name, kNoon);
  }
  RunOf({"C:\\Work\\a.txt", "C:\\Work\\b.txt"});
  CopyAll("Work/b.txt", "Work/a.txt");
  RunOf({"C:\\Work\\a.txt", "C:\\Work\\b.txt"});
  EXPECT_EQ(Content("Store/a.txt"), "b.txt");
  CopyAll("Work/c.txt", "Work/a.txt");
  RunOf({"C:\\Work\\a.txt", "C:\\Work\\b.txt"});
  EXPECT_EQ(Content("Store/a.txt"), "c.txt");
}

TEST_F(ArchiveMarksTest, AFileRenamedOverAnotherOneIsBackedUpUnderThatName) {
  for (const char* name : {"a.txt", "c.txt"}) {
    Write(std::string("Work/") + name, name);
    SetModified(std::string("Work/") + name, kNoon);
  }
  RunOf({"C:\\Work\\a.txt", "C:\\Work\\c.txt"});
  Rename("Work/c.txt", "Work/a.txt");
  RunOf({"C:\\Work\\a.txt"});
  EXPECT_EQ(Content("Store/a.txt"), "c.txt");
}

TEST_F(ArchiveMarksTest, AnOlderVersionThatComesBackToItsNameIsBackedUp) {
  Write("Work/a.txt", "first");
  RunOf({"C:\\Work\\a.txt"});
  Rename("Work/a.txt", "Work/a.bak");
  Write("Work/a.txt", "second");
  RunOf({"C:\\Work\\a.txt"});
  EXPECT_EQ(Content("Store/a.txt"), "second");
  Rename("Work/a.bak", "Work/a.txt");
  RunOf({"C:\\Work\\a.txt"});
  EXPECT_EQ(Content("Store/a.txt"), "first");
}

TEST_F(ArchiveMarksTest, TwoFilesThatChangedNamesAreBothBackedUp) {
  Write("Work/a.txt", "1");
  Write("Work/b.txt", "2");
  SetModified("Work/a.txt", kNoon);
  SetModified("Work/b.txt", kNoon);
  RunOf({"C:\\Work\\a.txt", "C:\\Work\\b.txt"});
  Rename("Work/a.txt", "Work/c.txt");
  Rename("Work/b.txt", "Work/a.txt");
  Rename("Work/c.txt", "Work/b.txt");
  RunOf({"C:\\Work\\a.txt", "C:\\Work\\b.txt"});
  EXPECT_EQ(Content("Store/a.txt"), "2");
  EXPECT_EQ(Content("Store/b.txt"), "1");
}

TEST_F(ArchiveMarksTest, AFileOfAFolderThatTookAnothersNameIsBackedUp) {
  Write("Work/New/a.txt", "new");
  Write("Work/Old/a.txt", "old");
  RunOf({"C:\\Work\\Old\\a.txt"});
  RunOf({"C:\\Work\\New\\a.txt"});
  EXPECT_EQ(Content("Store/a.txt"), "new");
  Rename("Work/New", "Work/Away");
  Rename("Work/Old", "Work/New");
  RunOf({"C:\\Work\\New\\a.txt"});
  EXPECT_EQ(Content("Store/a.txt"), "old");
}

TEST_F(ArchiveMarksTest, AFileWithTwoNamesIsCopiedOnceUnderEach) {
  Write("Work/a.txt", "both");
  std::filesystem::create_hard_link(Native("Work/a.txt"), Native("Work/b.txt"));
  RunOf({"C:\\Work\\a.txt", "C:\\Work\\b.txt"});
  EXPECT_EQ(Content("Store/a.txt"), "both");
  EXPECT_EQ(Content("Store/b.txt"), "both");
  EXPECT_EQ(CopiedBy({"a.txt", "b.txt"}), std::vector<std::string>{});
}

TEST_F(ArchiveMarksTest, ALinkThatLeadsBackToAnOlderFileIsBackedUp) {
  Write("Work/1.txt", "one");
  Write("Work/2.txt", "two");
  const auto lead_to = [&](const std::string& name) {
    std::filesystem::remove(Native("Work/link"));
    std::filesystem::create_symlink(name, Native("Work/link"));
    RunOf({"C:\\Work\\link"});
  };
  lead_to("1.txt");
  lead_to("2.txt");
  lead_to("1.txt");
  EXPECT_EQ(Content("Store/link"), "one");
}

TEST_F(ArchiveMarksTest, FilesThatStayAsTheyAreAreNotCopiedAgain) {
  Write("Work/a.txt", "a");
  Write("Work/b.txt", "b");
  RunOf({"C:\\Work\\a.txt", "C:\\Work\\b.txt"});
  EXPECT_EQ(CopiedBy({"a.txt", "b.txt"}), std::vector<std::string>{});
  Write("Work/b.txt", "b again");
  EXPECT_EQ(CopiedBy({"a.txt", "b.txt"}), std::vector<std::string>{"b.txt"});
}

TEST_F(ArchiveMarksTest, TheMarkServesWithAnotherStateFolderToo) {
  Write("Work/a.txt", "a");
  Write("Work/b.txt", "b");
  RunOf({"C:\\Work\\a.txt", "C:\\Work\\b.txt"});
  Rename("Work/b.txt", "Work/c.txt");
  LinuxHost next_run(
      {.root = folder / "drive", .state_folder = folder / "other state", .locale_name = {}});
  EXPECT_EQ(next_run.files.Attributes("C:\\Work\\a.txt"), 0);
  EXPECT_EQ(next_run.files.Attributes("C:\\Work\\c.txt"), attribute::kArchive);
}

TEST_F(ArchiveMarksTest, WhatASyncBringsToTheComputerCountsAsChanged) {
  Write("Work/Pair/a.txt", "mine");
  RunOf({"C:\\Work\\Pair\\a.txt"});
  EXPECT_EQ(AttributesOf("C:\\Work\\Pair\\a.txt"), 0);
  Write("Store/a.txt", "thei");
  SetModified("Store/a.txt", kNoon + 1'000'000'000);
  engine.settings.BackupMode.Sync = true;
  RunOf({"C:\\Work\\Pair\\*+++++*"});
  EXPECT_EQ(Content("Work/Pair/a.txt"), "thei");
  EXPECT_EQ(AttributesOf("C:\\Work\\Pair\\a.txt"), attribute::kArchive);
}

}  // namespace
}  // namespace tarnvale::testing
