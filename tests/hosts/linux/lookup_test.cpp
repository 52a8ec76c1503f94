// Finding files and folders, reading their properties.
#include <fcntl.h>
#include <sys/un.h>
#include <unistd.h>

#include "hosts/linux/own_links.h"
#include "tests/hosts/contract/ordinary_user.h"
#include "tests/hosts/linux/linux_drive.h"

namespace tarnvale {
namespace {

using LookupTest = LinuxDriveTest;

TEST_F(LookupTest, NamesAreFoundWithoutRegardToCase) {
  MakeFolder("Home/Ann");
  Write("Home/Ann/Letter.TXT", "four");
  EXPECT_EQ(files_.Length("C:\\HOME\\ann\\letter.txt"), 4);
  EXPECT_TRUE(files_.FolderExists("\\home\\ANN\\"));
}

TEST_F(LookupTest, TheExactNameComesFirst) {
  Write("name", "1");
  Write("NAME", "22");
  Write("Name", "333");
  EXPECT_EQ(files_.Length("C:\\name"), 1);
  EXPECT_EQ(files_.Length("C:\\NAME"), 2);
  EXPECT_EQ(files_.Length("C:\\nAME"), 2) << "the first by bytes of several";
}

TEST_F(LookupTest, TheExactNameComesFirstInAFolderOfAnotherCaseToo) {
  MakeFolder("Home");
  Write("Home/name", "1");
  Write("Home/NAME", "22");
  EXPECT_EQ(files_.Length("C:\\HOME\\name"), 1);
  EXPECT_EQ(files_.Length("C:\\HOME\\NAME"), 2);
}

// A circle of links. None of these may take it for a place where nothing is yet.
TEST_F(LookupTest, WhatCannotBeLookedAtIsNotMissing) {
  Link("loop", "loop");
  Write("file", "x");
  MakeFolder("folder");
  const Path inner = "C:\\loop\\inner";
  const auto nothing = [] {};
  const std::vector<std::function<void()>> calls = {
      [&] { files_.Length(inner); },
      [&] { files_.Attributes(inner); },
      [&] { files_.CopyWhole(inner, "C:\\target"); },
      [&] { files_.CopyWhole("C:\\file", inner); },
      [&] { files_.CreateFolder(inner); },
      [&] { files_.Delete(inner); },
      [&] { files_.ListFolders(inner, {}); },
      [&] { files_.OpenFolder(inner); },
      [&] { files_.BeginFlush(inner); },
      [&] { files_.CopyTree(inner, "C:\\target", nothing); },
      [&] { files_.CopyTree("C:\\folder", inner, nothing); },
      [&] { files_.MoveTree(inner, "C:\\target"); },
      [&] { files_.MoveTree("C:\\folder", inner); },
      [&] { host_.open_files.OpenInput(1, inner); },
      [&] { host_.open_files.OpenOutput(1, inner); },
      [&] { host_.open_files.OpenBinary(1, inner); },
      [&] { host_.transfer_files.OpenSource(inner); },
      [&] { host_.transfer_files.OpenTarget(inner); }};
  for (std::size_t i = 0; i < calls.size(); ++i) {
    EXPECT_EQ(RaisedBy(calls[i]), kPathFileAccess) << i;
  }
  EXPECT_EQ(host_.profiles.Read("A", "x", "none", 255, inner), "none");
  EXPECT_FALSE(host_.profiles.Write("A", "x", "1", inner));
  EXPECT_EQ(NamesIn("."), (std::vector<std::string>{"file", "folder", "loop"}));
}

TEST_F(LookupTest, WhatIsDeniedRaises70OrWhenItIsOnlyAskedFor75) {
  if (!testing::AsOrdinaryUser::IsPossible()) GTEST_SKIP() << "nobody else can be played";
  MakeFolder("closed/sub");
  MakeFolder("open/folder");
  Write("closed/file", "x");
  Write("secret", "x");
  Write("file", "x");
  const testing::AsOrdinaryUser user(base_);
  SetMode("secret", 0200);
  SetMode("closed", 0500);
  SetMode("open/folder", 0300);
  const auto closed = files_.OpenFolder("C:\\closed");
  const auto nothing = [] {};
  const std::vector<std::pair<int, std::function<void()>>> calls = {
      {70, [&] { files_.CopyWhole("C:\\secret", "C:\\target"); }},
      {70, [&] { files_.CopyWhole("C:\\file", "C:\\closed\\target"); }},
      {70, [&] { files_.CopyWhole("C:\\file", "C:\\closed\\file"); }},
      {70, [&] { files_.CopyTree("C:\\open", "C:\\closed\\target", nothing); }},
      {70, [&] { files_.CreateFolder("C:\\closed\\target"); }},
      {70, [&] { files_.Delete("C:\\closed\\file"); }},
      {70, [&] { files_.MoveTree("C:\\closed\\sub", "C:\\target"); }},
      {70, [&] { closed->MakeFolder("target"); }},
      {70, [&] { closed->MakeFile("target"); }},
      {70, [&] { host_.open_files.OpenInput(1, "C:\\secret"); }},
      {70, [&] { host_.open_files.OpenOutput(1, "C:\\closed\\target"); }},
      {70, [&] { host_.open_files.OpenBinary(1, "C:\\closed\\target"); }},
      {70, [&] { host_.open_files.OpenOwn(1, "C:\\closed\\target"); }},
      {70, [&] { host_.transfer_files.OpenSource("C:\\secret"); }},
      {70, [&] { host_.transfer_files.OpenTarget("C:\\closed\\target"); }},
      {75, [&] { files_.List("C:\\open\\folder\\*.*", {}); }},
      {75, [&] { files_.ListFolders("C:\\open\\folder", {}); }},
      {75, [&] { files_.OpenFolder("C:\\open\\folder"); }},
      {75, [&] { files_.OpenFolder("C:\\open")->Inner("folder"); }},
      {75, [&] { files_.CopyTree("C:\\open", "C:\\copy", nothing); }}};
  for (std::size_t i = 0; i < calls.size(); ++i) {
    EXPECT_EQ(RaisedBy(calls[i].second), calls[i].first) << i;
  }
  EXPECT_EQ(NamesIn("closed"), (std::vector<std::string>{"file", "sub"}));
  SetMode("open/folder", 0700);
  SetMode("closed", 0700);
}

TEST_F(LookupTest, AChangedFolderIsLookedThroughAnew) {
  EXPECT_FALSE(files_.FileExists("C:\\LATER"));
  Write("later", "1");
  EXPECT_TRUE(files_.FileExists("C:\\LATER"));
  ::unlink(Native("later").c_str());
  EXPECT_FALSE(files_.FileExists("C:\\LATER"));
}

TEST_F(LookupTest, AFolderThatMovedIsFoundInItsNewPlace) {
  MakeFolder("Old");
  Write("Old/x", "1");
  EXPECT_EQ(files_.Length("C:\\OLD\\X"), 1);
  std::filesystem::rename(Native("Old"), Native("oLD"));
  EXPECT_EQ(files_.Length("C:\\OLD\\X"), 1);
}

TEST_F(LookupTest, LettersOfEveryAlphabetHaveACase) {
  Write("Grüße.txt", "1");
  Write("Ωμέγα", "22");
  Write("Жук", "333");
  EXPECT_EQ(files_.Length("C:\\GRÜßE.TXT"), 1);
  EXPECT_EQ(files_.Length("C:\\ωΜΈΓΑ"), 2);
  EXPECT_EQ(files_.Length("C:\\жУК"), 3);
  EXPECT_FALSE(files_.FileExists("C:\\Gruße.txt"));
}

TEST_F(LookupTest, BytesThatAreNoTextAreComparedAsTheyAre) {
  Write("a\xfc\xe4.txt", "1");
  EXPECT_EQ(files_.Length("C:\\A\xfc\xe4.TXT"), 1);
  EXPECT_FALSE(files_.FileExists("C:\\a\xdc\xc4.txt"));
}

// A medium's clock can tick so slowly that two changes leave a folder's time alone.
TEST_F(LookupTest, AChangeThatLeavesTheFoldersTimeAloneIsSeen) {
  MakeFolder("Data");
  Write("Data/Grüße.Txt", "old");
  SetModified("Data", 1'000'000, 0);
  ASSERT_EQ(files_.Length("C:\\Data\\GRÜßE.TXT"), 3);
  std::filesystem::remove(Native("Data/Grüße.Txt"));
  Write("source", "new");
  SetModified("Data", 1'000'000, 0);
  files_.CopyWhole("C:\\source", "C:\\Data\\grüße.tXT");
  EXPECT_EQ(NamesIn("Data"), std::vector<std::string>{"grüße.tXT"});
  Write("Data/Later", "1");
  SetModified("Data", 1'000'000, 0);
  EXPECT_EQ(files_.Length("C:\\Data\\LATER"), 1);
}

TEST_F(LookupTest, APathOfTensOfThousandsOfPartsLeadsNowhere) {
  Path path = "C:";
  for (int part = 0; part < 100'000; ++part) path += "\\d";
  EXPECT_EQ(RaisedBy([&] { files_.Length(path); }), kPathNotFound);
  EXPECT_FALSE(files_.FolderExists(path));
  EXPECT_EQ(RaisedBy([&] { files_.CreateFoldersOf(path); }), kPathNotFound);
  EXPECT_FALSE(Exists("d")) << "nothing of it is made";
  EXPECT_EQ(files_.List(path + "\\*.*", {}).size(), 0U);
}

TEST_F(LookupTest, AFolderThatCannotBeReadIsNotListedAsAnEmptyOne) {
  Link("loop", "loop");
  EXPECT_EQ(RaisedBy([&] { files_.List("C:\\loop\\inner\\*.*", {}); }), kPathFileAccess);
}

TEST_F(LookupTest, AMissingFolderBehindALinkIsReportedAsMissing) {
  MakeFolder("real");
  Link("way", "real");
  EXPECT_FALSE(OpenByOwnLinks(AT_FDCWD, Native("way/missing/a.txt"), O_RDONLY));
  EXPECT_EQ(errno, ENOENT);
  struct stat info {};
  EXPECT_FALSE(StateByOwnLinks(AT_FDCWD, Native("way/missing/a.txt"), info));
  EXPECT_EQ(errno, ENOENT);
}

TEST_F(LookupTest, ACircleOfLinksEnds) {
  Link("loop", "loop");
  Link("there", "back");
  Link("back", "there");
  struct stat info {};
  for (const char* name : {"loop", "there", "loop/a.txt", "there/a.txt"}) {
    EXPECT_FALSE(OpenByOwnLinks(AT_FDCWD, Native(name), O_RDONLY)) << name;
    EXPECT_EQ(errno, ELOOP) << name;
    EXPECT_FALSE(StateByOwnLinks(AT_FDCWD, Native(name), info)) << name;
    EXPECT_EQ(errno, ELOOP) << name;
  }
}

TEST_F(LookupTest, ALinkWithSlashesAtItsEndLeadsWhereItLeadsWithoutThem) {
  MakeFolder("real");
  Write("real/a.txt", "12");
  Link("next", "real");
  Link("way", "next//");
  EXPECT_EQ(files_.Length("C:\\way\\a.txt"), 2);
  EXPECT_TRUE(OpenByOwnLinks(AT_FDCWD, Native("way"), O_RDONLY | O_DIRECTORY));
}

TEST_F(LookupTest, LengthRaisesWhatIsMissing) {
  MakeFolder("folder");
  EXPECT_EQ(RaisedBy([&] { files_.Length("C:\\none"); }), kFileNotFound);
  EXPECT_EQ(RaisedBy([&] { files_.Length("C:\\folder"); }), kFileNotFound);
  EXPECT_EQ(RaisedBy([&] { files_.Length("C:\\none\\x"); }), kPathNotFound);
  EXPECT_EQ(RaisedBy([&] { files_.Length("D:\\x"); }), kPathNotFound);
  EXPECT_EQ(RaisedBy([&] { files_.Length("C:\\folder\\*.*"); }), kFileNotFound);
}

TEST_F(LookupTest, AStarInAPathFindsNoFileOfThatName) {
  Write("a*b", "1");
  EXPECT_FALSE(files_.FileExists("C:\\a*b"));
  EXPECT_EQ(RaisedBy([&] { files_.CopyWhole("C:\\a*b", "C:\\c"); }), kFileNotFound);
}

TEST_F(LookupTest, LengthsBeyond32BitsAreReported) {
  Write("large", "");
  ASSERT_EQ(::truncate(Native("large").c_str(), 5'000'000'000), 0);
  EXPECT_EQ(files_.Length("C:\\large"), 5'000'000'000);
}

TEST_F(LookupTest, AttributesComeFromModeNameAndKind) {
  Write("plain", "");
  EXPECT_EQ(files_.Attributes("C:\\plain"), attribute::kArchive);
  Write(".hidden", "");
  EXPECT_EQ(files_.Attributes("C:\\.hidden"), attribute::kArchive + attribute::kHidden);
  SetMode("plain", 0444);
  EXPECT_EQ(files_.Attributes("C:\\plain"), attribute::kArchive + attribute::kReadOnly);
  MakeFolder(".folder");
  EXPECT_EQ(files_.Attributes("C:\\.folder"), attribute::kDirectory + attribute::kHidden);
  EXPECT_EQ(files_.Attributes("C:\\"), attribute::kDirectory);
}

TEST_F(LookupTest, APipeIsASystemFile) {
  ASSERT_EQ(::mkfifo(Native("pipe").c_str(), 0600), 0);
  EXPECT_EQ(files_.Attributes("C:\\pipe"), attribute::kSystem);
  EXPECT_TRUE(files_.FileExists("C:\\pipe"));
  EXPECT_EQ(RaisedBy([&] { files_.Length("C:\\pipe"); }), kPathFileAccess);
}

TEST_F(LookupTest, ALinkCountsAsWhatItLeadsTo) {
  MakeFolder("folder");
  Write("file", "12345");
  Link("to_file", "file");
  Link("to_folder", "folder");
  Link("to_nothing", "none");
  EXPECT_EQ(files_.Length("C:\\to_file"), 5);
  EXPECT_TRUE(files_.FolderExists("C:\\to_folder"));
  EXPECT_FALSE(files_.FileExists("C:\\to_folder"));
  EXPECT_TRUE(files_.FileExists("C:\\to_nothing"));
  EXPECT_EQ(RaisedBy([&] { files_.Length("C:\\to_nothing"); }), kFileNotFound);
}

TEST_F(LookupTest, AFileIsNoFolderAndAFolderNoFile) {
  MakeFolder("folder");
  Write("file", "");
  EXPECT_TRUE(files_.FolderExists("C:\\folder"));
  EXPECT_FALSE(files_.FileExists("C:\\folder"));
  EXPECT_FALSE(files_.FolderExists("C:\\file"));
  EXPECT_TRUE(files_.FileExists("C:\\file"));
  EXPECT_FALSE(files_.FolderExists("C:\\file\\x"));
}

TEST_F(LookupTest, FoldersAreMadeUpToTheLastBackslash) {
  files_.CreateFoldersOf("C:\\a\\b\\c.txt");
  EXPECT_TRUE(files_.FolderExists("C:\\a\\b"));
  EXPECT_FALSE(Exists("a/b/c.txt"));
  files_.CreateFoldersOf("C:\\A\\B\\D\\");
  EXPECT_EQ(NamesIn("a/b"), std::vector<std::string>{"D"});
  EXPECT_EQ(RaisedBy([&] { files_.CreateFoldersOf("D:\\a\\"); }), kPathNotFound);
  Write("file", "");
  EXPECT_EQ(RaisedBy([&] { files_.CreateFoldersOf("C:\\file\\x\\"); }), kPathFileAccess);
}

TEST_F(LookupTest, AFolderIsMadeOnceWhateverItsCase) {
  files_.CreateFolder("C:\\New");
  EXPECT_EQ(RaisedBy([&] { files_.CreateFolder("C:\\NEW"); }), kPathFileAccess);
  EXPECT_EQ(RaisedBy([&] { files_.CreateFolder("C:\\none\\x"); }), kPathNotFound);
  EXPECT_EQ(RaisedBy([&] { files_.CreateFolder("C:\\x*"); }), kPathFileAccess);
}

TEST_F(LookupTest, AReadOnlyFileIsNotDeleted) {
  Write("file", "");
  SetMode("file", 0444);
  EXPECT_EQ(RaisedBy([&] { files_.Delete("C:\\file"); }), kPathFileAccess);
  SetMode("file", 0644);
  files_.Delete("C:\\FILE");
  EXPECT_FALSE(Exists("file"));
  EXPECT_EQ(RaisedBy([&] { files_.Delete("C:\\file"); }), kFileNotFound);
}

TEST_F(LookupTest, DeletingALinkLeavesItsFile) {
  Write("file", "");
  Link("link", "file");
  files_.Delete("C:\\link");
  EXPECT_TRUE(Exists("file"));
  EXPECT_FALSE(Exists("link"));
}

TEST_F(LookupTest, AProgramOutsideTheDriveLiesAtItsRoot) {
  EXPECT_EQ(files_.ProgramFolder(), "C:");
  LinuxHost whole({.root = "/", .state_folder = state_, .locale_name = {}});
  const Path folder = whole.files.ProgramFolder();
  EXPECT_FALSE(whole.files.List(folder + "\\linux_test*", {}).empty()) << folder;
}

TEST_F(LookupTest, FlushNeedsAFolder) {
  EXPECT_EQ(RaisedBy([&] { files_.BeginFlush("C:\\"); }), 0);
  EXPECT_EQ(RaisedBy([&] { files_.BeginFlush("C:\\none"); }), kPathNotFound);
}

}  // namespace
}  // namespace tarnvale
