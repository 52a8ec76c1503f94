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
  Write(
      "t.ini",
      "Before=1\r\n; comment\r\n[When]\r\nAlwaysAt=12:00\r\n  Each = 1 \r\nQuoted=\"a b\"\r\n"
      "Single='c'\r\nBlanks=\"  d \"\r\nOpen=\"e\r\nMixed='f\"\r\nNone\r\nBehind=1 ; g\r\n"
      "Empty=\r\nEqual=a=b\r\nTwice=1\r\ntwice=2\r\nTab\t=\th\t\r\n;off=1\r\n[Log]\r\nSave=True\r\n"
      "\r\n[when]\r\nLater=1\r\n [Set up] x\r\nWizard=1\r\nLong=" +
          std::string(300, 'x') + "\r\nLast=\xE4");
  for (const auto& [section, keys] : std::vector<std::pair<std::string, std::vector<std::string>>>{
           {"When",
            {"AlwaysAt", "Each", "Quoted", "Single", "Blanks", "Open", "Mixed", "None", "Behind",
             "Empty", "Equal", "Twice", "Tab", "off", "Before", "Later", "missing"}},
           {"WHEN", {"alwaysat"}},
           {"Log", {"Save"}},
           {"Set up", {"Wizard", "Long"}},
           {"None", {"x"}}}) {
    for (const std::string& key : keys) {
      EXPECT_EQ(Read(section, key), NativeRead(section, key)) << section << " " << key;
    }
  }
  EXPECT_EQ(Read("Set up", "Last"), "\xC3\xA4");
  EXPECT_EQ(NativeRead("Set up", "Last"), "\xE4");
}

TEST_F(WindowsProfileTest, WritesWhatTheSystemsOwnCallsWrite) {
  const std::vector<std::array<std::string, 3>> writes{
      {"When", "Each", "02:00"}, {"WHEN", "alwaysat", "13:00"}, {"When", "Days", "127"},
      {"Log", "Save", ""},       {"New", "key", "a=b"},         {"Log", "Save", "\"x\" "}};
  for (const std::string& before :
       {std::string(),
        std::string("; c\r\n[When]\r\nAlwaysAt=12:00\r\nEach=1\r\n[Log]\r\nb=1\r\n")}) {
    Write("t.ini", before);
    for (const auto& [section, key, value] : writes) NativeWrite(section, key, value);
    const std::string native = Content("t.ini");
    Write("t.ini", before);
    for (const auto& [section, key, value] : writes) EXPECT_TRUE(Save(section, key, value));
    EXPECT_EQ(Content("t.ini"), native);
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
