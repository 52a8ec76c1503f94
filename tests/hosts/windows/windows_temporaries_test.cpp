// What copies in work leave behind, and what deletes it.
#include <gmock/gmock.h>

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/hosts/windows/scripted_media.h"
#include "tests/hosts/windows/windows_stage.h"
#include "tests/support/raised.h"

namespace tarnvale::testing {
namespace {

using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

class WindowsTemporariesTest : public WindowsHostTest {
 protected:
  std::filesystem::path Slots() const {
    return std::filesystem::path(surroundings.state_folder) / "copies";
  }
  std::vector<std::string> NamesIn(const std::filesystem::path& folder) const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      names.push_back(entry.path().filename().string());
    }
    return names;
  }
  /// Power fails in the middle of giving a copy its name: on FAT what had it has gone by
  /// then, but the copy hasn't got it yet.
  void CopyWithPowerCut(const std::string& source, const std::string& target) {
    std::string record;
    std::string temporary;
    std::string whole;
    {
      const Scripted moves("MoveFileExW", &::MoveFileExW,
                           [&](auto, LPCWSTR from, LPCWSTR to, DWORD) {
                             temporary = Narrow(NativeNameOf(from));
                             whole = Content(temporary);
                             ::DeleteFileW(to);
                             return Failing(ERROR_DISK_FULL);
                           });
      const Scripted flushes("FlushFileBuffers", &::FlushFileBuffers, [&](auto real, HANDLE file) {
        std::array<char, 4096> bytes{};
        DWORD got = 0;
        ::SetFilePointer(file, 0, nullptr, FILE_BEGIN);
        // A copy's own can't be read.
        if (::ReadFile(file, bytes.data(), bytes.size(), &got, nullptr) != 0) {
          record.assign(bytes.data(), got);
        }
        return real(file);
      });
      EXPECT_EQ(RaisedBy([&] { Host().files.CopyWhole(source, target); }), 61);
    }
    const std::string slot = NamesIn(Slots()).at(0);
    Restart();
    Write(temporary, whole);
    WriteNative(Slots() / slot, record);
  }
};

TEST_F(WindowsTemporariesTest, AWholeCopyTakesThePlaceThatAPowerCutLeftEmpty) {
  const auto medium = AsMedium(DRIVE_REMOVABLE, 0, L"FAT32");
  Write("a", "new");
  Write("b", "old");
  CopyWithPowerCut("C:\\a", "C:\\b");
  ASSERT_THAT(NamesIn(Native("")).size(), 2U) << "the source and the temporary";
  Host();
  EXPECT_THAT(NamesIn(Native("")), UnorderedElementsAre("a", "b"));
  EXPECT_EQ(Content("b"), "new");
  EXPECT_THAT(NamesIn(Slots()), IsEmpty());
}

// The stick has another drive's letter when it is next read.
TEST_F(WindowsTemporariesTest, ItTakesItWhereverItsFolderIsByThen) {
  const auto medium = AsMedium(DRIVE_REMOVABLE, 0, L"FAT32");
  Write("a", "new");
  Write("b", "old");
  CopyWithPowerCut("C:\\a", "C:\\b");
  std::filesystem::rename(Native(""), Native("").parent_path().parent_path() / "elsewhere");
  surroundings.root = surroundings.root.substr(0, surroundings.root.rfind(L'\\')) + L"\\elsewhere";
  EXPECT_EQ(Host().files.OpenFolder("C:\\")->Contents().files.size(), 1U);
  EXPECT_TRUE(Host().files.FileExists("C:\\b"));
}

TEST_F(WindowsTemporariesTest, ACopyThatIsNotWholeIsDeleted) {
  Write("b", "old");
  {
    Temporaries temporaries(surroundings.state_folder);
    TemporarySlot slot(temporaries);
    Write(Narrow(NativeNameOf(slot.Begin(surroundings.root))), "half");
    std::filesystem::remove(Native("b"));
  }
  Host().files.OpenFolder("C:\\")->Contents();
  EXPECT_THAT(NamesIn(Native("")), IsEmpty());
}

