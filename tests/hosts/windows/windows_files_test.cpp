// What is this system's own in its files.
#include <gmock/gmock.h>

#include <utility>
#include <vector>

#include "platform/temporary_name.h"
#include "tests/hosts/windows/windows_stage.h"
#include "tests/support/raised.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using WindowsFilesTest = WindowsHostTest;

TEST_F(WindowsFilesTest, AttributesAreSetAsTheSystemsOwn) {
  std::vector<DWORD> calls;
  surroundings.set_attributes = [&](const std::wstring& native, DWORD attributes) {
    calls.push_back(attributes);
    return ::SetFileAttributesW(native.c_str(), attributes) != 0;
  };
  Write("a", "x");
  Host().files.SetAttributes("C:\\a", 0);
  Host().files.SetAttributes("C:\\a", attribute::kReadOnly | attribute::kHidden);
  Host().files.SetAttributes("C:\\a", attribute::kArchive);
  EXPECT_THAT(calls,
              ElementsAre(FILE_ATTRIBUTE_NORMAL, FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN,
                          FILE_ATTRIBUTE_ARCHIVE));
}

TEST_F(WindowsFilesTest, AFileThatChangedSinceItsCopyIsNotCleared) {
  DWORD last = 0;
  surroundings.set_attributes = [&](const std::wstring&, DWORD attributes) {
    last = attributes;
    return true;
  };
  Write("a", "one");
  Host().files.CopyWhole("C:\\a", "C:\\copy");
  Write("a", "and more");
  Host().files.SetAttributes("C:\\a", 0);
  EXPECT_EQ(last, DWORD{FILE_ATTRIBUTE_ARCHIVE});
  Host().files.CopyWhole("C:\\a", "C:\\copy");
  Host().files.SetAttributes("C:\\a", 0);
  EXPECT_EQ(last, DWORD{FILE_ATTRIBUTE_NORMAL});
}

TEST_F(WindowsFilesTest, AFileThatAnotherProgramHasLockedRaises70) {
  Write("a", "x");
  Write("b", "old");
  const Handle locked(::CreateFileW(Native("a").c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                                    FILE_ATTRIBUTE_NORMAL, nullptr));
  EXPECT_EQ(RaisedBy([&] { Host().files.CopyWhole("C:\\a", "C:\\b"); }), 70);
  EXPECT_EQ(RaisedBy([&] { Host().open_files.OpenInput(1, "C:\\a"); }), 70);
  EXPECT_EQ(RaisedBy([&] { Host().files.Delete("C:\\a"); }), 70);
  EXPECT_EQ(Host().files.Length("C:\\a"), 1);
  EXPECT_EQ(Content("b"), "old");
}

TEST_F(WindowsFilesTest, DevicesAreNoFiles) {
  Write("a", "x");
  EXPECT_EQ(RaisedBy([&] { Host().files.Length("C:\\NUL"); }), 53);
  EXPECT_EQ(RaisedBy([&] { Host().files.CopyWhole("C:\\a", "C:\\con.txt"); }), 75);
  EXPECT_EQ(RaisedBy([&] { Host().open_files.OpenOutput(1, "C:\\LPT1"); }), 75);
  EXPECT_EQ(RaisedBy([&] { Host().files.CreateFolder("C:\\aux"); }), 75);
  EXPECT_EQ(RaisedBy([&] { Host().open_files.OpenOutput(1, "C:\\a:stream"); }), 75);
  EXPECT_EQ(RaisedBy([&] { Host().files.Length("C:\\nul\\a"); }), 76);
}

TEST_F(WindowsFilesTest, APathMayBeLongerThan260Characters) {
  const std::string name(200, 'n');
  Host().files.CreateFoldersOf("C:\\" + name + "\\" + name + "\\");
  const Path file = "C:\\" + name + "\\" + name + "\\a.txt";
  Host().open_files.OpenOutput(1, file);
  Host().open_files.Write(1, "hello");
  Host().open_files.Close(1);
  Host().files.CopyTree("C:\\" + name, "C:\\copy", {});
  EXPECT_EQ(Host().files.Length("C:\\copy\\" + name + "\\a.txt"), 5);
  EXPECT_EQ(RaisedBy([&] { Host().files.CreateFolder("C:\\" + std::string(256, 'n')); }), 75);
}

TEST_F(WindowsFilesTest, ACopyKeepsTheCaseOfTheNameThatIsThere) {
  Write("A.TXT", "old");
  Write("b", "new");
  Host().files.CopyWhole("C:\\b", "C:\\a.txt");
  EXPECT_THAT(Host().files.List("C:\\*", {}), ElementsAre("A.TXT", "b"));
  EXPECT_EQ(Content("A.TXT"), "new");
}

TEST_F(WindowsFilesTest, AHeldFoldersEntryInAnotherCaseIsAnotherName) {
  Write("A.TXT", "old");
  Write("b", "new");
  const auto root = Host().files.OpenFolder("C:\\");
  EXPECT_EQ(RaisedBy([&] { Host().files.CopyWhole("C:\\b", {*root, "a.txt"}); }), 58);
  EXPECT_EQ(RaisedBy([&] { root->MakeFile("a.txt"); }), 58);
  EXPECT_EQ(RaisedBy([&] { root->MakeFolder("a.TXT"); }), 58);
  EXPECT_EQ(root->File("a.txt"), std::nullopt);
  EXPECT_EQ(Content("A.TXT"), "old");
}

TEST_F(WindowsFilesTest, ACopyHidesWhatItsSourceHides) {
  Write("a", "x");
  ::SetFileAttributesW(Native("a").c_str(), FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_READONLY);
  Host().files.CopyWhole("C:\\a", "C:\\b");
  EXPECT_EQ(Host().files.Attributes("C:\\b"),
            attribute::kHidden | attribute::kReadOnly | attribute::kArchive);
}

