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
#include <string_view>

#include "base/failure.h"
#include "hosts/linux/descriptor.h"
#include "hosts/linux/linux_files.h"
#include "hosts/linux/linux_open_files.h"
#include "hosts/linux/locator.h"
#include "hosts/linux/native_errors.h"
#include "hosts/linux/own_program.h"
#include "hosts/linux/paths.h"
#include "hosts/linux/state_folder.h"
#include "hosts/linux/temporaries.h"
#include "platform/input_item.h"

namespace tarnvale {
namespace {

constexpr int kPointerFileNumber = 1;
constexpr mode_t kNewFileMode = 0666;  // less what the user's mask takes

// What a reader of delimited items makes of a text.
std::string ItemOf(std::string_view text) {
  InputItemScanner scanner;
  for (const char byte : text) {
    if (!scanner.Feed(byte)) break;
  }
  return scanner.Item();
}

// The pointer file that is read back as `folder`: in quotes, which keep commas
// together, or without, for a folder whose own name holds a quote.
std::string PointerTo(const Path& folder) {
  for (const std::string& text : {"\"" + folder + "\"\r\n", folder + "\r\n"}) {
    if (ItemOf(text) == folder) return text;
  }
  throw ProgramError(kPathFileAccess);
}

class DataPointer {
 public:
  /// In the folder that this program lies in.
  DataPointer() : program_folder_(files_.ProgramFolder()) {
    const std::string native = OwnProgramFile();
    // The path would name another folder than the one it is meant for.
    if (native.empty() || !CanBeNamed(native)) throw ProgramError(kPathNotFound);
  }

  void Leave() {
    const Path named = Named();
    if (!named.empty() && files_.FolderExists(named)) return;
    const Path beside = program_folder_ + "\\Data";
    MakeFolder(beside);
    Replace(PointerTo(beside));
  }

 private:
  Path PointerFile() const { return program_folder_ + "\\Data.txt"; }

  // Empty when there is no pointer file, or nothing in it.
  Path Named() {
    try {
      open_files_.OpenInput(kPointerFileNumber, PointerFile());
      Path named = open_files_.InputItem(kPointerFileNumber);
      open_files_.Close(kPointerFileNumber);
      return named;
    } catch (const ProgramError& error) {
      open_files_.CloseAll();
      if (error.Number() != kFileNotFound && error.Number() != kInputPastEnd) throw;
      return {};
    }
  }

  void MakeFolder(const Path& folder) {
    if (files_.FolderExists(folder)) return;
    // Settings and log will lie in it: a folder for its owner alone.
    ::umask(077);
    try {
      files_.CreateFolder(folder);
    } catch (const ProgramError&) {
      // Another one of us may have been faster.
      if (!files_.FolderExists(folder)) throw;
    }
  }

  void Replace(const std::string& bytes) {
    const Located place = locator_.Locate(PointerFile());
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
  Path program_folder_;
};

int LeavePointer() {
  try {
    DataPointer().Leave();
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
  return tarnvale::LeavePointer();
}
