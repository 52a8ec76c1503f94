// Backups and restores of real files: made-up profiles on a drive of the test's
// own.
#include <gmock/gmock.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <ostream>

#include "tests/hosts/contract/ordinary_user.h"
#include "tests/hosts/linux/linux_stage.h"
#include "tests/support/fake_machine.h"
#include "userdata/user_data_window.h"

namespace tarnvale::testing {
namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Not;

/// All that a folder holds, one line each: kind, place, rights, time, content.
std::vector<std::string> TreeOf(const std::string& folder) {
  std::vector<std::string> lines;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    const std::string native = entry.path().string();
    const std::string place = native.substr(folder.size());
    const std::string rights = std::to_string(ModeOf(native));
    if (entry.is_symlink()) {
      lines.push_back("link " + place + " -> " + std::filesystem::read_symlink(native).string());
    } else if (entry.is_directory()) {
      lines.push_back("folder " + place + " " + rights);
    } else {
      lines.push_back("file " + place + " " + rights + " " +
                      std::to_string(StateOf(native).st_mtim.tv_sec) + " " + ReadNative(native));
    }
  }
  std::sort(lines.begin(), lines.end());
  return lines;
}

class UserDataOnLinux : public LinuxStage {
 protected:
  UserDataOnLinux() {
    ::setenv("username", "ann", 1);
    std::filesystem::create_directories(OnDrive("Keep"));
    fake.Advance(500ms);
  }
  ~UserDataOnLinux() override { ::unsetenv("username"); }

  /// A profile as a browser or mail program leaves it while it runs.
  void MakeProfile(const std::string& folder_on_drive) const {
    const std::string profile = OnDrive(folder_on_drive);
    std::filesystem::create_directories(profile + "/abc.default/cache2/entries");
    std::filesystem::create_directories(profile + "/abc.default/empty");
    WriteNative(profile + "/profiles.ini", "[Profile0]\nPath=abc.default\n");
    WriteNative(profile + "/abc.default/places.sqlite", std::string(300000, 'p') + "end");
    WriteNative(profile + "/abc.default/cache2/entries/0A1B", "");
    WriteNative(profile + "/abc.default/.parentlock", "");
    WriteNative(profile +
                    "/abc.default/Gr\xC3\xBC\xC3\x9F"
                    "e.txt",
                "hello");
    WriteNative(profile + "/abc.default/cert9.db", "certificates");
    ::chmod((profile + "/abc.default/cert9.db").c_str(), 0600);
    SetModifiedNative(profile + "/abc.default/cert9.db", 1205492401);
    // It leads nowhere: a host and a process.
    std::filesystem::create_symlink("127.0.1.1:+4711", profile + "/abc.default/lock");
    std::filesystem::create_directory_symlink("/", profile + "/abc.default/everything");
    std::filesystem::create_symlink("cert9.db", profile + "/abc.default/cert8.db");
  }

  void Press(chameleonButton& button, const Path& chosen, const std::string& message) {
    fake.dialogs.Choose(FakeDialogs::Kind::kFolder, chosen);
    fake.boxes.Expect(message, BoxIcon::kInformation, BoxAnswer::kOk);
    fake.loop.Deliver([&] { button.Click.Emit(); });
  }
  void BackUp(chameleonButton& button, const Path& chosen) {
    Press(button, chosen, "Your User Data Has Been Successfully Backed Up.");
  }
  void Restore(chameleonButton& button, const Path& chosen) {
    Press(button, chosen, "Your User Data Has Been Successfully Restored");
  }

  FakeMachine fake;
  LinuxHost host{surroundings};
  Machine machine{host.Parts(), fake.Interfaces()};
  userdata window{machine};
};

// --- Each application there and back ------------------------------------------

struct RoundTrip {
  const char* name;
  chameleonButton userdata::*backup;
  chameleonButton userdata::*restore;
  std::vector<std::string> profiles;  ///< folders on the drive
  std::vector<std::string> copies;    ///< where each goes in C:\Keep
  const char* restored_from;          ///< the folder in C:\Keep that is chosen for it
};
void PrintTo(const RoundTrip& trip, std::ostream* out) {
  *out << trip.name;
}

class UserDataRoundTrip : public UserDataOnLinux,
                          public ::testing::WithParamInterface<RoundTrip> {};

const std::string kClassic = "Documents and Settings/ann/";
const std::string kLocal = kClassic + "Local Settings/";

