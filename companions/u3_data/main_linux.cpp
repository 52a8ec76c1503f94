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

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string>

#include "base/failure.h"
#include "companions/u3_data/data_pointer.h"
#include "hosts/linux/descriptor.h"
#include "hosts/linux/linux_files.h"
#include "hosts/linux/linux_open_files.h"
#include "hosts/linux/locator.h"
#include "hosts/linux/native_errors.h"
#include "hosts/linux/own_program.h"
#include "hosts/linux/paths.h"
#include "hosts/linux/state_folder.h"
#include "hosts/linux/temporaries.h"

namespace tarnvale {
namespace {

constexpr mode_t kNewFileMode = 0666;  // less what the user's mask takes

class ThisMachine {
 public:
  void Leave() {
    const std::string native = OwnProgramFile();
    // The path would name another folder than the one it is meant for.
    if (native.empty() || !CanBeNamed(native)) throw ProgramError(kPathNotFound);
    LeavePointer({files_, open_files_, files_.ProgramFolder(), std::nullopt,
                  [this, mask = kept_mask_](const Path& file, const std::string& bytes) {
                    ::umask(mask);
                    Replace(file, bytes);
                  }});
  }

 private:
  void Replace(const Path& file_path, const std::string& bytes) {
    const Located place = locator_.Locate(file_path);
    if (place.found && (place.info.st_mode & S_IWUSR) == 0) throw ProgramError(kPermissionDenied);
    const std::string& temporary = temporaries_.Begin(place.folder);
    try {
      Descriptor file = CreateFresh(AT_FDCWD, temporary.c_str(), kNewFileMode);
      if (!file || !WriteAll(file.Get(), bytes) || ::fsync(file.Get()) != 0 || !file.Close() ||
          ::rename(temporary.c_str(), place.Native().c_str()) != 0) {
        RaiseNative(errno, Attempt::kChange);
      }
    } catch (const ProgramError&) {
      ::unlink(temporary.c_str());
      throw;
    }
    // Some media can't flush folders; the file itself is safe all the same.
    const Descriptor folder(
        ::open((place.folder + "/.").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder) ::fsync(folder.Get());
  }

  LinuxFiles files_;
  Temporaries temporaries_{DefaultStateFolder()};
  Locator locator_{DrivePaths("/"), temporaries_};
  LinuxOpenFiles open_files_{locator_};
  // Settings and log will lie in the folder that is made: it is for its owner alone.
  mode_t kept_mask_ = ::umask(077);
};

int Run() {
  try {
    ThisMachine().Leave();
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
