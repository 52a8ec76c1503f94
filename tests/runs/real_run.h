// An engine whose files are real and whose time is the test's.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/types.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "core/engine.h"
#include "hosts/linux/linux_host.h"
#include "tests/hosts/contract/temporary_folder.h"
#include "tests/support/fake_machine.h"
#include "tests/support/real_waits.h"

namespace tarnvale::testing {

/// When files of the tests were changed, if nothing else is said.
inline constexpr std::int64_t kNoon = 1205496000;

class RealRun : public ::testing::Test {
 protected:
  RealRun() {
    std::filesystem::create_directories(Native("Work"));
    std::filesystem::create_directories(Native("Store"));
    std::filesystem::create_directories(Native("Data"));
    engine.settings.DataFolder = "C:\\Data";
    engine.run.RunDestination = "C:\\Store";
    engine.run.EngineFree = "1";
  }

  std::string Native(const std::string& path) const { return folder.Path() + "/drive/" + path; }

  void Write(const std::string& path, const std::string& content) {
    std::filesystem::create_directories(std::filesystem::path(Native(path)).parent_path());
    std::ofstream(Native(path), std::ios::binary) << content;
  }

  /// The file's bytes; a text that no test writes when it is missing.
  std::string Content(const std::string& path) const {
    std::ifstream file(Native(path), std::ios::binary);
    if (!file) return "(missing)";
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
  }

  /// Whole seconds since 1970.
  void SetModified(const std::string& path, std::int64_t seconds, long nanoseconds = 0) {
    const timespec times[2] = {{seconds, nanoseconds}, {seconds, nanoseconds}};
    ASSERT_EQ(utimensat(AT_FDCWD, Native(path).c_str(), times, 0), 0);
  }

  int AttributesOf(const std::string& path) { return system.files.Attributes(path); }

  void Run() { engine.backup.RunBackup(); }

  std::string Log() const { return Content("Data/Backup Log.txt"); }

  TemporaryFolder folder;
  FakeMachine machine;
  LinuxHost system{{.root = folder.Path() + "/drive",
                    .state_folder = folder.Path() + "/state",
                    .locale_name = {}}};
  RealWaits loop{machine.loop};
  Machine interfaces{
      {system.files, system.open_files, system.profiles, machine.processes, machine.clock,
       machine.random, machine.formats, machine.registry, machine.applications},
      {loop, machine.boxes, machine.desktop, machine.windows, machine.dialogs, machine.tray,
       machine.network, machine.ftp}};
  Engine engine{interfaces};
};

}  // namespace tarnvale::testing