TEST_F(WindowsFilesTest, AHiddenTargetIsReplaced) {
  Write("a", "new");
  Write("b", "old");
  ::SetFileAttributesW(Native("b").c_str(), FILE_ATTRIBUTE_HIDDEN);
  Host().files.CopyWhole("C:\\a", "C:\\b");
  EXPECT_EQ(Content("b"), "new");
  ::SetFileAttributesW(Native("b").c_str(), FILE_ATTRIBUTE_HIDDEN);
  Host().open_files.OpenOutput(1, "C:\\b");
  Host().open_files.Write(1, "text");
  Host().open_files.Close(1);
  EXPECT_EQ(Content("b"), "text");
}

TEST_F(WindowsFilesTest, AnOrderlyEndLeavesNoSlot) {
  Write("a", "x");
  Host().files.CopyWhole("C:\\a", "C:\\b");
  const std::filesystem::path slots = std::filesystem::path(surroundings.state_folder) / "copies";
  EXPECT_FALSE(std::filesystem::is_empty(slots));
  Restart();
  EXPECT_TRUE(std::filesystem::is_empty(slots));
}

// The process that is killed is this program once more, in this very test.
TEST_F(WindowsFilesTest, WhatAKilledProcessLeftIsDeletedAtTheNextStart) {
  constexpr char kDrive[] = "TARNVALE_TEST_DRIVE";
  constexpr char kState[] = "TARNVALE_TEST_STATE";
  if (const auto drive = Host().processes.Variable(kDrive)) {
    Temporaries temporaries(Wide(*Host().processes.Variable(kState)));
    TemporarySlot slot(temporaries);
    WriteNative(slot.Begin(Wide(*drive)), "half a copy");
    ::TerminateProcess(::GetCurrentProcess(), 9);
  }
  ::SetEnvironmentVariableW(Wide(kDrive).c_str(), surroundings.root.c_str());
  ::SetEnvironmentVariableW(Wide(kState).c_str(), surroundings.state_folder.c_str());
  std::wstring line = L"test --gtest_filter=*WhatAKilledProcess*";
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION child{};
  ASSERT_NE(::CreateProcessW(OwnProgramFile().c_str(), line.data(), nullptr, nullptr, FALSE, 0,
                             nullptr, nullptr, &startup, &child),
            0);
  const Handle process(child.hProcess);
  const Handle thread(child.hThread);
  ::WaitForSingleObject(process.Get(), INFINITE);
  ::SetEnvironmentVariableW(Wide(kDrive).c_str(), nullptr);
  DWORD code = 0;
  ::GetExitCodeProcess(process.Get(), &code);
  ASSERT_EQ(code, 9U);
  EXPECT_FALSE(std::filesystem::is_empty(Native("")));
  Restart();
  Host();
  EXPECT_TRUE(std::filesystem::is_empty(Native("")));
}

TEST_F(WindowsFilesTest, ALeftoverIsListedByNobody) {
  Write("a", "x");
  const std::string stranger = TemporaryName("0123456789abcdef", "0123456789abcdef");
  Write(stranger, "of another machine");
  EXPECT_EQ(Host().files.OpenFolder("C:\\")->Contents().files.size(), 1U);
  EXPECT_THAT(Host().files.List("C:\\*", {.hidden = true}), ElementsAre("a"));
  EXPECT_EQ(Content(stranger), "of another machine") << "another machine's own";
}

// A medium that was last written to, and taken out too early, on another system.
TEST_F(WindowsFilesTest, ANoteOfUnflushedCopiesIsListedByNobodyAndStays) {
  const std::string note(kUnflushedName);
  Write(note, "");
  EXPECT_EQ(Host().files.OpenFolder("C:\\")->Contents().files.size(), 0U);
  EXPECT_THAT(Host().files.List("C:\\*", {.hidden = true}), IsEmpty());
  EXPECT_EQ(Host().files.BeginCopies("C:\\"), std::nullopt);
  Host().files.EndCopies("C:\\");
  EXPECT_TRUE(std::filesystem::exists(Native(note)));
}

TEST_F(WindowsFilesTest, AShortReadIsNoFailure) {
  Write("a", "12345");
  Host().open_files.OpenBinary(1, "C:\\a");
  Host().open_files.Seek(1, 1LL << 33);
  EXPECT_EQ(Host().open_files.Read(1, 4), "");
  Host().open_files.Seek(1, 3);
  EXPECT_EQ(Host().open_files.Read(1, 4), "45");
}

// A scanner that is looking at it: until it has done, the system would keep the name.
TEST_F(WindowsFilesTest, TheNameOfADeletedFileIsFreeAtOnce) {
  Write("a", "old");
  const Handle scanner(::CreateFileW(Native("a").c_str(), GENERIC_READ,
                                     FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                     nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  Host().files.Delete("C:\\a");
  EXPECT_FALSE(Host().files.FileExists("C:\\a"));
  EXPECT_EQ(RaisedBy([&] { Host().open_files.OpenOwn(1, "C:\\a"); }), 0);
}

TEST_F(WindowsFilesTest, ACopyOfAFolderHidesWhatItsSourceHides) {
  std::filesystem::create_directories(Native("from/hidden"));
  ::SetFileAttributesW(Native("from/hidden").c_str(),
                       FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
  Host().files.CopyTree("C:\\from", "C:\\to", {});
  EXPECT_EQ(Host().files.Attributes("C:\\to\\hidden"),
            attribute::kDirectory | attribute::kHidden | attribute::kSystem);
}

}  // namespace
}  // namespace tarnvale::testing
