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
  Write("Papers/a.txt", "a");
  Write("top.txt", "top");
  std::filesystem::remove(Native("Store"));
  engine.settings.Entries.Assign({"C:\\Papers\\a.txt\\", "C:/Papers/a.txt", "C:top.txt"});
  Run();
  EXPECT_FALSE(std::filesystem::exists(Native("Store")));
  std::filesystem::create_directory(Native("Store"));
  Write("Papers/b.txt", "b");
  engine.settings.Entries.Append("C:\\Papers\\b.txt");
  Run();
  EXPECT_EQ(Content("Store/b.txt"), "b");
}

// --- inside a folder that is copied

TEST_P(StorageLocationTest, CopiesAreNotCopiedAgainFromALocationInsideTheItem) {
  for (int i = 0; i < 5; ++i) {
    Write("Home/Papers/" + std::to_string(i), "papers");
    Write("Home/Papers/Sub/" + std::to_string(i), "sub");
  }
  Write("Home/Papers/Store/mine.txt", "lies here already");
  engine.run.RunDestination = "C:\\Home\\Papers\\Store";
  engine.settings.Entries.Assign({"C:\\Home\\Papers\\*+++++*"});
  Run();
  const std::size_t files = FilesBelow("Home/Papers");
  EXPECT_EQ(files, GetParam() == Mode::kSync ? 22U : 21U);
  for (int run = 0; run < 3; ++run) {
    Run();
    EXPECT_EQ(FilesBelow("Home/Papers"), files);
  }
  const std::string copies =
      GetParam() == Mode::kSync ? "Home/Papers/Store/" : "Home/Papers/Store/Papers/";
  EXPECT_EQ(Content(copies + "4"), "papers");
  EXPECT_EQ(Content(copies + "Sub/4"), "sub");
}

TEST_P(StorageLocationTest, ItemsThatOverlapDoNotGrowWithEachRun) {
  if (GetParam() == Mode::kSync) return;  // it has one item
  Write("Home/a.txt", "a");
  Write("Home/Papers/Deep/b.txt", "b");
  std::filesystem::create_directories(Native("Home/Papers/Deep/Store"));
  engine.run.RunDestination = "C:\\Home\\Papers\\Deep\\Store";
  engine.settings.Entries.Assign({"C:\\Home\\*+++++*", "C:\\Home\\Papers\\*+++++*"});
  Run();
  const std::size_t files = FilesBelow("Home");
  for (int run = 0; run < 3; ++run) {
    Run();
    EXPECT_EQ(FilesBelow("Home"), files);
  }
  EXPECT_EQ(Content("Home/Papers/Deep/Store/Papers/Deep/b.txt"), "b");
}

TEST_P(StorageLocationTest, AnItemThatIsTheLocationItselfDoesNotGrowWithEachRun) {
  Write("Home/Papers/a.txt", "a");
  engine.run.RunDestination = "C:\\Home\\Papers";
  engine.settings.Entries.Assign({"C:\\Home\\Papers\\*+++++*"});
  Run();
  const std::size_t files = FilesBelow("Home");
  for (int run = 0; run < 3; ++run) {
    Run();
    EXPECT_EQ(FilesBelow("Home"), files);
  }
}

TEST_P(StorageLocationTest, AnItemInsideTheLocationDoesNotGrowWithEachRun) {
  Write("Store/Papers/a.txt", "a");
  Write("Store/b.txt", "b");
  engine.settings.Entries.Assign({"C:\\Store\\Papers\\*+++++*"});
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
