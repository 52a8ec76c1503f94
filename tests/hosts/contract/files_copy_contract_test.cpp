// Copying files and folders: what every file system must do.
#include <gmock/gmock.h>

#include "tests/hosts/contract/host_under_test.h"
#include "tests/support/raised.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;

class CopyContract : public HostTest {
 protected:
  CopyContract() {
    host.MakeFolder("C:\\From");
    host.MakeFolder("C:\\To");
  }
};
INSTANTIATE_TEST_SUITE_P(Hosts, CopyContract, ::testing::ValuesIn(AllHosts()), NameOfHost);

TEST_P(CopyContract, TheCopyHasContentAndTimeOfItsSource) {
  host.Write("C:\\From\\a.txt", "hello");
  host.SetModified("C:\\From\\a.txt", 1205492401);
  files.CopyWhole("C:\\From\\a.txt", "C:\\To\\b.txt");
  EXPECT_EQ(host.Content("C:\\To\\b.txt"), "hello");
  EXPECT_EQ(host.Modified("C:\\To\\b.txt"), 1205492401);
  EXPECT_EQ(host.Content("C:\\From\\a.txt"), "hello");
}

TEST_P(CopyContract, TheCopyReplacesItsTarget) {
  host.Write("C:\\From\\a.txt", "new");
  host.Write("C:\\To\\a.txt", "old and longer");
  files.CopyWhole("C:\\From\\a.txt", "C:\\To\\a.txt");
  EXPECT_EQ(host.Content("C:\\To\\a.txt"), "new");
  EXPECT_THAT(host.Names("C:\\To"), ElementsAre("a.txt"));
}

TEST_P(CopyContract, ATargetWithASeparatorAtItsEndIsNoFile) {
  host.Write("C:\\From\\a.txt", "a");
  host.Write("C:\\To\\b.txt", "b");
  for (const char* target : {"C:\\To\\New\\", "C:\\To\\New/", "C:\\To\\b.txt\\"}) {
    EXPECT_EQ(RaisedBy([&] { files.CopyWhole("C:\\From\\a.txt", target); }), 76) << target;
    EXPECT_EQ(RaisedBy([&] { host.Open().OpenOutput(1, target); }), 76) << target;
    EXPECT_EQ(RaisedBy([&] { host.Open().OpenBinary(1, target); }), 76) << target;
    EXPECT_EQ(RaisedBy([&] { host.Open().OpenOwn(1, target); }), 76) << target;
  }
  EXPECT_EQ(RaisedBy([&] { files.CopyWhole("C:\\From\\a.txt", "C:\\To\\"); }), 75);
  EXPECT_EQ(RaisedBy([&] { files.Length("C:\\To\\b.txt\\"); }), 76);
  EXPECT_THAT(host.Names("C:\\To"), ElementsAre("b.txt"));
  EXPECT_EQ(host.Content("C:\\To\\b.txt"), "b");
}

TEST_P(CopyContract, AFolderMayHaveASeparatorAtItsEnd) {
  host.Write("C:\\From\\a.txt", "a");
  files.CreateFolder("C:\\To\\New\\");
  files.CopyTree("C:\\From\\", "C:\\To\\Tree\\", [] {});
  files.MoveTree("C:\\From\\", "C:\\To\\Moved\\");
  EXPECT_THAT(host.Names("C:\\To"), ElementsAre("Moved", "New", "Tree"));
  EXPECT_EQ(host.Content("C:\\To\\Moved\\a.txt"), "a");
}

TEST_P(CopyContract, ATargetThatDiffersInCaseIsTheSameFile) {
  host.Write("C:\\From\\A.TXT", "new");
  host.Write("C:\\To\\a.txt", "old");
  files.CopyWhole("C:\\From\\A.TXT", "C:\\To\\A.TXT");
  EXPECT_EQ(host.Content("C:\\To\\a.txt"), "new");
  EXPECT_EQ(host.Names("C:\\To").size(), 1U);
}

TEST_P(CopyContract, ReadOnlyGoesWithTheCopy) {
  host.Write("C:\\From\\a.txt", "hello");
  files.SetAttributes("C:\\From\\a.txt", attribute::kReadOnly);
  files.CopyWhole("C:\\From\\a.txt", "C:\\To\\a.txt");
  EXPECT_NE(files.Attributes("C:\\To\\a.txt") & attribute::kReadOnly, 0);
}