INSTANTIATE_TEST_SUITE_P(
    Applications, UserDataRoundTrip,
    ::testing::Values(RoundTrip{"Firefox",
                                &userdata::chameleonButton1,
                                &userdata::chameleonButton2,
                                {"home/ann/.mozilla/firefox"},
                                {"Firefox Backup"},
                                "Firefox Backup"},
                      RoundTrip{"Opera",
                                &userdata::chameleonButton12,
                                &userdata::chameleonButton13,
                                {"home/ann/.config/opera"},
                                {"Opera Backup"},
                                "Opera Backup"},
                      RoundTrip{"Thunderbird",
                                &userdata::chameleonButton4,
                                &userdata::chameleonButton3,
                                {"home/ann/.thunderbird"},
                                {"Thunderbird Backup"},
                                "Thunderbird Backup"},
                      RoundTrip{"Outlook",
                                &userdata::chameleonButton7,
                                &userdata::chameleonButton8,
                                {kLocal + "Application Data/Microsoft/Outlook"},
                                {"Outlook Settings"},
                                "Outlook Settings"},
                      RoundTrip{"OutlookExpress",
                                &userdata::chameleonButton9,
                                &userdata::chameleonButton10,
                                {kLocal + "Application Data/Identities/Microsoft/Outlook Express"},
                                {"Outlook Express Settings/OE Identities"},
                                "Outlook Express Settings"},
                      RoundTrip{"InternetExplorer",
                                &userdata::chameleonButton5,
                                &userdata::chameleonButton6,
                                {kClassic + "Favorites", kClassic + "Cookies", kLocal + "History",
                                 kLocal + "Temporary Internet Files"},
                                {"IE Settings/IE Favorites", "IE Settings/IE Cookies",
                                 "IE Settings/IE History", "IE Settings/IE Temp"},
                                "IE Settings"}),
    [](const auto& trip) { return std::string(trip.param.name); });

TEST_P(UserDataRoundTrip, BringsAProfileBackAsItWas) {
  const RoundTrip& trip = GetParam();
  std::vector<std::vector<std::string>> before;
  for (const std::string& profile : trip.profiles) {
    MakeProfile(profile);
    before.push_back(TreeOf(OnDrive(profile)));
  }
  fake.Advance(500ms);
  BackUp(window.*trip.backup, "C:\\Keep");
  for (std::size_t i = 0; i < trip.profiles.size(); ++i) {
    EXPECT_EQ(TreeOf(OnDrive("Keep/" + trip.copies[i])), before[i]);
    EXPECT_EQ(TreeOf(OnDrive(trip.profiles[i])), before[i]) << "the profile is left alone";
    std::filesystem::remove_all(OnDrive(trip.profiles[i]));
  }
  Restore(window.*trip.restore, std::string("C:\\Keep\\") + trip.restored_from);
  for (std::size_t i = 0; i < trip.profiles.size(); ++i) {
    EXPECT_EQ(TreeOf(OnDrive(trip.profiles[i])), before[i]);
  }
}

TEST_P(UserDataRoundTrip, MergesIntoAnEarlierBackupAndIntoALaterProfile) {
  const RoundTrip& trip = GetParam();
  for (const std::string& profile : trip.profiles) MakeProfile(profile);
  fake.Advance(500ms);
  BackUp(window.*trip.backup, "C:\\Keep");
  for (const std::string& profile : trip.profiles) {
    WriteNative(OnDrive(profile + "/profiles.ini"), "new");
    std::filesystem::remove_all(OnDrive(profile + "/abc.default/cache2"));
  }
  BackUp(window.*trip.backup, "C:\\Keep");
  for (std::size_t i = 0; i < trip.profiles.size(); ++i) {
    EXPECT_EQ(ReadNative(OnDrive("Keep/" + trip.copies[i] + "/profiles.ini")), "new");
    EXPECT_TRUE(std::filesystem::exists(
        OnDrive("Keep/" + trip.copies[i] + "/abc.default/cache2/entries/0A1B")));
    WriteNative(OnDrive(trip.profiles[i] + "/profiles.ini"), "broken");
    WriteNative(OnDrive(trip.profiles[i] + "/later.txt"), "later");
  }
  Restore(window.*trip.restore, std::string("C:\\Keep\\") + trip.restored_from);
  for (const std::string& profile : trip.profiles) {
    EXPECT_EQ(ReadNative(OnDrive(profile + "/profiles.ini")), "new");
    EXPECT_EQ(ReadNative(OnDrive(profile + "/later.txt")), "later");
  }
}

// --- What lies in the way -------------------------------------------------------

TEST_F(UserDataOnLinux, AFileThatAnotherHoldsLockedIsCopied) {
  MakeProfile("home/ann/.mozilla/firefox");
  fake.Advance(500ms);
  const std::string locked = OnDrive("home/ann/.mozilla/firefox/abc.default/places.sqlite");
  const int held = ::open(locked.c_str(), O_RDWR | O_CLOEXEC);
  ASSERT_EQ(::flock(held, LOCK_EX), 0);
  BackUp(window.chameleonButton1, "C:\\Keep");
  ::close(held);
  EXPECT_EQ(ReadNative(OnDrive("Keep/Firefox Backup/abc.default/places.sqlite")),
            ReadNative(locked));
}

