// Storage locations that are missing, or lie where they are copied themselves.
#include "tests/runs/real_run.h"

namespace tarnvale::testing {
namespace {

enum class Mode { kComplete, kIncremental, kSync };

class StorageLocationTest : public RealRun, public ::testing::WithParamInterface<Mode> {
 protected:
  StorageLocationTest() {
    engine.settings.BackupMode.Complete = GetParam() == Mode::kComplete;
    engine.settings.BackupMode.Incremental = GetParam() == Mode::kIncremental;
    engine.settings.BackupMode.Sync = GetParam() == Mode::kSync;
  }

  std::size_t FilesBelow(const std::string& place) const {
    std::size_t files = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(Native(place))) {
      if (entry.is_regular_file()) ++files;
    }
    return files;
  }
};

INSTANTIATE_TEST_SUITE_P(Modes, StorageLocationTest,
                         ::testing::Values(Mode::kComplete, Mode::kIncremental, Mode::kSync));

TEST_P(StorageLocationTest, NoItemMakesAFileOfAMissingLocation) {
  Write("Work/a.txt", "a");
  Write("top.txt", "top");
  std::filesystem::remove(Native("Store"));
  engine.settings.Entries.Assign({"C:\\Work\\a.txt\\", "C:/Work/a.txt", "C:top.txt"});
  Run();
  EXPECT_FALSE(std::filesystem::exists(Native("Store")));
  std::filesystem::create_directory(Native("Store"));
  Write("Work/b.txt", "b");
  engine.settings.Entries.Append("C:\\Work\\b.txt");
  Run();
  EXPECT_EQ(Content("Store/b.txt"), "b");
}

// --- inside a folder that is copied

TEST_P(StorageLocationTest, CopiesAreNotCopiedAgainFromALocationInsideTheItem) {
  for (int i = 0; i < 5; ++i) {
    Write("Home/Work/" + std::to_string(i), "work");
    Write("Home/Work/Sub/" + std::to_string(i), "sub");
  }
  Write("Home/Work/Store/mine.txt", "lies here already");
  engine.run.RunDestination = "C:\\Home\\Work\\Store";
  engine.settings.Entries.Assign({"C:\\Home\\Work\\*+++++*"});
  Run();
  const std::size_t files = FilesBelow("Home/Work");
  EXPECT_EQ(files, GetParam() == Mode::kSync ? 22U : 21U);
  for (int run = 0; run < 3; ++run) {
    Run();
    EXPECT_EQ(FilesBelow("Home/Work"), files);
  }
  const std::string copies =
      GetParam() == Mode::kSync ? "Home/Work/Store/" : "Home/Work/Store/Work/";
  EXPECT_EQ(Content(copies + "4"), "work");
  EXPECT_EQ(Content(copies + "Sub/4"), "sub");
}

TEST_P(StorageLocationTest, ItemsThatOverlapDoNotGrowWithEachRun) {
  if (GetParam() == Mode::kSync) return;  // it has one item
  Write("Home/a.txt", "a");
  Write("Home/Work/Deep/b.txt", "b");
  std::filesystem::create_directories(Native("Home/Work/Deep/Store"));
  engine.run.RunDestination = "C:\\Home\\Work\\Deep\\Store";
  engine.settings.Entries.Assign({"C:\\Home\\*+++++*", "C:\\Home\\Work\\*+++++*"});
  Run();
  const std::size_t files = FilesBelow("Home");
  for (int run = 0; run < 3; ++run) {
    Run();
    EXPECT_EQ(FilesBelow("Home"), files);
  }
  EXPECT_EQ(Content("Home/Work/Deep/Store/Work/Deep/b.txt"), "b");
}

TEST_P(StorageLocationTest, AnItemThatIsTheLocationItselfDoesNotGrowWithEachRun) {
  Write("Home/Work/a.txt", "a");
  engine.run.RunDestination = "C:\\Home\\Work";
  engine.settings.Entries.Assign({"C:\\Home\\Work\\*+++++*"});
  Run();
  const std::size_t files = FilesBelow("Home");
  for (int run = 0; run < 3; ++run) {
    Run();
    EXPECT_EQ(FilesBelow("Home"), files);
  }
}

TEST_P(StorageLocationTest, AnItemInsideTheLocationDoesNotGrowWithEachRun) {
  Write("Store/Work/a.txt", "a");
  Write("Store/b.txt", "b");
  engine.settings.Entries.Assign({"C:\\Store\\Work\\*+++++*"});
  Run();
  const std::size_t files = FilesBelow("Store");
  for (int run = 0; run < 3; ++run) {
    Run();
    EXPECT_EQ(FilesBelow("Store"), files);
  }
}

// --- a folder that was moved away

TEST_P(StorageLocationTest, ALinkInPlaceOfAFolderKeepsNoOtherFromBeingCopied) {
  Write("Work/Pair/Moved/a.txt", "a");
  Write("Work/Pair/z.txt", "z");
  engine.settings.Entries.Assign({"C:\\Work\\Pair\\*+++++*"});
  Run();
  std::filesystem::rename(Native("Work/Pair/Moved"), Native("Elsewhere"));
  std::filesystem::create_directory_symlink(Native("Elsewhere"), Native("Work/Pair/Moved"));
  Write("Work/Pair/z.txt", "z, and changed");
  Run();
  const std::string store = GetParam() == Mode::kSync ? "Store/" : "Store/Pair/";
  EXPECT_EQ(Content(store + "z.txt"), "z, and changed");
  EXPECT_EQ(Content(store + "Moved/a.txt"), "a") << "the copy stays";
  EXPECT_TRUE(std::filesystem::is_symlink(Native("Work/Pair/Moved")));
}

}  // namespace
}  // namespace tarnvale::testing
