#include "hosts/linux/tree_copy.h"

#include <sys/xattr.h>
#include <unistd.h>

#include "tests/hosts/contract/native_files.h"
#include "tests/hosts/contract/temporary_folder.h"
#include "tests/hosts/contract/variable_for.h"
#include "tests/hosts/linux/call_hooks.h"
#include "tests/hosts/linux/linux_drive.h"

namespace tarnvale {
namespace {

using Names = std::vector<std::string>;

class TreeCopyTest : public LinuxDriveTest {
 protected:
  void CopyTree(const Path& source, const Path& target) {
    files_.CopyTree(source, target, [this] { ++between_; });
  }
  int between_ = 0;
};

TEST_F(TreeCopyTest, EverythingInTheFolderIsCopied) {
  MakeFolder("a/b/c");
  Write("a/1", "one");
  Write("a/b/2", "two");
  Write("a/b/c/.3", "three");
  MakeFolder("a/empty");
  CopyTree("C:\\a", "C:\\z");
  EXPECT_EQ(Read("z/1"), "one");
  EXPECT_EQ(Read("z/b/2"), "two");
  EXPECT_EQ(Read("z/b/c/.3"), "three");
  EXPECT_EQ(NamesIn("z"), (Names{"1", "b", "empty"}));
  EXPECT_EQ(between_, 3);
}

TEST_F(TreeCopyTest, WhatIsThereIsReplacedAndNothingDeleted) {
  MakeFolder("a/sub");
  MakeFolder("z/sub");
  Write("a/sub/both", "new");
  Write("z/sub/BOTH", "old");
  Write("z/sub/kept", "kept");
  CopyTree("C:\\a", "C:\\z");
  EXPECT_EQ(NamesIn("z/sub"), (Names{"BOTH", "kept"}));
  EXPECT_EQ(Read("z/sub/BOTH"), "new");
  EXPECT_EQ(Read("z/sub/kept"), "kept");
}

TEST_F(TreeCopyTest, NamesThatDifferOnlyInCaseBothArrive) {
  MakeFolder("a");
  MakeFolder("z");
  Write("a/x", "small");
  Write("a/X", "large");
  Write("z/X", "old");
  CopyTree("C:\\a", "C:\\new");
  CopyTree("C:\\a", "C:\\z");
  for (const std::string place : {"new", "z"}) {
    EXPECT_EQ(Read(place + "/x"), "small");
    EXPECT_EQ(Read(place + "/X"), "large");
  }
}

TEST_F(TreeCopyTest, AFailingEntryDoesNotStopTheOthers) {
  MakeFolder("a/m");
  MakeFolder("z");
  Write("a/1", "new");
  Write("a/2", "new");
  Write("a/3", "new");
  Write("a/m/4", "new");
  Write("z/2", "old");
  SetMode("z/2", 0444);
  Write("z/m", "a file where a folder should go");
  EXPECT_EQ(RaisedBy([&] { CopyTree("C:\\a", "C:\\z"); }), kPathFileAccess);
  EXPECT_EQ(Read("z/1"), "new");
  EXPECT_EQ(Read("z/2"), "old");
  EXPECT_EQ(Read("z/3"), "new");
  EXPECT_EQ(Read("z/m"), "a file where a folder should go");
}

TEST_F(TreeCopyTest, WhatNoPathCanNameAndPipesDoNoHarm) {
  MakeFolder("a/fol\\der");
  Write("a/fol\\der/x", "");
  Write("a/st*r", "");
  Write("a/plain", "content");
  ASSERT_EQ(::mkfifo(Native("a/pipe").c_str(), 0600), 0);
  CopyTree("C:\\a", "C:\\z");
  EXPECT_EQ(NamesIn("z"), Names{"plain"});
}

TEST_F(TreeCopyTest, LinksAreCopiedAsLinksAndNotFollowed) {
  MakeFolder("a");
  MakeFolder("elsewhere");
  Write("elsewhere/x", "");
  Link("a/to_folder", "../elsewhere");
  Link("a/loop", ".");
  Link("a/dangling", "none");
  CopyTree("C:\\a", "C:\\z");
  EXPECT_EQ(NamesIn("z"), (Names{"dangling", "loop", "to_folder"}));
  EXPECT_EQ(std::filesystem::read_symlink(Native("z/to_folder")), "../elsewhere");
}

TEST_F(TreeCopyTest, ALinkInTheTargetIsNotWrittenThrough) {
  MakeFolder("a/sub");
  Write("a/sub/x", "new");
  MakeFolder("elsewhere");
  MakeFolder("z");
  Link("z/sub", "../elsewhere");
  EXPECT_EQ(RaisedBy([&] { CopyTree("C:\\a", "C:\\z"); }), kPathFileAccess);
  EXPECT_EQ(RaisedBy([&] { CopyTree("C:\\a\\sub", "C:\\z\\sub"); }), kPathFileAccess);
  EXPECT_EQ(NamesIn("elsewhere"), Names{});
  CopyTree("C:\\a\\sub", "C:\\z\\sub\\");
  EXPECT_EQ(NamesIn("elsewhere"), Names{"x"});
}

TEST_F(TreeCopyTest, AFolderCopiedIntoItselfEnds) {
  MakeFolder("a/b");
  Write("a/1", "one");
  Write("a/b/2", "two");
  CopyTree("C:\\a", "C:\\a\\copy");
  EXPECT_EQ(NamesIn("a/copy"), (Names{"1", "b"}));
  CopyTree("C:\\a", "C:\\a\\b\\deep");
  EXPECT_EQ(NamesIn("a/b/deep"), (Names{"1", "b", "copy"}));
  EXPECT_EQ(NamesIn("a/b/deep/b"), Names{"2"});
  CopyTree("C:\\a", "C:\\A");
  EXPECT_EQ(Read("a/1"), "one");
}

TEST_F(TreeCopyTest, ANewFolderKeepsTimeAndPermissions) {
  MakeFolder("a/sub");
  Write("a/sub/x", "");
  SetMode("a/sub", 0550);
  SetModified("a/sub", 1'000'000, 42);
  ASSERT_EQ(::setxattr(Native("a").c_str(), "user.colour", "blue", 4, 0), 0);
  CopyTree("C:\\a", "C:\\z");
  EXPECT_EQ(Info("z/sub").st_mode & 07777U, 0750U) << "its owner can fill it";
  EXPECT_EQ(Info("z/sub").st_mtim.tv_sec, 1'000'000);
  EXPECT_EQ(Info("z/sub").st_mtim.tv_nsec, 42);
  EXPECT_EQ(::getxattr(Native("z").c_str(), "user.colour", nullptr, 0), 4);
  SetMode("a/sub", 0750);
}

TEST_F(TreeCopyTest, MissingFoldersAreReported) {
  MakeFolder("a");
  Write("file", "");
  EXPECT_EQ(RaisedBy([&] { CopyTree("C:\\none", "C:\\z"); }), kPathNotFound);
  EXPECT_EQ(RaisedBy([&] { CopyTree("C:\\file", "C:\\z"); }), kPathNotFound);
  EXPECT_EQ(RaisedBy([&] { CopyTree("C:\\a", "C:\\none\\z"); }), kPathNotFound);
  EXPECT_EQ(RaisedBy([&] { CopyTree("C:\\a", "C:\\file"); }), kPathFileAccess);
}

TEST_F(TreeCopyTest, DeepTreesAreCopiedWithFewOpenFiles) {
  std::string place = "a";
  for (int depth = 0; depth < 600; ++depth) place += "/d";
  MakeFolder(place);
  Write(place + "/leaf", "content");
  CopyTree("C:\\a", "C:\\z");
  EXPECT_EQ(Read("z" + place.substr(1) + "/leaf"), "content");
}

TEST_F(TreeCopyTest, WhatHappensBetweenFilesMayCopyToo) {
  MakeFolder("a");
  Write("a/1", "one");
  Write("a/2", "two");
  files_.CopyTree("C:\\a", "C:\\z", [this] {
    files_.CopyWhole("C:\\a\\1", "C:\\other");
    files_.OpenFolder("C:\\z");
  });
  EXPECT_EQ(NamesIn("z"), (Names{"1", "2"}));
  EXPECT_EQ(Read("other"), "one");
}

TEST_F(TreeCopyTest, AMovedFolderIsInItsNewPlaceOnly) {
  MakeFolder("a/b");
  Write("a/b/x", "content");
  files_.MoveTree("C:\\A", "C:\\z");
  EXPECT_FALSE(Exists("a"));
  EXPECT_EQ(Read("z/b/x"), "content");
}

TEST_F(TreeCopyTest, AMoveOntoSomethingOrIntoItselfIsRefused) {
  MakeFolder("a");
  Write("a/x", "content");
  MakeFolder("z");
  EXPECT_EQ(RaisedBy([&] { files_.MoveTree("C:\\a", "C:\\Z"); }), kFileAlreadyExists);
  EXPECT_EQ(RaisedBy([&] { files_.MoveTree("C:\\a", "C:\\a\\b"); }), kPathFileAccess);
  EXPECT_EQ(RaisedBy([&] { files_.MoveTree("C:\\none", "C:\\b"); }), kPathNotFound);
  EXPECT_EQ(RaisedBy([&] { files_.MoveTree("C:\\a\\x", "C:\\b"); }), kPathNotFound);
  EXPECT_EQ(Read("a/x"), "content");
}

TEST_F(TreeCopyTest, AFolderThatMovesToAnotherMediumIsInItsNewPlaceOnly) {
  if (::access("/dev/shm", W_OK) != 0) GTEST_SKIP() << "there is no /dev/shm";
  const testing::VariableFor temporary("TMPDIR", "/dev/shm");
  const testing::TemporaryFolder elsewhere;
  if (testing::StateOf(elsewhere.Path()).st_dev == Info(".").st_dev) {
    GTEST_SKIP() << "/dev/shm is no other medium";
  }
  MakeFolder("a/b");
  Write("a/b/x", "content");
  Write("a/b/large", std::string(1000000, 'l'));
  Link("a/b/link", "x");
  Link("elsewhere", elsewhere.Path());
  files_.MoveTree("C:\\a", "C:\\elsewhere\\z");
  EXPECT_FALSE(Exists("a"));
  EXPECT_EQ(testing::ReadNative(elsewhere / "z/b/link"), "content");
  EXPECT_TRUE(testing::ReadNative(elsewhere / "z/b/large") == std::string(1000000, 'l'));
}

TEST_F(TreeCopyTest, RightsDecideWhatOthersMayDoInANewFolder) {
  const mode_t mask = ::umask(0022);
  MakeFolder("a/sub");
  SetMode("a/sub", 01777);
  files_.CopyTree("C:\\a", "C:\\source", {}, Rights::kSource);
  files_.CopyTree("C:\\a", "C:\\owner", {}, Rights::kOwner);
  ::umask(0);
  files_.CopyTree("C:\\a", "C:\\new", {}, Rights::kNewFile);
  ::umask(mask);
  EXPECT_EQ(Info("source/sub").st_mode & 07777U, 01777U);
  EXPECT_EQ(Info("owner/sub").st_mode & 07777U, 0700U);
  EXPECT_EQ(Info("new/sub").st_mode & 07777U, 0755U) << "what the sticky bit guarded isn't open";
}

TEST_F(TreeCopyTest, FoldersDeeperThanAnyPathAreReportedAndTheRestIsCopied) {
  MakeFolder("a/z");
  Write("a/z/x", "content");
  const std::string name(250, 'd');
  Descriptor folder = OpenNativeFolder(Native("a"), false);
  for (int depth = 0; depth < 20; ++depth) {
    ASSERT_EQ(::mkdirat(folder.Get(), name.c_str(), 0700), 0);
    folder = Descriptor(::openat(folder.Get(), name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  }
  EXPECT_EQ(RaisedBy([&] { CopyTree("C:\\a", "C:\\copy"); }), kPathNotFound);
  EXPECT_EQ(Read("copy/z/x"), "content");
}

TEST_F(TreeCopyTest, AFolderThatMovesIntoItselfByALinkStays) {
  MakeFolder("a/b");
  Write("a/x", "content");
  Link("other", "a/b");
  EXPECT_EQ(RaisedBy([&] { files_.MoveTree("C:\\a", "C:\\other\\z"); }), kPathFileAccess);
  EXPECT_EQ(NamesIn("a"), (Names{"b", "x"}));
  EXPECT_EQ(NamesIn("a/b"), Names{});
  // As where the medium is mounted twice.
  testing::RenameHook two_media({});
  two_media.Refuse(EXDEV);
  EXPECT_EQ(RaisedBy([&] { files_.MoveTree("C:\\a", "C:\\other\\z"); }), kPathFileAccess);
  EXPECT_EQ(Read("a/x"), "content");
  EXPECT_TRUE(Exists("a/b"));
}

TEST_F(TreeCopyTest, AFolderThatMovesToAMediumWithoutItsLinksStays) {
  MakeFolder("a");
  Write("a/x", "content");
  Link("a/link", "x");
  testing::RenameHook two_media({});
  two_media.Refuse(EXDEV);
  testing::LinkHook no_links({});
  no_links.Refuse(EPERM);
  EXPECT_EQ(RaisedBy([&] { files_.MoveTree("C:\\a", "C:\\z"); }), kPathFileAccess);
  EXPECT_EQ(NamesIn("a"), (Names{"link", "x"}));
  EXPECT_EQ(Read("z/x"), "content");
}

TEST_F(TreeCopyTest, AnEmptiedFolderTakesNothingBehindItsLinksAlong) {
  MakeFolder("a/b");
  Write("a/b/x", "");
  Write("kept", "");
  Link("a/link", "../kept");
  Link("a/to_root", "..");
  EmptyFolder(OpenNativeFolder(Native("a"), false));
  EXPECT_EQ(NamesIn("a"), Names{});
  EXPECT_EQ(NamesIn("."), (Names{"a", "kept"}));
}

TEST_F(TreeCopyTest, AnEmptiedFolderIsTheOneThatIsHeld) {
  MakeFolder("a");
  Write("a/x", "");
  const Descriptor held = OpenNativeFolder(Native("a"), false);
  std::filesystem::rename(Native("a"), Native("away"));
  MakeFolder("a");
  Write("a/kept", "");
  EmptyFolder(held);
  EXPECT_EQ(NamesIn("away"), Names{});
  EXPECT_EQ(NamesIn("a"), Names{"kept"});
}

}  // namespace
}  // namespace tarnvale
