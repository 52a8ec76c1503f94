// Settings files: in the system's code page, and as the system's own calls have them.
#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "tests/hosts/windows/windows_stage.h"

namespace tarnvale::testing {
namespace {

class WindowsProfileTest : public WindowsHostTest {
 protected:
  std::string Read(const std::string& section, const std::string& key) {
    return Host().profiles.Read(section, key, "(none)", 255, "C:\\t.ini");
  }
  bool Save(const std::string& section, const std::string& key, const std::string& value) {
    return Host().profiles.Write(section, key, value, "C:\\t.ini") &&
           Host().profiles.Flush("C:\\t.ini");
  }
  // As the system's own call reads it.
  std::string NativeRead(const std::string& section, const std::string& key) {
    std::array<char, 255> value{};
    ::GetPrivateProfileStringA(section.c_str(), key.c_str(), "(none)", value.data(), value.size(),
                               Native("t.ini").string().c_str());
    return value.data();
  }
  void NativeWrite(const std::string& section, const std::string& key, const std::string& value) {
    EXPECT_NE(::WritePrivateProfileStringA(section.c_str(), key.c_str(), value.c_str(),
                                           Native("t.ini").string().c_str()),
              0);
    ::WritePrivateProfileStringA(nullptr, nullptr, nullptr, Native("t.ini").string().c_str());
  }
};

TEST_F(WindowsProfileTest, TheFileIsInTheSystemsCodePage) {
  Write("t.ini",
        "[A]\r\nx=Gr\xFC\xDF"
        "e\r\n");
  EXPECT_EQ(Read("A", "x"),
            "Gr\xC3\xBC\xC3\x9F"
            "e");
  EXPECT_TRUE(Save("A", "y", "\xE2\x82\xAC"));
  EXPECT_EQ(Content("t.ini"),
            "[A]\r\nx=Gr\xFC\xDF"
            "e\r\ny=\x80\r\n");
}

TEST_F(WindowsProfileTest, WhatTheCodePageLacksTurnsTheFileIntoUtf8) {
  Write("t.ini",
        "[A]\r\nx=Gr\xFC\xDF"
        "e\r\n");
  EXPECT_TRUE(Save("A", "y", "\xD0\x96"));
  EXPECT_EQ(Content("t.ini"),
            "\xEF\xBB\xBF[A]\r\nx=Gr\xC3\xBC\xC3\x9F"
            "e\r\ny=\xD0\x96\r\n");
  Restart();
  EXPECT_EQ(Read("A", "x"),
            "Gr\xC3\xBC\xC3\x9F"
            "e");
  EXPECT_EQ(Read("A", "y"), "\xD0\x96");
}

TEST_F(WindowsProfileTest, ReadsWhatTheSystemsOwnCallsRead) {
  Write("t.ini",
        "; comment\r\n[When]\r\nAlwaysAt=12:00\r\n  Each = 1 \r\nQuoted=\"a b\"\r\nSingle='c'\r\n"
        "Empty=\r\nEqual=a=b\r\n;off=1\r\n[Log]\r\nSave=True\r\n\r\n[when]\r\nLater=1\r\n");
  for (const auto& [section, key] :
       std::vector<std::pair<std::string, std::string>>{{"When", "AlwaysAt"},
                                                        {"WHEN", "alwaysat"},
                                                        {"When", "Each"},
                                                        {"When", "Quoted"},
                                                        {"When", "Single"},
                                                        {"When", "Empty"},
                                                        {"When", "Equal"},
                                                        {"When", "missing"},
                                                        {"Log", "Save"},
                                                        {"None", "x"}}) {
    EXPECT_EQ(Read(section, key), NativeRead(section, key)) << section << " " << key;
  }
}

TEST_F(WindowsProfileTest, TheSystemsOwnCallsReadWhatIsWritten) {
  EXPECT_TRUE(Save("When", "AlwaysAt", "12:00"));
  EXPECT_TRUE(Save("Log", "Save", "True"));
  EXPECT_TRUE(Save("When", "AlwaysAt", "13:00"));
  EXPECT_EQ(NativeRead("When", "AlwaysAt"), "13:00");
  EXPECT_EQ(NativeRead("Log", "Save"), "True");
}

TEST_F(WindowsProfileTest, ReadsWhatTheSystemsOwnCallsWrite) {
  NativeWrite("When", "AlwaysAt", "12:00");
  EXPECT_EQ(Read("When", "AlwaysAt"), "12:00");
  NativeWrite("When", "AlwaysAt", "13:00");
  NativeWrite("Log", "Save", "True");
  EXPECT_EQ(Read("When", "AlwaysAt"), "13:00");
  EXPECT_EQ(Read("Log", "Save"), "True");
}

TEST_F(WindowsProfileTest, ASettingsFileOfASecondInstanceKeepsBothWrites) {
  WindowsHost second(surroundings);
  EXPECT_TRUE(Host().profiles.Write("A", "x", "1", "C:\\t.ini"));
  EXPECT_TRUE(second.profiles.Write("A", "y", "2", "C:\\t.ini"));
  EXPECT_TRUE(second.profiles.Flush("C:\\t.ini"));
  EXPECT_TRUE(Host().profiles.Flush("C:\\t.ini"));
  EXPECT_EQ(Content("t.ini"), "[A]\r\ny=2\r\nx=1\r\n");
}

}  // namespace
}  // namespace tarnvale::testing
