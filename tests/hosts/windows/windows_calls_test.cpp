// How often the system is called.
#include <gtest/gtest.h>

#include <iostream>
#include <map>
#include <string>
#include <vector>

#include "core/file_sync.h"
#include "tests/hosts/windows/scripted_media.h"
#include "tests/hosts/windows/windows_stage.h"
#include "ui/headless_machine.h"

namespace tarnvale::testing {
namespace {

using Calls = std::map<std::string, int>;

int Sum(const Calls& calls) {
  int sum = 0;
  for (const auto& [name, count] : calls) sum += count;
  return sum;
}

class WindowsCallsTest : public WindowsHostTest {
 protected:
  static constexpr int kFolders = 10;

  // `files`: in each of the folders.
  void MakeTree(int files) {
    for (int folder = 0; folder < kFolders; ++folder) {
      const std::string name = "from/" + std::to_string(folder);
      std::filesystem::create_directories(Native(name));
      for (int file = 0; file < files; ++file) Write(name + "/" + std::to_string(file), "text");
    }
  }

  Calls CallsOfSync() {
    HeadlessMachine machine(Host().Parts());
    FileSync sync(machine.Parts().files, machine.Parts().loop);
    calls_.clear();
    sync.SyncFolders("C:\\from", "C:\\to", false);
    return calls_;
  }

 private:
  // By its place each has a type of its own, as Answering requires.
  template <int kPlace, class Function>
  Script Counted(const char* name, Function* function) {
    return Answering(name, function, [this, name](auto real, auto... arguments) {
      ++calls_[name];
      return real(arguments...);
    });
  }

  Calls calls_;
  std::vector<Script> counted_{
      Counted<1>("CloseHandle", &::CloseHandle),
      Counted<2>("CopyFileExW", &::CopyFileExW),
      Counted<3>("CreateDirectoryW", &::CreateDirectoryW),
      Counted<4>("CreateFileW", &::CreateFileW),
      Counted<5>("DeleteFileW", &::DeleteFileW),
      Counted<6>("DeviceIoControl", &::DeviceIoControl),
      Counted<7>("FindClose", &::FindClose),
      Counted<8>("FindFirstFileW", &::FindFirstFileW),
      Counted<9>("FindNextFileW", &::FindNextFileW),
      Counted<10>("FlushFileBuffers", &::FlushFileBuffers),
      Counted<11>("GetDriveTypeW", &::GetDriveTypeW),
      Counted<12>("GetFileAttributesExW", &::GetFileAttributesExW),
      Counted<13>("GetFileInformationByHandle", &::GetFileInformationByHandle),
      Counted<14>("GetFileTime", &::GetFileTime),
      Counted<15>("GetVolumeInformationW", &::GetVolumeInformationW),
      Counted<16>("GetVolumePathNameW", &::GetVolumePathNameW),
      Counted<17>("MoveFileExW", &::MoveFileExW),
      Counted<18>("ReadFile", &::ReadFile),
      Counted<19>("RemoveDirectoryW", &::RemoveDirectoryW),
      Counted<20>("SetFileAttributesW", &::SetFileAttributesW),
      Counted<21>("SetFileTime", &::SetFileTime),
      Counted<22>("WriteFile", &::WriteFile)};
};

void Print(const char* what, const Calls& calls, int files) {
  std::cout << what << ": " << Sum(calls) << " calls for 10 folders and " << files << " files\n";
  for (const auto& [name, count] : calls) std::cout << "  " << count << " " << name << "\n";
}

TEST_F(WindowsCallsTest, APassWithoutChangesReadsEachFolderAndNoFile) {
  MakeTree(20);
  CallsOfSync();
  Calls few = CallsOfSync();
  Print("no change", few, 20 * kFolders);
  MakeTree(40);
  CallsOfSync();
  Calls many = CallsOfSync();
  EXPECT_FALSE(few.contains("CopyFileExW"));
  // All but the files' own rows in both listings.
  EXPECT_EQ(many["FindNextFileW"] - few["FindNextFileW"], 2 * 20 * kFolders);
  many.erase("FindNextFileW");
  few.erase("FindNextFileW");
  EXPECT_EQ(many, few);
}

TEST_F(WindowsCallsTest, AFileIsCopiedByOneCall) {
  MakeTree(20);
  std::filesystem::create_directory(Native("to"));
  Calls copies = CallsOfSync();
  Print("new copies", copies, 20 * kFolders);
  EXPECT_EQ(copies["CopyFileExW"], 20 * kFolders);
  EXPECT_EQ(copies["FlushFileBuffers"], 20 * kFolders);
  EXPECT_EQ(copies["MoveFileExW"], 20 * kFolders);
}

}  // namespace
}  // namespace tarnvale::testing
