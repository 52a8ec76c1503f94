#include <windows.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "hosts/windows/wide.h"
#include "hosts/windows/windows_host.h"
#include "tests/hosts/contract/host_under_test.h"
#include "tests/hosts/windows/temporary_folder.h"

namespace tarnvale::testing {
namespace {

namespace fs = std::filesystem;

WindowsSurroundings SurroundingsIn(const TemporaryFolder& folder) {
  fs::create_directories(folder / "drive" / "Data");
  WindowsSurroundings surroundings;
  surroundings.root = L"\\\\?\\" + (folder / "drive").wstring();
  surroundings.state_folder = (folder / "state").wstring();
  surroundings.program_file = (folder / "program").wstring();
  // Texts are given as the bytes that they are, as the other hosts' are.
  surroundings.code_page = CP_UTF8;
  surroundings.locale = MAKELCID(MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), SORT_DEFAULT);
  return surroundings;
}

void MakeWritable(const fs::path& path) {
  ::SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
}

class WindowsHostUnderTest : public HostUnderTest {
 public:
  WindowsHostUnderTest() : host_(SurroundingsIn(folder_)) {}

  SystemParts Parts() override { return host_.Parts(); }

  void Write(const Path& file, const std::string& content) override {
    WriteNative(Native(file), content);
  }
  std::string Content(const Path& file) override {
    EXPECT_TRUE(fs::exists(Native(file))) << file;
    return ReadNative(Native(file));
  }
  void MakeFolder(const Path& folder) override { fs::create_directories(Native(folder)); }
  void Remove(const Path& path) override { RemoveNative(Native(path)); }
  bool MakeUnreadable(const Path& file) override {
    locked_ = Handle(::CreateFileW(Native(file).c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                                   FILE_ATTRIBUTE_NORMAL, nullptr));
    return static_cast<bool>(locked_);
  }
  void MakeReadable(const Path&) override { locked_.Close(); }
  // Wine always reports it as set.
  bool ClearsArchive() override {
    const fs::path probe = folder_ / "probe";
    WriteNative(probe, "x");
    MakeWritable(probe);
    return (::GetFileAttributesW(probe.c_str()) & FILE_ATTRIBUTE_ARCHIVE) == 0;
  }
  void SetModified(const Path& file, std::int64_t seconds) override {
    const Handle opened(::CreateFileW(Native(file).c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr,
                                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    const std::int64_t units = (seconds + 11'644'473'600) * 10'000'000;
    const FILETIME time{static_cast<DWORD>(units), static_cast<DWORD>(units >> 32)};
    EXPECT_NE(::SetFileTime(opened.Get(), nullptr, nullptr, &time), 0);
  }
  std::int64_t Modified(const Path& file) override {
    return SecondsSince1970(StateOf(Native(file).wstring(), Links::kKeep)->modified);
  }
  void HideFile(const Path& file) override {
    ::SetFileAttributesW(Native(file).c_str(), FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_ARCHIVE);
  }
  void HideFolder(const Path& folder) override {
    ::SetFileAttributesW(Native(folder).c_str(), FILE_ATTRIBUTE_HIDDEN);
  }
  std::vector<std::string> Names(const Path& folder) override {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(Native(folder))) {
      names.push_back(Narrow(entry.path().filename().wstring()));
    }
    std::sort(names.begin(), names.end());
    return names;
  }
  void SetVariable(const std::string& name, const std::string& value) override {
    ::SetEnvironmentVariableW(Wide(name).c_str(), Wide(value).c_str());
  }

 private:
  fs::path Native(const Path& path) const {
    std::wstring below = Wide(path.substr(2));
    while (!below.empty() && below.back() == L'\\') below.pop_back();
    return (folder_ / "drive").wstring() + below;
  }

  TemporaryFolder folder_;
  WindowsHost host_;
  Handle locked_;
};

}  // namespace

std::unique_ptr<HostUnderTest> MakeWindowsHost() {
  return std::make_unique<WindowsHostUnderTest>();
}

}  // namespace tarnvale::testing
