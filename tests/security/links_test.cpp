// Links that another user puts where the program reads or writes.
#include <gmock/gmock.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

#include "base/failure.h"
#include "codec/archive.h"
#include "tests/hosts/contract/variable_for.h"
#include "tests/security/another_user.h"
#include "tests/support/fake_machine.h"
#include "tests/support/raised.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

// A file of the user's own that everybody is to keep out of.
constexpr const char* kSecret = "the user's own";

class LinksOfOthersTest : public AttackedStage {
 protected:
  void SetUp() override {
    AttackedStage::SetUp();
    WriteNative(secret, kSecret);
    ASSERT_EQ(::chmod(secret.c_str(), 0600), 0);
  }

  std::string Shared(const std::string& name) const { return OnDrive("Data/shared/" + name); }
  void PlantLink(const std::string& name) { AnotherUser::PlantLink(secret, Shared(name)); }

  std::string secret = OnDrive("Data/secret");
  LinuxHost host{surroundings};
};

TEST_F(LinksOfOthersTest, AreNotWrittenThrough) {
  PlantLink("Backup Log.txt");
  const Path log = "C:\\Data\\shared\\Backup Log.txt";
  EXPECT_EQ(RaisedBy([&] { host.open_files.OpenOutput(1, log); }), kPermissionDenied);
  EXPECT_EQ(RaisedBy([&] { host.open_files.OpenBinary(1, log); }), kPermissionDenied);
  EXPECT_FALSE(host.open_files.IsOpen(1));
  EXPECT_EQ(ReadNative(secret), kSecret);
}

TEST_F(LinksOfOthersTest, ThatLeadNowhereMakeNoFile) {
  AnotherUser::PlantLink(OnDrive("Data/planted"), Shared("log"));
  EXPECT_EQ(RaisedBy([&] { host.open_files.OpenOutput(1, "C:\\Data\\shared\\log"); }),
            kPermissionDenied);
  EXPECT_FALSE(std::filesystem::exists(OnDrive("Data/planted")));
}

TEST_F(LinksOfOthersTest, AndFilesOfTheirsAreReplacedByTheProgramsOwnFiles) {
  PlantLink("stage");
  host.open_files.OpenOwn(1, "C:\\Data\\shared\\stage");
  host.open_files.Write(1, "container");
  EXPECT_EQ(ReadNative(secret), kSecret);
  EXPECT_EQ(ModeOf(Shared("stage")), 0600U);

  AnotherUser::PlantFile("", Shared("part"));
  ASSERT_EQ(::link(Shared("part").c_str(), OnDrive("Data/held by him").c_str()), 0);
  host.open_files.OpenOwn(2, "C:\\Data\\shared\\part");
  host.open_files.Write(2, "part");
  EXPECT_EQ(ReadNative(OnDrive("Data/held by him")), "");
  EXPECT_FALSE(AnotherUser::CanRead(Shared("part")));
}

// Whoever made the file could read the log, or had it open before.
TEST_F(LinksOfOthersTest, AndFilesOfTheirsAreReplacedByTheLogAndByWhatIsUnpacked) {
  for (const Rights rights : {Rights::kOwner, Rights::kNewFile}) {
    AnotherUser::PlantFile("long and old", Shared("log"));
    ASSERT_EQ(::link(Shared("log").c_str(), OnDrive("Data/held by him").c_str()), 0);
    host.open_files.OpenOutput(1, "C:\\Data\\shared\\log", rights);
    host.open_files.Write(1, "new");
    host.open_files.Close(1);
    EXPECT_EQ(ReadNative(Shared("log")), "new");
    EXPECT_EQ(ReadNative(OnDrive("Data/held by him")), "long and old");
    EXPECT_EQ(StateOf(Shared("log")).st_uid, ::geteuid());
    std::filesystem::remove(OnDrive("Data/held by him"));
  }
  AnotherUser::PlantFile("", Shared("log"));
  ASSERT_EQ(::symlink("shared/log", OnDrive("Data/own").c_str()), 0);
  host.open_files.OpenOutput(1, "C:\\Data\\own");
  EXPECT_FALSE(AnotherUser::CanRead(Shared("log")));
  EXPECT_TRUE(std::filesystem::is_symlink(OnDrive("Data/own")));
}