TEST_P(CopyContract, ACopyCountsAsChangedEvenIfItsSourceDoesNot) {
  if (!host.ClearsArchive()) GTEST_SKIP() << kNoArchive;
  host.Write("C:\\From\\a.txt", "hello");
  files.SetAttributes("C:\\From\\a.txt", 0);
  files.CopyWhole("C:\\From\\a.txt", "C:\\To\\a.txt");
  EXPECT_EQ(files.Attributes("C:\\To\\a.txt"), attribute::kArchive);
  EXPECT_EQ(files.Attributes("C:\\From\\a.txt"), 0);
}

TEST_P(CopyContract, ACopyOverAClearedFileSetsItsArchiveAttribute) {
  if (!host.ClearsArchive()) GTEST_SKIP() << kNoArchive;
  host.Write("C:\\From\\a.txt", "new content");
  host.Write("C:\\To\\a.txt", "old");
  files.SetAttributes("C:\\To\\a.txt", 0);
  files.CopyWhole("C:\\From\\a.txt", "C:\\To\\a.txt");
  EXPECT_EQ(files.Attributes("C:\\To\\a.txt"), attribute::kArchive);
}

TEST_P(CopyContract, AFileThatChangedWhileItWasCopiedKeepsItsArchiveAttribute) {
  if (!host.ClearsArchive()) GTEST_SKIP() << kNoArchive;
  host.Write("C:\\Data\\a.txt", "one");
  files.CopyWhole("C:\\Data\\a.txt", "C:\\Data\\copy");
  host.Write("C:\\Data\\a.txt", "two, and more");
  files.SetAttributes("C:\\Data\\a.txt", 0);
  EXPECT_EQ(files.Attributes("C:\\Data\\a.txt"), attribute::kArchive);
  files.CopyWhole("C:\\Data\\a.txt", "C:\\Data\\copy");
  files.SetAttributes("C:\\Data\\a.txt", 0);
  EXPECT_EQ(files.Attributes("C:\\Data\\a.txt"), 0);
}

TEST_P(CopyContract, AfterAFailedCopyTheArchiveAttributeGoesAllTheSame) {
  if (!host.ClearsArchive()) GTEST_SKIP() << kNoArchive;
  host.Write("C:\\Data\\a.txt", "one");
  files.CopyWhole("C:\\Data\\a.txt", "C:\\Data\\copy");
  host.Write("C:\\Data\\a.txt", "two, and more");
  EXPECT_EQ(RaisedBy([&] { files.CopyWhole("C:\\Data\\a.txt", "C:\\None\\copy"); }), 76);
  files.SetAttributes("C:\\Data\\a.txt", 0);
  EXPECT_EQ(files.Attributes("C:\\Data\\a.txt"), 0);
}

TEST_P(CopyContract, WithoutASourceItRaises53) {
  host.Write("C:\\To\\a.txt", "old");
  EXPECT_EQ(RaisedBy([&] { files.CopyWhole("C:\\From\\missing", "C:\\To\\a.txt"); }), 53);
  EXPECT_EQ(RaisedBy([&] { files.CopyWhole("C:\\Missing\\a.txt", "C:\\To\\a.txt"); }), 53);
  EXPECT_EQ(RaisedBy([&] { files.CopyWhole("C:\\From", "C:\\To\\a.txt"); }), 53);
  EXPECT_EQ(host.Content("C:\\To\\a.txt"), "old");
}

TEST_P(CopyContract, WithoutAFolderForTheTargetItRaises76) {
  host.Write("C:\\From\\a.txt", "hello");
  EXPECT_EQ(RaisedBy([&] { files.CopyWhole("C:\\From\\a.txt", "C:\\Missing\\a.txt"); }), 76);
  EXPECT_EQ(RaisedBy([&] { files.CopyWhole("C:\\From\\a.txt", "D:\\a.txt"); }), 76);
  EXPECT_EQ(RaisedBy([&] { files.CopyWhole("C:\\From\\a.txt", "None\\a.txt"); }), 76);
}

TEST_P(CopyContract, AReadOnlyTargetRaises75AndStays) {
  host.Write("C:\\From\\a.txt", "new");
  host.Write("C:\\To\\a.txt", "old");
  files.SetAttributes("C:\\To\\a.txt", attribute::kReadOnly);
  EXPECT_EQ(RaisedBy([&] { files.CopyWhole("C:\\From\\a.txt", "C:\\To\\a.txt"); }), 75);
  EXPECT_EQ(host.Content("C:\\To\\a.txt"), "old");
  EXPECT_THAT(host.Names("C:\\To"), ElementsAre("a.txt"));
}

