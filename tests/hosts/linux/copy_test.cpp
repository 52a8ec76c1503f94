// Copying single files.
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "hosts/linux/copy_data.h"
#include "hosts/linux/descriptor.h"
#include "tests/hosts/contract/full_medium.h"
#include "tests/hosts/linux/call_hooks.h"
#include "tests/hosts/linux/linux_drive.h"

namespace tarnvale {
namespace {

using testing::FullMedium;
using testing::LinkHook;
using testing::ReadHook;
using testing::RenameHook;
using testing::StateHook;
using testing::TimeHook;
using Names = std::vector<std::string>;
class CopyTest : public LinuxDriveTest {
 protected:
  // From one place on the drive to another, each a folder and a name.
  void CopyEntry(const Path& from, const std::string& name, const Path& to,
                 const std::string& target) {
    const auto source_folder = files_.OpenFolder(from);
    const auto target_folder = files_.OpenFolder(to);
    files_.CopyEntry({*source_folder, name}, {*target_folder, target});
  }
};

std::string Pattern(std::size_t count) {
  std::string content(count, '\0');
  for (std::size_t i = 0; i < count; ++i) content[i] = static_cast<char>((i * 2654435761U) >> 13U);
  return content;
}

TEST_F(CopyTest, ContentArrivesWhateverItsLength) {
  for (const std::size_t size : {0U, 1U, 262143U, 262144U, 262145U, 3000000U}) {
    Write("source", Pattern(size));
    files_.CopyWhole("C:\\source", "C:\\target");
    EXPECT_TRUE(Read("target") == Pattern(size)) << size;
  }
}

TEST_F(CopyTest, TimePermissionsAndExtendedAttributesGoAlong) {
  Write("source", "x");
  SetMode("source", 0751);
  SetModified("source", 1'234'567'890, 123'456'789);
  ASSERT_EQ(::setxattr(Native("source").c_str(), "user.colour", "blue", 4, 0), 0);
  files_.CopyWhole("C:\\source", "C:\\target");
  const struct stat info = Info("target");
  EXPECT_EQ(info.st_mode & 07777U, 0751U);
  EXPECT_EQ(info.st_mtim.tv_sec, 1'234'567'890);
  EXPECT_EQ(info.st_mtim.tv_nsec, 123'456'789);
  std::string value(16, '\0');
  value.resize(static_cast<std::size_t>(
      ::getxattr(Native("target").c_str(), "user.colour", value.data(), value.size())));
  EXPECT_EQ(value, "blue");
}

// Room is taken ahead for all that is announced, where that helps.
TEST_F(CopyTest, WhatASourceNoLongerHasTakesNoRoom) {
  constexpr std::size_t kLeft = 400'000;
  constexpr blkcnt_t kSpareBlocks = 128;  // of 512 bytes
  Write("source", Pattern(kLeft));
  Write("target", "");
  const Descriptor source(::open(Native("source").c_str(), O_RDONLY));
  const Descriptor target(::open(Native("target").c_str(), O_WRONLY));
  EXPECT_EQ(CopyRange(source.Get(), target.Get(), 50'000'000), off_t{kLeft});
  EXPECT_TRUE(Read("target") == Pattern(kLeft));
  EXPECT_LE(Info("target").st_blocks, blkcnt_t{kLeft / 512} + kSpareBlocks);
}

// On media with times in steps of two seconds a copy seems older than its original, or
// newer where another system wrote it.
TEST_F(CopyTest, ACopyWithACoarseTimeIsNotMadeOnceMore) {
  struct Case {
    std::string source;
    std::string target;
    time_t source_s;
    time_t target_s;
    Rights rights;
    bool copies;
  };
  for (const Case& c :
       std::vector<Case>{{"same", "same", 1002, 1001, Rights::kNewFile, false},
                         {"same", "same", 1002, 1000, Rights::kNewFile, false},
                         {"same", "same", 1003, 1000, Rights::kNewFile, true},
                         {"same", "else", 1002, 1001, Rights::kNewFile, true},
                         {"same", "longer", 1002, 1001, Rights::kNewFile, true},
                         {"same", "same", 1000, 1000, Rights::kNewFile, true},
                         {"same", "same", 1001, 1000, Rights::kSource, false},
                         {"same", "else", 1001, 1000, Rights::kSource, true},
                         {"same", "same", 1002, 1001, Rights::kSource, true},
                         {"same", "same", 1002, 1000, Rights::kSource, true},
                         {std::string(70000, 'a') + 'b', std::string(70000, 'a') + 'c', 1001, 1000,
                          Rights::kNewFile, true}}) {
    Write("source", c.source);
    Write("target", c.target);
    SetModified("source", c.source_s, 0);
    SetModified("target", c.target_s, 0);
    const ino_t before = Info("target").st_ino;
    const auto folder = files_.OpenFolder("C:\\");
    files_.CopyEntry({*folder, "source"}, {*folder, "target"}, c.rights);
    EXPECT_EQ(Info("target").st_ino != before, c.copies) << c.source_s << " " << c.target_s;
    EXPECT_EQ(Info("target").st_mtim.tv_sec, c.source_s);
    EXPECT_EQ(Read("target"), c.source);
  }
}

TEST_F(CopyTest, AReadOnlyFileIsCopiedWithItsExtendedAttributes) {
  Write("source", "x");
  ASSERT_EQ(::setxattr(Native("source").c_str(), "user.colour", "blue", 4, 0), 0);
  SetMode("source", 0444);
  files_.CopyWhole("C:\\source", "C:\\target");
  EXPECT_EQ(Info("target").st_mode & 07777U, 0444U);
  EXPECT_EQ(::getxattr(Native("target").c_str(), "user.colour", nullptr, 0), 4);
}

TEST_F(CopyTest, AnOldTargetIsReplaced) {
  Write("source", "new");
  Write("target", "old and longer");
  files_.CopyWhole("C:\\source", "C:\\target");
  EXPECT_EQ(Read("target"), "new");
  EXPECT_EQ(NamesIn("."), (Names{"source", "target"}));
}

TEST_F(CopyTest, ATargetOfOtherCaseIsReplacedUnderItsName) {
  Write("source", "new");
  Write("Target", "old");
  files_.CopyWhole("C:\\source", "C:\\TARGET");
  EXPECT_EQ(Read("Target"), "new");
  EXPECT_EQ(NamesIn("."), (Names{"Target", "source"}));
}

TEST_F(CopyTest, NewNamesOfOneFolderStayOneName) {
  Write("source", "1");
  files_.CopyWhole("C:\\source", "C:\\First");
  files_.CopyWhole("C:\\source", "C:\\FIRST");
  EXPECT_EQ(NamesIn("."), (Names{"First", "source"}));
}

TEST_F(CopyTest, AReadOnlyTargetIsRefused) {
  Write("source", "new");
  Write("target", "old");
  SetMode("target", 0444);
  EXPECT_EQ(RaisedBy([&] { files_.CopyWhole("C:\\source", "C:\\target"); }), kPathFileAccess);
  EXPECT_EQ(Read("target"), "old");
}

// Nobody closed what a loss of power, or of the medium, has left of a copy.
TEST_F(CopyTest, AReadOnlyCopyThatWasCutShortIsReplaced) {
  Write("source", "all of it");
  Write("target", "all");
  for (const char* file : {"source", "target"}) {
    SetModified(file, 1'234'567'890, 123'456'789);
    SetMode(file, 0444);
  }
  files_.CopyWhole("C:\\source", "C:\\target");
  EXPECT_EQ(Read("target"), "all of it");
}

// To be asked in vain isn't to be missing.
TEST_F(CopyTest, AReadOnlyTargetStaysWhenTheMediumCannotSayWhetherItIsThere) {
  Write("source", "new");
  Write("target", "old");
  SetMode("target", 0444);
  const auto source = files_.OpenFolder("C:\\");
  const auto target = files_.OpenFolder("C:\\");
  // The source is there.
  StateHook medium({[] {}, [&medium] { medium.Refuse(EIO); }});
  EXPECT_EQ(RaisedBy([&] {
              files_.CopyEntry({*source, "source"}, {*target, "target"});
            }),
            kDeviceIoError);
  EXPECT_TRUE(medium.WasCalled());
  EXPECT_EQ(RaisedBy([&] { files_.CopyWhole("C:\\source", {*target, "target"}); }), kDeviceIoError);
  medium.Refuse(0);
  EXPECT_EQ(Read("target"), "old");
  EXPECT_EQ(NamesIn("."), (Names{"source", "target"}));
}

TEST_F(CopyTest, ACopyIsNotMistrustedWhoseFileCannotBeRead) {
  Write("source", "bytes");
  Write("target", "other");
  SetModified("source", 1'000'000'000, 0);
  SetModified("target", 1'000'000'000, 0);
  const auto folder = files_.OpenFolder("C:\\");
  const auto mistrust = [&] {
    return files_.Mistrust({*folder, "source"}, {*folder, "target"}, 0);
  };
  {
    ReadHook broken({});
    broken.Refuse(EIO);
    EXPECT_FALSE(mistrust());
  }
  EXPECT_EQ(Info("target").st_mtim.tv_sec, 1'000'000'000);
  EXPECT_TRUE(mistrust());
  EXPECT_EQ(Info("target").st_mtim.tv_sec, 0);
  EXPECT_EQ(Read("target"), "other");
}

TEST_F(CopyTest, FailuresAreReportedByNumber) {
  MakeFolder("folder");
  Write("source", "");
  EXPECT_EQ(RaisedBy([&] { files_.CopyWhole("C:\\none", "C:\\target"); }), kFileNotFound);
  EXPECT_EQ(RaisedBy([&] { files_.CopyWhole("C:\\folder", "C:\\target"); }), kFileNotFound);
  EXPECT_EQ(RaisedBy([&] { files_.CopyWhole("C:\\source", "C:\\none\\x"); }), kPathNotFound);
  EXPECT_EQ(RaisedBy([&] { files_.CopyWhole("C:\\source", "D:\\x"); }), kPathNotFound);
  EXPECT_EQ(RaisedBy([&] { files_.CopyWhole("C:\\source", "C:\\folder"); }), kPathFileAccess);
  EXPECT_EQ(RaisedBy([&] { files_.CopyWhole("C:\\source", "C:\\a*b"); }), kPathFileAccess);
  EXPECT_EQ(RaisedBy([&] { files_.CopyWhole("C:\\source", "C:\\" + std::string(256, 'n')); }),
            kPathFileAccess);
  EXPECT_EQ(NamesIn("."), (Names{"folder", "source"}));
}

TEST_F(CopyTest, APipeIsNotOpened) {
  ASSERT_EQ(::mkfifo(Native("pipe").c_str(), 0600), 0);
  Write("file", "");
  EXPECT_EQ(RaisedBy([&] { files_.CopyWhole("C:\\pipe", "C:\\target"); }), kPermissionDenied);
  EXPECT_EQ(RaisedBy([&] { files_.CopyWhole("C:\\file", "C:\\pipe"); }), kPathFileAccess);
  EXPECT_TRUE(S_ISFIFO(Info("pipe").st_mode));
}

TEST_F(CopyTest, AFileCopiedOntoItselfStaysWhole) {
  Write("file", "content");
  files_.CopyWhole("C:\\file", "C:\\FILE");
  Link("link", "file");
  files_.CopyWhole("C:\\link", "C:\\file");
  ASSERT_EQ(::link(Native("file").c_str(), Native("twin").c_str()), 0);
  files_.CopyWhole("C:\\file", "C:\\twin");
  EXPECT_EQ(Read("file"), "content");
  EXPECT_EQ(Read("twin"), "content");
  EXPECT_EQ(Info("file").st_nlink, 2U);
}

TEST_F(CopyTest, ALinkedTargetIsReplacedAndNotWrittenThrough) {
  Write("source", "new");
  Write("file", "old");
  Link("target", "file");
  files_.CopyWhole("C:\\source", "C:\\target");
  EXPECT_EQ(Read("file"), "old");
  EXPECT_TRUE(S_ISREG(Info("target").st_mode));
}

TEST_F(CopyTest, CopyWholeFollowsALinkAndCopyEntryKeepsIt) {
  MakeFolder("sub");
  Write("file", "content");
  Link("link", "file");
  SetModified("link", 1000, 5);
  files_.CopyWhole("C:\\link", "C:\\sub\\whole");
  CopyEntry("C:\\", "link", "C:\\sub", "entry");
  EXPECT_EQ(Read("sub/whole"), "content");
  EXPECT_EQ(std::filesystem::read_symlink(Native("sub/entry")), "file");
  EXPECT_EQ(Info("sub/entry").st_mtim.tv_sec, 1000);
  EXPECT_EQ(Info("sub/entry").st_mtim.tv_nsec, 5);
}

TEST_F(CopyTest, CopyEntryReplacesALinkByALink) {
  Link("link", "one");
  Link("target", "two");
  CopyEntry("C:\\", "link", "C:\\", "target");
  EXPECT_EQ(std::filesystem::read_symlink(Native("target")), "one");
  EXPECT_EQ(NamesIn("."), (Names{"link", "target"}));
}

// What somebody saves while an entry is copied onto it.
TEST_F(CopyTest, WhatChangesWhileItIsCopiedOntoStays) {
  Write("source", "source");
  for (const bool medium_exchanges : {true, false}) {
    Write("target", "old");
    const TimeHook saving({[&] { Write("target", "saved"); }});
    RenameHook medium({});
    if (!medium_exchanges) medium.Refuse(EINVAL);
    EXPECT_EQ(RaisedBy([&] { CopyEntry("C:\\", "source", "C:\\", "target"); }), 58);
    EXPECT_TRUE(saving.WasCalled());
    EXPECT_EQ(Read("target"), "saved");
    EXPECT_EQ(NamesIn("."), (Names{"source", "target"}));
  }
}

TEST_F(CopyTest, WhatChangesRightBeforeItIsReplacedStays) {
  Write("source", "source");
  Write("target", "old");
  const RenameHook saving({[&] { Write("target", "saved"); }});
  EXPECT_EQ(RaisedBy([&] { CopyEntry("C:\\", "source", "C:\\", "target"); }), 58);
  EXPECT_TRUE(saving.WasCalled());
  EXPECT_EQ(Read("target"), "saved");
  EXPECT_EQ(NamesIn("."), (Names{"source", "target"}));
}

TEST_F(CopyTest, WhatGoesWhileItIsCopiedOntoStaysAway) {
  Write("source", "source");
  Write("target", "old");
  const RenameHook deleting({[&] { std::filesystem::remove(Native("target")); }});
  EXPECT_EQ(RaisedBy([&] { CopyEntry("C:\\", "source", "C:\\", "target"); }), 58);
  EXPECT_TRUE(deleting.WasCalled());
  EXPECT_EQ(NamesIn("."), Names{"source"});
}

TEST_F(CopyTest, WhatComesWhileAnEntryIsCopiedStays) {
  Write("source", "source");
  const TimeHook saving({[&] { Write("target", "saved"); }});
  EXPECT_EQ(RaisedBy([&] { CopyEntry("C:\\", "source", "C:\\", "target"); }), 58);
  EXPECT_TRUE(saving.WasCalled());
  EXPECT_EQ(Read("target"), "saved");
  EXPECT_EQ(NamesIn("."), (Names{"source", "target"}));
}

// A link has a name from the start.
TEST_F(CopyTest, WhatComesWhileALinkIsCopiedStays) {
  Link("link", "one");
  for (const bool medium_knows_new : {true, false}) {
    RenameHook saving({[&] { Write("target", "saved"); }});
    if (!medium_knows_new) saving.Refuse(EINVAL);
    EXPECT_EQ(RaisedBy([&] { CopyEntry("C:\\", "link", "C:\\", "target"); }), 58);
    EXPECT_TRUE(saving.WasCalled());
    EXPECT_EQ(Read("target"), "saved");
    EXPECT_EQ(NamesIn("."), (Names{"link", "target"}));
    std::filesystem::remove(Native("target"));
  }
}

TEST_F(CopyTest, WhatComesIntoANewFolderWhileATreeIsCopiedStays) {
  MakeFolder("from");
  Write("from/file", "source");
  const TimeHook saving({[&] { Write("to/file", "saved"); }});
  EXPECT_EQ(RaisedBy([&] { files_.CopyTree("C:\\from", "C:\\to", {}); }), 58);
  EXPECT_TRUE(saving.WasCalled());
  EXPECT_EQ(Read("to/file"), "saved");
}

TEST_F(CopyTest, AWholeCopyReplacesWhateverCame) {
  Write("source", "source");
  for (const bool is_new : {true, false}) {
    if (!is_new) Write("target", "old");
    const TimeHook saving({[&] { Write("target", "saved"); }});
    files_.CopyWhole("C:\\source", "C:\\target");
    EXPECT_TRUE(saving.WasCalled());
    EXPECT_EQ(Read("target"), "source");
    std::filesystem::remove(Native("target"));
  }
}

TEST_F(CopyTest, NamesOf255BytesAreCopied) {
  MakeFolder("sub");
  const std::string name(255, 'n');
  Write(name, "content");
  files_.CopyWhole("C:\\" + name, "C:\\sub\\" + name);
  EXPECT_EQ(Read("sub/" + name), "content");
}

TEST_F(CopyTest, HolesStayHoles) {
  Write("source", "");
  ASSERT_EQ(::truncate(Native("source").c_str(), 64 * 1024 * 1024), 0);
  const int fd = ::open(Native("source").c_str(), O_WRONLY | O_CLOEXEC);
  ASSERT_EQ(::pwrite(fd, "middle", 6, 32 * 1024 * 1024), 6);
  ::close(fd);
  files_.CopyWhole("C:\\source", "C:\\target");
  EXPECT_EQ(Info("target").st_size, 64 * 1024 * 1024);
  EXPECT_LT(Info("target").st_blocks, 1024 * 1024 / 512);
  EXPECT_TRUE(Read("target") == Read("source"));
}

TEST_F(CopyTest, FilesThatTheSystemMakesUpAreReadToTheirEnd) {
  LinuxHost whole({.root = "/", .state_folder = state_, .locale_name = {}});
  std::string target = "C:" + Native("version");
  for (char& c : target) c = c == '/' ? '\\' : c;
  whole.files.CopyWhole("C:\\proc\\version", target);
  EXPECT_NE(Read("version").find("Linux"), std::string::npos);
}

TEST_F(CopyTest, RightsDecideWhatOthersMayDoWithACopyAndSetIdBitsNeverGoAlong) {
  const mode_t mask = ::umask(0022);
  Write("source", "x");
  SetMode("source", 07777);
  // A new file and one that is replaced are written in different ways; the latter's rights
  // count for a copy towards the computer.
  for (const bool is_new : {true, false}) {
    for (const auto& [rights, mode] :
         std::vector<std::pair<Rights, mode_t>>{{Rights::kSource, 0777},
                                                {Rights::kNewFile, is_new ? 0755 : 0640},
                                                {Rights::kOwner, 0600}}) {
      std::filesystem::remove(Native("target"));
      if (!is_new) {
        Write("target", "old");
        SetMode("target", 0640);
      }
      files_.CopyWhole("C:\\source", "C:\\target", rights);
      EXPECT_EQ(Info("target").st_mode & 07777U, mode) << is_new;
    }
  }
  ::umask(mask);
}

TEST_F(CopyTest, MoreAttributesThanAPageOfNamesGoAlong) {
  Write("source", "x");
  for (char last = 'a'; last < 'k'; ++last) {
    const std::string name = "user." + std::string(200, 'n') + last;
    ASSERT_EQ(::setxattr(Native("source").c_str(), name.c_str(), &last, 1, 0), 0);
  }
  files_.CopyWhole("C:\\source", "C:\\target");
  EXPECT_EQ(::listxattr(Native("target").c_str(), nullptr, 0), 10 * 207);
}

TEST_F(CopyTest, AMediumWithoutRoomRaises61AndKeepsWhatWasThere) {
  for (const std::size_t size : {10U, 1000000U}) {
    Write("source", Pattern(size));
    for (const bool is_new : {true, false}) {
      std::filesystem::remove(Native("target"));
      if (!is_new) Write("target", "old");
      int number = 0;
      {
        const FullMedium full;
        number = RaisedBy([&] { files_.CopyWhole("C:\\source", "C:\\target"); });
      }
      EXPECT_EQ(number, kDiskFull) << size;
      EXPECT_EQ(NamesIn("."), is_new ? Names{"source"} : (Names{"source", "target"}));
      if (is_new) continue;
      EXPECT_EQ(Read("target"), "old");
    }
  }
}

// FAT exchanges nothing, and some media don't know either.
TEST_F(CopyTest, AMediumThatKnowsOnlyThePlainRenamingGetsItsEntries) {
  Write("source", "new");
  Write("target", "old");
  Link("link", "one");
  for (const int error : {EINVAL, ENOSYS}) {
    RenameHook medium({});
    medium.Refuse(error);
    Write("target", "old");
    CopyEntry("C:\\", "source", "C:\\", "target");
    CopyEntry("C:\\", "link", "C:\\", "new link");
    EXPECT_EQ(Read("target"), "new");
    EXPECT_EQ(std::filesystem::read_symlink(Native("new link")), "one");
    EXPECT_EQ(NamesIn("."), (Names{"link", "new link", "source", "target"}));
    std::filesystem::remove(Native("new link"));
  }
}

TEST_F(CopyTest, AMediumThatHoldsNoLinksIsLeftWithoutThem) {
  Link("link", "one");
  for (const int error : {EPERM, EOPNOTSUPP, ENOSYS}) {
    LinkHook medium({});
    medium.Refuse(error);
    CopyEntry("C:\\", "link", "C:\\", "target");
    EXPECT_EQ(NamesIn("."), Names{"link"}) << error;
  }
  LinkHook medium({});
  medium.Refuse(ENOSPC);
  EXPECT_EQ(RaisedBy([&] { CopyEntry("C:\\", "link", "C:\\", "target"); }), kDiskFull);
}

TEST_F(CopyTest, ALinkIsNotPutInAFoldersPlace) {
  Link("link", "one");
  MakeFolder("target");
  EXPECT_EQ(RaisedBy([&] { CopyEntry("C:\\", "link", "C:\\", "target"); }), 58);
  EXPECT_TRUE(S_ISDIR(Info("target").st_mode));
}

TEST_F(CopyTest, WhatComesInASourcesPlaceIsNotCopied) {
  const std::vector<std::pair<int, std::function<void()>>> others = {
      {kFileNotFound, [&] { MakeFolder("source"); }},
      {kPermissionDenied, [&] { ::mkfifo(Native("source").c_str(), 0600); }},
      {kPathFileAccess, [&] { Link("source", "other"); }}};
  Write("other", "other");
  for (const auto& [number, come] : others) {
    Write("source", "source");
    // The source has been looked at when the target is.
    const StateHook exchanging({[] {},
                                [&, &come = come] {
                                  std::filesystem::remove(Native("source"));
                                  come();
                                }});
    EXPECT_EQ(RaisedBy([&] { CopyEntry("C:\\", "source", "C:\\", "target"); }), number);
    EXPECT_TRUE(exchanging.WasCalled());
    EXPECT_FALSE(Exists("target"));
    std::filesystem::remove(Native("source"));
  }
}

TEST_F(CopyTest, WhatIsWrittenRightBehindTheComparisonIsNewerAndStays) {
  Write("source", "same");
  Write("target", "same");
  SetModified("source", 1001, 0);
  SetModified("target", 1000, 0);
  const auto nothing = [] {};
  // Of both the bytes and the end are read.
  const ReadHook saving({nothing, nothing, nothing, [&] { Write("target", "late"); }});
  EXPECT_EQ(RaisedBy([&] { CopyEntry("C:\\", "source", "C:\\", "target"); }), 58);
  EXPECT_TRUE(saving.WasCalled());
  EXPECT_EQ(Read("target"), "late");
  EXPECT_NE(Info("target").st_mtim.tv_sec, 1001);
}

}  // namespace
}  // namespace tarnvale