TEST_F(LinksOfOthersTest, ALogGoesIntoNoFileWithASecondName) {
  WriteNative(OnDrive("Data/letter"), "dear");
  ASSERT_EQ(::link(OnDrive("Data/letter").c_str(), Shared("log").c_str()), 0);
  host.open_files.OpenOutput(1, "C:\\Data\\shared\\log", Rights::kOwner);
  host.open_files.Write(1, "new");
  host.open_files.Close(1);
  EXPECT_EQ(ReadNative(Shared("log")), "new");
  EXPECT_EQ(ReadNative(OnDrive("Data/letter")), "dear");
}

// The other way round for root, whom nobody can keep from deleting.
TEST_F(LinksOfOthersTest, AndFilesOfTheirsThatCannotBeReplacedAreNotWrittenInto) {
  if (::geteuid() == 0 && !AnotherUser::IsReal()) GTEST_SKIP() << "root can delete everything";
  AnotherUser::PlantFile("his", Shared("log"));
  const uid_t whose = AnotherUser::IsReal() ? 0 : AnotherUser::kNumber;
  if (whose == 0) {
    ASSERT_EQ(::chown(Shared("log").c_str(), 0, 0), 0);
  }
  ASSERT_EQ(StateOf(Shared("log")).st_uid, whose);
  ASSERT_EQ(::chmod(OnDrive("Data/shared").c_str(), 0555), 0);
  EXPECT_TRUE(AnotherUser::Does([&] {
    LinuxHost of_user{surroundings};
    return RaisedBy([&] { of_user.open_files.OpenOutput(1, "C:\\Data\\shared\\log"); }) ==
           kPermissionDenied;
  }));
  EXPECT_EQ(ReadNative(Shared("log")), "his");
}

TEST_F(LinksOfOthersTest, AreNotReadThrough) {
  PlantLink("note");
  const Path note = "C:\\Data\\shared\\note";
  EXPECT_EQ(RaisedBy([&] { host.open_files.OpenInput(1, note); }), kPermissionDenied);
  EXPECT_EQ(RaisedBy([&] { host.transfer_files.OpenSource(note); }), kPermissionDenied);
  EXPECT_EQ(RaisedBy([&] { host.files.CopyWhole(note, "C:\\Data\\copy"); }), kPermissionDenied);
  EXPECT_FALSE(std::filesystem::exists(OnDrive("Data/copy")));
  EXPECT_EQ(RaisedBy([&] { host.files.Length(note); }), kPathFileAccess);
  EXPECT_EQ(RaisedBy([&] { host.files.Attributes(note); }), kPathFileAccess);
  EXPECT_EQ(RaisedBy([&] { host.files.SetAttributes(note, 1); }), kPathFileAccess);
  EXPECT_EQ(ModeOf(secret), 0600U);
}

TEST_F(LinksOfOthersTest, HoldNoSettings) {
  WriteNative(secret, "[Main]\r\nKey=value\r\n");
  PlantLink("Tarnvale.ini");
  const Path file = "C:\\Data\\shared\\Tarnvale.ini";
  EXPECT_EQ(host.profiles.Read("Main", "Key", "none", 256, file), "none");
  EXPECT_FALSE(host.profiles.Write("Main", "Key", "other", file));
  EXPECT_FALSE(host.profiles.Write("Main", "Key", "other", "C:\\Data\\shared\\TARNVALE.INI"));
  EXPECT_EQ(ReadNative(secret), "[Main]\r\nKey=value\r\n");
}

TEST_F(LinksOfOthersTest, AreNotFollowedBehindAnOwnOne) {
  PlantLink("his");
  ASSERT_EQ(::symlink("his", Shared("own").c_str()), 0);
  EXPECT_EQ(RaisedBy([&] { host.open_files.OpenInput(1, "C:\\Data\\shared\\own"); }),
            kPermissionDenied);
  EXPECT_EQ(host.profiles.Read("Main", "Key", "none", 256, "C:\\Data\\shared\\own"), "none");
  EXPECT_THAT(host.files.List("C:\\Data\\shared\\*", {}), IsEmpty());
}

