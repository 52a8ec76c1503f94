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

TEST_F(NamesTest, NamesThatNoPathCanTellHarmNoOther) {
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

TEST_F(NamesTest, AFileWithFivePlusSignsIsTakenForAFolder) {
  Write("Work/a+++++.txt", "plus");
  engine.settings.Entries.Assign({"C:\\Work\\a+++++.txt"});
  Run();
  EXPECT_FALSE(std::filesystem::is_regular_file(Native("Store/a+++++.txt")));
}

}  // namespace
}  // namespace tarnvale::testing
