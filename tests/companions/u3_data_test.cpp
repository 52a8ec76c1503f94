#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "platform/input_item.h"
#include "tests/hosts/contract/temporary_folder.h"

namespace tarnvale::testing {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

/// A program folder with the companion in it, as an installation leaves it.
class U3DataTest : public ::testing::Test {
 protected:
  U3DataTest() { Install("Program"); }
  ~U3DataTest() override {
    std::error_code ignored;
    fs::permissions(program, fs::perms::owner_all, ignored);
  }

  void Install(const std::string& name) {
    program = drive / name;
    fs::create_directories(program);
    fs::copy_file(U3_DATA_PROGRAM, program + "/U3-Data.exe");
  }

  pid_t Start() {
    std::string file = program + "/U3-Data.exe";
    std::string state = "XDG_STATE_HOME=" + (drive / "state");
    char* arguments[] = {file.data(), nullptr};
    char* variables[] = {state.data(), nullptr};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, (drive / "errors").c_str(),
                                     O_WRONLY | O_CREAT | O_APPEND, 0600);
    pid_t process = -1;
    const int error = posix_spawn(&process, file.c_str(), &actions, nullptr, arguments, variables);
    posix_spawn_file_actions_destroy(&actions);
    EXPECT_EQ(error, 0);
    return process;
  }

  static int ExitStatusOf(pid_t process) {
    int status = 0;
    EXPECT_EQ(waitpid(process, &status, 0), process);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  int Run() { return ExitStatusOf(Start()); }

  static void Write(const std::string& file, const std::string& content) {
    std::ofstream(file, std::ios::binary) << content;
  }

  static std::string Content(const std::string& file) {
    std::ifstream stream(file, std::ios::binary);
    std::ostringstream bytes;
    bytes << stream.rdbuf();
    return bytes.str();
  }

  std::string Pointer() const { return Content(program + "/Data.txt"); }
  std::string Errors() const { return Content(drive / "errors"); }

  /// The first item of the pointer file, as the main program reads it.
  std::string Named() const {
    InputItemScanner scanner;
    for (const char byte : Pointer()) {
      if (!scanner.Feed(byte)) break;
    }
    return scanner.Item();
  }

  /// In the program's path language.
  static std::string PathOf(std::string native) {
    std::replace(native.begin(), native.end(), '/', '\\');
    return "C:" + native;
  }

  std::set<std::string> NamesInProgramFolder() const {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(program)) names.insert(entry.path().filename());
    return names;
  }

  TemporaryFolder drive;
  std::string program;
};