TEST_F(LinksOfOthersTest, AreInNoListing) {
  PlantLink("planted");
  WriteNative(Shared("file"), "x");
  ASSERT_EQ(::symlink("file", Shared("own").c_str()), 0);
  EXPECT_THAT(host.files.List("C:\\Data\\shared\\*.*", {.hidden = true, .system = true}),
              ElementsAre("file", "own"));
}

TEST_F(LinksOfOthersTest, LeadNoFolderCopyIntoAFolder) {
  std::filesystem::create_directories(OnDrive("Data/keys"));
  WriteNative(OnDrive("Data/keys/key"), kSecret);
  AnotherUser::PlantLink(OnDrive("Data/keys"), Shared("photos"));
  EXPECT_EQ(
      RaisedBy([&] { host.files.CopyTree("C:\\Data\\shared\\photos", "C:\\Data\\copy", {}); }),
      kPathFileAccess);
  EXPECT_EQ(
      RaisedBy([&] { host.files.CopyTree("C:\\Data\\keys", "C:\\Data\\shared\\photos\\", {}); }),
      kPathFileAccess);
  EXPECT_EQ(RaisedBy([&] { host.files.OpenFolder("C:\\Data\\shared\\photos\\"); }),
            kPathFileAccess);
  EXPECT_FALSE(std::filesystem::exists(OnDrive("Data/copy")));
}

TEST_F(LinksOfOthersTest, ThatComeIntoAFilesPlaceDuringAFolderCopyAreNotRead) {
  WriteNative(Shared("1"), "first");
  AnotherUser::PlantFile("second", Shared("2"));
  bool planted = false;
  host.files.CopyTree("C:\\Data\\shared", "C:\\Data\\copy", [&] {
    if (!planted) PlantLink("2");
    planted = true;
  });
  EXPECT_EQ(ReadNative(OnDrive("Data/copy/1")), "first");
  EXPECT_FALSE(S_ISREG(StateOf(OnDrive("Data/copy/2")).st_mode));
}

// A folder that others can rename is exchanged for a link, which leads to where names are
// alike.
class FoldersExchangedForLinksTest : public LinksOfOthersTest {
 protected:
  void SetUp() override {
    LinksOfOthersTest::SetUp();
    std::filesystem::create_directories(Shared("photos"));
    std::filesystem::create_directories(OnDrive("Data/keys"));
    WriteNative(Shared("photos/1"), "first");
    WriteNative(Shared("photos/2"), "second");
    WriteNative(OnDrive("Data/keys/2"), kSecret);
  }

  void Exchange() {
    ASSERT_TRUE(AnotherUser::Does(
        [&] { return ::rename(Shared("photos").c_str(), Shared("away").c_str()) == 0; }));
    AnotherUser::PlantLink(OnDrive("Data/keys"), Shared("photos"));
  }

  const Path file = "C:\\Data\\shared\\photos\\2";
};

TEST_F(FoldersExchangedForLinksTest, LeadToNoFileThatIsRead) {
  Exchange();
  EXPECT_EQ(RaisedBy([&] { host.open_files.OpenInput(1, file); }), kPermissionDenied);
  EXPECT_EQ(RaisedBy([&] { host.open_files.OpenBinary(1, file); }), kPermissionDenied);
  EXPECT_EQ(RaisedBy([&] { host.transfer_files.OpenSource(file); }), kPermissionDenied);
  EXPECT_EQ(RaisedBy([&] { host.files.CopyWhole(file, "C:\\Data\\copy"); }), kPermissionDenied);
  EXPECT_FALSE(std::filesystem::exists(OnDrive("Data/copy")));
  EXPECT_EQ(RaisedBy([&] { host.files.OpenFolder("C:\\Data\\shared\\photos\\."); }),
            kPathFileAccess);
}

