// A drive and a state folder of a test's own, for the Linux host's own tests.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "hosts/linux/linux_host.h"
#include "tests/hosts/contract/native_files.h"
#include "tests/hosts/contract/temporary_folder.h"

namespace tarnvale::testing {

class LinuxStage : public ::testing::Test {
 protected:
  LinuxStage() {
    std::filesystem::create_directories(folder / "drive/Data");
    surroundings.root = folder / "drive";
    surroundings.state_folder = folder / "state";
    surroundings.locale_name = "C";
    surroundings.processes.program_file = folder / "program";
    surroundings.processes.lock_folder = folder / "locks";
    surroundings.user = {.home = OnDrive("home/ann"), .config = OnDrive("home/ann/.config")};
  }

  /// The native path of something on the drive: "Data/a.txt".
  std::string OnDrive(const std::string& name) const { return folder / ("drive/" + name); }

  TemporaryFolder folder;
  LinuxSurroundings surroundings;
};

}  // namespace tarnvale::testing