TEST_F(UserDataOnLinux, AFileThatCannotBeReadIsLeftOutAndTheRestArrives) {
  MakeProfile("home/ann/.mozilla/firefox");
  const std::string profile = OnDrive("home/ann/.mozilla/firefox/abc.default");
  ::chmod((profile + "/places.sqlite").c_str(), 0);
  ::chmod((profile + "/cache2").c_str(), 0);
  {
    const AsOrdinaryUser ordinary(folder.Path());
    fake.Advance(500ms);
    BackUp(window.chameleonButton1, "C:\\Keep");
  }
  ::chmod((profile + "/cache2").c_str(), 0700);
  const std::string copy = OnDrive("Keep/Firefox Backup");
  EXPECT_EQ(ReadNative(copy + "/profiles.ini"), "[Profile0]\nPath=abc.default\n");
  EXPECT_THAT(NativeNames(copy + "/abc.default"),
              AllOf(Contains("cert9.db"), Contains("empty"), Contains("everything"),
                    Contains("lock"), Not(Contains("places.sqlite"))));
}

TEST_F(UserDataOnLinux, AnUnreadableProfileIsReportedAsASuccess) {
  MakeProfile("home/ann/.thunderbird");
  ::chmod(OnDrive("home/ann/.thunderbird").c_str(), 0);
  {
    const AsOrdinaryUser ordinary(folder.Path());
    fake.Advance(500ms);
    BackUp(window.chameleonButton4, "C:\\Keep");
  }
  ::chmod(OnDrive("home/ann/.thunderbird").c_str(), 0700);
  EXPECT_THAT(NativeNames(OnDrive("Keep")), ElementsAre());
}

TEST_F(UserDataOnLinux, ARestoreThatIsRefusedIsReportedAsASuccessAndHarmsNothing) {
  MakeProfile("Keep/Firefox Backup");
  MakeProfile("home/ann/.mozilla/firefox");
  const std::string profile = OnDrive("home/ann/.mozilla/firefox");
  WriteNative(OnDrive("Keep/Firefox Backup/profiles.ini"), "new");
  WriteNative(OnDrive("Keep/Firefox Backup/abc.default/cert9.db"), "new");
  ::chmod((profile + "/abc.default").c_str(), 0500);
  {
    const AsOrdinaryUser ordinary(folder.Path());
    fake.Advance(500ms);
    Restore(window.chameleonButton2, "C:\\Keep\\Firefox Backup");
  }
  ::chmod((profile + "/abc.default").c_str(), 0700);
  EXPECT_EQ(ReadNative(profile + "/profiles.ini"), "new") << "the rest arrives";
  EXPECT_EQ(ReadNative(profile + "/abc.default/cert9.db"), "certificates");
}

TEST_F(UserDataOnLinux, ALinkToAFolderIsNotEntered) {
  MakeProfile("home/ann/.mozilla/firefox");
  fake.Advance(500ms);
  BackUp(window.chameleonButton1, "C:\\Keep");
  const std::string link = OnDrive("Keep/Firefox Backup/abc.default/everything");
  EXPECT_TRUE(std::filesystem::is_symlink(link));
  EXPECT_EQ(std::filesystem::read_symlink(link), "/");
}

TEST_F(UserDataOnLinux, AProfileThatIsALinkIsCopiedAsWhatItLeadsTo) {
  MakeProfile("elsewhere/firefox");
  std::filesystem::create_directories(OnDrive("home/ann/.mozilla"));
  std::filesystem::create_directory_symlink(OnDrive("elsewhere/firefox"),
                                            OnDrive("home/ann/.mozilla/firefox"));
  fake.Advance(500ms);
  BackUp(window.chameleonButton1, "C:\\Keep");
  EXPECT_EQ(TreeOf(OnDrive("Keep/Firefox Backup")), TreeOf(OnDrive("elsewhere/firefox")));
}

TEST_F(UserDataOnLinux, AProfileThatIsALinkIsRestoredToWhereItLeads) {
  MakeProfile("elsewhere/firefox");
  std::filesystem::create_directories(OnDrive("home/ann/.mozilla"));
  const std::string link = OnDrive("home/ann/.mozilla/firefox");
  std::filesystem::create_directory_symlink(OnDrive("elsewhere/firefox"), link);
  fake.Advance(500ms);
  BackUp(window.chameleonButton1, "C:\\Keep");
  const std::vector<std::string> before = TreeOf(OnDrive("elsewhere/firefox"));
  WriteNative(OnDrive("elsewhere/firefox/profiles.ini"), "broken");
  std::filesystem::remove_all(OnDrive("elsewhere/firefox/abc.default/cache2"));
  Restore(window.chameleonButton2, "C:\\Keep\\Firefox Backup");
  EXPECT_EQ(TreeOf(OnDrive("elsewhere/firefox")), before);
  EXPECT_TRUE(std::filesystem::is_symlink(link));
  EXPECT_EQ(std::filesystem::read_symlink(link), OnDrive("elsewhere/firefox"));
}