TEST_F(FoldersExchangedForLinksTest, LeadToNoFileThatIsWritten) {
  Exchange();
  EXPECT_NE(RaisedBy([&] { host.open_files.OpenOutput(1, file); }), 0);
  EXPECT_NE(RaisedBy([&] { host.open_files.OpenOwn(1, file); }), 0);
  WriteNative(OnDrive("Data/copied"), "copied");
  EXPECT_NE(RaisedBy([&] { host.files.CopyWhole("C:\\Data\\copied", file); }), 0);
  EXPECT_NE(RaisedBy([&] { host.transfer_files.OpenTarget(file); }), 0);
  EXPECT_EQ(ReadNative(OnDrive("Data/keys/2")), kSecret);
  EXPECT_THAT(NativeNames(OnDrive("Data/keys")), ElementsAre("2"));
}

TEST_F(FoldersExchangedForLinksTest, TakeNoTransferThatHasBegun) {
  const auto target = host.transfer_files.OpenTarget(file);
  target->Write(std::string_view("received"));
  Exchange();
  target->Commit();
  EXPECT_EQ(ReadNative(Shared("away/2")), "received");
  EXPECT_THAT(NativeNames(OnDrive("Data/keys")), ElementsAre("2"));
  EXPECT_EQ(ReadNative(OnDrive("Data/keys/2")), kSecret);
}

TEST_F(FoldersExchangedForLinksTest, ArePackedByNoArchiveThatHasListedThem) {
  FakeMachine fake;
  Machine machine{host.Parts(), fake.Interfaces()};
  usercontrol11 archiver(machine);
  archiver.AddingFile.Listen([&](const std::string& name, const Path&, std::int32_t) {
    if (name == "1") Exchange();
  });
  EXPECT_NE(
      RaisedBy([&] { archiver.SaveFilesToArchiv("C:\\Data\\shared", "C:\\Data\\a.tvz", false); }),
      0);
  EXPECT_THAT(ReadNative(OnDrive("Data/a.tvz")), Not(HasSubstr(kSecret)));
}

// Links of the user's own, and the administrator's, are followed on the way too.
TEST_F(FoldersExchangedForLinksTest, AreFollowedWhereTheUserOwnsThem) {
  ASSERT_EQ(::symlink(Shared("photos").c_str(), OnDrive("Data/absolute").c_str()), 0);
  ASSERT_EQ(::symlink("../Data/absolute/", OnDrive("Data/relative").c_str()), 0);
  host.files.CopyWhole("C:\\Data\\relative\\2", "C:\\Data\\relative\\3");
  EXPECT_EQ(ReadNative(Shared("photos/3")), "second");
  AnotherUser::PlantLink(Shared("photos"), Shared("his"));
  ASSERT_EQ(::symlink("shared/his", OnDrive("Data/behind").c_str()), 0);
  EXPECT_EQ(RaisedBy([&] { host.files.CopyWhole("C:\\Data\\behind\\2", "C:\\Data\\copy"); }),
            kPermissionDenied);
}

class ArchivesBesideOthersTest : public LinksOfOthersTest {
 protected:
  void SetUp() override {
    LinksOfOthersTest::SetUp();
    std::filesystem::create_directories(OnDrive("Data/tree"));
    ASSERT_EQ(::chmod(OnDrive("Data/tree").c_str(), 0777), 0);
    WriteNative(OnDrive("Data/tree/a.txt"), "hi");
  }

  void ExpectSound() {
    EXPECT_EQ(ReadNative(secret), kSecret);
    EXPECT_EQ(ModeOf(Shared("a.tvz")), 0600U);
    EXPECT_EQ(StateOf(Shared("a.tvz")).st_uid, ::geteuid());
    EXPECT_EQ(archiver.ExtractFilesFromArchiv(archive, "C:\\Data\\out", true), 1);
    EXPECT_THAT(NativeNames(OnDrive("Data/out")), ElementsAre("a.txt"));
  }

  const Path archive = "C:\\Data\\shared\\a.tvz";
  FakeMachine fake;
  Machine machine{host.Parts(), fake.Interfaces()};
  usercontrol11 archiver{machine};
};

