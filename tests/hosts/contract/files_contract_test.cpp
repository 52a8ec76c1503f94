// Lengths, attributes, folders and deleting: what every file system must do.
#include <gmock/gmock.h>

#include "tests/hosts/contract/host_under_test.h"
#include "tests/support/raised.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;

class FilesContract : public HostTest {};
INSTANTIATE_TEST_SUITE_P(Hosts, FilesContract, ::testing::ValuesIn(AllHosts()), NameOfHost);

TEST_P(FilesContract, LengthCountsBytes) {
  host.Write("C:\\Data\\a.txt", "hello\n");
  EXPECT_EQ(files.Length("C:\\Data\\a.txt"), 6);
  host.Write("C:\\Data\\empty", "");
  EXPECT_EQ(files.Length("C:\\Data\\empty"), 0);
}

TEST_P(FilesContract, LengthOfWhatIsNoFileRaises53) {
  EXPECT_EQ(RaisedBy([&] { files.Length("C:\\Data\\missing"); }), 53);
  EXPECT_EQ(RaisedBy([&] { files.Length("C:\\Data"); }), 53);
  EXPECT_EQ(RaisedBy([&] { files.Length("C:\\Data\\*.txt"); }), 53);
}

TEST_P(FilesContract, LengthInAMissingFolderOrDriveRaises76) {
  EXPECT_EQ(RaisedBy([&] { files.Length("C:\\Missing\\a.txt"); }), 76);
  EXPECT_EQ(RaisedBy([&] { files.Length("D:\\a.txt"); }), 76);
}

TEST_P(FilesContract, NamesAreFoundWithoutRegardToCase) {
  host.Write("C:\\Data\\Mixed Case.TXT", "hello");
  EXPECT_EQ(files.Length("c:\\DATA\\mixed case.txt"), 5);
  EXPECT_TRUE(files.FileExists("C:\\data\\MIXED CASE.TXT"));
  EXPECT_TRUE(files.FolderExists("C:\\dATA"));
}

TEST_P(FilesContract, ALeadingBackslashIsTheCurrentDrive) {
  host.Write("C:\\Data\\a.txt", "hello");
  EXPECT_EQ(files.Length("\\Data\\a.txt"), 5);
  EXPECT_TRUE(files.FolderExists("\\"));
}

TEST_P(FilesContract, RepeatedAndClosingBackslashesDoNotMatter) {
  host.Write("C:\\Data\\a.txt", "hello");
  EXPECT_EQ(files.Length("C:\\\\Data\\\\a.txt"), 5);
  EXPECT_TRUE(files.FolderExists("C:\\Data\\"));
}

TEST_P(FilesContract, PartsOfTwoPointsLeadUpwards) {
  host.MakeFolder("C:\\Data\\Sub");
  host.Write("C:\\Data\\a.txt", "hello");
  EXPECT_EQ(files.Length("C:\\Data\\Sub\\..\\a.txt"), 5);
  EXPECT_EQ(files.Length("C:\\Data\\.\\a.txt"), 5);
  EXPECT_EQ(files.Length("C:\\..\\..\\Data\\a.txt"), 5);
}

TEST_P(FilesContract, ATextThatIsNoAbsolutePathNamesNothing) {
  EXPECT_EQ(RaisedBy([&] { files.Length("None\\a.txt"); }), 76);
  EXPECT_EQ(RaisedBy([&] { files.Length(""); }), 76);
  EXPECT_FALSE(files.FileExists(""));
  EXPECT_FALSE(files.FolderExists("None"));
}

TEST_P(FilesContract, ANewFileHasTheArchiveAttributeAlone) {
  host.Write("C:\\Data\\a.txt", "hello");
  EXPECT_EQ(files.Attributes("C:\\Data\\a.txt"), attribute::kArchive);
}

TEST_P(FilesContract, AFolderHasTheDirectoryAttribute) {
  EXPECT_EQ(files.Attributes("C:\\Data"), attribute::kDirectory);
  EXPECT_NE(files.Attributes("C:\\") & attribute::kDirectory, 0);
}

TEST_P(FilesContract, AttributesOfWhatIsMissingRaise) {
  EXPECT_EQ(RaisedBy([&] { files.Attributes("C:\\Data\\missing"); }), 53);
  EXPECT_EQ(RaisedBy([&] { files.Attributes("C:\\Missing\\a.txt"); }), 76);
  EXPECT_EQ(RaisedBy([&] { files.Attributes("D:\\"); }), 76);
}

TEST_P(FilesContract, ReadOnlyComesAndGoes) {
  host.Write("C:\\Data\\a.txt", "hello");
  files.SetAttributes("C:\\Data\\a.txt", attribute::kReadOnly | attribute::kArchive);
  EXPECT_EQ(files.Attributes("C:\\Data\\a.txt"), attribute::kReadOnly | attribute::kArchive);
  files.SetAttributes("C:\\Data\\a.txt", attribute::kArchive);
  EXPECT_EQ(files.Attributes("C:\\Data\\a.txt"), attribute::kArchive);
}

