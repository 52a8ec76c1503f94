// Copies and replacements where the system or another program gets in the way.
#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "tests/hosts/windows/scripted_system.h"
#include "tests/hosts/windows/windows_stage.h"
#include "tests/support/raised.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;

using WindowsCopiesTest = WindowsHostTest;

TEST_F(WindowsCopiesTest, ATargetThatAScannerHasOpenForAMomentIsReplaced) {
  Write("a", "new");
  Write("b", "old");
  for (const DWORD error : {ERROR_SHARING_VIOLATION, ERROR_ACCESS_DENIED}) {
    Write("b", "old");
    int refusals = 3;
    std::vector<DWORD> pauses;
    const Scripted moves("MoveFileExW", &::MoveFileExW,
                         [&](auto real, LPCWSTR from, LPCWSTR to, DWORD flags) {
                           return refusals-- > 0 ? Failing(error) : real(from, to, flags);
                         });
    const Scripted sleeps("Sleep", &::Sleep,
                          [&](auto, DWORD pause_ms) { pauses.push_back(pause_ms); });
    Host().files.CopyWhole("C:\\a", "C:\\b");
    EXPECT_EQ(Content("b"), "new");
    EXPECT_THAT(pauses, ElementsAre(10, 20, 40));
  }
}

TEST_F(WindowsCopiesTest, ATargetThatStaysOpenIsLeftAsItIs) {
  Write("a", "new");
  Write("b", "old");
  DWORD waited_ms = 0;
  const Scripted moves("MoveFileExW", &::MoveFileExW, [&](auto, LPCWSTR, LPCWSTR, DWORD) {
    return Failing(ERROR_SHARING_VIOLATION);
  });
  const Scripted sleeps("Sleep", &::Sleep, [&](auto, DWORD pause_ms) { waited_ms += pause_ms; });
  EXPECT_EQ(RaisedBy([&] { Host().files.CopyWhole("C:\\a", "C:\\b"); }), 70);
  EXPECT_EQ(waited_ms, 630U);
  EXPECT_EQ(Content("b"), "old");
  EXPECT_THAT(Host().files.List("C:\\*", {.hidden = true}), ElementsAre("a", "b"));
}

TEST_F(WindowsCopiesTest, ARefusalThatDoesNotPassIsNotWaitedFor) {
  Write("a", "new");
  const Scripted moves("MoveFileExW", &::MoveFileExW,
                       [&](auto, LPCWSTR, LPCWSTR, DWORD) { return Failing(ERROR_DISK_FULL); });
  const Scripted sleeps("Sleep", &::Sleep, [&](auto, DWORD) { ADD_FAILURE() << "waits"; });
  EXPECT_EQ(RaisedBy([&] { Host().files.CopyWhole("C:\\a", "C:\\b"); }), 61);
}

TEST_F(WindowsCopiesTest, LookingAtASettingsFileKeepsNobodyFromRenamingIt) {
  Write("t.ini", "[A]\r\nx=1\r\n");
  std::vector<BOOL> renamed;
  const Scripted asks(
      "GetFileInformationByHandle", &::GetFileInformationByHandle,
      [&](auto real, HANDLE file, LPBY_HANDLE_FILE_INFORMATION info) {
        if (renamed.empty()) {
          renamed.push_back(::MoveFileW(Native("t.ini").c_str(), Native("t.old").c_str()));
        }
        return real(file, info);
      });
  Host().profiles.Read("A", "x", "", 255, "C:\\t.ini");
  EXPECT_THAT(renamed, ElementsAre(TRUE));
}

// The other instance's medium takes a second and a half to rename the file.
TEST_F(WindowsCopiesTest, ASaveWaitsForThatOfAnotherInstanceOnASlowMedium) {
  Host().profiles.Write("A", "x", "1", "C:\\t.ini");
  bool other_is_done = false;
  const Scripted waits("WaitForSingleObject", &::WaitForSingleObject,
                       [&](auto, HANDLE, DWORD patience_ms) -> DWORD {
                         if (patience_ms < 1500) return WAIT_TIMEOUT;
                         if (!other_is_done) Write("t.ini", "[A]\r\ny=2\r\n");
                         other_is_done = true;
                         return WAIT_OBJECT_0;
                       });
  EXPECT_TRUE(Host().profiles.Flush("C:\\t.ini"));
  if (!other_is_done) Write("t.ini", "[A]\r\ny=2\r\n");
  EXPECT_EQ(Content("t.ini"), "[A]\r\ny=2\r\nx=1\r\n");
}

}  // namespace
}  // namespace tarnvale::testing
