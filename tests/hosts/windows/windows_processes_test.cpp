#include <gmock/gmock.h>
#include <windows.h>

#include <shlobj.h>

#include <algorithm>

#include "tests/hosts/windows/scripted_system.h"
#include "tests/hosts/windows/windows_stage.h"
#include "tests/support/raised.h"

namespace tarnvale::testing {
namespace {

using ::testing::AnyOf;
using ::testing::EndsWith;

class WindowsProcessesTest : public WindowsHostTest {
 protected:
  // The real drives, with the system's own programs.
  WindowsProcessesTest() { surroundings.root.clear(); }

  static std::string SystemProgram(const std::string& name) {
    wchar_t folder[MAX_PATH] = {};
    ::GetSystemDirectoryW(folder, MAX_PATH);
    return Narrow(folder) + "\\" + name;
  }
  // Waits for what a started program makes.
  static bool Appears(const std::filesystem::path& file) {
    for (int i = 0; i < 1000; ++i) {
      if (std::filesystem::exists(file)) return true;
      ::Sleep(10);
    }
    return false;
  }
};

TEST_F(WindowsProcessesTest, AProgramThatIsCarriedAboutKeepsItsNotesBesideItself) {
  const std::filesystem::path program = Native("Tarnvale.exe");
  const std::filesystem::path notes = Native("Data") / "State";
  std::filesystem::create_directory(Native("Data"));
  EXPECT_THAT(Narrow(DefaultStateFolder(program.wstring())),
              EndsWith("\\AppData\\Local\\Tarnvale"));
  std::filesystem::create_directory(notes);
  EXPECT_EQ(DefaultStateFolder(program.wstring()), notes.wstring());
}

// The classic paths lead to the data of the others, by the system's own links.
TEST_F(WindowsProcessesTest, OnlyTheNewerOperaHasAPlaceOfItsOwn) {
  const std::wstring roaming = Native("Roaming").make_preferred().wstring();
  std::filesystem::create_directory(roaming);
  const Scripted asked("SHGetFolderPathW", &::SHGetFolderPathW,
                       [&roaming](auto, HWND, int which, HANDLE, DWORD, LPWSTR folder) -> HRESULT {
                         EXPECT_EQ(which, CSIDL_APPDATA);
                         std::copy_n(roaming.c_str(), roaming.size() + 1, folder);
                         return S_OK;
                       });
  ApplicationFolders& applications = Host().applications;
  EXPECT_EQ(applications.DataFolder(Application::kOpera), std::nullopt);
  std::filesystem::create_directory(roaming + L"\\Opera Software");
  EXPECT_EQ(applications.DataFolder(Application::kOpera), Narrow(roaming) + "\\Opera Software");
  EXPECT_EQ(applications.DataFolder(Application::kFirefox), std::nullopt);
  EXPECT_EQ(applications.DataFolder(Application::kThunderbird), std::nullopt);
}

TEST_F(WindowsProcessesTest, ACommandLineIsStartedAsItIs) {
  const std::filesystem::path made = Native("made here");
  Host().processes.StartMinimized(SystemProgram("cmd.exe") + " /c mkdir \"" + made.string());
  EXPECT_TRUE(Appears(made));
}

TEST_F(WindowsProcessesTest, AProgramIsFoundOnTheSearchPath) {
  const std::filesystem::path made = Native("made");
  Host().processes.StartMinimized("cmd /c mkdir \"" + made.string() + "\"");
  EXPECT_TRUE(Appears(made));
}

TEST_F(WindowsProcessesTest, APathWithBlanksNeedsNoQuotes) {
  std::filesystem::create_directory(Native("some folder"));
  const std::filesystem::path program = Native("some folder") / "a program.exe";
  ASSERT_NE(::CopyFileW(Wide(SystemProgram("cmd.exe")).c_str(), program.c_str(), TRUE), 0);
  const std::filesystem::path made = Native("made");
  std::wstring line;
  const Scripted starts("CreateProcessW", &::CreateProcessW,
                        [&](auto real, LPCWSTR file, LPWSTR command, auto... more) {
                          line = command;
                          return real(file, command, more...);
                        });
  Host().processes.StartMinimized(program.string() + " /c mkdir \"" + made.string() + "\"");
  EXPECT_TRUE(Appears(made));
  EXPECT_EQ(Narrow(line), "\"" + program.string() + "\" /c mkdir \"" + made.string() + "\"");
  EXPECT_EQ(RaisedBy([&] {
              Host().processes.StartMinimized(Native("some folder").string() + "\\no program /c");
            }),
            53);
}

// A drive without a medium would otherwise stop the program with a box of the system's;
// a program that it starts has its own mind about that.
TEST_F(WindowsProcessesTest, TheSystemShowsNoBoxesOfItsOwn) {
  ::SetErrorMode(0);
  Host();
  EXPECT_EQ(::SetErrorMode(0), UINT{SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX});
  DWORD flags = 0;
  const Scripted starts(
      "CreateProcessW", &::CreateProcessW,
      [&](auto, LPCWSTR, LPWSTR, LPSECURITY_ATTRIBUTES, LPSECURITY_ATTRIBUTES, BOOL, DWORD creation,
          LPVOID, LPCWSTR, LPSTARTUPINFOW, LPPROCESS_INFORMATION) {
        flags = creation;
        return Failing(ERROR_ACCESS_DENIED);
      });
  Host().processes.StartProgram(SystemProgram("whoami.exe"));
  EXPECT_NE(flags & CREATE_DEFAULT_ERROR_MODE, 0U);
}

TEST_F(WindowsProcessesTest, AProgramIsStarted) {
  EXPECT_TRUE(Host().processes.StartProgram(SystemProgram("whoami.exe")));
  EXPECT_FALSE(Host().processes.StartProgram(SystemProgram("no-such-program.exe")));
}

TEST_F(WindowsProcessesTest, WhatIsNoProgramIsNotStarted) {
  const std::filesystem::path text = Native("a.txt");
  WriteNative(text, "no program");
  EXPECT_FALSE(Host().processes.StartProgram(text.string()));
  EXPECT_EQ(RaisedBy([&] { Host().processes.StartMinimized("\"" + text.string() + "\""); }), 53);
}

TEST_F(WindowsProcessesTest, AnInstanceKnowsItsPredecessorAsLongAsThatLives) {
  EXPECT_FALSE(Host().processes.PreviousInstance());
  {
    WindowsHost second(surroundings);
    EXPECT_TRUE(second.processes.PreviousInstance());
  }
  EXPECT_FALSE(Host().processes.PreviousInstance());
  Restart();
  EXPECT_FALSE(WindowsHost(surroundings).processes.PreviousInstance());
}

TEST_F(WindowsProcessesTest, TheRegistryIsReadByNamesInAnyCase) {
  HKEY key = nullptr;
  ASSERT_EQ(::RegCreateKeyExW(HKEY_CURRENT_USER, L"Software\\TarnvaleTest", 0, nullptr, 0,
                              KEY_WRITE, nullptr, &key, nullptr),
            ERROR_SUCCESS);
  const std::wstring text =
      L"Gr\u00FC\u00DF"
      L"e " +
      std::wstring(500, L'x');
  const void* const bytes = text.c_str();
  ::RegSetValueExW(key, L"Name", 0, REG_SZ, static_cast<const BYTE*>(bytes),
                   static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
  const DWORD number = 42;
  const void* const number_bytes = &number;
  ::RegSetValueExW(key, L"Number", 0, REG_DWORD, static_cast<const BYTE*>(number_bytes),
                   sizeof number);
  ::RegCloseKey(key);
  EXPECT_EQ(Host().registry.Read("hkey_current_user\\software\\TARNVALETEST\\name"), Narrow(text));
  EXPECT_EQ(Host().registry.Read("HKEY_CURRENT_USER\\Software\\TarnvaleTest\\Number"), "42");
  EXPECT_EQ(
      RaisedBy([&] { Host().registry.Read("HKEY_CURRENT_USER\\Software\\TarnvaleTest\\None"); }),
      53);
  EXPECT_EQ(RaisedBy([&] { Host().registry.Read("HKEY_NOWHERE\\Software\\TarnvaleTest\\Name"); }),
            53);
  EXPECT_EQ(RaisedBy([&] { Host().registry.Read("HKEY_CURRENT_USER"); }), 53);
  ::RegDeleteKeyW(HKEY_CURRENT_USER, L"Software\\TarnvaleTest");
}

TEST_F(WindowsProcessesTest, FormatsAreTheUsersOwn) {
  LocaleFormats& formats = Host().formats;
  const DateTime afternoon = MakeDateTime({2008, 3, 14}, {17, 5, 9});
  EXPECT_EQ(formats.ShortDate(afternoon), "3/14/2008");
  EXPECT_EQ(formats.LongTime(afternoon), "5:05:09 PM");
  EXPECT_EQ(formats.GeneralDate(afternoon), "3/14/2008 5:05:09 PM");
  EXPECT_EQ(formats.ShortTime(afternoon), "17:05");
  EXPECT_EQ(formats.StandardNumber(1234567.5), "1,234,567.50");
}

TEST_F(WindowsProcessesTest, FormatsOfAnotherCountryAreItsOwn) {
  surroundings.locale = MAKELCID(MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN), SORT_DEFAULT);
  const DateTime afternoon = MakeDateTime({2008, 3, 14}, {17, 5, 9});
  // With two digits or one: that differs between systems.
  EXPECT_THAT(Host().formats.ShortDate(afternoon), AnyOf("14.03.2008", "14.3.2008"));
  EXPECT_EQ(Host().formats.LongTime(afternoon), "17:05:09");
  EXPECT_EQ(Host().formats.StandardNumber(1234567.5), "1.234.567,50");
}

}  // namespace
}  // namespace tarnvale::testing
