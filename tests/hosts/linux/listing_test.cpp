#include "hosts/linux/listing.h"

#include <unistd.h>

#include "tests/hosts/linux/call_hooks.h"
#include "tests/hosts/linux/linux_drive.h"

namespace tarnvale {
namespace {

using Names = std::vector<std::string>;
using ListingTest = LinuxDriveTest;

TEST_F(ListingTest, NamesComeInOrderWithoutRegardToCase) {
  for (const char* name : {"b", "A", "c", "B2", "a_"}) Write(name, "");
  EXPECT_EQ(files_.List("C:\\*.*", {}), (Names{"A", "a_", "b", "B2", "c"}));
}

TEST_F(ListingTest, HiddenFilesComeOnlyWhenWanted) {
  Write(".hidden", "");
  Write("plain", "");
  EXPECT_EQ(files_.List("C:\\*", {}), Names{"plain"});
  EXPECT_EQ(files_.List("C:\\*", {.hidden = true}), (Names{".hidden", "plain"}));
}

TEST_F(ListingTest, PipesComeOnlyAsSystemFiles) {
  ASSERT_EQ(::mkfifo(Native("pipe").c_str(), 0600), 0);
  Write("plain", "");
  EXPECT_EQ(files_.List("C:\\*", {}), Names{"plain"});
  EXPECT_EQ(files_.List("C:\\*", {.system = true}), (Names{"pipe", "plain"}));
}

TEST_F(ListingTest, LinksAreListedAsTheFilesBehindThem) {
  MakeFolder("folder");
  Write("file", "");
  Link("to_file", "file");
  Link("to_folder", "folder");
  Link("to_nothing", "none");
  EXPECT_EQ(files_.List("C:\\*", {}), (Names{"file", "to_file"}));
  EXPECT_EQ(files_.ListFolders("C:\\", {}), Names{"folder"});
}

TEST_F(ListingTest, AMissingFolderListsNothing) {
  EXPECT_EQ(files_.List("C:\\none\\*", {}), Names{});
  EXPECT_EQ(RaisedBy([&] { files_.ListFolders("C:\\none", {}); }), kPathNotFound);
}

TEST_F(ListingTest, HiddenFoldersComeOnlyWhenWanted) {
  MakeFolder(".h");
  MakeFolder("p");
  EXPECT_EQ(files_.ListFolders("C:\\", {}), Names{"p"});
  EXPECT_EQ(files_.ListFolders("C:", {.hidden = true}), (Names{".h", "p"}));
}

TEST_F(ListingTest, OpenFolderGivesSizesAndTimes) {
  Write("b", "123");
  SetModified("b", 1'000'000'000, 999'999'999);
  Write("A", "");
  SetModified("A", -5, 500'000'000);
  MakeFolder("sub");
  MakeFolder(".dot");
  const FolderContents contents = files_.OpenFolder("C:\\")->Contents();
  EXPECT_EQ(contents.files, (std::vector<FolderEntry>{{"A", 0, -5, 500'000'000},
                                                      {"b", 3, 1'000'000'000, 999'999'999}}));
  EXPECT_EQ(contents.folders, (Names{".dot", "sub"}));
}

TEST_F(ListingTest, OpenFolderHasLinksAmongTheFilesAndLeavesOutPipes) {
  MakeFolder("folder");
  Link("link", "folder");
  SetModified("link", 77, 0);
  ASSERT_EQ(::mkfifo(Native("pipe").c_str(), 0600), 0);
  const FolderContents contents = files_.OpenFolder("C:\\")->Contents();
  EXPECT_EQ(contents.files, (std::vector<FolderEntry>{{"link", 6, 77}}));
  EXPECT_EQ(contents.folders, Names{"folder"});
}

TEST_F(ListingTest, WhatNoPathCanNameIsLeftOut) {
  Write("a\\b", "");
  Write("c*", "");
  MakeFolder("d\\e");
  Write("fine?", "");
  EXPECT_EQ(files_.List("C:\\*", {}), Names{"fine?"});
  EXPECT_EQ(files_.ListFolders("C:\\", {}), Names{});
  EXPECT_EQ(files_.OpenFolder("C:\\")->Contents().files.size(), 1U);
}

TEST_F(ListingTest, OpenFolderRaises76ForWhatIsNoFolder) {
  Write("file", "");
  EXPECT_EQ(RaisedBy([&] { files_.OpenFolder("C:\\file"); }), kPathNotFound);
  EXPECT_EQ(RaisedBy([&] { files_.OpenFolder("C:\\none"); }), kPathNotFound);
  EXPECT_EQ(RaisedBy([&] { files_.OpenFolder("D:\\"); }), kPathNotFound);
}

TEST_F(ListingTest, AFolderBehindALinkIsOpenedAndNoneWithinIt) {
  MakeFolder("folder");
  Write("folder/x", "");
  Link("link", "folder");
  MakeFolder("other");
  Link("folder/inner", "../other");
  const auto held = files_.OpenFolder("C:\\link");
  EXPECT_EQ(held->Contents().files.size(), 2U);
  EXPECT_EQ(RaisedBy([&] { held->Inner("inner"); }), kPathNotFound);
}

TEST_F(ListingTest, WhatChangesWhileAFolderIsReadIsListedAsWhatItIsThen) {
  Write("goes", "");
  MakeFolder("sub");
  Write("sub/turns", "");
  const testing::StateHook changing({[&] { std::filesystem::remove(Native("goes")); },
                                     [&] {
                                       std::filesystem::remove(Native("sub/turns"));
                                       MakeFolder("sub/turns");
                                     }});
  EXPECT_TRUE(files_.OpenFolder("C:\\")->Contents().files.empty());
  const FolderContents contents = files_.OpenFolder("C:\\sub")->Contents();
  EXPECT_TRUE(changing.WasCalled());
  EXPECT_TRUE(contents.files.empty());
  EXPECT_EQ(contents.folders, Names{"turns"});
}

TEST_F(ListingTest, AMediumThatDoesNotSayWhatItsEntriesAreIsAskedForEach) {
  Write("file", "123");
  MakeFolder("folder/inner");
  Write("folder/inner/x", "x");
  Link("link", "folder");
  ASSERT_EQ(::mkfifo(Native("pipe").c_str(), 0600), 0);
  const testing::SilentMedium silent;
  EXPECT_EQ(files_.List("C:\\*", {.system = true}), (Names{"file", "pipe"}));
  EXPECT_EQ(files_.ListFolders("C:\\", {}), Names{"folder"});
  const FolderContents contents = files_.OpenFolder("C:\\")->Contents();
  EXPECT_EQ(contents.files.size(), 2U);
  EXPECT_EQ(contents.folders, Names{"folder"});
  files_.CopyTree("C:\\folder", "C:\\copy", {});
  EXPECT_EQ(Read("copy/inner/x"), "x");
  testing::RenameHook two_media({});
  two_media.Refuse(EXDEV);
  files_.MoveTree("C:\\copy", "C:\\moved");
  EXPECT_EQ(Read("moved/inner/x"), "x");
  EXPECT_FALSE(Exists("copy"));
}

}  // namespace
}  // namespace tarnvale
