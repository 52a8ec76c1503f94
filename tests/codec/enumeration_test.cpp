#include "codec/enumeration.h"

#include "tests/codec/archive_fixture.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;

class EnumerationTest : public ArchiveFixture {
 protected:
  std::vector<std::string> Found(std::string_view folder, bool recurse = true) {
    const TextList list = EnumerateFiles(files, folder, recurse);
    std::vector<std::string> found;
    for (std::size_t i = 0; i <= list.UpperBound(); ++i) found.push_back(list[i]);
    return found;
  }

  void MakeFiles(const Path& folder, int count) {
    for (int i = 0; i < count; ++i) files.Write(folder + "\\" + std::to_string(100000 + i), "");
  }
};

TEST_F(EnumerationTest, AFoldersOwnFilesComeFirstThenOneSubtreeAfterTheOther) {
  files.Write("C:\\Data\\z.txt", "");
  files.Write("C:\\Data\\b\\2.txt", "");
  files.Write("C:\\Data\\b\\deep\\3.txt", "");
  files.Write("C:\\Data\\a\\1.txt", "");
  files.Write("C:\\Data\\c.txt", "");
  EXPECT_THAT(Found("C:\\Data"),
              ElementsAre("C:\\Data\\c.txt", "C:\\Data\\z.txt", "C:\\Data\\a\\1.txt",
                          "C:\\Data\\b\\2.txt", "C:\\Data\\b\\deep\\3.txt"));
}

TEST_F(EnumerationTest, WithoutRecursionFoldersAreLeftOut) {
  files.Write("C:\\Data\\a.txt", "");
  files.Write("C:\\Data\\sub\\b.txt", "");
  EXPECT_THAT(Found("C:\\Data\\", false), ElementsAre("C:\\Data\\a.txt"));
}

TEST_F(EnumerationTest, TheEmptyListHoldsTheEmptyText) {
  EXPECT_THAT(Found("C:\\Missing"), ElementsAre(""));
  files.MakeFolder("C:\\Data\\sub");
  EXPECT_THAT(Found("C:\\Data"), ElementsAre(""));
}

TEST_F(EnumerationTest, HiddenAndSystemFilesAndFoldersAreLeftOut) {
  files.Write("C:\\Data\\plain", "");
  files.Write("C:\\Data\\hidden", "");
  files.SetAttributes("C:\\Data\\hidden", attribute::kHidden);
  files.Write("C:\\Data\\system", "");
  files.SetAttributes("C:\\Data\\system", attribute::kSystem);
  files.Write("C:\\Data\\secret\\a", "");
  files.Find("C:\\Data\\secret")->flags = attribute::kHidden;
  files.Write("C:\\Data\\machine\\a", "");
  files.Find("C:\\Data\\machine")->flags = attribute::kSystem;
  EXPECT_THAT(Found("C:\\Data"), ElementsAre("C:\\Data\\plain"));
}

TEST_F(EnumerationTest, AFolderThatCannotBeReadGivesNothingAndTheOthersAll) {
  files.Write("C:\\Data\\a\\1", "");
  files.Write("C:\\Data\\b\\2", "");
  files.FailOn("List", "C:\\Data\\a\\*.*", 75);
  files.FailOn("ListFolders", "C:\\Data\\a\\", 75);
  EXPECT_THAT(Found("C:\\Data"), ElementsAre("C:\\Data\\b\\2"));
}

TEST_F(EnumerationTest, ASubtreeOf32768FilesIsTakenWhole) {
  MakeFiles("C:\\Data\\sub", 32768);
  EXPECT_EQ(Found("C:\\Data").size(), 32768U);
}

TEST_F(EnumerationTest, OfASubtreeOf32769FilesOnlyTheFirstIsTaken) {
  MakeFiles("C:\\Data\\sub", 32769);
  EXPECT_THAT(Found("C:\\Data"), ElementsAre("C:\\Data\\sub\\100000"));
}

TEST_F(EnumerationTest, ASubtreeThatIsTooLargeIsTakenAsFarAsTheOneBeforeIt) {
  MakeFiles("C:\\Data\\a", 3);
  MakeFiles("C:\\Data\\b", 32769);
  const auto found = Found("C:\\Data");
  ASSERT_EQ(found.size(), 6U);
  EXPECT_EQ(found[5], "C:\\Data\\b\\100002");
}

TEST_F(EnumerationTest, TheRootItselfMayHoldMoreThan32768Files) {
  MakeFiles("C:\\Data", 32770);
  EXPECT_EQ(Found("C:\\Data").size(), 32770U);
}

TEST_F(EnumerationTest, TheRootsTextIsTakenOutOfAPathWhereverItIs) {
  files.Write("C:\\data\\sub\\data\\f", "deep");
  files.Write("C:\\data\\subf", "flat");
  // "\data\" occurs twice in "\data\sub\data\f".
  archiver.SaveFilesToArchiv("\\data", archive, false);
  EXPECT_EQ(files.Content(archive), Number32(2) + Record("subf", "flat") + Record("subf", "flat"));
}

TEST_F(EnumerationTest, FindLastCountsFrom1AndGoesOnBehindEachHit) {
  EXPECT_EQ(FindLast("C:\\a\\b", "\\"), 5U);
  EXPECT_EQ(FindLast("abc", "\\"), 0U);
  EXPECT_EQ(FindLast("aaaa", "aa"), 3U);
  EXPECT_EQ(FindLast("aA", "a"), 1U);
  EXPECT_EQ(FindLast("abc", ""), 0U);
}

TEST_F(EnumerationTest, ADriveIsOneLetterAndAColonAsAWholePart) {
  for (const char* name : {"C:", "C:\\a", "a\\C:", "a\\C:\\b", "ab:c\\D:\\e", "::\\D:"}) {
    EXPECT_TRUE(HoldsDrive(name)) << name;
  }
  for (const char* name :
       {"", "a", ":", ":\\a", "ab:", "ab:\\c", "C:a", "a\\C:b", "a\\:\\b", "\\:\\a"}) {
    EXPECT_FALSE(HoldsDrive(name)) << name;
  }
}

}  // namespace
}  // namespace tarnvale::testing