TEST_P(CopyContract, ATargetThatIsAFolderRaises75) {
  host.Write("C:\\From\\a.txt", "new");
  EXPECT_EQ(RaisedBy([&] { files.CopyWhole("C:\\From\\a.txt", "C:\\To"); }), 75);
  EXPECT_EQ(RaisedBy([&] { files.CopyWhole("C:\\From\\a.txt", "C:\\"); }), 75);
}

TEST_P(CopyContract, ACopyOntoItselfChangesNothing) {
  host.Write("C:\\From\\a.txt", "hello");
  files.CopyWhole("C:\\From\\a.txt", "C:\\FROM\\A.TXT");
  EXPECT_EQ(host.Content("C:\\From\\a.txt"), "hello");
  EXPECT_EQ(host.Names("C:\\From").size(), 1U);
}

TEST_P(CopyContract, CopyEntryCopiesAPlainFileWhole) {
  host.Write("C:\\From\\a.txt", "hello");
  host.SetModified("C:\\From\\a.txt", 1205492401);
  const auto from = files.OpenFolder("C:\\From");
  const auto to = files.OpenFolder("C:\\To");
  files.CopyEntry({*from, "a.txt"}, {*to, "a.txt"});
  EXPECT_EQ(host.Content("C:\\To\\a.txt"), "hello");
  EXPECT_EQ(host.Modified("C:\\To\\a.txt"), 1205492401);
  EXPECT_EQ(RaisedBy([&] { files.CopyEntry({*from, "missing"}, {*to, "a.txt"}); }), 53);
}

TEST_P(CopyContract, AHeldFolderIsReadAndFilledByExactNames) {
  host.Write("C:\\From\\a.txt", "hello");
  host.MakeFolder("C:\\From\\Sub\\Deep");
  const auto from = files.OpenFolder("C:\\from");
  const auto to = files.OpenFolder("C:\\To");
  EXPECT_EQ(from->Contents().files.size(), 1U);
  EXPECT_THAT(from->Contents().folders, ElementsAre("Sub"));
  EXPECT_THAT(from->Inner("Sub")->Contents().folders, ElementsAre("Deep"));
  EXPECT_THAT(from->Inner("Sub\\Deep")->Contents().folders, ElementsAre());
  EXPECT_THAT(from->Inner("")->Contents().folders, ElementsAre("Sub"));
  EXPECT_EQ(RaisedBy([&] { from->Inner("missing"); }), 76);
  EXPECT_EQ(RaisedBy([&] { from->Inner("a.txt"); }), 76);
  EXPECT_EQ(RaisedBy([&] { from->Inner(".."); }), 76);
  files.CopyWhole("C:\\From\\a.txt", {*to, "b.txt"});
  EXPECT_EQ(host.Content("C:\\To\\b.txt"), "hello");
  files.CopyTree({*from, "Sub"}, {*to, "New"}, [] {});
  EXPECT_TRUE(files.FolderExists("C:\\To\\New\\Deep"));
  EXPECT_EQ(RaisedBy([&] { files.CopyTree({*from, "missing"}, {*to, "New"}, [] {}); }), 76);
}

TEST_P(CopyContract, AHeldFolderGivesOneFileAsItIsNow) {
  host.MakeFolder("C:\\Data\\folder");
  host.Write("C:\\Data\\a.txt", "one");
  const auto data = files.OpenFolder("C:\\Data");
  EXPECT_EQ(data->File("a.txt"), data->Contents().files.at(0));
  host.Write("C:\\Data\\a.txt", "longer");
  ASSERT_TRUE(data->File("a.txt").has_value());
  EXPECT_EQ(data->File("a.txt")->size_bytes, 6);
  EXPECT_EQ(data->File("folder"), std::nullopt);
  EXPECT_EQ(data->File("none"), std::nullopt);
}

TEST_P(CopyContract, CopyTreeFillsAHeldFolder) {
  host.Write("C:\\From\\a.txt", "hello");
  const auto to = files.OpenFolder("C:\\To");
  files.CopyTree("C:\\From", {*to, "New"}, [] {});
  EXPECT_EQ(host.Content("C:\\To\\New\\a.txt"), "hello");
  files.CopyTree("C:\\From", {*to, ""}, [] {});
  EXPECT_EQ(host.Content("C:\\To\\a.txt"), "hello");
  EXPECT_EQ(RaisedBy([&] { files.CopyTree("C:\\Missing", {*to, ""}, [] {}); }), 76);
  EXPECT_EQ(RaisedBy([&] { files.CopyTree("C:\\From", {*to, "a.txt"}, [] {}); }), 75);
}

