#include "tests/hosts/linux/linux_drive.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace tarnvale {
namespace {

std::string MakeBase() {
  std::string name = ::testing::TempDir() + "tarnvale-XXXXXX";
  const char* made = ::mkdtemp(name.data());
  EXPECT_NE(made, nullptr);
  const std::string base = made == nullptr ? std::string() : made;
  std::filesystem::create_directory(base + "/drive");
  return base;
}

}  // namespace

LinuxDriveTest::LinuxDriveTest()
    : base_(MakeBase()), root_(base_ + "/drive"), state_(base_ + "/state"), host_(With(state_)) {}

LinuxDriveTest::~LinuxDriveTest() {
  std::error_code ignored;
  std::filesystem::remove_all(base_, ignored);
}

void LinuxDriveTest::Write(const std::string& place, const std::string& content) const {
  std::ofstream out(Native(place), std::ios::binary | std::ios::trunc);
  out << content;
  out.close();
  ASSERT_TRUE(out) << place;
}

std::string LinuxDriveTest::Read(const std::string& place) const {
  std::ifstream in(Native(place), std::ios::binary);
  EXPECT_TRUE(in) << place;
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

void LinuxDriveTest::MakeFolder(const std::string& place) const {
  std::filesystem::create_directories(Native(place));
}

void LinuxDriveTest::Link(const std::string& place, const std::string& leads_to) const {
  ASSERT_EQ(::symlink(leads_to.c_str(), Native(place).c_str()), 0);
}

void LinuxDriveTest::SetMode(const std::string& place, mode_t mode) const {
  ASSERT_EQ(::chmod(Native(place).c_str(), mode), 0);
}

void LinuxDriveTest::SetModified(const std::string& place, std::int64_t seconds,
                                 long nanoseconds) const {
  const std::array<timespec, 2> times{timespec{seconds, nanoseconds},
                                      timespec{seconds, nanoseconds}};
  ASSERT_EQ(::utimensat(AT_FDCWD, Native(place).c_str(), times.data(), AT_SYMLINK_NOFOLLOW), 0);
}

struct stat LinuxDriveTest::Info(const std::string& place) const {
  struct stat info {};
  EXPECT_EQ(::lstat(Native(place).c_str(), &info), 0) << place;
  return info;
}

bool LinuxDriveTest::Exists(const std::string& place) const {
  struct stat info {};
  return ::lstat(Native(place).c_str(), &info) == 0;
}

std::vector<std::string> LinuxDriveTest::NamesIn(const std::string& place) const {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(Native(place))) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace tarnvale