TEST_P(FilesContract, AClearedFileHasNoAttributes) {
  if (!host.ClearsArchive()) GTEST_SKIP() << kNoArchive;
  host.Write("C:\\Data\\a.txt", "hello");
  files.SetAttributes("C:\\Data\\a.txt", 0);
  EXPECT_EQ(files.Attributes("C:\\Data\\a.txt"), 0);
  EXPECT_EQ(host.Content("C:\\Data\\a.txt"), "hello");
}

TEST_P(FilesContract, ClearingWorksOnAReadOnlyFile) {
  if (!host.ClearsArchive()) GTEST_SKIP() << kNoArchive;
  host.Write("C:\\Data\\a.txt", "hello");
  files.SetAttributes("C:\\Data\\a.txt", attribute::kReadOnly | attribute::kArchive);
  files.SetAttributes("C:\\Data\\a.txt", attribute::kReadOnly);
  EXPECT_EQ(files.Attributes("C:\\Data\\a.txt"), attribute::kReadOnly);
}

TEST_P(FilesContract, TheArchiveAttributeComesBackWithNewContent) {
  if (!host.ClearsArchive()) GTEST_SKIP() << kNoArchive;
  host.Write("C:\\Data\\a.txt", "hello");
  files.SetAttributes("C:\\Data\\a.txt", 0);
  host.Write("C:\\Data\\a.txt", "hello, world");
  EXPECT_EQ(files.Attributes("C:\\Data\\a.txt"), attribute::kArchive);
}

TEST_P(FilesContract, TheArchiveAttributeComesBackWithANewTime) {
  if (!host.ClearsArchive()) GTEST_SKIP() << kNoArchive;
  host.Write("C:\\Data\\a.txt", "hello");
  files.SetAttributes("C:\\Data\\a.txt", 0);
  host.SetModified("C:\\Data\\a.txt", 1000000000);
  EXPECT_EQ(files.Attributes("C:\\Data\\a.txt"), attribute::kArchive);
}

TEST_P(FilesContract, TheArchiveAttributeCanBeSetAgain) {
  if (!host.ClearsArchive()) GTEST_SKIP() << kNoArchive;
  host.Write("C:\\Data\\a.txt", "hello");
  files.SetAttributes("C:\\Data\\a.txt", 0);
  files.SetAttributes("C:\\Data\\a.txt", attribute::kArchive);
  EXPECT_EQ(files.Attributes("C:\\Data\\a.txt"), attribute::kArchive);
}

TEST_P(FilesContract, AValueThatIsNoSumOfAttributesRaises5AndChangesNothing) {
  host.Write("C:\\Data\\a.txt", "hello");
  files.SetAttributes("C:\\Data\\a.txt", attribute::kReadOnly | attribute::kArchive);
  for (const int value : {-31, -1, 8, 16, 48, 64, 128, 256}) {
    EXPECT_EQ(RaisedBy([&] { files.SetAttributes("C:\\Data\\a.txt", value); }), 5) << value;
  }
  EXPECT_EQ(files.Attributes("C:\\Data\\a.txt"), attribute::kReadOnly | attribute::kArchive);
}

TEST_P(FilesContract, SettingAttributesOfWhatIsNoFileRaises) {
  EXPECT_EQ(RaisedBy([&] { files.SetAttributes("C:\\Data\\missing", 0); }), 53);
  EXPECT_EQ(RaisedBy([&] { files.SetAttributes("C:\\Missing\\a.txt", 0); }), 76);
  EXPECT_EQ(RaisedBy([&] { files.SetAttributes("C:\\Data", 0); }), 75);
}

TEST_P(FilesContract, AHiddenFileHasTheHiddenAttribute) {
  host.Write("C:\\Data\\.secret", "hello");
  host.HideFile("C:\\Data\\.secret");
  EXPECT_EQ(files.Attributes("C:\\Data\\.secret"), attribute::kHidden | attribute::kArchive);
  if (!host.ClearsArchive()) GTEST_SKIP() << kNoArchive;
  files.SetAttributes("C:\\Data\\.secret", attribute::kHidden);
  EXPECT_EQ(files.Attributes("C:\\Data\\.secret"), attribute::kHidden);
}

TEST_P(FilesContract, AFolderIsNoFileAndAFileNoFolder) {
  host.Write("C:\\Data\\a.txt", "hello");
  EXPECT_TRUE(files.FileExists("C:\\Data\\a.txt"));
  EXPECT_FALSE(files.FolderExists("C:\\Data\\a.txt"));
  EXPECT_TRUE(files.FolderExists("C:\\Data"));
  EXPECT_FALSE(files.FileExists("C:\\Data"));
  EXPECT_FALSE(files.FileExists("C:\\Data\\missing"));
  EXPECT_FALSE(files.FolderExists("C:\\Missing"));
}

TEST_P(FilesContract, TheDrivesAreListedWithTheirKinds) {
  EXPECT_THAT(files.Drives(), ElementsAre(Drive{"C:\\", DriveKind::kFixed}));
}

