// A drive of the real host's, and native eyes on it.
#pragma once

#include "hosts/linux/linux_host.h"
#include "tests/hosts/contract/native_files.h"
#include "tests/hosts/contract/temporary_folder.h"

namespace tarnvale::testing {

/// `drive` in a folder of its own, which its user makes.
struct RealDrive {
  TemporaryFolder folder;
  LinuxHost host{{.root = folder / "drive", .state_folder = folder / "state", .locale_name = "C"}};
};

}  // namespace tarnvale::testing
