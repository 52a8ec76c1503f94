#include "core/registry_editor.h"

#include <gtest/gtest.h>

namespace tarnvale::testing {
namespace {

TEST(RegistryEditorTest, TheWholeRegistryNeedsNoBranch) {
  EXPECT_EQ(ExportLine("C:\\all.reg", ""), R"(C:\Windows\Regedit.exe /e "C:\all.reg")");
}

TEST(RegistryEditorTest, WithoutABranchASubBranchIsIgnored) {
  EXPECT_EQ(ExportLine("C:\\all.reg", "", "Software"), R"(C:\Windows\Regedit.exe /e "C:\all.reg")");
}

TEST(RegistryEditorTest, ABranchAloneHasNoClosingQuote) {
  EXPECT_EQ(ExportLine("C:\\My Files\\u.reg", "HKEY_USERS"),
            R"(C:\Windows\Regedit.exe /e "C:\My Files\u.reg" "HKEY_USERS)");
}

TEST(RegistryEditorTest, ASubBranchHasOne) {
  EXPECT_EQ(ExportLine("C:\\u.reg", "HKEY_CURRENT_USER", "Software"),
            R"(C:\Windows\Regedit.exe /e "C:\u.reg" "HKEY_CURRENT_USER\Software")");
}

TEST(RegistryEditorTest, NothingIsQuotedOrEscaped) {
  EXPECT_EQ(ExportLine("C:\\a\"b.reg", " HKEY\\", "\\x \"y\""),
            "C:\\Windows\\Regedit.exe /e \"C:\\a\"b.reg\" \" HKEY\\\\\\x \"y\"\"");
}

TEST(RegistryEditorTest, AnImportHasNoClosingQuote) {
  EXPECT_EQ(ImportLine("C:\\My Files\\u.reg"), R"(C:\Windows\Regedit.exe /s "C:\My Files\u.reg)");
}

}  // namespace
}  // namespace tarnvale::testing
