// Real file dialogs, each answered as a person does it, and what they are called with.
#include "hosts/windows/windows_file_dialogs.h"

#include <cderr.h>
#include <commdlg.h>
#include <dlgs.h>
#include <shlobj.h>

#include <array>
#include <filesystem>
#include <optional>

#include "hosts/windows/wide.h"
#include "tests/hosts/windows/scripted_system.h"
#include "tests/hosts/windows/temporary_folder.h"
#include "tests/hosts/windows/windows_fixture.h"

namespace tarnvale::testing {
namespace {

namespace fs = std::filesystem;

class WindowsDialogsTest : public WindowsWindowTest {
 protected:
  WindowsDialogsTest() { fs::create_directory(folder / "Store"); }

  Path PathOf(const std::string& name) const {
    return drives.FromNative((folder / name).wstring());
  }

  static std::string Padded(std::string text) {
    text.resize(260, '\0');
    return text;
  }
  FileDialogRecord Record(const Path& file = {}) const {
    return {.title = "Choose",
            .filter = {},
            .default_ext = ".tvz",
            .initial_dir = PathOf("Store"),
            .file = Padded(file),
            .file_title = Padded({})};
  }

  /// Calls `act` with the next dialog once it is up.
  Once WithDialog(std::function<void(HWND)> act) {
    return {loop, [] { return Dialog() != nullptr; }, [act] { act(Dialog()); }};
  }
  static HWND NameField(HWND dialog) {
    HWND combo = ::GetDlgItem(dialog, cmb13);
    return combo != nullptr ? combo : ::GetDlgItem(dialog, edt1);
  }
  static void TypeName(HWND dialog, const std::string& name) {
    ::SendMessageW(NameField(dialog), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(Wide(name).c_str()));
    ::PostMessageW(dialog, WM_COMMAND, IDOK, 0);
  }
  static void Cancel(HWND dialog) { ::PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0); }

  std::optional<Path> Open(FileDialogRecord record) {
    if (!dialogs.ShowOpen(record)) return std::nullopt;
    return record.file.substr(0, record.file.find('\0'));
  }
  std::optional<Path> Save(FileDialogRecord record) {
    if (!dialogs.ShowSave(record)) return std::nullopt;
    return record.file.substr(0, record.file.find('\0'));
  }