// A scanner has what is left of the copy before open.
TEST_F(WindowsTemporariesTest, ATemporaryThatIsHeldDoesNotStopTheNextCopy) {
  Write("a", "text");
  Handle scanner;
  {
    const Scripted flushes("FlushFileBuffers", &::FlushFileBuffers, [&](auto, HANDLE) {
      for (const std::string& name : NamesIn(Native(""))) {
        if (name == "a") continue;
        scanner = Handle(::CreateFileW(Native(name).c_str(), GENERIC_READ,
                                       FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                                       FILE_ATTRIBUTE_NORMAL, nullptr));
      }
      return Failing(ERROR_CRC);
    });
    EXPECT_EQ(RaisedBy([&] { Host().files.CopyWhole("C:\\a", "C:\\b"); }), 57);
  }
  ASSERT_TRUE(scanner);
  EXPECT_EQ(RaisedBy([&] { Host().files.CopyWhole("C:\\a", "C:\\b"); }), 0);
  EXPECT_EQ(Content("b"), "text");
  scanner.Close();
  Restart();
  Host();
  EXPECT_THAT(NamesIn(Native("")), UnorderedElementsAre("a", "b"));
}

TEST_F(WindowsTemporariesTest, TwoDownloadsIntoOneFolderDoNotMeet) {
  const auto one = Host().transfer_files.OpenTarget("C:\\one");
  const auto two = Host().transfer_files.OpenTarget("C:\\two");
  one->Write(std::string("1"));
  two->Write(std::string("2"));
  two->Commit();
  one->Commit();
  EXPECT_EQ(Content("one") + Content("two"), "12");
}

TEST_F(WindowsTemporariesTest, WithoutAStateFolderCopiesAreMadeAllTheSame) {
  surroundings.state_folder.clear();
  Write("a", "text");
  Host().files.CopyWhole("C:\\a", "C:\\b");
  EXPECT_EQ(Content("b"), "text");
  EXPECT_FALSE(std::filesystem::exists("copies"));
}

// Its server is gone for good, and each start would wait for it.
TEST_F(WindowsTemporariesTest, ASlotIsGivenUpAfterAMonth) {
  Temporaries temporaries(surroundings.state_folder);
  const std::string mark = [&] {
    TemporarySlot slot(temporaries);
    return Narrow(NativeNameOf(slot.Begin(L"Q:\\away"))).substr(10, 16);
  }();
  const auto left = [&](int days) {
    const std::string slot = "00000000000000" + std::to_string(days);
    WriteNative(Slots() / slot, "Q:\\away\\.tarnvale-" + mark + "-" + slot + ".part");
    const Handle file(::CreateFileW((Slots() / slot).c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    FILETIME now{};
    ::GetSystemTimeAsFileTime(&now);
    const std::uint64_t time = (std::uint64_t{now.dwHighDateTime} << 32U | now.dwLowDateTime) -
                               days * 24 * 3600 * std::uint64_t{10'000'000};
    const FILETIME written = FileTimeOf(time);
    ::SetFileTime(file.Get(), nullptr, nullptr, &written);
  };
  const Scripted asks("GetFileAttributesExW", &::GetFileAttributesExW,
                      [&](auto real, LPCWSTR path, GET_FILEEX_INFO_LEVELS level, LPVOID data) {
                        return path[0] == L'Q' ? Failing(ERROR_BAD_NETPATH)
                                               : real(path, level, data);
                      });
  const Scripted deletes("DeleteFileW", &::DeleteFileW, [&](auto real, LPCWSTR path) {
    return path[0] == L'Q' ? Failing(ERROR_BAD_NETPATH) : real(path);
  });
  left(29);
  left(31);
  Host();
  EXPECT_THAT(NamesIn(Slots()), UnorderedElementsAre("0000000000000029"));
}

}  // namespace
}  // namespace tarnvale::testing
