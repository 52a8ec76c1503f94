// The companion that names the data folder, run as it is installed.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "hosts/windows/handle.h"
#include "tests/hosts/windows/temporary_folder.h"

namespace tarnvale::testing {
namespace {

namespace fs = std::filesystem;

class U3DataTest : public ::testing::Test {
 protected:
  U3DataTest() {
    fs::create_directory(folder / "Program");
    fs::copy_file(fs::path(ThisProgram()).parent_path() / "U3-Data.exe",
                  folder / "Program/U3-Data.exe");
  }
  ~U3DataTest() override { ::SetEnvironmentVariableW(L"U3_APP_DATA_PATH", nullptr); }

  static std::wstring ThisProgram() {
    std::wstring file(MAX_PATH, L'\0');
    file.resize(::GetModuleFileNameW(nullptr, file.data(), MAX_PATH));
    return file;
  }

  DWORD Run() {
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION child{};
    EXPECT_NE(::CreateProcessW((folder / "Program/U3-Data.exe").c_str(), nullptr, nullptr, nullptr,
                               FALSE, 0, nullptr, nullptr, &startup, &child),
              0);
    const Handle process(child.hProcess);
    const Handle thread(child.hThread);
    ::WaitForSingleObject(process.Get(), INFINITE);
    DWORD code = 0;
    ::GetExitCodeProcess(process.Get(), &code);
    return code;
  }

  std::string Pointer() const { return ReadNative(folder / "Program/Data.txt"); }
  std::string PathOf(const std::string& name) const {
    std::string path = (folder / name).make_preferred().string();
    return path;
  }

  TemporaryFolder folder;
};

TEST_F(U3DataTest, TheFirstStartMakesAndNamesDataBesideTheProgram) {
  EXPECT_EQ(Run(), 0U);
  EXPECT_TRUE(fs::is_directory(folder / "Program/Data"));
  EXPECT_EQ(Pointer(), "\"" + PathOf("Program/Data") + "\"\r\n");
}

TEST_F(U3DataTest, ANamedFolderThatExistsIsKept) {
  fs::create_directory(folder / "Mine");
  const std::string pointer = PathOf("Mine") + ", and more";
  WriteNative(folder / "Program/Data.txt", pointer);
  EXPECT_EQ(Run(), 0U);
  EXPECT_EQ(Pointer(), pointer);
}

TEST_F(U3DataTest, ADevicesLauncherNamesTheFolder) {
  fs::create_directory(folder / "Mine");
  WriteNative(folder / "Program/Data.txt", PathOf("Mine"));
  ::SetEnvironmentVariableW(L"U3_APP_DATA_PATH", (folder / "Device").make_preferred().c_str());
  EXPECT_EQ(Run(), 0U);
  EXPECT_TRUE(fs::is_directory(folder / "Device"));
  EXPECT_EQ(Pointer(), "\"" + PathOf("Device") + "\"\r\n");
}

TEST_F(U3DataTest, WithoutAFolderItFails) {
  WriteNative(folder / "Program/Data", "a file in its place");
  EXPECT_EQ(Run(), 1U);
  EXPECT_FALSE(fs::exists(folder / "Program/Data.txt"));
}

}  // namespace
}  // namespace tarnvale::testing