TEST_F(ArchivesBesideOthersTest, GoIntoNoStageFileAndNoArchiveOfTheirs) {
  PlantLink("a.tvz.tmp");
  PlantLink("a.tvz");
  EXPECT_EQ(archiver.SaveFilesToArchiv("C:\\Data\\tree", archive, true), 1);
  EXPECT_EQ(ReadNative(secret), kSecret);
  AnotherUser::PlantFile("", Shared("a.tvz.tmp"));
  ASSERT_EQ(::link(Shared("a.tvz.tmp").c_str(), OnDrive("Data/held by him").c_str()), 0);
  EXPECT_EQ(archiver.SaveFilesToArchiv("C:\\Data\\tree", archive, true), 1);
  EXPECT_EQ(ReadNative(OnDrive("Data/held by him")), "");
  PlantLink("a.tvz.tmp");
  ExpectSound();
}

TEST_F(ArchivesBesideOthersTest, TakeNoFileThatALinkOfTheirsLeadsTo) {
  AnotherUser::PlantLink(secret, OnDrive("Data/tree/planted"));
  EXPECT_EQ(archiver.SaveFilesToArchiv("C:\\Data\\tree", archive, true), 1);
  ExpectSound();
}

TEST_F(ArchivesBesideOthersTest, AreMadeByTheCommandAlike) {
  AnotherUser::PlantLink(secret, OnDrive("Data/tree/planted"));
  const std::string command = std::string(TVZ) + " create " + Shared("a.tvz") + " " +
                              OnDrive("Data/tree") + " 2>" + OnDrive("Data/said");
  ASSERT_EQ(std::system(command.c_str()), 0) << ReadNative(OnDrive("Data/said"));
  EXPECT_THAT(ReadNative(OnDrive("Data/said")), HasSubstr("planted: left out"));
  ExpectSound();
}

TEST_F(ArchivesBesideOthersTest, AreNotMadeByTheCommandWhereALinkOfAnotherUserLeads) {
  AnotherUser::PlantLink(secret, Shared("a.tvz"));
  const std::string before = ReadNative(secret);
  const std::string command = std::string(TVZ) + " create " + Shared("a.tvz") + " " +
                              OnDrive("Data/tree") + " 2>" + OnDrive("Data/said");
  EXPECT_NE(std::system(command.c_str()), 0);
  EXPECT_THAT(ReadNative(OnDrive("Data/said")), HasSubstr("a.tvz"));
  EXPECT_EQ(ReadNative(secret), before);
  EXPECT_FALSE(std::filesystem::is_symlink(secret));
}

TEST_F(ArchivesBesideOthersTest, AreUnpackedByTheCommandWithTheNarrowerRightsOfWhatTheyReplace) {
  EXPECT_EQ(archiver.SaveFilesToArchiv("C:\\Data\\tree", archive, true), 1);
  WriteNative(OnDrive("Data/shared/a.txt"), "old");
  ASSERT_EQ(::chmod(OnDrive("Data/shared/a.txt").c_str(), 0600), 0);
  const std::string command =
      std::string(TVZ) + " extract " + Shared("a.tvz") + " -C " + OnDrive("Data/shared");
  ASSERT_EQ(std::system(command.c_str()), 0);
  EXPECT_EQ(ReadNative(OnDrive("Data/shared/a.txt")), "hi");
  EXPECT_EQ(ModeOf(OnDrive("Data/shared/a.txt")), 0600U);
}

