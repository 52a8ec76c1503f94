// Media and entries that are unlike those of this machine.
#include <gmock/gmock.h>
#include <windows.h>

#include <sddl.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "hosts/windows/native_errors.h"
#include "tests/hosts/windows/scripted_media.h"
#include "tests/hosts/windows/windows_stage.h"
#include "tests/support/raised.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

class WindowsMediaTest : public WindowsHostTest {
 protected:
  std::wstring NativeName(const std::string& name) {
    return surroundings.root + L"\\" + Wide(name);
  }
  void SetTime(const std::string& name, int milliseconds) {
    const Handle file(::CreateFileW(Native(name).c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    const std::uint64_t units = 128'000'000'000'000'000 + std::uint64_t{10'000} * milliseconds;
    const FILETIME time{static_cast<DWORD>(units), static_cast<DWORD>(units >> 32U)};
    EXPECT_NE(::SetFileTime(file.Get(), nullptr, nullptr, &time), 0);
  }
  static std::vector<std::string> FileNames(HeldFolder& folder) {
    std::vector<std::string> names;
    for (const FolderEntry& file : folder.Contents().files) names.push_back(file.name);
    return names;
  }
};

TEST_F(WindowsMediaTest, DrivesHaveTheirLettersAndKinds) {
  const auto letters =
      Answering("GetLogicalDrives", &::GetLogicalDrives, [](auto) { return DWORD{0b11'1101}; });
  const auto kinds = Answering("GetDriveTypeW", &::GetDriveTypeW, [](auto, LPCWSTR root) {
    return std::wstring_view(root) == L"A:\\"   ? DRIVE_REMOVABLE
           : std::wstring_view(root) == L"C:\\" ? DRIVE_FIXED
           : std::wstring_view(root) == L"D:\\" ? DRIVE_CDROM
           : std::wstring_view(root) == L"E:\\" ? DRIVE_REMOTE
                                                : DRIVE_RAMDISK;
  });
  EXPECT_THAT(DrivePaths().List(),
              ElementsAre(Drive{"A:\\", DriveKind::kRemovable}, Drive{"C:\\", DriveKind::kFixed},
                          Drive{"D:\\", DriveKind::kOptical}, Drive{"E:\\", DriveKind::kNetwork},
                          Drive{"F:\\", DriveKind::kFixed}));
}

// On media with times in steps of two seconds a copy is a little newer than its original.
TEST_F(WindowsMediaTest, ACopyOnItsWayBackLeavesItsOriginalAlone) {
  std::filesystem::create_directory(Native("stick"));
  const auto copies = [&](const std::string& ours, const std::string& theirs, int newer_ms) {
    Write("a", ours);
    Write("stick/a", theirs);
    SetTime("a", 0);
    SetTime("stick/a", newer_ms);
    int count = 0;
    const Scripted copied("CopyFileExW", &::CopyFileExW, [&](auto real, auto... arguments) {
      ++count;
      return real(arguments...);
    });
    const auto root = Host().files.OpenFolder("C:\\");
    const auto stick = Host().files.OpenFolder("C:\\stick");
    Host().files.CopyEntry({*stick, "a"}, {*root, "a"}, Rights::kNewFile);
    EXPECT_EQ(Content("a"), theirs);
    EXPECT_EQ(StateOf(NativeName("a"), Links::kKeep)->modified,
              StateOf(NativeName("stick\\a"), Links::kKeep)->modified);
    return count;
  };
  EXPECT_EQ(copies("same", "same", 1000), 0);
  EXPECT_EQ(copies("same", "same", 2000), 0);
  EXPECT_EQ(copies("same", "same", 2001), 1);
  EXPECT_EQ(copies("same", "else", 1000), 1);
  EXPECT_EQ(copies("same", "longer", 1000), 1);
  EXPECT_EQ(copies(std::string(70000, 'a') + 'b', std::string(70000, 'a') + 'c', 1000), 1);
}

// A share that can't be reached may well have the settings; a save would replace them by
// what the program has without them.
TEST_F(WindowsMediaTest, SettingsOnANetworkThatIsAwayAreNotMissing) {
  for (const DWORD error :
       {ERROR_BAD_NETPATH, ERROR_BAD_NET_NAME, ERROR_INVALID_DRIVE, ERROR_REM_NOT_LIST,
        ERROR_NETWORK_BUSY, ERROR_NETNAME_DELETED, ERROR_NO_NET_OR_BAD_PATH, ERROR_NO_NETWORK,
        ERROR_NETWORK_UNREACHABLE, ERROR_HOST_UNREACHABLE}) {
    Restart();
    {
      const Scripted asks(
          "GetFileAttributesExW", &::GetFileAttributesExW,
          [&](auto, LPCWSTR, GET_FILEEX_INFO_LEVELS, LPVOID) { return Failing(error); });
      EXPECT_EQ(Host().profiles.Read("A", "x", "none", 255, "C:\\t.ini"), "none");
    }
    EXPECT_FALSE(Host().profiles.Write("A", "x", "none", "C:\\t.ini")) << error;
  }
}

TEST_F(WindowsMediaTest, CodesOfMediaAndNetworksHaveTheirNumbers) {
  const std::vector<std::pair<DWORD, int>> numbers{
      {34, 71}, {1110, 71}, {433, 68},  {483, 68},  {1006, 68}, {1617, 68},
      {51, 76}, {54, 76},   {1203, 76}, {1222, 76}, {1231, 76}, {1232, 76},
      {82, 61}, {1816, 61}, {303, 70},  {8, 7},     {14, 7},    {1450, 7}};
  for (const auto& [code, number] : numbers) {
    EXPECT_EQ(ErrorNumberOf(code, Attempt::kChange), number) << code;
  }
}

// Some drivers say of an empty drive that there are no more files.
TEST_F(WindowsMediaTest, AnEmptyDriveIsNoFailure) {
  const Scripted finds("FindFirstFileW", &::FindFirstFileW, [&](auto, LPCWSTR, LPWIN32_FIND_DATAW) {
    ::SetLastError(ERROR_NO_MORE_FILES);
    return INVALID_HANDLE_VALUE;
  });
  EXPECT_EQ(RaisedBy([&] { Host().files.OpenFolder("C:\\")->Contents(); }), 0);
}

// As ordinary users may make none to files, and FAT, network drives and others hold none.
TEST_F(WindowsMediaTest, ALinkThatCannotBeMadeIsPassedOver) {
  const auto medium = AsMedium(DRIVE_FIXED, FILE_SUPPORTS_REPARSE_POINTS, L"NTFS");
  std::filesystem::create_directory(Native("from"));
  std::filesystem::create_directory(Native("to"));
  Write("from/link", "");
  Write("from/plain", "text");
  const auto link = AsReparsePoint(NativeName("from\\link"), IO_REPARSE_TAG_SYMLINK);
  for (const DWORD error : {ERROR_PRIVILEGE_NOT_HELD, ERROR_INVALID_FUNCTION, ERROR_NOT_SUPPORTED,
                            ERROR_INVALID_PARAMETER, ERROR_NOT_A_REPARSE_POINT}) {
    const Scripted controls("DeviceIoControl", &::DeviceIoControl,
                            [&](auto real, HANDLE device, DWORD code, LPVOID in, DWORD in_size,
                                LPVOID out, DWORD out_size, LPDWORD length, LPOVERLAPPED later) {
                              return code == FSCTL_SET_REPARSE_POINT
                                         ? Failing(error)
                                         : real(device, code, in, in_size, out, out_size, length,
                                                later);
                            });
    EXPECT_EQ(RaisedBy([&] { Host().files.CopyTree("C:\\from", "C:\\to", {}); }), 0) << error;
    EXPECT_THAT(Host().files.List("C:\\to\\*", {.hidden = true}), ElementsAre("plain")) << error;
  }
}

TEST_F(WindowsMediaTest, WhereThereAreNoLinksNoneIsTried) {
  const auto medium = AsMedium(DRIVE_REMOTE, FILE_CASE_PRESERVED_NAMES, L"NTFS");
  std::filesystem::create_directory(Native("from"));
  Write("from/link", "");
  const auto link = AsReparsePoint(NativeName("from\\link"), IO_REPARSE_TAG_SYMLINK);
  const Scripted controls(
      "DeviceIoControl", &::DeviceIoControl,
      [&](auto, HANDLE, DWORD, LPVOID, DWORD, LPVOID, DWORD, LPDWORD, LPOVERLAPPED) {
        ADD_FAILURE() << "asks for the link";
        return Failing(ERROR_INVALID_PARAMETER);
      });
  Host().files.CopyTree("C:\\from", "C:\\to", {});
  EXPECT_THAT(Host().files.List("C:\\to\\*", {.hidden = true}), IsEmpty());
}

TEST_F(WindowsMediaTest, AFolderThatMovesToAMediumWithoutItsLinksStays) {
  const auto medium = AsMedium(DRIVE_REMOTE, FILE_CASE_PRESERVED_NAMES, L"NTFS");
  std::filesystem::create_directory(Native("from"));
  Write("from/link", "");
  Write("from/x", "content");
  const auto link = AsReparsePoint(NativeName("from\\link"), IO_REPARSE_TAG_SYMLINK);
  EXPECT_EQ(RaisedBy([&] { Host().files.MoveTree("C:\\from", "C:\\to"); }), kPathFileAccess);
  EXPECT_THAT(Host().files.List("C:\\from\\*", {.hidden = true}), ElementsAre("link", "x"));
  EXPECT_EQ(Content("to/x"), "content");
}

TEST_F(WindowsMediaTest, AFolderThatMovesIntoItselfByItsShortNameStays) {
  const std::string name = "a folder with a long name";
  std::filesystem::create_directory(Native(name));
  Write(name + "/x", "content");
  std::wstring path(MAX_PATH, L'\0');
  path.resize(::GetShortPathNameW(NativeName(name).c_str(), path.data(), MAX_PATH));
  const std::string short_name = Narrow(NativeNameOf(path));
  if (short_name == name) GTEST_SKIP() << "no short names on this medium";
  const Path inside = "C:\\" + short_name + "\\inside";
  EXPECT_EQ(RaisedBy([&] { Host().files.MoveTree("C:\\" + name, inside); }), kPathFileAccess);
  EXPECT_EQ(Content(name + "/x"), "content");
}

TEST_F(WindowsMediaTest, WhatIsNoFileIsNotAmongFiles) {
  Write("plain", "x");
  Write("special", "");
  for (const DWORD tag : {0x80000023, 0x80000024, 0x80000025, 0x80000026, 0x8000001B}) {
    const auto special = AsReparsePoint(NativeName("special"), tag);
    const auto root = Host().files.OpenFolder("C:\\");
    EXPECT_THAT(FileNames(*root), ElementsAre("plain"));
    EXPECT_EQ(root->File("special"), std::nullopt);
    EXPECT_THAT(Host().files.List("C:\\*", {}), ElementsAre("plain"));
  }
  // One that is merely elsewhere for now, as a cloud's files are.
  const auto elsewhere = AsReparsePoint(NativeName("special"), 0x9000001A);
  EXPECT_THAT(FileNames(*Host().files.OpenFolder("C:\\")), ElementsAre("plain", "special"));
}

TEST_F(WindowsMediaTest, ADriverThatKnowsNoFlushTakesCopiesAllTheSame) {
  Write("a", "text");
  for (const DWORD error : {ERROR_INVALID_FUNCTION, ERROR_NOT_SUPPORTED}) {
    const Scripted flushes("FlushFileBuffers", &::FlushFileBuffers,
                           [&](auto, HANDLE) { return Failing(error); });
    Host().files.CopyWhole("C:\\a", "C:\\b");
    EXPECT_EQ(Content("b"), "text");
    Host().open_files.OpenOutput(1, "C:\\c");
    Host().open_files.Write(1, "text");
    Host().open_files.Close(1);
    Host().profiles.Write("A", "x", std::to_string(error), "C:\\t.ini");
    EXPECT_TRUE(Host().profiles.Flush("C:\\t.ini"));
    const auto received = Host().transfer_files.OpenTarget("C:\\d");
    received->Write(std::string("text"));
    received->Commit();
    EXPECT_EQ(Content("d"), "text");
  }
}

TEST_F(WindowsMediaTest, AFailedFlushIsAFailure) {
  Write("a", "text");
  const Scripted flushes("FlushFileBuffers", &::FlushFileBuffers,
                         [&](auto, HANDLE) { return Failing(ERROR_CRC); });
  EXPECT_EQ(RaisedBy([&] { Host().files.CopyWhole("C:\\a", "C:\\b"); }), 57);
  EXPECT_FALSE(Host().files.FileExists("C:\\b"));
}

TEST_F(WindowsMediaTest, FoldersOfAMediumWithoutNumbersAreDistinguished) {
  std::filesystem::create_directory(Native("one"));
  std::filesystem::create_directory(Native("two"));
  const Scripted asks("GetFileInformationByHandle", &::GetFileInformationByHandle,
                      [&](auto real, HANDLE file, LPBY_HANDLE_FILE_INFORMATION info) {
                        const BOOL done = real(file, info);
                        info->nFileIndexHigh = info->nFileIndexLow = 0;
                        return done;
                      });
  const auto one = Host().files.OpenFolder("C:\\one");
  EXPECT_FALSE(one->Is(*Host().files.OpenFolder("C:\\two")));
  EXPECT_TRUE(one->Is(*Host().files.OpenFolder("C:\\ONE")));
}

// A drive that was copied block by block has its original's numbers.
TEST_F(WindowsMediaTest, FoldersOfACopiedDriveAreItsOwn) {
  std::filesystem::create_directories(Native("one/inner"));
  std::filesystem::create_directories(Native("two/inner"));
  const Scripted asks("GetFileInformationByHandle", &::GetFileInformationByHandle,
                      [&](auto real, HANDLE file, LPBY_HANDLE_FILE_INFORMATION info) {
                        const BOOL done = real(file, info);
                        info->nFileIndexHigh = info->nFileIndexLow = 7;
                        return done;
                      });
  const Scripted roots(
      "GetVolumePathNameW", &::GetVolumePathNameW, [&](auto, LPCWSTR path, LPWSTR root, DWORD) {
        const std::wstring drive =
            std::wstring(path).find(L"\\two") == std::wstring::npos ? L"O:\\" : L"T:\\";
        std::copy_n(drive.c_str(), drive.size() + 1, root);
        return TRUE;
      });
  const Scripted names("GetVolumeNameForVolumeMountPointW", &::GetVolumeNameForVolumeMountPointW,
                       [&](auto, LPCWSTR root, LPWSTR name, DWORD) {
                         std::copy_n(root, 4, name);
                         return TRUE;
                       });
  const auto inner = Host().files.OpenFolder("C:\\one\\inner");
  EXPECT_FALSE(inner->Is(*Host().files.OpenFolder("C:\\two\\inner")));
  EXPECT_TRUE(inner->Is(*Host().files.OpenFolder("C:\\one\\inner")));
}

// `aux.c` of a program that comes from another system.
TEST_F(WindowsMediaTest, FilesOfDevicesNamesAreCopied) {
  std::filesystem::create_directory(Native("from"));
  const std::wstring native = NativeName("from\\aux.c");
  ASSERT_TRUE(Handle(::CreateFileW(native.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                   FILE_ATTRIBUTE_NORMAL, nullptr)));
  EXPECT_THAT(FileNames(*Host().files.OpenFolder("C:\\from")), ElementsAre("aux.c"));
  EXPECT_EQ(RaisedBy([&] { Host().files.CopyTree("C:\\from", "C:\\to", {}); }), 0);
  EXPECT_EQ(RaisedBy([&] { Host().files.Length("C:\\to\\aux.c"); }), 0);
  EXPECT_EQ(RaisedBy([&] { Host().files.Delete("C:\\to\\aux.c"); }), 0);
  EXPECT_EQ(RaisedBy([&] { Host().open_files.OpenOutput(1, "C:\\to\\aux.c"); }), 75);
  // The test's own cleaning up wouldn't find it.
  ::DeleteFileW(native.c_str());
  ::DeleteFileW(NativeName("to\\aux.c").c_str());
}

TEST_F(WindowsMediaTest, ASettingsFileBehindALinkIsWrittenThere) {
  Write("link.ini", "");
  Write("real.ini", "[A]\r\nx=1\r\n");
  const auto link =
      AsReparsePoint(NativeName("link.ini"), IO_REPARSE_TAG_SYMLINK, NativeName("real.ini"));
  EXPECT_EQ(Host().profiles.Read("A", "x", "", 255, "C:\\link.ini"), "1");
  EXPECT_TRUE(Host().profiles.Write("A", "x", "2", "C:\\link.ini"));
  EXPECT_TRUE(Host().profiles.Flush("C:\\link.ini"));
  EXPECT_EQ(Content("real.ini"), "[A]\r\nx=2\r\n");
  EXPECT_EQ(Content("link.ini"), "");
}

// Another stick gets the drive's letter as soon as the first one is pulled out, and may
// well have a folder of the same name.
TEST_F(WindowsMediaTest, AFolderWhoseMediumIsGoneIsGone) {
  std::filesystem::create_directories(Native("stick/inner"));
  Write("a", "ours");
  Write("stick/a", "another stick's");
  const auto root = Host().files.OpenFolder("C:\\");
  const auto stick = Host().files.OpenFolder("C:\\stick");
  const Scripted asks("GetFileInformationByHandle", &::GetFileInformationByHandle,
                      [&](auto real, HANDLE file, LPBY_HANDLE_FILE_INFORMATION info) {
                        const bool is_pulled = file == static_cast<WindowsFolder&>(*stick).Get();
                        return is_pulled ? Failing(ERROR_NOT_READY) : real(file, info);
                      });
  EXPECT_EQ(RaisedBy([&] { stick->Contents(); }), 76);
  EXPECT_EQ(RaisedBy([&] { stick->Inner("inner"); }), 76);
  EXPECT_EQ(RaisedBy([&] { stick->MakeFolder("new"); }), 76);
  EXPECT_EQ(RaisedBy([&] { stick->MakeFile("new"); }), 76);
  EXPECT_EQ(RaisedBy([&] { Host().files.CopyEntry({*root, "a"}, {*stick, "a"}); }), 76);
  EXPECT_EQ(RaisedBy([&] { Host().files.CopyEntry({*stick, "a"}, {*root, "a"}); }), 76);
  EXPECT_EQ(RaisedBy([&] { Host().files.CopyWhole("C:\\a", {*stick, "b"}); }), 76);
  EXPECT_EQ(Content("a"), "ours");
  EXPECT_EQ(Content("stick/a"), "another stick's");
}

// As "Cookies" and "History" are, in the places where older systems had them.
TEST_F(WindowsMediaTest, ALinkThatNobodyMayListIsReadWhereItLeads) {
  std::filesystem::create_directories(Native("real/inner"));
  std::filesystem::create_directory(Native("link"));
  Write("real/a", "x");
  const auto link =
      AsReparsePoint(NativeName("link"), IO_REPARSE_TAG_MOUNT_POINT, NativeName("real"));
  const std::wstring place = NativeName("link");
  const Scripted opens("CreateFileW", &::CreateFileW,
                       [&](auto real, LPCWSTR path, DWORD access, auto... rest) {
                         if (path == place && (access & FILE_LIST_DIRECTORY) != 0) {
                           ::SetLastError(ERROR_ACCESS_DENIED);
                           return INVALID_HANDLE_VALUE;
                         }
                         return real(path, access, rest...);
                       });
  const Scripted finds("FindFirstFileW", &::FindFirstFileW,
                       [&](auto real, LPCWSTR pattern, LPWIN32_FIND_DATAW found) {
                         if (pattern == place + L"\\*") {
                           ::SetLastError(ERROR_ACCESS_DENIED);
                           return INVALID_HANDLE_VALUE;
                         }
                         return real(pattern, found);
                       });
  EXPECT_THAT(Host().files.List("C:\\link\\*", {}), ElementsAre("a"));
  EXPECT_THAT(Host().files.ListFolders("C:\\link", {}), ElementsAre("inner"));
  EXPECT_THAT(FileNames(*Host().files.OpenFolder("C:\\link")), ElementsAre("a"));
  EXPECT_EQ(RaisedBy([&] { Host().files.CopyTree("C:\\link", "C:\\copy", {}); }), 0);
  EXPECT_EQ(Content("copy/a"), "x");
}

class WindowsLinksTest : public WindowsMediaTest {
 protected:
  WindowsLinksTest() {
    std::filesystem::create_directories(Native("from/link"));
    std::filesystem::create_directories(Native("to/link"));
  }

 private:
  std::vector<Script> medium_ = AsMedium(DRIVE_FIXED, FILE_SUPPORTS_REPARSE_POINTS, L"NTFS");
  std::vector<Script> links_ = AsReparsePoint(NativeName("link"), IO_REPARSE_TAG_MOUNT_POINT);
  Script makes_links_ = Answering(
      "DeviceIoControl", &::DeviceIoControl,
      [](auto, HANDLE, DWORD, LPVOID, DWORD, LPVOID, DWORD, LPDWORD length, LPOVERLAPPED) {
        *length = 0;
        return TRUE;
      });
};

TEST_F(WindowsLinksTest, AFolderLinkIsThereUntilItsCopyIs) {
  const FileNumber old = *NumberOf(OpenToAsk(NativeName("to\\link"), Links::kKeep).Get());
  {
    const Scripted moves(
        "MoveFileExW", &::MoveFileExW, [&](auto real, LPCWSTR from, LPCWSTR to, DWORD flags) {
          const bool gives_name = Narrow(to).ends_with("\\to\\link") &&
                                  NumberOf(OpenToAsk(from, Links::kKeep).Get()) != old;
          return gives_name ? Failing(ERROR_DISK_FULL) : real(from, to, flags);
        });
    EXPECT_EQ(RaisedBy([&] { Host().files.CopyTree("C:\\from", "C:\\to", {}); }), 61);
  }
  EXPECT_EQ(NumberOf(OpenToAsk(NativeName("to\\link"), Links::kKeep).Get()), old);
  EXPECT_THAT(Host().files.ListFolders("C:\\to", {.hidden = true}), IsEmpty());
  EXPECT_EQ(RaisedBy([&] { Host().files.CopyTree("C:\\from", "C:\\to", {}); }), 0);
  EXPECT_NE(NumberOf(OpenToAsk(NativeName("to\\link"), Links::kKeep).Get()), old);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(Native("to")), {}), 1);
}

TEST_F(WindowsLinksTest, ACopyOfALinkHasItsTime) {
  const Handle link(::CreateFileW(Native("from/link").c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr,
                                  OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  const FILETIME time = FileTimeOf(128'000'000'000'000'000);
  ASSERT_NE(::SetFileTime(link.Get(), nullptr, nullptr, &time), 0);
  EXPECT_EQ(RaisedBy([&] { Host().files.CopyTree("C:\\from", "C:\\to", {}); }), 0);
  EXPECT_EQ(StateOf(NativeName("to\\link"), Links::kKeep)->modified, 128'000'000'000'000'000U);
}

// Of a link itself nothing reads them.
TEST_F(WindowsMediaTest, AttributesOfALinkAreSetWhereItLeads) {
  Write("link", "");
  Write("real", "x");
  std::wstring set;
  surroundings.set_attributes = [&](const std::wstring& native, DWORD) {
    set = native;
    return true;
  };
  const auto link = AsReparsePoint(NativeName("link"), IO_REPARSE_TAG_SYMLINK, NativeName("real"));
  Host().files.SetAttributes("C:\\link", 0);
  EXPECT_EQ(NativeNameOf(set), L"real");
}

TEST_F(WindowsMediaTest, WhyALinkCannotBeFollowedIsReportedByItsNumber) {
  Write("link", "");
  const auto link = AsReparsePoint(NativeName("link"), IO_REPARSE_TAG_SYMLINK, NativeName("gone"));
  EXPECT_EQ(RaisedBy([&] { Host().files.CopyWhole("C:\\link", "C:\\b"); }), 53);
  Write("gone", "");
  const Scripted asks(
      "GetFileInformationByHandle", &::GetFileInformationByHandle,
      [&](auto, HANDLE, LPBY_HANDLE_FILE_INFORMATION) { return Failing(ERROR_SHARING_VIOLATION); });
  EXPECT_EQ(RaisedBy([&] { Host().files.CopyWhole("C:\\link", "C:\\b"); }), 70);
}

TEST_F(WindowsMediaTest, AReplacedFileKeepsItsOwnAccessListAndIsEncryptedAgain) {
  const auto medium = AsMedium(DRIVE_FIXED, FILE_PERSISTENT_ACLS, L"NTFS");
  Write("a", "new");
  Write("b", "old");
  std::string given;
  std::wstring encrypted;
  std::wstring rules = L"D:P(A;;FA;;;SY)";
  const Scripted reads(
      "GetFileSecurityW", &::GetFileSecurityW,
      [&](auto, LPCWSTR, SECURITY_INFORMATION, PSECURITY_DESCRIPTOR descriptor, DWORD, LPDWORD) {
        PSECURITY_DESCRIPTOR made = nullptr;
        ULONG size = 0;
        ::ConvertStringSecurityDescriptorToSecurityDescriptorW(rules.c_str(), SDDL_REVISION_1,
                                                               &made, &size);
        std::copy_n(static_cast<char*>(made), size, static_cast<char*>(descriptor));
        ::LocalFree(made);
        return TRUE;
      });
  const Scripted sets("SetFileSecurityW", &::SetFileSecurityW,
                      [&](auto, LPCWSTR path, SECURITY_INFORMATION what, PSECURITY_DESCRIPTOR) {
                        if ((what & PROTECTED_DACL_SECURITY_INFORMATION) != 0) {
                          given = Narrow(NativeNameOf(path));
                        }
                        return TRUE;
                      });
  const Scripted attributes(
      "GetFileAttributesExW", &::GetFileAttributesExW,
      [&](auto real, LPCWSTR path, GET_FILEEX_INFO_LEVELS level, LPVOID data) {
        const BOOL done = real(path, level, data);
        if (NativeNameOf(path) == L"b") {
          static_cast<WIN32_FILE_ATTRIBUTE_DATA*>(data)->dwFileAttributes |=
              FILE_ATTRIBUTE_ENCRYPTED;
        }
        return done;
      });
  const Scripted encrypts("EncryptFileW", &::EncryptFileW, [&](auto, LPCWSTR path) {
    encrypted = path;
    return TRUE;
  });
  Host().files.CopyWhole("C:\\a", "C:\\b");
  EXPECT_THAT(given, StartsWith(".tarnvale-"));
  EXPECT_THAT(Narrow(NativeNameOf(encrypted)), StartsWith(".tarnvale-"));
  // What a file has of its folder it has by itself.
  given.clear();
  rules = L"D:AI(A;ID;FA;;;SY)";
  Host().files.CopyWhole("C:\\a", "C:\\b");
  EXPECT_EQ(given, "");
}

}  // namespace
}  // namespace tarnvale::testing
