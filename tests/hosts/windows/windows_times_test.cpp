// Times on media that keep local ones, read in another half of the year.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/hosts/windows/scripted_media.h"
#include "tests/hosts/windows/windows_stage.h"
#include "tests/support/raised.h"

namespace tarnvale::testing {
namespace {

constexpr std::uint64_t kHour = 36'000'000'000;
constexpr std::uint64_t kSecond = 10'000'000;

std::uint64_t Units(const FILETIME& time) {
  return std::uint64_t{time.dwHighDateTime} << 32U | time.dwLowDateTime;
}

FILETIME Shifted(const FILETIME& time, std::int64_t by) {
  return FileTimeOf(Units(time) + static_cast<std::uint64_t>(by));
}

BOOL Shift(const SYSTEMTIME* from, std::int64_t by, SYSTEMTIME* to) {
  FILETIME time{};
  ::SystemTimeToFileTime(from, &time);
  time = Shifted(time, by);
  return ::FileTimeToSystemTime(&time, to);
}

// It is summer, and clocks are two hours ahead of UTC. All files were written in winter,
// when they were one hour ahead. The folder `stick` is another medium.
class WindowsTimesTest : public WindowsHostTest {
 protected:
  WindowsTimesTest() {
    std::filesystem::create_directory(Native("stick"));
    scripts_ = {
        Answering("GetVolumePathNameW", &::GetVolumePathNameW,
                  [](auto, LPCWSTR path, LPWSTR root, DWORD) {
                    const bool is_stick = std::wstring(path).find(L"\\stick") != std::wstring::npos;
                    std::copy_n(is_stick ? L"S:\\" : L"C:\\", 4, root);
                    return TRUE;
                  }),
        Answering("GetVolumeInformationW", &::GetVolumeInformationW,
                  [this](auto, LPCWSTR root, LPWSTR, DWORD, LPDWORD, LPDWORD, LPDWORD,
                         LPWSTR format, DWORD) {
                    const std::wstring name = root[0] == L'S' ? stick_format : L"NTFS";
                    std::copy_n(name.c_str(), name.size() + 1, format);
                    return TRUE;
                  }),
        Answering("FileTimeToLocalFileTime", &::FileTimeToLocalFileTime,
                  [](auto, const FILETIME* from, LPFILETIME to) {
                    *to = Shifted(*from, 2 * kHour);
                    return TRUE;
                  }),
        Answering("LocalFileTimeToFileTime", &::LocalFileTimeToFileTime,
                  [](auto, const FILETIME* from, LPFILETIME to) {
                    *to = Shifted(*from, -2 * static_cast<std::int64_t>(kHour));
                    return TRUE;
                  }),
        Answering("SystemTimeToTzSpecificLocalTime", &::SystemTimeToTzSpecificLocalTime,
                  [](auto, auto, auto from, LPSYSTEMTIME to) { return Shift(from, kHour, to); }),
        Answering("TzSpecificLocalTimeToSystemTime", &::TzSpecificLocalTimeToSystemTime,
                  [](auto, auto, auto from, LPSYSTEMTIME to) {
                    return Shift(from, -static_cast<std::int64_t>(kHour), to);
                  })};
  }

  static constexpr std::uint64_t kWritten = 128'000'000'000'000'000;

  void Write(const std::string& name, const std::string& content, std::uint64_t told) {
    WindowsHostTest::Write(name, content);
    const Handle file(::CreateFileW(Native(name).c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    const FILETIME time = FileTimeOf(told);
    EXPECT_NE(::SetFileTime(file.Get(), nullptr, nullptr, &time), 0);
  }
  std::uint64_t Told(const std::string& name) {
    return StateOf(Native(name).make_preferred().wstring(), Links::kKeep).value().modified;
  }
  void Copy(const std::string& from, const std::string& to, Rights rights) {
    const auto source = Host().files.OpenFolder("C:\\" + from);
    const auto target = Host().files.OpenFolder("C:\\" + to);
    Host().files.CopyEntry({*source, "a"}, {*target, "a"}, rights);
  }

  std::wstring stick_format = L"FAT32";

 private:
  std::vector<Script> scripts_;
};

TEST_F(WindowsTimesTest, AFileOnFatHasTheTimeThatItWasWritten) {
  Write("stick/a", "x", kWritten - kHour);
  const auto stick = Host().files.OpenFolder("C:\\stick");
  const std::int64_t written_s = SecondsSince1970(kWritten);
  EXPECT_EQ(stick->Contents().files.at(0).modified_s, written_s);
  EXPECT_EQ(stick->File("a")->modified_s, written_s);
}

TEST_F(WindowsTimesTest, ACopyToFatHasItsOriginalsTime) {
  Write("a", "x", kWritten);
  Copy("", "stick", Rights::kSource);
  EXPECT_EQ(Told("stick/a"), kWritten - kHour);
  EXPECT_EQ(Host().files.OpenFolder("C:\\stick")->Contents().files.at(0).modified_s,
            SecondsSince1970(kWritten));
}

TEST_F(WindowsTimesTest, ACopyFromFatHasItsOriginalsTime) {
  Write("stick/a", "new", kWritten - kHour);
  Write("a", "old", kWritten - 10 * kSecond);
  Copy("stick", "", Rights::kNewFile);
  EXPECT_EQ(Content("a"), "new");
  EXPECT_EQ(Told("a"), kWritten);
}

TEST_F(WindowsTimesTest, OtherFormatsKeepTimesAsTheyAre) {
  for (const wchar_t* format : {L"NTFS", L"exFAT"}) {
    stick_format = format;
    Write("stick/a", "x", kWritten);
    EXPECT_EQ(Host().files.OpenFolder("C:\\stick")->Contents().files.at(0).modified_s,
              SecondsSince1970(kWritten));
    Write("a", "y", kWritten + kHour);
    Copy("", "stick", Rights::kSource);
    EXPECT_EQ(Told("stick/a"), kWritten + kHour);
  }
}

// Written in a zone further west: its clocks were behind.
TEST_F(WindowsTimesTest, ACopyFromAnotherZoneLeavesItsOriginalAlone) {
  Write("a", "same", kWritten);
  Write("stick/a", "same", kWritten + 3 * kHour + kSecond);
  int copies = 0;
  const Scripted copied("CopyFileExW", &::CopyFileExW, [&](auto real, auto... arguments) {
    ++copies;
    return real(arguments...);
  });
  Copy("stick", "", Rights::kNewFile);
  EXPECT_EQ(copies, 0);
  EXPECT_EQ(Host().files.OpenFolder("C:\\")->Contents().files.at(0).modified_s,
            Host().files.OpenFolder("C:\\stick")->Contents().files.at(0).modified_s);
  Write("a", "same", kWritten);
  Write("stick/a", "else", kWritten + 3 * kHour + kSecond);
  Copy("stick", "", Rights::kNewFile);
  EXPECT_EQ(Content("a"), "else");
}

}  // namespace
}  // namespace tarnvale::testing