TEST_P(CopyContract, AHeldFolderMakesWhatIsNotThere) {
  const auto to = files.OpenFolder("C:\\To");
  to->MakeFolder("Sub");
  to->MakeFile("a.txt");
  EXPECT_EQ(host.Content("C:\\To\\a.txt"), "");
  EXPECT_TRUE(files.FolderExists("C:\\To\\Sub"));
  EXPECT_EQ(RaisedBy([&] { to->MakeFolder("Sub"); }), 75);
  EXPECT_EQ(RaisedBy([&] { to->MakeFile("Sub"); }), 75);
  EXPECT_EQ(RaisedBy([&] { to->MakeFile("a.txt"); }), 75);
  EXPECT_EQ(RaisedBy([&] { to->MakeFolder(".."); }), 75);
  EXPECT_EQ(RaisedBy([&] { to->MakeFile("a*"); }), 75);
}

TEST_P(CopyContract, AHeldFolderFindsWhatIsThereAmongTheListedOnes) {
  host.Write("C:\\To\\a.txt", "a");
  host.Write("C:\\To\\b.txt", "b");
  const auto to = files.OpenFolder("C:\\To");
  EXPECT_EQ(to->FoundBy("b.txt", {"a.txt", "b.txt"}), 1U);
  EXPECT_EQ(to->FoundBy("b.txt", {"a.txt"}), std::nullopt);
  EXPECT_EQ(to->FoundBy("none", {"a.txt", "b.txt"}), std::nullopt);
}

TEST_P(CopyContract, AHeldFolderTakesWhatWasNotListedForAnotherOne) {
  host.Write("C:\\From\\a.txt", "ours");
  const auto from = files.OpenFolder("C:\\From");
  const auto to = files.OpenFolder("C:\\To");
  to->Contents();
  host.Write("C:\\To\\a.txt", "came since");
  EXPECT_EQ(RaisedBy([&] { files.CopyEntry({*from, "a.txt"}, {*to, "a.txt"}); }), 58);
  EXPECT_EQ(RaisedBy([&] { files.CopyWhole("C:\\From\\a.txt", {*to, "a.txt"}); }), 58);
  EXPECT_EQ(RaisedBy([&] { to->MakeFile("a.txt"); }), 58);
  EXPECT_EQ(host.Content("C:\\To\\a.txt"), "came since");
  files.CopyEntry({*from, "a.txt"}, {*to, "b.txt"});
  files.CopyEntry({*from, "a.txt"}, {*to, "b.txt"});
  to->Contents();
  files.CopyEntry({*from, "a.txt"}, {*to, "a.txt"});
  EXPECT_EQ(host.Content("C:\\To\\a.txt"), "ours");
}

TEST_P(CopyContract, AFoldedNameIsTheSameForAllCases) {
  EXPECT_EQ(files.FoldCase("Read Me.TXT"), files.FoldCase("READ ME.txt"));
  EXPECT_EQ(files.FoldCase("Grüße"), files.FoldCase("GRÜßE"));
  EXPECT_EQ(files.FoldCase("ΩΜΈΓΑ Жук"), files.FoldCase("ωμέγα жУК"));
  EXPECT_NE(files.FoldCase("Grüße"), files.FoldCase("Gruße"));
  EXPECT_NE(files.FoldCase("kıl"), files.FoldCase("kil"));
  EXPECT_NE(files.FoldCase("ſ"), files.FoldCase("s"));
  EXPECT_EQ(files.FoldCase("a\xfc"), files.FoldCase("A\xfc"));
  EXPECT_NE(files.FoldCase("a\xfc"), files.FoldCase("a\xdc"));
}

TEST_P(CopyContract, CopyTreeCopiesAllThatIsInAFolder) {
  host.MakeFolder("C:\\From\\Sub\\Empty");
  host.Write("C:\\From\\a.txt", "one");
  host.Write("C:\\From\\Sub\\b.txt", "two");
  files.CopyTree("C:\\From", "C:\\New", [] {});
  EXPECT_EQ(host.Content("C:\\New\\a.txt"), "one");
  EXPECT_EQ(host.Content("C:\\New\\Sub\\b.txt"), "two");
  EXPECT_TRUE(files.FolderExists("C:\\New\\Sub\\Empty"));
}

