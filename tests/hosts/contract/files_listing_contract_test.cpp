// Listings: what every file system must do.
#include <gmock/gmock.h>

#include "tests/hosts/contract/host_under_test.h"
#include "tests/support/raised.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ListingContract : public HostTest {
 protected:
  void WriteAll(const std::vector<std::string>& names) {
    for (const std::string& name : names) host.Write("C:\\Data\\" + name, "x");
  }
};
INSTANTIATE_TEST_SUITE_P(Hosts, ListingContract, ::testing::ValuesIn(AllHosts()), NameOfHost);

TEST_P(ListingContract, NamesComeInOrderWithoutRegardToCase) {
  WriteAll({"delta", "Bravo", "alpha", "Charlie"});
  EXPECT_THAT(files.List("C:\\Data\\*", {}), ElementsAre("alpha", "Bravo", "Charlie", "delta"));
}

TEST_P(ListingContract, StarPointStarIsEverything) {
  WriteAll({"a.txt", "no point", "b.tar.gz"});
  EXPECT_THAT(files.List("C:\\Data\\*.*", {}), ElementsAre("a.txt", "b.tar.gz", "no point"));
}

TEST_P(ListingContract, AStarStandsForAnyRun) {
  WriteAll({"a.txt", "b.TXT", "c.doc", "txt", ".txt2"});
  EXPECT_THAT(files.List("C:\\Data\\*.txt", {}), ElementsAre("a.txt", "b.TXT"));
  EXPECT_THAT(files.List("C:\\Data\\c*c", {}), ElementsAre("c.doc"));
}

TEST_P(ListingContract, AQuestionMarkStandsForOneCharacter) {
  WriteAll({"a1", "a12", "a", "b1"});
  EXPECT_THAT(files.List("C:\\Data\\a?", {}), ElementsAre("a1"));
}

TEST_P(ListingContract, ANameIsAPatternForItself) {
  WriteAll({"a.txt", "aa.txt"});
  EXPECT_THAT(files.List("C:\\Data\\A.TXT", {}), ElementsAre("a.txt"));
  EXPECT_THAT(files.List("C:\\Data\\b.txt", {}), IsEmpty());
}

TEST_P(ListingContract, FoldersAreNotAmongTheFiles) {
  host.MakeFolder("C:\\Data\\Sub");
  WriteAll({"a.txt"});
  EXPECT_THAT(files.List("C:\\Data\\*.*", {}), ElementsAre("a.txt"));
  EXPECT_THAT(files.List("C:\\Data\\Sub", {}), IsEmpty());
}

TEST_P(ListingContract, ReadOnlyFilesAreAmongThem) {
  WriteAll({"a.txt"});
  files.SetAttributes("C:\\Data\\a.txt", attribute::kReadOnly);
  EXPECT_THAT(files.List("C:\\Data\\*.*", {}), ElementsAre("a.txt"));
}

TEST_P(ListingContract, HiddenFilesAreAmongThemOnlyWhenWanted) {
  WriteAll({"a.txt", ".secret"});
  host.HideFile("C:\\Data\\.secret");
  EXPECT_THAT(files.List("C:\\Data\\*.*", {}), ElementsAre("a.txt"));
  EXPECT_THAT(files.List("C:\\Data\\*.*", {.system = true}), ElementsAre("a.txt"));
  EXPECT_THAT(files.List("C:\\Data\\*.*", {.hidden = true}), ElementsAre(".secret", "a.txt"));
}

TEST_P(ListingContract, AMissingFolderHasAnEmptyList) {
  EXPECT_THAT(files.List("C:\\Missing\\*.*", {}), IsEmpty());
  EXPECT_THAT(files.List("D:\\*.*", {}), IsEmpty());
  EXPECT_THAT(files.List("None", {}), IsEmpty());
}

TEST_P(ListingContract, FoldersAreListedInOrder) {
  for (const char* name : {"C:\\Data\\delta", "C:\\Data\\Bravo", "C:\\Data\\alpha"}) {
    host.MakeFolder(name);
  }
  WriteAll({"a.txt"});
  EXPECT_THAT(files.ListFolders("C:\\Data", {}), ElementsAre("alpha", "Bravo", "delta"));
  EXPECT_THAT(files.ListFolders("C:\\Data\\", {}), ElementsAre("alpha", "Bravo", "delta"));
}

TEST_P(ListingContract, HiddenFoldersAreListedOnlyWhenWanted) {
  host.MakeFolder("C:\\Data\\.git");
  host.HideFolder("C:\\Data\\.git");
  host.MakeFolder("C:\\Data\\Sub");
  EXPECT_THAT(files.ListFolders("C:\\Data", {}), ElementsAre("Sub"));
  EXPECT_THAT(files.ListFolders("C:\\Data", {.hidden = true}), ElementsAre(".git", "Sub"));
}

TEST_P(ListingContract, ListFoldersOfWhatIsNoFolderRaises76) {
  WriteAll({"a.txt"});
  EXPECT_EQ(RaisedBy([&] { files.ListFolders("C:\\Missing", {}); }), 76);
  EXPECT_EQ(RaisedBy([&] { files.ListFolders("C:\\Data\\a.txt", {}); }), 76);
  EXPECT_EQ(RaisedBy([&] { files.ListFolders("D:\\", {}); }), 76);
}

TEST_P(ListingContract, AnOpenedFolderGivesAllItsFilesAndFolders) {
  host.MakeFolder("C:\\Data\\Sub");
  host.MakeFolder("C:\\Data\\.git");
  host.HideFolder("C:\\Data\\.git");
  host.Write("C:\\Data\\b.txt", "hello");
  host.SetModified("C:\\Data\\b.txt", 1205492401);
  host.Write("C:\\Data\\.a", "");
  host.HideFile("C:\\Data\\.a");
  host.SetModified("C:\\Data\\.a", 1205492402);
  const FolderContents contents = files.OpenFolder("C:\\data")->Contents();
  EXPECT_THAT(contents.files,
              ElementsAre(FolderEntry{".a", 0, 1205492402}, FolderEntry{"b.txt", 5, 1205492401}));
  EXPECT_THAT(contents.folders, ElementsAre(".git", "Sub"));
}

TEST_P(ListingContract, AnEmptyFolderOpensEmpty) {
  const FolderContents contents = files.OpenFolder("C:\\Data\\")->Contents();
  EXPECT_THAT(contents.files, IsEmpty());
  EXPECT_THAT(contents.folders, IsEmpty());
}

TEST_P(ListingContract, OpeningWhatIsNoFolderRaises76) {
  WriteAll({"a.txt"});
  EXPECT_EQ(RaisedBy([&] { files.OpenFolder("C:\\Missing"); }), 76);
  EXPECT_EQ(RaisedBy([&] { files.OpenFolder("C:\\Data\\a.txt"); }), 76);
}

}  // namespace
}  // namespace tarnvale::testing
