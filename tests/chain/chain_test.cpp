// A backup from its schedule to the mailbox, by the program as it is installed:
// started once and left alone, as it would be overnight.
//
//   chain_test PROGRAMS             on a display, and in a network of its own (see apart)
//   chain_test PROGRAMS UNDER-WINE  those of Windows, by the program that runs them here
#include <gmock/gmock.h>

#include <chrono>
#include <cstdio>
#include <ctime>
#include <functional>
#include <iomanip>
#include <regex>
#include <sstream>
#include <string>
#include <thread>

#include "tests/chain/eavesdropper.h"
#include "tests/chain/installation.h"
#include "tests/chain/mail_receiver.h"
#include "tests/hosts/ftp/ftp_server.h"

namespace tarnvale::testing {
namespace {

using ::testing::Contains;
using ::testing::Each;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

using Clock = std::chrono::steady_clock;

std::string programs;
ProgramsOf system_of_programs = kLinuxPrograms;

constexpr int kFtpPort = 21;
constexpr const char* kArchive = "Archives/Auto Compressed.tvz";
constexpr const char* kSettings = "Data/Tarnvale.ini";
constexpr const char* kLog = "Data/Backup Log.txt";

// The schedule's first look comes so long after the start, and the copy so long
// after that.
constexpr std::chrono::seconds kFirstLook{59};
constexpr std::chrono::seconds kPauseBeforeCopy{9};

// A start in these seconds of a minute has the first look well within a minute,
// and the copy in the same one, even if the program takes 20 seconds to come up. So a
// minute matches once: two looks in one would be two runs.
constexpr int kFirstSecondToStart = 4;
constexpr int kLastSecondToStart = 30;

constexpr std::chrono::seconds kPatience{60};

std::string Formatted(const char* format, std::time_t moment) {
  std::tm parts{};
  ::localtime_r(&moment, &parts);
  std::ostringstream text;
  text << std::put_time(&parts, format);
  return text.str();
}

// Moments differ from run to run: they read MOMENT and TIME here.
std::string WithoutTimes(const std::string& text) {
  static const std::regex moment(R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d)");
  static const std::regex time(R"(\d\d:\d\d( To | On ))");
  static const std::regex date(R"(On \d{4}-\d\d-\d\d\.)");
  const std::string general = std::regex_replace(text, moment, "MOMENT");
  return std::regex_replace(std::regex_replace(general, time, "TIME$1"), date, "On DATE.");
}

class Chain : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(ftp.Answers());
    ASSERT_TRUE(WaitFor([&] { return mail.IsReady(); })) << mail.Everything();
    WriteDocuments();
  }
  void TearDown() override {
    if (!HasFailure()) return;
    for (const std::string& title : eavesdropper.WindowTitles()) {
      std::printf("a window: %s\n", title.c_str());
    }
    std::printf("the program said: %s\n", installation.Content("output").c_str());
    std::printf("the mail: %s\n", mail.Everything().c_str());
  }

