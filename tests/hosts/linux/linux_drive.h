// A folder of its own as drive C: for each test.
#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "base/failure.h"
#include "hosts/linux/linux_host.h"
#include "tests/support/raised.h"

namespace tarnvale {

using testing::RaisedBy;

class LinuxDriveTest : public ::testing::Test {
 protected:
  LinuxDriveTest();
  ~LinuxDriveTest() override;

  /// Native path of a place on the drive, given with slashes: "a/b".
  std::string Native(const std::string& place) const { return root_ + "/" + place; }

  void Write(const std::string& place, const std::string& content) const;
  std::string Read(const std::string& place) const;
  void MakeFolder(const std::string& place) const;
  void Link(const std::string& place, const std::string& leads_to) const;
  void SetMode(const std::string& place, mode_t mode) const;
  void SetModified(const std::string& place, std::int64_t seconds, long nanoseconds) const;
  struct stat Info(const std::string& place) const;
  bool Exists(const std::string& place) const;
  /// Everything in a folder as the medium has it, sorted by bytes.
  std::vector<std::string> NamesIn(const std::string& place) const;

  /// The same drive with another state folder.
  LinuxSurroundings With(const std::string& state_folder) const {
    return {.root = root_, .state_folder = state_folder, .locale_name = "C"};
  }

  std::string base_;
  std::string root_;
  std::string state_;
  LinuxHost host_;
  LinuxFiles& files_ = host_.files;
};

}  // namespace tarnvale
