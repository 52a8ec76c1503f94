#include <unistd.h>

#include <cstdlib>
#include <optional>
#include <string>

#include "hosts/linux/linux_host.h"
#include "tests/hosts/contract/host_under_test.h"
#include "tests/hosts/contract/native_files.h"
#include "tests/hosts/contract/ordinary_user.h"
#include "tests/hosts/contract/temporary_folder.h"

namespace tarnvale::testing {
namespace {

LinuxSurroundings SurroundingsIn(const TemporaryFolder& folder) {
  LinuxSurroundings surroundings;
  surroundings.root = folder / "drive";
  surroundings.state_folder = folder / "state";
  surroundings.locale_name = "C";
  surroundings.processes.program_file = folder / "program";
  surroundings.processes.lock_folder = folder / "locks";
  std::filesystem::create_directories(folder / "drive/Data");
  return surroundings;
}

class LinuxHostUnderTest : public HostUnderTest {
 public:
  LinuxHostUnderTest() : host_(SurroundingsIn(folder_)), drive_(folder_ / "drive") {}

  SystemParts Parts() override { return host_.Parts(); }

  void Write(const Path& file, const std::string& content) override {
    WriteNative(Native(file), content);
  }
  std::string Content(const Path& file) override {
    user_.reset();
    EXPECT_TRUE(std::filesystem::exists(Native(file))) << file;
    return ReadNative(Native(file));
  }
  void MakeFolder(const Path& folder) override {
    std::filesystem::create_directories(Native(folder));
  }
  void Remove(const Path& path) override { std::filesystem::remove_all(Native(path)); }
  bool MakeUnreadable(const Path& file) override {
    const std::string native = Native(file);
    const auto can_be_read = [&] {
      return ::faccessat(AT_FDCWD, native.c_str(), R_OK, AT_EACCESS) == 0;
    };
    if (::chmod(native.c_str(), S_IWUSR) != 0) return false;
    if (can_be_read() && AsOrdinaryUser::IsPossible()) user_.emplace(folder_.Path());
    return !can_be_read();
  }
  void MakeReadable(const Path& file) override {
    EXPECT_EQ(::chmod(Native(file).c_str(), S_IRUSR | S_IWUSR), 0);
  }
  void SetModified(const Path& file, std::int64_t seconds) override {
    SetModifiedNative(Native(file), seconds);
  }
  std::int64_t Modified(const Path& file) override { return StateOf(Native(file)).st_mtim.tv_sec; }
  // The leading point hides them already.
  void HideFile(const Path&) override {}
  void HideFolder(const Path&) override {}
  std::vector<std::string> Names(const Path& folder) override {
    return NativeNames(Native(folder));
  }
  void SetVariable(const std::string& name, const std::string& value) override {
    ::setenv(name.c_str(), value.c_str(), 1);
  }

 private:
  std::string Native(const Path& path) const { return *drive_.ToNative(path); }

  TemporaryFolder folder_;
  LinuxHost host_;
  DrivePaths drive_;
  std::optional<AsOrdinaryUser> user_;
};

}  // namespace

std::unique_ptr<HostUnderTest> MakeLinuxHost() {
  return std::make_unique<LinuxHostUnderTest>();
}

}  // namespace tarnvale::testing