  /// Waits and looks round meanwhile. False when the condition never held.
  bool WaitFor(const std::function<bool()>& condition, std::chrono::seconds patience = kPatience) {
    const auto limit = Clock::now() + patience;
    while (!condition()) {
      if (Clock::now() > limit) return false;
      mail.Serve();
      eavesdropper.Look();
      std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    return true;
  }

  /// One file of one and a half mebibytes, and a folder with all kinds.
  void WriteDocuments() {
    std::string all_bytes;
    for (int byte = 0; byte < 256; ++byte) all_bytes += static_cast<char>(byte);
    std::string numbers;
    while (numbers.size() < 3 * 512 * 1024) numbers += std::to_string(numbers.size()) + "\n";
    numbers.resize(3 * 512 * 1024);
    installation.Write("Documents/Numbers.txt", numbers);
    installation.Write("Documents/Letters/Ann.txt", "Dear Ann,\n");
    installation.Write("Documents/Letters/Empty.txt", "");
    installation.Write("Documents/Letters/To Bob/All bytes.bin", all_bytes);
    installation.Write(
        "Documents/Letters/To Bob/Gr\xc3\xbc\xc3\x9f"
        "e.txt",
        "Lieber Bob,\r\n");
  }

  void WriteSettings(const std::string& minute) {
    installation.Write(
        kSettings,
        "[When]\r\nAlwaysAt=" + minute + "\r\nEach=???\r\nDefault=False\r\nDays=0\r\n" +
            "[Log]\r\nSave=True\r\n[Alert]\r\nShow=True\r\n[Compress]\r\nAuto=True\r\n" +
            "[Reports]\r\nSend=True\r\n[FTP]\r\nAuto=True\r\nServer=localhost\r\nUsername=" +
            kServerUser + "\r\nPassword=" + kServerPassword + "\r\n[Destiny]\r\nDir=" +
            installation.PathOf("Storage") + "\r\nBackup=" + installation.PathOf("Archives") +
            "\r\n[Server]\r\nSTMP=localhost\r\n[Send]\r\nTo=ann@home.test,bob@home.test\r\n" +
            "[Setup]\r\nWizard=1\r\n[Entries]\r\n0=" +
            installation.PathOf("Documents/Numbers.txt") +
            "\r\n1=" + installation.PathOf("Documents/Letters") + "\\*+++++*\r\n");
  }

  /// Starts the program for the minute of its schedule's first look.
  void StartForTheComingMinute() {
    ASSERT_TRUE(WaitFor([] {
      const int second = std::stoi(Formatted("%S", std::time(nullptr)));
      return second >= kFirstSecondToStart && second <= kLastSecondToStart;
    }));
    const std::time_t look = std::time(nullptr) + kFirstLook.count() + 1;
    scheduled_minute = Formatted("%Y-%m-%d %H:%M", look);
    WriteSettings(Formatted("%H:%M", look));
    installation.Start();
  }

  static bool IsOfWindows() { return !system_of_programs.runner.empty(); }

  void ExpectLog() {
    EXPECT_EQ(WithoutTimes(installation.Content(kLog)),
              "Tarnvale Started Backup At MOMENT\r\n\r\n" +
                  installation.PathOf("Documents/Numbers.txt") + " -> " +
                  installation.PathOf("Storage/Numbers.txt") + ", Backup Status: OK!" +
                  installation.PathOf("Documents/Letters") + " -> " +
                  installation.PathOf("Storage/Letters") + ", Backup Status: OK!\r\n" +
                  "Success >> Copied 2 Files, TIME To TIME On DATE.\r\n");
    EXPECT_THAT(installation.Content(kLog),
                StartsWith("Tarnvale Started Backup At " + scheduled_minute + ":"));
  }

  void ExpectArchive() {
    const std::string archive = installation / kArchive;
    const std::string tvz = programs + "/tvz" + (IsOfWindows() ? ".exe" : "");
    EXPECT_EQ(RunToEnd(installation.Command({tvz, "test", archive})), 0);
    EXPECT_EQ(
        RunToEnd(installation.Command({tvz, "extract", archive, "-C", installation / "Unpacked"})),
        0);
    EXPECT_EQ(Tree(installation / "Unpacked"), Tree(installation / "Storage"));
  }

  void ExpectReport() {
    const std::string report =
        "This is an automated E-Mail Report from Tarnvale.\n\n"
        "Your Backup Status : Success >> Copied 2 Files, 1.50 MBs, From TIME To TIME On DATE.\n\n"
        ">> Backed Up Files Have Been Compressed To: " +
        installation.PathOf("Archives") +
        "\n>> Compressed File Has Been Uploaded To Server: localhost\n" + std::string(91, '_') +
        "\n\nReport Has Been Generated By Tarnvale 1.0.0 - (DO NOT Reply To This Address)";
    EXPECT_EQ(WithoutTimes(mail.TextFor("ann@home.test")), report);
    EXPECT_EQ(WithoutTimes(mail.TextFor("bob@home.test")), report);
  }

  /// The settings file alone knows the password; the server doesn't, it has a hash.
  void ExpectSecrecy() {
    for (const auto& [name, content] : Tree(installation / ".")) {
      if (name == kSettings) {
        EXPECT_THAT(content, HasSubstr(kServerPassword));
      } else {
        EXPECT_THAT(content, Not(HasSubstr(kServerPassword))) << name;
      }
    }
    EXPECT_THAT(mail.Everything(), Not(HasSubstr(kServerPassword)));
    EXPECT_THAT(eavesdropper.CommandLines(),
                Contains(HasSubstr(installation / system_of_programs.program)));
    EXPECT_THAT(eavesdropper.CommandLines(), Each(Not(HasSubstr(kServerPassword))));
    // On Windows the window is made when it first comes up, and here it never does.
    EXPECT_THAT(eavesdropper.WindowTitles(), Contains(IsOfWindows() ? "Form2" : "Tarnvale"));
    EXPECT_THAT(eavesdropper.WindowTitles(), Each(Not(HasSubstr(kServerPassword))));
  }

  Installation installation{programs, system_of_programs};
  FtpServer ftp{kFtpPort};
  MailReceiver mail;
  Eavesdropper eavesdropper;
  std::string scheduled_minute;
};

TEST_F(Chain, OneScheduledRunCopiesLogsPacksUploadsAndReports) {
  StartForTheComingMinute();
  ASSERT_TRUE(
      WaitFor([&] { return WithoutTimes(installation.Content(kLog)).ends_with("DATE.\r\n"); },
              kFirstLook + kPauseBeforeCopy + kPatience));
  EXPECT_EQ(Tree(installation / "Storage"), Tree(installation / "Documents"));
  ExpectLog();

  ASSERT_TRUE(WaitFor([&] { return !mail.TextFor("bob@home.test").empty(); }));
  ASSERT_TRUE(WaitFor([&] { return !mail.TextFor("ann@home.test").empty(); }));
  ExpectReport();
  ExpectArchive();
  // The report doesn't wait for the upload's last reply.
  ASSERT_TRUE(WaitFor([&] { return ftp.Count("QUIT") == 1; }));
  EXPECT_TRUE(Tree(ftp.Home())["AutoCompressed.tvz"] == installation.Content(kArchive));
  EXPECT_EQ(ftp.Count("STOR"), 1);

  EXPECT_TRUE(installation.Runs());
  EXPECT_EQ(RunToEnd(installation.Command({installation / "Quit.exe"})), 0);
  ASSERT_TRUE(WaitFor([&] { return !installation.Runs(); }));
  ExpectSecrecy();
}

}  // namespace
}  // namespace tarnvale::testing

int main(int argc, char** argv) {
  ::testing::InitGoogleMock(&argc, argv);
  if (argc != 2 && argc != 3) {
    std::fprintf(stderr, "chain_test: give it the folder of the programs\n");
    return 2;
  }
  tarnvale::testing::programs = argv[1];
  if (argc == 3) tarnvale::testing::system_of_programs = {"Tarnvale.exe", "Z:", {argv[2]}};
  return RUN_ALL_TESTS();
}