TEST_P(CopyContract, CopyTreeReplacesFilesAndDeletesNothing) {
  host.Write("C:\\From\\a.txt", "new");
  host.MakeFolder("C:\\To\\kept");
  host.Write("C:\\To\\a.txt", "old");
  host.Write("C:\\To\\z.txt", "mine");
  files.CopyTree("C:\\From", "C:\\To", [] {});
  EXPECT_EQ(host.Content("C:\\To\\a.txt"), "new");
  EXPECT_THAT(host.Names("C:\\To"), ElementsAre("a.txt", "kept", "z.txt"));
}

TEST_P(CopyContract, CopyTreeMergesIntoFoldersThatDifferInCase) {
  host.MakeFolder("C:\\From\\SUB");
  host.Write("C:\\From\\SUB\\A.TXT", "new");
  host.MakeFolder("C:\\To\\Sub");
  host.Write("C:\\To\\Sub\\a.txt", "old");
  files.CopyTree("C:\\From", "C:\\To", [] {});
  EXPECT_EQ(host.Content("C:\\To\\Sub\\a.txt"), "new");
  EXPECT_EQ(host.Names("C:\\To").size(), 1U);
  EXPECT_EQ(host.Names("C:\\To\\Sub").size(), 1U);
}

TEST_P(CopyContract, CopyTreeCallsBetweenAfterEachFile) {
  host.MakeFolder("C:\\From\\Sub");
  host.Write("C:\\From\\a.txt", "one");
  host.Write("C:\\From\\b.txt", "two");
  host.Write("C:\\From\\Sub\\c.txt", "three");
  int calls = 0;
  files.CopyTree("C:\\From", "C:\\New", [&] { ++calls; });
  EXPECT_EQ(calls, 3);
}

TEST_P(CopyContract, CopyTreeGoesOnAfterAFailureAndRaisesTheFirst) {
  host.MakeFolder("C:\\From\\Sub");
  host.Write("C:\\From\\a.txt", "new a");
  host.Write("C:\\From\\b.txt", "new b");
  host.Write("C:\\From\\Sub\\c.txt", "new c");
  host.Write("C:\\To\\a.txt", "old a");
  files.SetAttributes("C:\\To\\a.txt", attribute::kReadOnly);
  EXPECT_EQ(RaisedBy([&] { files.CopyTree("C:\\From", "C:\\To", [] {}); }), 75);
  EXPECT_EQ(host.Content("C:\\To\\a.txt"), "old a");
  EXPECT_EQ(host.Content("C:\\To\\b.txt"), "new b");
  EXPECT_EQ(host.Content("C:\\To\\Sub\\c.txt"), "new c");
}

TEST_P(CopyContract, CopyTreeRaises76WithoutSourceOrParent) {
  host.Write("C:\\From\\a.txt", "one");
  EXPECT_EQ(RaisedBy([&] { files.CopyTree("C:\\Missing", "C:\\New", [] {}); }), 76);
  EXPECT_FALSE(files.FolderExists("C:\\New"));
  EXPECT_EQ(RaisedBy([&] { files.CopyTree("C:\\From\\a.txt", "C:\\New", [] {}); }), 76);
  EXPECT_EQ(RaisedBy([&] { files.CopyTree("C:\\From", "C:\\Missing\\New", [] {}); }), 76);
}

TEST_P(CopyContract, CopyTreeOntoAFileRaises75) {
  host.Write("C:\\To\\a.txt", "old");
  EXPECT_EQ(RaisedBy([&] { files.CopyTree("C:\\From", "C:\\To\\a.txt", [] {}); }), 75);
  EXPECT_EQ(host.Content("C:\\To\\a.txt"), "old");
}

TEST_P(CopyContract, CopyTreeIntoItselfEnds) {
  host.Write("C:\\From\\a.txt", "one");
  files.CopyTree("C:\\From", "C:\\From\\Inside", [] {});
  EXPECT_EQ(host.Content("C:\\From\\Inside\\a.txt"), "one");
  EXPECT_FALSE(files.FolderExists("C:\\From\\Inside\\Inside"));
}