TEST_F(U3DataTest, TheFirstStartMakesAndNamesDataBesideTheProgram) {
  EXPECT_EQ(Run(), 0);
  EXPECT_TRUE(fs::is_directory(program + "/Data"));
  EXPECT_EQ(Pointer(), "\"" + PathOf(program) + "\\Data\"\r\n");
  EXPECT_EQ(NamesInProgramFolder(), (std::set<std::string>{"Data", "Data.txt", "U3-Data.exe"}));
  EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(U3DataTest, TheDataFolderIsItsOwnersAlone) {
  const mode_t mask = ::umask(0);
  EXPECT_EQ(Run(), 0);
  ::umask(mask);
  EXPECT_EQ(fs::status(program + "/Data").permissions(), fs::perms::owner_all);
}

TEST_F(U3DataTest, ANamedFolderThatExistsIsKeptAndTheFileLeftAsItIs) {
  fs::create_directories(drive / "Mine, and yours");
  const std::string pointer = "  \"" + PathOf(drive / "Mine, and yours") + "\",rest\n";
  Write(program + "/Data.txt", pointer);
  EXPECT_EQ(Run(), 0);
  EXPECT_EQ(Pointer(), pointer);
  EXPECT_FALSE(fs::exists(program + "/Data"));
}

TEST_F(U3DataTest, ANamedFolderIsFoundWithoutRegardToCase) {
  fs::create_directories(drive / "Mine");
  Write(program + "/Data.txt", PathOf(drive / "mINE") + "\r\n");
  EXPECT_EQ(Run(), 0);
  EXPECT_EQ(Named(), PathOf(drive / "mINE"));
}

TEST_F(U3DataTest, ANamedFolderThatIsGoneGivesWayToDataBesideTheProgram) {
  Write(program + "/Data.txt", PathOf(drive / "Gone") + "\r\n");
  EXPECT_EQ(Run(), 0);
  EXPECT_EQ(Named(), PathOf(program) + "\\Data");
  EXPECT_FALSE(fs::exists(drive / "Gone"));
}

TEST_F(U3DataTest, AnEmptyFileAndAnEmptyItemNameNothing) {
  for (const char* nothing : {"", "\r\n", "\"\"\r\n"}) {
    Write(program + "/Data.txt", nothing);
    EXPECT_EQ(Run(), 0);
    EXPECT_EQ(Named(), PathOf(program) + "\\Data");
  }
}

TEST_F(U3DataTest, AProgramFolderThatWasMovedFindsItsOwnDataAgain) {
  ASSERT_EQ(Run(), 0);
  Write(program + "/Data/Tarnvale.ini", "[Setup]\r\nWizard=1\r\n");
  fs::rename(program, drive / "Elsewhere");
  program = drive / "Elsewhere";
  EXPECT_EQ(Run(), 0);
  EXPECT_EQ(Named(), PathOf(program) + "\\Data");
  EXPECT_EQ(Content(program + "/Data/Tarnvale.ini"), "[Setup]\r\nWizard=1\r\n");
}

TEST_F(U3DataTest, AFolderWithCommasBlanksAndQuotesIsReadBackWhole) {
  for (const char* name : {"Ann, Bob", "An \"odd\" name", " blanks ",
                           "Gr\xC3\xBC\xC3\x9F"
                           "e"}) {
    Install(name);
    EXPECT_EQ(Run(), 0) << name;
    EXPECT_EQ(Named(), PathOf(program) + "\\Data") << name;
  }
}

TEST_F(U3DataTest, AFolderThatNoItemCanNameIsAnErrorAndNothingIsNamed) {
  for (const char* name : {"comma, and \"quote\"", "back\\slash", "st*r"}) {
    Install(name);
    EXPECT_EQ(Run(), 1) << name;
    EXPECT_FALSE(fs::exists(program + "/Data.txt")) << name;
  }
  EXPECT_EQ(std::ranges::count(Errors(), '\n'), 3) << "one line each\n" << Errors();
}

TEST_F(U3DataTest, AFileWhereTheFolderShouldBeIsAnErrorInOneLine) {
  Write(program + "/Data", "no folder");
  EXPECT_EQ(Run(), 1);
  EXPECT_EQ(Content(program + "/Data"), "no folder");
  EXPECT_FALSE(fs::exists(program + "/Data.txt"));
  EXPECT_THAT(Errors(), HasSubstr("U3-Data.exe: no data folder named in Data.txt: "));
  EXPECT_EQ(std::ranges::count(Errors(), '\n'), 1);
}

TEST_F(U3DataTest, AReadOnlyPointerFileIsNotReplaced) {
  const std::string pointer = PathOf(drive / "Gone") + "\r\n";
  Write(program + "/Data.txt", pointer);
  fs::permissions(program + "/Data.txt", fs::perms::owner_read);
  EXPECT_EQ(Run(), 1);
  EXPECT_EQ(Pointer(), pointer);
  EXPECT_THAT(Errors(), HasSubstr("Permission denied"));
}

TEST_F(U3DataTest, AFolderInPlaceOfTheFileIsAnErrorThatLeavesNothingBehind) {
  fs::create_directories(program + "/Data.txt");
  EXPECT_EQ(Run(), 1);
  EXPECT_TRUE(fs::is_directory(program + "/Data.txt"));
  for (const std::string& name : NamesInProgramFolder()) {
    EXPECT_TRUE(name == "Data" || name == "Data.txt" || name == "U3-Data.exe") << name;
  }
}

TEST_F(U3DataTest, ManyAtOnceAgreeAndAReaderNeverSeesHalfAFile) {
  const std::string whole = "\"" + PathOf(program) + "\\Data\"\r\n";
  std::vector<pid_t> running;
  running.reserve(12);
  for (int i = 0; i < 12; ++i) {
    running.push_back(Start());
    const std::string seen = Pointer();
    EXPECT_TRUE(seen.empty() || seen == whole) << seen;
  }
  for (const pid_t process : running) EXPECT_EQ(ExitStatusOf(process), 0);
  EXPECT_EQ(Pointer(), whole);
  EXPECT_EQ(NamesInProgramFolder(), (std::set<std::string>{"Data", "Data.txt", "U3-Data.exe"}));
}

}  // namespace
}  // namespace tarnvale::testing
