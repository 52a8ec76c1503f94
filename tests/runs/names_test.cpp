#include "tests/runs/real_run.h"

namespace tarnvale::testing {
namespace {

using NamesTest = RealRun;

TEST_F(NamesTest, OddNamesSurviveARunInAFolder) {
  const std::vector<std::string> names = {
      "with blanks in it.txt", "Grüße – 日本.txt", std::string(255, 'x'), "-leading.dash",
      "trailing.point.",       " leading blank",   "semi;colon=[a].txt",
  };
  for (const std::string& name : names) Write("Work/Odd/" + name, name);
  engine.settings.Entries.Assign({"C:\\Work\\Odd\\*+++++*"});
  Run();
  for (const std::string& name : names) EXPECT_EQ(Content("Store/Odd/" + name), name);
}

TEST_F(NamesTest, OddNamesSurviveARunAsSingleFiles) {
  const std::vector<std::string> names = {"with blanks.txt", "Grüße.txt", std::string(255, 'x'),
                                          "-dash", "point."};
  for (const std::string& name : names) {
    Write("Work/" + name, name);
    engine.settings.Entries.Append("C:\\Work\\" + name);
  }
  Run();
  for (const std::string& name : names) EXPECT_EQ(Content("Store/" + name), name);
}

TEST_F(NamesTest, NamesOutsideThePathLanguageHarmNoOther) {
  Write("Work/Odd/a\\b.txt", "a");
  Write("Work/Odd/c*d.txt", "c");
  Write("Work/Odd/good.txt", "good");
  Write("Work/Odd/Sub*Folder/e.txt", "e");
  engine.settings.Entries.Assign({"C:\\Work\\Odd\\*+++++*"});
  Run();
  EXPECT_EQ(Content("Store/Odd/good.txt"), "good");
  Run();
  EXPECT_EQ(Content("Store/Odd/good.txt"), "good");
  EXPECT_EQ(Content("Store/Odd/a\\b.txt"), "(missing)");
  EXPECT_EQ(Content("Store/Odd/c*d.txt"), "(missing)");
}

// --- names that come and go between the runs of one process

TEST_F(NamesTest, ASyncFindsWhatCameSinceTheLastOne) {
  const auto write = [&](const std::string& path, const std::string& text, int time) {
    Write(path, text);
    SetModified(path, kNoon + time);
  };
  engine.settings.Entries.Assign({"C:\\Work\\*+++++*"});
  engine.settings.BackupMode.Sync = true;
  write("Work/a.txt", "new", 0);
  Run();
  EXPECT_EQ(Content("Store/a.txt"), "new");
  write("Work/a.txt", "changed", 1);
  write("Work/B.txt", "old", 0);
  write("Store/b.txt", "newer", 2);
  write("Work/c.txt", "c", 0);
  Run();
  EXPECT_EQ(Content("Store/a.txt"), "changed");
  EXPECT_EQ(Content("Work/B.txt"), "newer");
  EXPECT_EQ(Content("Store/c.txt"), "c");
  write("Work/D.txt", "newer", 2);
  write("Store/d.txt", "old", 0);
  Run();
  EXPECT_EQ(Content("Store/d.txt"), "newer");
  EXPECT_EQ(Content("Store/D.txt"), "(missing)") << "one spelling only";
}

TEST_F(NamesTest, AFolderThatARunMadeIsFoundByTheNextInAnyCase) {
  Write("Work/One/.cFg/a.txt", "a");
  Write("Work/Two/.cFg/b.txt", "b");
  Write("Work/Three/.cfg/c.txt", "c");
  for (const char* item : {"C:\\Work\\One\\.cFg\\a.txt", "C:\\Work\\Two\\.cFg\\*+++++*",
                           "C:\\Work\\Three\\.cfg\\*+++++*"}) {
    engine.settings.Entries.Assign({item});
    Run();
  }
  EXPECT_EQ(Content("Store/a.txt"), "a");
  EXPECT_EQ(Content("Store/.cFg/b.txt"), "b");
  EXPECT_EQ(Content("Store/.cFg/c.txt"), "c");
  EXPECT_FALSE(std::filesystem::exists(Native("Store/.cfg"))) << "one folder";
}

TEST_F(NamesTest, AFileWithFivePlusSignsIsTakenForAFolder) {
  Write("Work/a+++++.txt", "plus");
  engine.settings.Entries.Assign({"C:\\Work\\a+++++.txt"});
  Run();
  EXPECT_FALSE(std::filesystem::is_regular_file(Native("Store/a+++++.txt")));
}

}  // namespace
}  // namespace tarnvale::testing