TEST_F(ArchivesBesideOthersTest, AreMadeOfReadFromAndUnpackedToNoFolderThatALinkOfTheirsLeadsTo) {
  const std::string victim = OnDrive("Data/victim");
  std::filesystem::create_directories(victim);
  WriteNative(victim + "/key", "private");
  const std::string own = OnDrive("Data/own.tvz");
  const auto run = [&](const std::string& arguments) {
    return std::system((std::string(TVZ) + " " + arguments + " 2>/dev/null >/dev/null").c_str());
  };
  ASSERT_EQ(run("create " + own + " " + OnDrive("Data/tree")), 0);
  AnotherUser::PlantLink(victim, Shared("out"));
  EXPECT_NE(run("extract " + own + " -C " + Shared("out")), 0);
  EXPECT_NE(run("extract " + own + " -C " + Shared("out/new")), 0);
  EXPECT_NE(run("create " + OnDrive("Data/other.tvz") + " " + Shared("out")), 0);
  EXPECT_NE(run("create " + Shared("out/b.tvz") + " " + OnDrive("Data/tree")), 0);
  EXPECT_THAT(NativeNames(victim), ElementsAre("key"));
  EXPECT_FALSE(std::filesystem::exists(OnDrive("Data/other.tvz")));

  AnotherUser::PlantLink(own, Shared("read.tvz"));
  EXPECT_NE(run("list " + Shared("read.tvz")), 0);

  // The user's own are followed, and what is missing is made.
  ASSERT_EQ(::symlink(victim.c_str(), OnDrive("Data/way").c_str()), 0);
  EXPECT_EQ(run("extract " + own + " -C " + OnDrive("Data/way/new/inner")), 0);
  EXPECT_EQ(ReadNative(victim + "/new/inner/a.txt"), "hi");
  EXPECT_EQ(run("list " + own), 0);
}

// A medium that somebody brought: the owner of what is on it is who its author wrote there.
class LinksOnAMediumTest : public LinksOfOthersTest {
 protected:
  LinksOnAMediumTest() : home_before_("HOME", folder.Path().c_str()) {}

  void ExpectNotFollowed() {
    EXPECT_EQ(RaisedBy([&] { host.open_files.OpenInput(1, "C:\\Data\\shared\\link"); }),
              kPermissionDenied);
    EXPECT_EQ(RaisedBy([&] { host.open_files.OpenOutput(1, "C:\\Data\\shared\\link"); }),
              kPermissionDenied);
    EXPECT_THAT(host.files.List("C:\\Data\\shared\\*", {}), IsEmpty());
    EXPECT_EQ(ReadNative(secret), kSecret);
  }

  const VariableFor home_before_;
};

TEST_F(LinksOnAMediumTest, AreNobodysWhateverOwnerTheyCarry) {
  ASSERT_EQ(::symlink(secret.c_str(), Shared("link").c_str()), 0);
  LayOnMedium(Shared("link"));
  ExpectNotFollowed();
}

TEST_F(LinksOnAMediumTest, AreTheUsersOwnWhereHisHomeIs) {
  ASSERT_EQ(::symlink(secret.c_str(), Shared("link").c_str()), 0);
  LayOnMedium(Shared("link"));
  LayOnMedium(folder.Path());
  EXPECT_EQ(RaisedBy([&] { host.open_files.OpenInput(1, "C:\\Data\\shared\\link"); }), 0);
}

// In a process that nobody else's mounts are changed by.
TEST_F(LinksOnAMediumTest, AreNobodysOnARealOne) {
  const auto mounted = [&] {
    return ::unshare(CLONE_NEWNS) == 0 &&
           ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           ::mount("none", OnDrive("Data/shared").c_str(), "tmpfs", MS_NOSUID | MS_NODEV, "") == 0;
  };
  if (!InAChild(mounted)) GTEST_SKIP() << "this machine lets this user mount nothing";
  EXPECT_TRUE(InAChild([&] {
    if (!mounted() || ::symlink(secret.c_str(), Shared("link").c_str()) != 0) return false;
    ExpectNotFollowed();
    return !HasFailure();
  }));
}

// What the administrator keeps as a link on the system's own disk stays what it is.
TEST(LinksOfRootTest, OnTheSystemsOwnDiskAreFollowed) {
  TemporaryFolder folder;
  const std::string link = "/etc/mtab";
  const struct stat info = StateOf(link);
  if (!S_ISLNK(info.st_mode) || info.st_uid != 0 || info.st_dev != StateOf("/").st_dev) {
    GTEST_SKIP() << link << " is no link of root on the root file system";
  }
  LinuxHost host({.root = "/", .state_folder = folder / "state", .locale_name = {}});
  EXPECT_EQ(RaisedBy([&] { host.files.Attributes("C:\\etc\\mtab"); }), 0);
}

}  // namespace
}  // namespace tarnvale::testing