TEST_F(UserDataOnLinux, ABackupIntoTheProfileItselfEnds) {
  MakeProfile("home/ann/.mozilla/firefox");
  fake.Advance(500ms);
  BackUp(window.chameleonButton1, "C:\\home\\ann\\.mozilla\\firefox");
  const std::string copy = OnDrive("home/ann/.mozilla/firefox/Firefox Backup");
  EXPECT_EQ(NativeNames(copy), (std::vector<std::string>{"abc.default", "profiles.ini"}));
}

TEST_F(UserDataOnLinux, ACancelledFirstBackupGoesToTheRootOfTheDrive) {
  MakeProfile("home/ann/.mozilla/firefox");
  fake.Advance(500ms);
  fake.dialogs.Cancel(FakeDialogs::Kind::kFolder);
  fake.boxes.Answer(BoxAnswer::kOk);
  fake.loop.Deliver([&] { window.chameleonButton1.Click.Emit(); });
  EXPECT_EQ(TreeOf(OnDrive("Firefox Backup")), TreeOf(OnDrive("home/ann/.mozilla/firefox")));
}

TEST_F(UserDataOnLinux, AnEarlierBackupSurvivesAMissingApplication) {
  std::filesystem::create_directories(OnDrive("Keep/Firefox Backup"));
  WriteNative(OnDrive("Keep/Firefox Backup/profiles.ini"), "kept");
  BackUp(window.chameleonButton1, "C:\\Keep");
  EXPECT_EQ(ReadNative(OnDrive("Keep/Firefox Backup/profiles.ini")), "kept");
}

// --- The system's files, and the registry editor ----------------------------------

TEST_F(UserDataOnLinux, TheSystemsFilesAreFoundWithoutRegardToCase) {
  std::filesystem::create_directories(OnDrive("WINDOWS/System32"));
  WriteNative(OnDrive("WINDOWS/System32/HAL.DLL"), "hal");
  WriteNative(OnDrive("WINDOWS/explorer.exe"), "explorer");
  WriteNative(OnDrive("Boot.ini"), "boot");
  BackUp(window.chameleonButton11, "C:\\Keep");
  EXPECT_THAT(NativeNames(OnDrive("Keep/Windows Settings")),
              ElementsAre("Explorer.exe", "boot.ini", "hal.dll"));
  EXPECT_EQ(ReadNative(OnDrive("Keep/Windows Settings/hal.dll")), "hal");
  EXPECT_EQ(window.XP_ProgressBar1.Value, 11);
}

TEST_F(UserDataOnLinux, WhatStandsForTheRegistryEditorGetsThreeExports) {
  std::filesystem::create_directories(OnDrive("Windows"));
  const std::string pipe = folder / "pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  // It opens the pipe to read too, so that none of the three waits for the others.
  const std::string editor = OnDrive("Windows/Regedit.exe");
  WriteNative(editor, "#!/bin/sh\nprintf '<%s><%s><%s>\\n' \"$@\" 1<>'" + pipe + "'\n");
  ::chmod(editor.c_str(), 0755);
  const int reader = ::open(pipe.c_str(), O_RDWR | O_CLOEXEC);
  BackUp(window.chameleonButton9, "C:\\Keep");
  std::string output;
  while (std::count(output.begin(), output.end(), '\n') < 3) {
    std::array<char, 512> bytes{};
    const ssize_t length = ::read(reader, bytes.data(), bytes.size());
    ASSERT_GT(length, 0);
    output.append(bytes.data(), static_cast<std::size_t>(length));
  }
  ::close(reader);
  const std::string start = "</e><C:\\Keep\\Outlook Express Settings\\";
  for (const char* line : {"Accounts.reg><HKEY_CURRENT_USER\\Software\\Microsoft\\Internet "
                           "Account Manager>\n",
                           "Settings.reg><HKEY_CURRENT_USER\\Software\\Microsoft\\Outlook "
                           "Express>\n",
                           "Identities.reg><HKEY_CURRENT_USER\\Identities>\n"}) {
    EXPECT_NE(output.find(start + line), std::string::npos) << output;
  }
}

}  // namespace
}  // namespace tarnvale::testing
