// The table of open files, and whose the files are that it makes.
#include <gmock/gmock.h>
#include <windows.h>

#include <sddl.h>

#include <string>
#include <vector>

#include "platform/file_text.h"
#include "tests/hosts/windows/scripted_media.h"
#include "tests/hosts/windows/windows_stage.h"
#include "tests/support/raised.h"

namespace tarnvale::testing {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::Not;

constexpr DWORD kWithOwners = FILE_PERSISTENT_ACLS;

class WindowsOpenFilesTest : public WindowsHostTest {
 protected:
  void WriteOwn(const std::string& name, const std::string& content) {
    Host().open_files.OpenOwn(1, "C:\\" + name);
    Host().open_files.Write(1, content);
    Host().open_files.Close(1);
  }
  void WriteText(const std::string& name, const std::string& content,
                 Rights rights = Rights::kOwner) {
    Host().open_files.OpenOutput(1, "C:\\" + name, rights);
    Host().open_files.Write(1, content);
    Host().open_files.Close(1);
  }
  // The rules that files are made with from now on, as texts; empty for none.
  Script RecordSecurity(std::vector<std::string>& rules) {
    return Answering(
        "CreateFileW", &::CreateFileW,
        [&rules](auto real, LPCWSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                 DWORD disposition, DWORD flags, HANDLE like) {
          if (disposition != OPEN_EXISTING) rules.push_back(TextOf(security));
          return real(path, access, share, security, disposition, flags, like);
        });
  }
  static std::string TextOf(LPSECURITY_ATTRIBUTES security) {
    wchar_t* text = nullptr;
    if (security == nullptr || ::ConvertSecurityDescriptorToStringSecurityDescriptorW(
                                   security->lpSecurityDescriptor, SDDL_REVISION_1,
                                   DACL_SECURITY_INFORMATION, &text, nullptr) == 0) {
      return {};
    }
    std::string rules = Narrow(text);
    ::LocalFree(text);
    return rules;
  }
  // Lets every file belong to this one, a text of the system's.
  static Script OwnedBy(const std::wstring& sid) {
    return Answering("GetFileSecurityW", &::GetFileSecurityW,
                     [sid](auto, LPCWSTR, SECURITY_INFORMATION, PSECURITY_DESCRIPTOR descriptor,
                           DWORD, LPDWORD) {
                       PSECURITY_DESCRIPTOR made = nullptr;
                       ULONG size = 0;
                       ::ConvertStringSecurityDescriptorToSecurityDescriptorW(
                           (L"O:" + sid).c_str(), SDDL_REVISION_1, &made, &size);
                       std::copy_n(static_cast<char*>(made), size, static_cast<char*>(descriptor));
                       ::LocalFree(made);
                       return TRUE;
                     });
  }
};

TEST_F(WindowsOpenFilesTest, OnAFixedDriveAnOwnersFileIsForTheUserAndAdministrators) {
  const auto medium = AsMedium(DRIVE_FIXED, kWithOwners, L"NTFS");
  std::vector<std::string> rules;
  const auto recorded = RecordSecurity(rules);
  WriteText("a", "x");
  EXPECT_THAT(rules, Contains(HasSubstr("(A;;FA;;;SY)(A;;FA;;;BA)")));
  EXPECT_THAT(rules, Contains(HasSubstr("D:P(A;;FA;;;S-1-")));
}

TEST_F(WindowsOpenFilesTest, OnAStickItIsForTheNextSystemsUserToo) {
  const auto medium = AsMedium(DRIVE_REMOVABLE, kWithOwners, L"NTFS");
  std::vector<std::string> rules;
  const auto recorded = RecordSecurity(rules);
  WriteText("a", "x");
  Host().profiles.Write("A", "x", "1", "C:\\t.ini");
  Host().profiles.Flush("C:\\t.ini");
  Host().files.CopyWhole("C:\\a", "C:\\b", Rights::kOwner);
  EXPECT_FALSE(rules.empty());
  EXPECT_THAT(rules, Not(Contains(HasSubstr("S-1-"))));
}

TEST_F(WindowsOpenFilesTest, AnOwnFileOfSomebodyElseIsMadeAnew) {
  const auto medium = AsMedium(DRIVE_FIXED, kWithOwners, L"NTFS");
  Write("a", "a stranger's text");
  const auto owner = OwnedBy(L"S-1-5-21-1-2-3-1001");
  WriteOwn("a", "mine");
  EXPECT_EQ(Content("a"), "mine");
}

TEST_F(WindowsOpenFilesTest, AnOwnFileOfTheUserIsKept) {
  const auto medium = AsMedium(DRIVE_FIXED, kWithOwners, L"NTFS");
  Write("a", "my old text");
  WriteOwn("a", "MY");
  EXPECT_EQ(Content("a"), "MY old text");
}

TEST_F(WindowsOpenFilesTest, OnAStickEveryFileIsTheUsers) {
  const auto medium = AsMedium(DRIVE_REMOVABLE, kWithOwners, L"NTFS");
  Write("a", "my old text");
  const auto owner = OwnedBy(L"S-1-5-21-1-2-3-1001");
  WriteOwn("a", "MY");
  EXPECT_EQ(Content("a"), "MY old text");
}

TEST_F(WindowsOpenFilesTest, AnOwnFileThatHasASecondNameIsMadeAnew) {
  Write("a", "shared text");
  ASSERT_NE(::CreateHardLinkW(Native("second").c_str(), Native("a").c_str(), nullptr), 0);
  WriteOwn("a", "mine");
  EXPECT_EQ(Content("a"), "mine");
  EXPECT_EQ(Content("second"), "shared text");
}

TEST_F(WindowsOpenFilesTest, ATextOfSomebodyElseIsDeletedFirst) {
  const auto medium = AsMedium(DRIVE_FIXED, kWithOwners, L"NTFS");
  Write("a", "old");
  ASSERT_NE(::CreateHardLinkW(Native("second").c_str(), Native("a").c_str(), nullptr), 0);
  const auto owner = OwnedBy(L"S-1-5-21-1-2-3-1001");
  WriteText("a", "new", Rights::kNewFile);
  EXPECT_EQ(Content("a"), "new");
  EXPECT_EQ(Content("second"), "old");
}

// The system refuses to make a hidden file anew, and to empty it in opening it, unless
// the call says that it is hidden.
TEST_F(WindowsOpenFilesTest, AHiddenFileIsEmptiedWhereTheSystemWouldNotMakeItAnew) {
  Write("a", "an old text");
  const Scripted opens(
      "CreateFileW", &::CreateFileW,
      [&](auto real, LPCWSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
          DWORD disposition, DWORD flags, HANDLE like) -> HANDLE {
        if (disposition == CREATE_ALWAYS || disposition == TRUNCATE_EXISTING) {
          ::SetLastError(ERROR_ACCESS_DENIED);
          return INVALID_HANDLE_VALUE;
        }
        return real(path, access, share, security, disposition, flags, like);
      });
  WriteText("a", "new");
  EXPECT_EQ(Content("a"), "new");
}

TEST_F(WindowsOpenFilesTest, ATextBehindALinkThatLeadsNowhereIsMade) {
  Write("link", "");
  const auto link = AsReparsePoint(surroundings.root + L"\\link", IO_REPARSE_TAG_SYMLINK,
                                   surroundings.root + L"\\behind");
  WriteText("link", "text");
  EXPECT_EQ(Content("behind"), "text");
}

// Each writes the pointer file, and reads what it wrote.
TEST_F(WindowsOpenFilesTest, ItemsAreInTheCodePage) {
  struct Page {
    UINT number;
    std::string text;
    std::string bytes;
  };
  const std::vector<Page> pages{{1252, "Gr\xC3\xBC\xC3\x9F", "Gr\xFC\xDF"},
                                {1252, "\xD0\x96", "\xEF\xBB\xBF\xD0\x96"},
                                {1251, "\xD0\x96", "\xC6"},
                                {1251, "Gr\xC3\xBC", "\xEF\xBB\xBFGr\xC3\xBC"},
                                {65001, "\xD0\x96\xC3\xBC", "\xD0\x96\xC3\xBC"}};
  for (const Page& page : pages) {
    Restart();
    surroundings.code_page = page.number;
    EXPECT_EQ(TextToFile(Host().open_files, page.text), page.bytes) << page.number;
    Write("Data.txt", page.bytes + "\r\n");
    Host().open_files.OpenInput(1, "C:\\Data.txt");
    EXPECT_EQ(Host().open_files.InputItem(1), page.text) << page.number;
  }
}

}  // namespace
}  // namespace tarnvale::testing