TEST_P(FilesContract, AMissingDriveHasNothing) {
  EXPECT_FALSE(files.FolderExists("D:\\"));
  EXPECT_FALSE(files.FileExists("D:\\a.txt"));
  EXPECT_EQ(RaisedBy([&] { files.CreateFolder("D:\\New"); }), 76);
  EXPECT_EQ(RaisedBy([&] { files.CreateFoldersOf("D:\\New\\a.txt"); }), 76);
}

TEST_P(FilesContract, CreateFolderMakesOneFolder) {
  files.CreateFolder("C:\\Data\\New");
  EXPECT_TRUE(files.FolderExists("C:\\Data\\New"));
  EXPECT_THAT(host.Names("C:\\Data\\New"), ElementsAre());
}

TEST_P(FilesContract, CreateFolderRaises75ForWhatIsThereAlready) {
  host.Write("C:\\Data\\a.txt", "hello");
  EXPECT_EQ(RaisedBy([&] { files.CreateFolder("C:\\Data"); }), 75);
  EXPECT_EQ(RaisedBy([&] { files.CreateFolder("C:\\DATA"); }), 75);
  EXPECT_EQ(RaisedBy([&] { files.CreateFolder("C:\\Data\\a.txt"); }), 75);
}

TEST_P(FilesContract, CreateFolderRaises76WithoutAParent) {
  EXPECT_EQ(RaisedBy([&] { files.CreateFolder("C:\\Missing\\New"); }), 76);
  EXPECT_FALSE(files.FolderExists("C:\\Missing"));
}

TEST_P(FilesContract, CreateFoldersOfMakesAllUpToTheLastBackslash) {
  files.CreateFoldersOf("C:\\Data\\One\\Two\\Three");
  EXPECT_TRUE(files.FolderExists("C:\\Data\\One\\Two"));
  EXPECT_FALSE(files.FolderExists("C:\\Data\\One\\Two\\Three"));
  files.CreateFoldersOf("C:\\Data\\One\\Two\\Three\\");
  EXPECT_TRUE(files.FolderExists("C:\\Data\\One\\Two\\Three"));
}

TEST_P(FilesContract, CreateFoldersOfUsesTheFoldersThatAreThere) {
  files.CreateFoldersOf("C:\\DATA\\One\\a.txt");
  EXPECT_THAT(host.Names("C:\\"), ElementsAre("Data"));
  EXPECT_THAT(host.Names("C:\\Data"), ElementsAre("One"));
}

TEST_P(FilesContract, CreateFoldersOfRaises75WhereAFileStandsInTheWay) {
  host.Write("C:\\Data\\a.txt", "hello");
  EXPECT_EQ(RaisedBy([&] { files.CreateFoldersOf("C:\\Data\\a.txt\\b.txt"); }), 75);
}

TEST_P(FilesContract, CreateFoldersOfRaises76WithoutABackslash) {
  EXPECT_EQ(RaisedBy([&] { files.CreateFoldersOf("a.txt"); }), 76);
}

TEST_P(FilesContract, DeleteTakesOneFileAway) {
  host.Write("C:\\Data\\a.txt", "hello");
  host.Write("C:\\Data\\b.txt", "hello");
  files.Delete("C:\\Data\\A.TXT");
  EXPECT_THAT(host.Names("C:\\Data"), ElementsAre("b.txt"));
}

TEST_P(FilesContract, DeleteOfWhatIsNoFileRaises) {
  EXPECT_EQ(RaisedBy([&] { files.Delete("C:\\Data\\missing"); }), 53);
  EXPECT_EQ(RaisedBy([&] { files.Delete("C:\\Data"); }), 53);
  EXPECT_EQ(RaisedBy([&] { files.Delete("C:\\Missing\\a.txt"); }), 76);
}

TEST_P(FilesContract, DeleteOfAReadOnlyFileRaises75) {
  host.Write("C:\\Data\\a.txt", "hello");
  files.SetAttributes("C:\\Data\\a.txt", attribute::kReadOnly);
  EXPECT_EQ(RaisedBy([&] { files.Delete("C:\\Data\\a.txt"); }), 75);
  EXPECT_TRUE(files.FileExists("C:\\Data\\a.txt"));
}

TEST_P(FilesContract, AFlushEndsByItself) {
  host.Write("C:\\Data\\a.txt", "hello");
  const auto flush = files.BeginFlush("C:\\Data");
  while (!flush->IsDone()) continue;
  EXPECT_TRUE(flush->IsDone());
}

TEST_P(FilesContract, AFlushThatNobodyWaitsForHoldsNobodyUp) {
  files.BeginFlush("C:\\Data").reset();
}

TEST_P(FilesContract, FlushNeedsAFolder) {
  EXPECT_EQ(RaisedBy([&] { files.BeginFlush("C:\\Missing"); }), 76);
}

TEST_P(FilesContract, TheProgramFolderHasNoBackslashAtItsEnd) {
  const Path folder = files.ProgramFolder();
  EXPECT_EQ(folder.at(1), ':');
  EXPECT_NE(folder.back(), '\\');
}

}  // namespace
}  // namespace tarnvale::testing
