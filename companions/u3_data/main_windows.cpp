// Leaves in "Data.txt", in this program's own folder, the folder that holds the person's
// data: the one that the launcher of a U3 device names; without such a launcher the one
// that the file names already, or "Data" beside this program. The main program starts this
// one at each start and waits for nothing. The file changes in one step.
//
// Exit status: 0 when the file names a folder that exists; otherwise 1, without a word:
// it has no window to say it in.

#include <windows.h>

#include <optional>
#include <string>

#include "base/failure.h"
#include "companions/u3_data/data_pointer.h"
#include "hosts/windows/windows_host.h"

namespace tarnvale {
namespace {

// Set by the launcher for the programs of its device: where they keep their data.
constexpr char kDeviceFolder[] = "U3_APP_DATA_PATH";

int Run() {
  WindowsHost host;
  std::optional<Path> device = host.processes.Variable(kDeviceFolder);
  if (device && device->empty()) device.reset();
  const auto replace = [&](const Path& file, const std::string& bytes) {
    const auto target = host.transfer_files.OpenTarget(file);
    target->Write(bytes);
    target->Commit();
  };
  try {
    LeavePointer({host.files, host.open_files, host.files.ProgramFolder(), device, replace});
    return 0;
  } catch (const ProgramError&) {
    return 1;
  }
}

}  // namespace
}  // namespace tarnvale

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
  return tarnvale::Run();
}