TEST_P(CopyContract, ATreeIsCopiedWithoutTheFoldersThatAreLeftOut) {
  host.MakeFolder("C:\\From\\Sub");
  host.MakeFolder("C:\\From\\Sub\\Out");
  host.Write("C:\\From\\Sub\\a.txt", "a");
  host.Write("C:\\From\\Sub\\Out\\b.txt", "b");
  const auto from = files.OpenFolder("C:\\From");
  const auto to = files.OpenFolder("C:\\To");
  const auto out = files.OpenFolder("C:\\From\\Sub\\Out\\");
  files.CopyTree({*from, "Sub"}, {*to, "Sub"}, [] {}, Rights::kSource, {out.get()});
  EXPECT_THAT(host.Names("C:\\To\\Sub"), ElementsAre("a.txt"));
  files.CopyTree({*from, "Sub"}, {*to, "Sub"}, [] {});
  EXPECT_EQ(host.Content("C:\\To\\Sub\\Out\\b.txt"), "b");
}

TEST_P(CopyContract, AFolderIsItselfByWhateverPathItIsHeld) {
  host.MakeFolder("C:\\From\\Sub");
  const auto from = files.OpenFolder("C:\\From");
  const auto sub = files.OpenFolder("C:\\From\\Sub");
  EXPECT_TRUE(from->Inner("Sub")->Is(*sub));
  EXPECT_FALSE(from->Is(*sub));
}

TEST_P(CopyContract, MoveTreeTakesAFolderAway) {
  host.MakeFolder("C:\\From\\Sub");
  host.Write("C:\\From\\Sub\\a.txt", "one");
  files.MoveTree("C:\\From", "C:\\To\\New");
  EXPECT_EQ(host.Content("C:\\To\\New\\Sub\\a.txt"), "one");
  EXPECT_FALSE(files.FolderExists("C:\\From"));
}

TEST_P(CopyContract, AMovedFileCountsAsChanged) {
  if (!host.ClearsArchive()) GTEST_SKIP() << kNoArchive;
  host.Write("C:\\From\\a.txt", "a");
  files.SetAttributes("C:\\From\\a.txt", 0);
  files.MoveTree("C:\\From", "C:\\To\\New");
  EXPECT_EQ(files.Attributes("C:\\To\\New\\a.txt"), attribute::kArchive);
}

TEST_P(CopyContract, AReplacedFileCountsAsChanged) {
  if (!host.ClearsArchive()) GTEST_SKIP() << kNoArchive;
  host.Write("C:\\From\\a.txt", "a");
  host.Write("C:\\To\\a.txt", "b");
  host.SetModified("C:\\From\\a.txt", 1205492401);
  host.SetModified("C:\\To\\a.txt", 1205492401);
  files.SetAttributes("C:\\To\\a.txt", 0);
  files.CopyWhole("C:\\From\\a.txt", "C:\\To\\a.txt");
  EXPECT_EQ(files.Attributes("C:\\To\\a.txt"), attribute::kArchive);
}

TEST_P(CopyContract, MoveTreeRaises58WhenTheTargetIsThere) {
  host.Write("C:\\From\\a.txt", "one");
  host.Write("C:\\To\\b.txt", "two");
  EXPECT_EQ(RaisedBy([&] { files.MoveTree("C:\\From", "C:\\To"); }), 58);
  EXPECT_EQ(RaisedBy([&] { files.MoveTree("C:\\From", "C:\\To\\b.txt"); }), 58);
  EXPECT_EQ(host.Content("C:\\From\\a.txt"), "one");
}

TEST_P(CopyContract, MoveTreeRaises76WithoutSourceOrParent) {
  host.Write("C:\\From\\a.txt", "one");
  EXPECT_EQ(RaisedBy([&] { files.MoveTree("C:\\Missing", "C:\\New"); }), 76);
  EXPECT_EQ(RaisedBy([&] { files.MoveTree("C:\\From\\a.txt", "C:\\New"); }), 76);
  EXPECT_EQ(RaisedBy([&] { files.MoveTree("C:\\From", "C:\\Missing\\New"); }), 76);
  EXPECT_EQ(host.Content("C:\\From\\a.txt"), "one");
}

TEST_P(CopyContract, AFolderCannotBeMovedIntoItself) {
  host.Write("C:\\From\\a.txt", "one");
  EXPECT_EQ(RaisedBy([&] { files.MoveTree("C:\\From", "C:\\From\\Inside"); }), 75);
  EXPECT_EQ(RaisedBy([&] { files.MoveTree("C:\\From", "C:\\fROM\\Inside"); }), 75);
  EXPECT_EQ(host.Content("C:\\From\\a.txt"), "one");
}

}  // namespace
}  // namespace tarnvale::testing
