// Leaves in "Data.txt", in this program's own folder, the folder that holds the
// person's data.
//
// A folder that the file names and that exists stays named, wherever it is, and
// the file isn't touched. Otherwise the folder "Data" beside this program is
// made, if it is missing, and named: so a drive that is mounted elsewhere today
// finds its own data again. The main program starts this one at each start and
// waits for nothing; several may run at once. The file changes in one step.
//
// Exit status: 0 when the file names a folder that exists; otherwise 1, and a
// line on the error output says why.

#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <string>

#include "base/failure.h"
#include "companions/u3_data/data_pointer.h"
#include "hosts/linux/linux_host.h"
#include "hosts/linux/native_errors.h"
#include "hosts/linux/own_program.h"
#include "hosts/linux/replacement.h"

namespace tarnvale {
namespace {

constexpr mode_t kNewFileMode = 0666;  // less what the user's mask takes

void Leave(mode_t kept_mask) {
  const std::string native = OwnProgramFile();
  // The path would name another folder than the one it is meant for.
  if (native.empty() || !CanBeNamed(native)) throw ProgramError(kPathNotFound);
  LinuxHost host;
  const auto replace = [&](const Path& file, const std::string& bytes) {
    ::umask(kept_mask);
    const Located place = host.locator.Locate(file);
    if (place.found && (place.info.st_mode & S_IWUSR) == 0) throw ProgramError(kPermissionDenied);
    TemporarySlot slot(host.temporaries);
    Replacement fresh(slot, place.folder);
    if (!fresh.Create(kNewFileMode) || !WriteAll(fresh.Fd(), bytes)) {
      RaiseNative(errno, Attempt::kChange);
    }
    fresh.Commit(place.Native(), Flush::kYes);
  };
  LeavePointer({host.files, host.open_files, host.files.ProgramFolder(), std::nullopt, replace});
}

int Run() {
  try {
    // Settings and log will lie in the folder that is made: it is for its owner alone.
    Leave(::umask(077));
    return 0;
  } catch (const ProgramError& error) {
    std::fprintf(stderr, "U3-Data.exe: no data folder named in Data.txt: %s\n",
                 error.Description().c_str());
    return 1;
  }
}

}  // namespace
}  // namespace tarnvale

int main() {
  return tarnvale::Run();
}