  TemporaryFolder folder;
  DrivePaths drives;
  WindowsFileDialogs dialogs{host, drives};
};

TEST_F(WindowsDialogsTest, GivesThePathAndTheNameOfWhatIsTyped) {
  WriteNative(folder / "Store" / "a.txt", "a");
  const Once types = WithDialog([](HWND dialog) { TypeName(dialog, "a.txt"); });
  FileDialogRecord record = Record();
  ASSERT_TRUE(dialogs.ShowOpen(record));
  EXPECT_EQ(record.file, Padded(PathOf("Store\\a.txt")));
  EXPECT_EQ(record.file_title, Padded("a.txt"));
}

TEST_F(WindowsDialogsTest, ACancelChangesNothing) {
  const Once cancels = WithDialog([](HWND dialog) { Cancel(dialog); });
  FileDialogRecord record = Record("kept");
  EXPECT_FALSE(dialogs.ShowSave(record));
  EXPECT_EQ(record.file, Padded("kept"));
}

TEST_F(WindowsDialogsTest, AddsTheExtensionToANameWithoutOne) {
  const Once types = WithDialog([](HWND dialog) { TypeName(dialog, "new"); });
  EXPECT_EQ(Save(Record()), PathOf("Store\\new.tvz"));
}

TEST_F(WindowsDialogsTest, OpensAFileOfTheVeryNameWithoutTheExtension) {
  WriteNative(folder / "Store" / "plain", "a");
  const Once types = WithDialog([](HWND dialog) { TypeName(dialog, "plain"); });
  EXPECT_EQ(Open(Record()), PathOf("Store\\plain"));
}

TEST_F(WindowsDialogsTest, AsksBeforeAFileIsSavedOverAnotherOne) {
  WriteNative(folder / "Store" / "there.tvz", "a");
  HWND dialog = nullptr;
  const Once types = WithDialog([&](HWND opened) {
    dialog = opened;
    TypeName(opened, "there.tvz");
  });
  bool was_asked = false;
  const Once says_yes(
      loop, [&] { return dialog != nullptr && Dialog() != dialog; },
      [&] {
        was_asked = true;
        ::PostMessageW(Dialog(), WM_COMMAND, IDYES, 0);
      });
  EXPECT_EQ(Save(Record()), PathOf("Store\\there.tvz"));
  EXPECT_TRUE(was_asked);
}

TEST_F(WindowsDialogsTest, ComesUpWithTheOfferedName) {
  std::wstring offered;
  const Once looks = WithDialog([&](HWND dialog) {
    offered = TextOf(NameField(dialog));
    Cancel(dialog);
  });
  Save(Record("C:/None/offered.tvz"));
  EXPECT_EQ(offered, L"offered.tvz");
}

TEST_F(WindowsDialogsTest, ANameThatNoFileCanHaveIsNotOffered) {
  const Once cancels = WithDialog([](HWND dialog) { Cancel(dialog); });
  EXPECT_EQ(Save(Record("a<b>:\"c|")), std::nullopt);
  EXPECT_TRUE(cancels.HasActed());
}

TEST_F(WindowsDialogsTest, TheCurrentFolderStays) {
  std::array<wchar_t, MAX_PATH> before{};
  ::GetCurrentDirectoryW(MAX_PATH, before.data());
  WriteNative(folder / "Store" / "a.txt", "a");
  const Once types = WithDialog([](HWND dialog) { TypeName(dialog, "a.txt"); });
  ASSERT_TRUE(Open(Record()));
  std::array<wchar_t, MAX_PATH> after{};
  ::GetCurrentDirectoryW(MAX_PATH, after.data());
  EXPECT_STREQ(after.data(), before.data());
}

TEST_F(WindowsDialogsTest, TheProgramsEndCancelsADialogAndTimersTickBehindIt) {
  std::optional<Path> chosen = "none yet";
  Timer timer(loop.Timers(), 10, true);
  int ticks = 0;
  timer.Tick.Listen([&] {
    if (Dialog() != nullptr && ++ticks == 5) loop.Quit(2);
  });
  loop.Post([&] { chosen = Open(Record()); });
  EXPECT_EQ(loop.Run(), 2);
  EXPECT_EQ(chosen, std::nullopt);
}

struct Asked {
  DWORD size = 0;
  DWORD flags = 0;
  DWORD file_units = 0;
  DWORD filter_index = 0;
  std::wstring filter;
  std::wstring file;
  std::wstring folder;
  std::wstring extension;
  std::wstring title;
};

Asked AskedBy(const OPENFILENAMEW& data) {
  const auto text = [](const wchar_t* given) {
    return given == nullptr ? std::wstring(L"-") : std::wstring(given);
  };
  const wchar_t* end = data.lpstrFilter;
  while (end != nullptr && *end != 0) end += std::wstring_view(end).size() + 1;
  return {.size = data.lStructSize,
          .flags = data.Flags,
          .file_units = data.nMaxFile,
          .filter_index = data.nFilterIndex,
          .filter = end == nullptr ? L"-" : std::wstring(data.lpstrFilter, end),
          .file = text(data.lpstrFile),
          .folder = text(data.lpstrInitialDir),
          .extension = text(data.lpstrDefExt),
          .title = text(data.lpstrTitle)};
}

class WindowsDialogCallsTest : public WindowsDialogsTest {
 protected:
  std::vector<Asked> asked;
  DWORD error = 0;
  Scripted<std::function<BOOL(BOOL(WINAPI*)(OPENFILENAMEW*), OPENFILENAMEW*)>, BOOL, OPENFILENAMEW*>
      opens{"GetOpenFileNameW", &::GetOpenFileNameW, [this](auto, OPENFILENAMEW* data) {
              asked.push_back(AskedBy(*data));
              return FALSE;
            }};
  Scripted<std::function<BOOL(BOOL(WINAPI*)(OPENFILENAMEW*), OPENFILENAMEW*)>, BOOL, OPENFILENAMEW*>
      saves{"GetSaveFileNameW", &::GetSaveFileNameW, [this](auto, OPENFILENAMEW* data) {
              asked.push_back(AskedBy(*data));
              return FALSE;
            }};
  Scripted<std::function<DWORD(DWORD(WINAPI*)())>, DWORD> fails{
      "CommDlgExtendedError", &::CommDlgExtendedError, [this](auto) { return error; }};
};

TEST_F(WindowsDialogCallsTest, TheRecordIsTheSystemsOfOld) {
  FileDialogRecord record = Record(PathOf("Store\\a.tvz"));
  record.filter = std::string("Archives (*.tvz)\0*.tvz;*.tvx\0All\0\0", 34);
  record.filter_index = 2;
  record.flags = kCreatePrompt | kFileMustExist | kHideReadOnlyBox;
  dialogs.ShowOpen(record);
  ASSERT_EQ(asked.size(), 1U);
  EXPECT_EQ(asked[0].size, sizeof(void*) == 4 ? 76U : 136U);
  EXPECT_EQ(asked[0].flags, 0x3004U);
  EXPECT_EQ(asked[0].file_units, 260U);
  EXPECT_EQ(asked[0].filter_index, 2U);
  EXPECT_EQ(asked[0].filter, std::wstring(L"Archives (*.tvz)\0*.tvz;*.tvx\0All\0*.*\0", 37));
  EXPECT_EQ(asked[0].file, Wide(PathOf("Store\\a.tvz")));
  EXPECT_EQ(asked[0].folder, Wide(PathOf("Store")));
  EXPECT_EQ(asked[0].extension, L"tvz");
  EXPECT_EQ(asked[0].title, L"Choose");
}

TEST_F(WindowsDialogCallsTest, TheOpenDialogHasNoBoxForReadingAlone) {
  FileDialogRecord record = Record({});
  dialogs.ShowOpen(record);
  ASSERT_EQ(asked.size(), 1U);
  EXPECT_EQ(asked[0].flags, DWORD{OFN_HIDEREADONLY});
}

TEST_F(WindowsDialogCallsTest, WhatIsEmptyIsTheDialogsOwn) {
  FileDialogRecord record;
  record.file = Padded({});
  dialogs.ShowSave(record);
  ASSERT_EQ(asked.size(), 1U);
  EXPECT_EQ(asked[0].flags, DWORD{OFN_OVERWRITEPROMPT});
  EXPECT_EQ(asked[0].filter_index, 1U);
  EXPECT_EQ(asked[0].filter, L"-");
  EXPECT_EQ(asked[0].file, L"");
  EXPECT_EQ(asked[0].folder, L"-");
  EXPECT_EQ(asked[0].extension, L"-");
  EXPECT_EQ(asked[0].title, L"-");
}

TEST_F(WindowsDialogCallsTest, ABadNameIsTriedAgainWithoutIt) {
  error = FNERR_INVALIDFILENAME;
  FileDialogRecord record = Record("a<b");
  dialogs.ShowSave(record);
  ASSERT_EQ(asked.size(), 2U);
  EXPECT_EQ(asked[0].file, L"a<b");
  EXPECT_EQ(asked[1].file, L"");
}

TEST_F(WindowsDialogCallsTest, ACancelIsNotTriedAgain) {
  FileDialogRecord record = Record();
  dialogs.ShowOpen(record);
  EXPECT_EQ(asked.size(), 1U);
}

TEST_F(WindowsDialogCallsTest, ANameTooLongForTheBufferIsOfferedWithoutItsFolderOrNotAtAll) {
  FileDialogRecord record = Record(PathOf("Store\\") + std::string(200, 'x'));
  dialogs.ShowOpen(record);
  EXPECT_LT(asked[0].file.size(), 260U);
  record = Record(std::string(260, 'x'));
  dialogs.ShowOpen(record);
  EXPECT_EQ(asked[1].file, L"");
}

class WindowsFolderDialogTest : public WindowsDialogsTest {};

TEST_F(WindowsFolderDialogTest, ARealOneShowsThePromptAndCancels) {
  std::wstring prompt;
  const Once cancels = WithDialog([&](HWND dialog) {
    ::EnumChildWindows(
        dialog,
        [](HWND child, LPARAM found) -> BOOL {
          std::wstring text = TextOf(child);
          if (text.find(L"Where to?") == 0) *reinterpret_cast<std::wstring*>(found) = text;
          return TRUE;
        },
        reinterpret_cast<LPARAM>(&prompt));
    Cancel(dialog);
  });
  EXPECT_EQ(dialogs.BrowseForFolder({.prompt = "Where to?"}), std::nullopt);
  EXPECT_EQ(prompt, L"Where to?");
}

TEST_F(WindowsFolderDialogTest, GivesTheFolderThatIsChosenAndARootWithItsBackslash) {
  Show();
  std::vector<UINT> flags;
  HWND owner = nullptr;
  std::wstring choice;
  const Scripted browses("SHBrowseForFolderW", &::SHBrowseForFolderW,
                         [&](auto, BROWSEINFOW* data) -> PIDLIST_ABSOLUTE {
                           flags.push_back(data->ulFlags);
                           owner = data->hwndOwner;
                           return ::ILCreateFromPathW(choice.c_str());
                         });
  choice = (folder / "Store").wstring();
  EXPECT_EQ(dialogs.BrowseForFolder({.owner = &window, .prompt = "?"}), PathOf("Store"));
  choice = L"C:\\";
  EXPECT_EQ(dialogs.BrowseForFolder({.owner = &window, .prompt = "?"}), "C:\\");
  EXPECT_EQ(flags, (std::vector<UINT>{1, 1}));
  EXPECT_EQ(owner, Native());
}

}  // namespace
}  // namespace tarnvale::testing
