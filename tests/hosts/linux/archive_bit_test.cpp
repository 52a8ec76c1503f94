#include "hosts/linux/archive_bit.h"

#include <fcntl.h>
#include <linux/msdos_fs.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <fstream>

#include "base/stable_hash.h"
#include "tests/hosts/contract/ordinary_user.h"
#include "tests/hosts/linux/call_hooks.h"
#include "tests/hosts/linux/linux_drive.h"

namespace tarnvale {
namespace {

using attribute::kArchive;
using attribute::kHidden;
using attribute::kReadOnly;
using attribute::kSystem;

using ArchiveBitTest = LinuxDriveTest;

TEST_F(ArchiveBitTest, StaysClearedUntilTheFileChanges) {
  Write("file", "one");
  SetModified("file", 1000, 1);
  files_.SetAttributes("C:\\file", 0);
  EXPECT_EQ(files_.Attributes("C:\\file"), 0);
  LinuxHost next_run(With(base_ + "/other_state"));
  EXPECT_EQ(next_run.files.Attributes("C:\\file"), 0);
  SetModified("file", 1000, 2);
  EXPECT_EQ(files_.Attributes("C:\\file"), kArchive);
  files_.SetAttributes("C:\\file", 0);
  Write("file", "two");
  SetModified("file", 1000, 2);
  EXPECT_EQ(files_.Attributes("C:\\file"), kArchive) << "with size and time put back";
}

TEST_F(ArchiveBitTest, TheMarkIdentifiesItsFile) {
  Write("file", "12345");
  SetModified("file", 1'700'000'000, 123'456'789);
  files_.SetAttributes("C:\\file", 0);
  std::string value(160, '\0');
  value.resize(static_cast<std::size_t>(
      ::getxattr(Native("file").c_str(), "user.tarnvale.archived", value.data(), value.size())));
  struct statx born {};
  ASSERT_EQ(::statx(AT_FDCWD, Native("file").c_str(), 0, STATX_BTIME, &born), 0);
  const bool is_known = (born.stx_mask & STATX_BTIME) != 0;
  const std::int64_t born_ns =
      is_known ? born.stx_btime.tv_sec * 1'000'000'000 + born.stx_btime.tv_nsec : 0;
  EXPECT_EQ(value, "5 1700000000123456789 " + std::to_string(Info("file").st_ino) + " " +
                       std::to_string(born_ns) + " 0 " + StableHash(Native("file")));
}

TEST_F(ArchiveBitTest, AMarkOfAnOlderReleaseDoesNotCount) {
  Write("file", "12345");
  SetModified("file", 1'700'000'000, 5);
  const std::string mark = "5 1700000000000000005";
  ASSERT_EQ(
      ::setxattr(Native("file").c_str(), "user.tarnvale.archived", mark.data(), mark.size(), 0), 0);
  EXPECT_EQ(files_.Attributes("C:\\file"), kArchive);
}

TEST_F(ArchiveBitTest, NothingIsClearedThatTheIndexCannotNote) {
  Write("file", "");
  std::ofstream(state_) << "no folder";
  EXPECT_EQ(RaisedBy([&] { files_.SetAttributes("C:\\file", 0); }), kPathFileAccess);
  EXPECT_EQ(files_.Attributes("C:\\file"), kArchive);
}

TEST_F(ArchiveBitTest, CanBeSetAgain) {
  Write("file", "");
  files_.SetAttributes("C:\\file", 0);
  files_.SetAttributes("C:\\file", kArchive);
  EXPECT_EQ(files_.Attributes("C:\\file"), kArchive);
}

TEST_F(ArchiveBitTest, IsSetOnTheCopyOfAClearedFile) {
  Write("file", "");
  files_.SetAttributes("C:\\file", 0);
  files_.CopyWhole("C:\\file", "C:\\copy");
  EXPECT_EQ(files_.Attributes("C:\\copy"), kArchive);
}

TEST_F(ArchiveBitTest, IsClearedOnAReadOnlyFileToo) {
  Write("file", "");
  SetMode("file", 0444);
  EXPECT_EQ(files_.Attributes("C:\\file"), kArchive + kReadOnly);
  files_.SetAttributes("C:\\file", kReadOnly);
  EXPECT_EQ(files_.Attributes("C:\\file"), kReadOnly);
  LinuxHost next_run(With(state_));
  EXPECT_EQ(next_run.files.Attributes("C:\\file"), kReadOnly);
}

TEST_F(ArchiveBitTest, IsClearedTogetherWithReadOnly) {
  Write("file", "");
  SetMode("file", 0664);
  files_.SetAttributes("C:\\file", kReadOnly);
  EXPECT_EQ(Info("file").st_mode & 07777U, 0464U);
  EXPECT_EQ(files_.Attributes("C:\\file"), kReadOnly);
  files_.SetAttributes("C:\\file", 0);
  EXPECT_EQ(Info("file").st_mode & 07777U, 0664U);
  EXPECT_EQ(files_.Attributes("C:\\file"), 0);
}

TEST_F(ArchiveBitTest, ValuesThatNoFileCanHaveChangeNothing) {
  Write("file", "");
  for (const int value : {-31, -1, 16, 64, 48, 256, kHidden, kSystem, kHidden + kReadOnly}) {
    EXPECT_EQ(RaisedBy([&] { files_.SetAttributes("C:\\file", value); }), kInvalidCall) << value;
  }
  EXPECT_EQ(files_.Attributes("C:\\file"), kArchive);
}

TEST_F(ArchiveBitTest, AHiddenNameNeedsTheHiddenBit) {
  Write(".file", "");
  EXPECT_EQ(RaisedBy([&] { files_.SetAttributes("C:\\.file", 0); }), kInvalidCall);
  files_.SetAttributes("C:\\.file", kHidden);
  EXPECT_EQ(files_.Attributes("C:\\.file"), kHidden);
}

TEST_F(ArchiveBitTest, MissingFilesAreReported) {
  MakeFolder("folder");
  EXPECT_EQ(RaisedBy([&] { files_.SetAttributes("C:\\none", 0); }), kFileNotFound);
  EXPECT_EQ(RaisedBy([&] { files_.SetAttributes("C:\\folder", 0); }), kPathFileAccess);
}

// A file whose medium knows neither extended attributes nor an archive bit.
constexpr char kBare[] = "/proc/version";

TEST_F(ArchiveBitTest, IsKeptInTheIndexWhereTheMediumHoldsNothing) {
  struct stat info {};
  info.st_size = 7;
  info.st_mtim = {5, 6};
  {
    ArchiveBit archive(state_, host_.temporaries);
    EXPECT_TRUE(archive.IsSet(kBare, info));
    archive.Clear(kBare, info);
    EXPECT_FALSE(archive.IsSet(kBare, info));
  }
  ArchiveBit next_run(state_, host_.temporaries);
  EXPECT_FALSE(next_run.IsSet(kBare, info));
  info.st_mtim.tv_nsec = 7;
  EXPECT_TRUE(next_run.IsSet(kBare, info));
  info.st_mtim.tv_nsec = 6;
  info.st_ino = 8;
  EXPECT_TRUE(next_run.IsSet(kBare, info)) << "another file";
  info.st_ino = 0;
  next_run.Set(kBare);
  EXPECT_TRUE(next_run.IsSet(kBare, info));
  EXPECT_TRUE(ArchiveBit(state_, host_.temporaries).IsSet(kBare, info));
}

// On FAT the medium keeps it. Other systems see and set it there.
TEST_F(ArchiveBitTest, AMediumWithABitOfItsOwnKeepsIt) {
  testing::FatMedium medium;
  Write("file", "one");
  SetModified("file", 1000, 0);
  std::uint32_t& byte = medium.bytes[Info("file").st_ino];
  byte = ATTR_ARCH | ATTR_SYS;
  EXPECT_EQ(files_.Attributes("C:\\file"), kArchive);
  files_.SetAttributes("C:\\file", 0);
  EXPECT_EQ(byte, std::uint32_t{ATTR_SYS});
  EXPECT_EQ(files_.Attributes("C:\\file"), 0);
  EXPECT_EQ(LinuxHost(With(state_)).files.Attributes("C:\\file"), 0) << "the next run";
  byte |= ATTR_ARCH;
  EXPECT_EQ(files_.Attributes("C:\\file"), kArchive) << "set by another system";
  files_.SetAttributes("C:\\file", 0);
  files_.SetAttributes("C:\\file", kArchive);
  EXPECT_EQ(byte, std::uint32_t{ATTR_ARCH | ATTR_SYS});
}

TEST_F(ArchiveBitTest, AMediumsClearedBitIsNoProofThatTheFileIsTheSame) {
  testing::FatMedium medium;
  Write("file", "one");
  SetModified("file", 1000, 0);
  files_.SetAttributes("C:\\file", 0);
  EXPECT_EQ(LinuxHost(With(base_ + "/other_state")).files.Attributes("C:\\file"), kArchive)
      << "cleared, but not by this user's run";
  SetModified("file", 1002, 0);
  EXPECT_EQ(files_.Attributes("C:\\file"), kArchive) << "by a system that sets no bits";
}

TEST_F(ArchiveBitTest, AMediumThatCannotBeWrittenKeepsItsBit) {
  testing::FatMedium medium;
  Write("file", "one");
  medium.is_read_only = true;
  files_.SetAttributes("C:\\file", 0);
  EXPECT_EQ(files_.Attributes("C:\\file"), kArchive) << "it is copied once more";
  medium.is_read_only = false;
  files_.SetAttributes("C:\\file", 0);
  ASSERT_EQ(files_.Attributes("C:\\file"), 0);
  medium.is_read_only = true;
  EXPECT_EQ(RaisedBy([&] { files_.SetAttributes("C:\\file", kArchive); }), kPathFileAccess);
}

TEST_F(ArchiveBitTest, AMarkThatMayNotBeTakenAwayRaises75) {
  if (!testing::AsOrdinaryUser::IsPossible()) GTEST_SKIP() << "nobody else can be played";
  Write("file", "");
  files_.SetAttributes("C:\\file", 0);
  const testing::AsOrdinaryUser user(base_);
  ASSERT_EQ(::seteuid(0), 0);
  ASSERT_EQ(::chown(Native("file").c_str(), 0, 0), 0);
  ASSERT_EQ(::seteuid(65534), 0);
  // Its owner changed, which the index of this run would take for another file.
  LinuxHost other(With(base_ + "/other_state"));
  ASSERT_EQ(other.files.Attributes("C:\\file"), 0);
  EXPECT_EQ(RaisedBy([&] { other.files.SetAttributes("C:\\file", kArchive); }), kPathFileAccess);
}

class ArchiveIndexTest : public LinuxDriveTest {
 protected:
  ArchiveIndex NextRun() { return {state_, host_.temporaries}; }
};

TEST_F(ArchiveIndexTest, KeepsPathsWithLineFeedsAndBackslashes) {
  NextRun().Set("/a\nb\\n c", {1, 2, 3, -4});
  ArchiveIndex next_run = NextRun();
  ASSERT_NE(next_run.Find("/a\nb\\n c"), nullptr);
  EXPECT_EQ(*next_run.Find("/a\nb\\n c"), (ArchiveMark{1, 2, 3, -4}));
}

TEST_F(ArchiveIndexTest, ALineThatACrashCutOffHarmsNoOther) {
  NextRun().Set("/a", {1, 2, 3, 4});
  { std::ofstream(state_ + "/archived", std::ios::app) << "3 4 5 6 7 /b"; }
  ArchiveIndex next_run = NextRun();
  EXPECT_EQ(next_run.Find("/b"), nullptr);
  next_run.Set("/c", {5, 6, 7, 8});
  ArchiveIndex last_run = NextRun();
  EXPECT_NE(last_run.Find("/a"), nullptr);
  EXPECT_NE(last_run.Find("/c"), nullptr);
}

TEST_F(ArchiveIndexTest, ALineOfAnOlderReleaseDoesNotCount) {
  std::filesystem::create_directories(state_);
  { std::ofstream(state_ + "/archived") << "1 2 /a\n1 2 3 4 5 /b\n"; }
  ArchiveIndex index = NextRun();
  EXPECT_EQ(index.Find("/a"), nullptr);
  EXPECT_NE(index.Find("/b"), nullptr);
}

TEST_F(ArchiveIndexTest, IsShortenedWhenItHasGrown) {
  ArchiveIndex index = NextRun();
  for (int i = 0; i < 500; ++i) index.Set("/a", {i, i, 7, i});
  ArchiveIndex next_run = NextRun();
  EXPECT_EQ(*next_run.Find("/a"), (ArchiveMark{499, 499, 7, 499}));
  std::ifstream file(state_ + "/archived");
  std::string line;
  std::getline(file, line);
  EXPECT_EQ(line, "499 499 7 499 0 /a");
  EXPECT_FALSE(std::getline(file, line));
}

TEST_F(ArchiveIndexTest, IsShortenedWithoutWritingThroughALinkThatSomebodyLeftThere) {
  Write("precious", "content");
  {
    ArchiveIndex index = NextRun();
    for (int i = 0; i < 500; ++i) index.Set("/a", {i, i, 7, i});
  }
  std::filesystem::create_symlink(Native("precious"), state_ + "/archived.new");
  EXPECT_NE(NextRun().Find("/a"), nullptr);
  EXPECT_EQ(Read("precious"), "content");
  EXPECT_FALSE(std::filesystem::is_symlink(state_ + "/archived"));
}

}  // namespace
}  // namespace tarnvale
