#include "hosts/linux/linux_processes.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>
#include <vector>

#include "base/failure.h"
#include "base/stable_hash.h"
#include "base/text.h"
#include "hosts/linux/descriptor.h"
#include "hosts/linux/detached_start.h"
#include "hosts/linux/own_program.h"
#include "hosts/linux/state_folder.h"
#include "platform/command_line.h"
#include "platform/path_text.h"

namespace tarnvale {
namespace {

// In a folder that others can get into, they could hold the lock first, and by a
// link lead it there.
bool IsOwnAndClosed(const std::string& native) {
  struct stat info {};
  return ::lstat(native.c_str(), &info) == 0 && S_ISDIR(info.st_mode) &&
         info.st_uid == ::geteuid() && (info.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

// The same in every session of the user, the ones without a desktop included.
std::string RuntimeFolder() {
  const char* variable = std::getenv("XDG_RUNTIME_DIR");
  if (variable != nullptr && variable[0] == '/' && IsOwnAndClosed(variable)) return variable;
  const std::string usual = "/run/user/" + std::to_string(::geteuid());
  return IsOwnAndClosed(usual) ? usual : DefaultStateFolder();
}

// The user's own folder is closed; where it is somebody else's, there is no lock.
std::string LockFile(const ProcessSurroundings& surroundings) {
  const std::string& folder = surroundings.lock_folder;
  if (!MakeStateFolder(folder)) return {};
  const Descriptor opened(::open(folder.c_str(), O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  struct stat info {};
  if (!opened || ::fstat(opened.Get(), &info) != 0 || info.st_uid != ::geteuid()) return {};
  if (!IsOwnAndClosed(folder) && ::fchmod(opened.Get(), S_IRWXU) != 0) return {};
  if (!IsOwnAndClosed(folder)) return {};
  const std::string identity = std::to_string(::geteuid()) + '\n' + surroundings.program_file;
  return surroundings.lock_folder + "/tarnvale-" + StableHash(identity) + ".lock";
}

}  // namespace

ProcessSurroundings ProcessSurroundings::Present() {
  ProcessSurroundings present;
  present.program_file = OwnProgramFile();
  present.lock_folder = RuntimeFolder();
  return present;
}

LinuxProcesses::LinuxProcesses(Locator& locator, const ProcessSurroundings& surroundings)
    : locator_(locator), surroundings_(surroundings) {}

bool LinuxProcesses::PreviousInstance() {
  if (!lock_) lock_.emplace(LockFile(surroundings_));
  return lock_->HasPredecessor();
}

bool LinuxProcesses::OpenWithDesktop(const Path& file) {
  const Located located = locator_.Locate(file);
  if (!located.found) return false;
  const std::string& named = surroundings_.desktop_opener;
  const std::string opener =
      named.find('/') == std::string::npos ? ProgramOnSearchPath(named) : named;
  return !opener.empty() && StartDetached(opener, {opener, located.Native()}) == 0;
}

// Empty when there is no such program.
std::string LinuxProcesses::NativeProgram(const std::string& name) {
  if (!IsPathLanguage(name)) return ProgramOnSearchPath(name);
  const Located located = locator_.Locate(name);
  if (!located.found || !IsProgram(located.Native())) return {};
  return located.Native();
}

bool LinuxProcesses::StartProgram(const Path& program) {
  const Located located = locator_.Locate(program);
  if (!located.found || !IsProgram(located.Native())) return false;
  return StartDetached(located.Native(), {located.Native()}) == 0;
}

void LinuxProcesses::StartMinimized(const std::string& command_line) {
  std::vector<std::string> words = WordsOf(command_line);
  if (words.empty() || words.front().empty()) throw ProgramError(kInvalidCall);
  const std::string program = NativeProgram(words.front());
  if (program.empty()) throw ProgramError(kFileNotFound);
  words.front() = program;
  if (StartDetached(program, words) != 0) throw ProgramError(kFileNotFound);
}

std::optional<std::string> LinuxProcesses::Variable(const std::string& name) {
  if (const char* exact = std::getenv(name.c_str())) return exact;
  for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
    const std::string_view text = *entry;
    const auto equals = text.find('=');
    if (equals != std::string_view::npos && EqualIgnoringCase(text.substr(0, equals), name)) {
      return std::string(text.substr(equals + 1));
    }
  }
  return std::nullopt;
}

}  // namespace tarnvale
