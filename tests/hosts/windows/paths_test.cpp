#include "hosts/windows/paths.h"

#include <gtest/gtest.h>

#include "hosts/windows/wide.h"

namespace tarnvale {
namespace {

TEST(WindowsPathsTest, APathIsItsOwnDrivesAndMeansNamesAsTheyAreWritten) {
  const DrivePaths drives;
  EXPECT_EQ(drives.ToNative("d:\\Data\\..\\a.txt"), L"\\\\?\\D:\\a.txt");
  EXPECT_EQ(drives.ToNative("C:"), L"\\\\?\\C:\\");
  EXPECT_EQ(drives.ToNative("C:\\2024. "), L"\\\\?\\C:\\2024. ");
  EXPECT_EQ(drives.ToNative("Data"), std::nullopt);
}

TEST(WindowsPathsTest, ANetworksMachineAndShareComeFirst) {
  const DrivePaths drives;
  EXPECT_EQ(drives.ToNative("\\\\server\\share\\a"), L"\\\\?\\UNC\\server\\share\\a");
  EXPECT_EQ(drives.ToNative("\\\\server\\share"), L"\\\\?\\UNC\\server\\share\\");
  EXPECT_EQ(drives.ToNative("\\\\server"), std::nullopt);
  EXPECT_EQ(drives.ToNative("\\\\server\\share\\..\\..\\a\\..\\b"),
            L"\\\\?\\UNC\\server\\share\\b");
  EXPECT_EQ(drives.ToNative("\\\\server\\..\\a"), std::nullopt);
  EXPECT_EQ(drives.FromNative(L"\\\\?\\UNC\\server\\share\\a"), "\\\\server\\share\\a");
}

TEST(WindowsPathsTest, NativePathsComeBack) {
  const DrivePaths drives;
  EXPECT_EQ(drives.FromNative(L"\\\\?\\D:\\a"), "D:\\a");
  EXPECT_EQ(drives.FromNative(L"D:\\a\\"), "D:\\a");
  EXPECT_EQ(drives.FromNative(L"D:\\"), "D:");
}

TEST(WindowsPathsTest, AWholePathHasAnEnd) {
  EXPECT_EQ(DrivePaths().ToNative("C:\\" + std::string(40000, 'a')), std::nullopt);
}

TEST(WindowsPathsTest, DevicesStreamsAndWildcardsAreNoNames) {
  for (const wchar_t* name :
       {L"con", L"Con.txt", L"NUL", L"aux .x", L"com1", L"LPT9.tar.gz", L"COM\u00B2", L"a:b", L"a*",
        L"a?", L"a<", L"a|b", L"a\tb", L"", L".", L".."}) {
    EXPECT_FALSE(CanBeNamed(name)) << Narrow(name);
  }
  for (const wchar_t* name :
       {L"console", L"com", L"com0", L"com10", L".con", L"a.con", L"2024.", L"\u00FC"}) {
    EXPECT_TRUE(CanBeNamed(name)) << Narrow(name);
  }
  EXPECT_TRUE(CanBeNamed(std::wstring(255, L'a')));
  EXPECT_FALSE(CanBeNamed(std::wstring(256, L'a')));
}

TEST(WindowsPathsTest, FoldersAndNamesArePartsOfAPath) {
  EXPECT_EQ(NativeFolderOf(L"\\\\?\\C:\\a\\b"), L"\\\\?\\C:\\a");
  EXPECT_EQ(NativeFolderOf(L"\\\\?\\C:\\a"), L"\\\\?\\C:\\");
  EXPECT_EQ(NativeNameOf(L"\\\\?\\C:\\a"), L"a");
  EXPECT_EQ(Joined(L"\\\\?\\C:\\", L"a"), L"\\\\?\\C:\\a");
}

}  // namespace
}  // namespace tarnvale
