// The companion that ends the program of its own folder, run as it is installed.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "companions/quit/instances.h"
#include "hosts/windows/handle.h"
#include "tests/hosts/windows/scripted_system.h"
#include "tests/hosts/windows/temporary_folder.h"

namespace tarnvale::testing {
namespace {

namespace fs = std::filesystem;

constexpr DWORD kAsked = 7;
constexpr DWORD kKilled = 1;
constexpr DWORD kNoWindows = 3;

class QuitTest : public ::testing::Test {
 protected:
  ~QuitTest() override {
    for (const Handle& process : running_) {
      ::TerminateProcess(process.Get(), 9);
      ::WaitForSingleObject(process.Get(), INFINITE);
    }
  }

  fs::path Install(const std::string& name) {
    std::wstring own(MAX_PATH, L'\0');
    own.resize(::GetModuleFileNameW(nullptr, own.data(), MAX_PATH));
    const fs::path beside = fs::path(own).parent_path();
    fs::create_directories(folder / name);
    fs::copy_file(beside / "Quit.exe", folder / name / "Quit.exe");
    fs::copy_file(beside / "sleeper.exe", folder / name / "Tarnvale.exe");
    return folder / name;
  }

  HANDLE Start(const fs::path& installed, const std::wstring& manner) {
    const Handle ready(::CreateEventW(nullptr, TRUE, FALSE, L"Tarnvale-sleeper"));
    ::ResetEvent(ready.Get());
    const HANDLE process =
        Run(installed / "Tarnvale.exe", L"sleeper " + manner + L" Tarnvale-sleeper");
    const HANDLE either[] = {ready.Get(), process};
    ::WaitForMultipleObjects(2, either, FALSE, INFINITE);
    return process;
  }

  DWORD Quit(const fs::path& installed) {
    return EndOf(Run(installed / "Quit.exe", L"Quit.exe")).value_or(99);
  }

  /// Exit status; none while it lives.
  static std::optional<DWORD> EndOf(HANDLE process, DWORD patience = INFINITE) {
    DWORD code = 0;
    if (::WaitForSingleObject(process, patience) != WAIT_OBJECT_0) return std::nullopt;
    ::GetExitCodeProcess(process, &code);
    return code;
  }

  TemporaryFolder folder;

 private:
  HANDLE Run(const fs::path& program, std::wstring command) {
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION child{};
    EXPECT_NE(::CreateProcessW(program.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr,
                               nullptr, &startup, &child),
              0);
    const Handle thread(child.hThread);
    return running_.emplace_back(child.hProcess).Get();
  }

  std::vector<Handle> running_;
};

TEST_F(QuitTest, WithoutAnInstanceAllIsWell) {
  EXPECT_EQ(Quit(Install("Program")), 0U);
}

TEST_F(QuitTest, EveryInstanceOfTheProgramBesideItGetsARequestToEnd) {
  const fs::path installed = Install("Program");
  const HANDLE first = Start(installed, L"polite");
  if (EndOf(first, 0) == kNoWindows) GTEST_SKIP() << "no display for windows";
  const HANDLE second = Start(installed, L"polite");
  EXPECT_EQ(Quit(installed), 0U);
  EXPECT_EQ(EndOf(first), kAsked);
  EXPECT_EQ(EndOf(second), kAsked);
}

TEST_F(QuitTest, AnInstanceThatDoesNotEndIsKilledWhenItsPatienceIsOver) {
  const fs::path installed = Install("Program");
  const HANDLE deaf = Start(installed, L"deaf");
  EXPECT_EQ(Quit(installed), 0U);
  EXPECT_EQ(EndOf(deaf), kKilled);
}

TEST_F(QuitTest, ACopyInAnotherFolderLivesOn) {
  const fs::path installed = Install("Program");
  const HANDLE other = Start(Install("Other"), L"deaf");
  const HANDLE own = Start(installed, L"deaf");
  EXPECT_EQ(Quit(installed), 0U);
  EXPECT_EQ(EndOf(own), kKilled);
  EXPECT_FALSE(EndOf(other, 0));
}

TEST_F(QuitTest, AnotherProgramOfTheFolderLivesOn) {
  const fs::path installed = Install("Program");
  fs::create_directories(installed / "Tools");
  fs::copy_file(installed / "Tarnvale.exe", installed / "Tools/Tarnvale.exe");
  const HANDLE other = Start(installed / "Tools", L"deaf");
  EXPECT_EQ(Quit(installed), 0U);
  EXPECT_FALSE(EndOf(other, 0));
}

// As some drives of networks are.
TEST_F(QuitTest, OnAMediumWithoutFileNumbersAnInstanceIsKnownByItsPath) {
  const fs::path installed = Install("Program");
  Start(installed, L"deaf");
  Start(Install("Other"), L"deaf");
  const std::wstring quit = (installed / "Quit.exe").make_preferred().wstring();
  const Scripted own("GetModuleFileNameW", &::GetModuleFileNameW,
                     [&quit](auto, HMODULE, LPWSTR file, DWORD) {
                       std::copy_n(quit.c_str(), quit.size() + 1, file);
                       return static_cast<DWORD>(quit.size());
                     });
  const Scripted numbers("GetFileInformationByHandle", &::GetFileInformationByHandle,
                         [](auto real, HANDLE file, LPBY_HANDLE_FILE_INFORMATION information) {
                           const BOOL result = real(file, information);
                           information->nFileIndexHigh = information->nFileIndexLow = 0;
                           return result;
                         });
  EXPECT_EQ(FindInstances().size(), 1U);
}

}  // namespace
}  // namespace tarnvale::testing
