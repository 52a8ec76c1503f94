#include "hosts/linux/medium_flush.h"

#include <fcntl.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string>
#include <utility>

#include "base/failure.h"
#include "hosts/linux/detached_start.h"

namespace tarnvale {
namespace {

// Runs in a copy of this process. As another program it is never taken for an instance
// of this one; without that program it is a copy that holds nothing else.
[[noreturn]] void Flush(int folder, const char* program, int nowhere) {
  // Where the standard ones are closed it may have one of their numbers.
  folder = ::fcntl(folder, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  LeaveTheProgram(nowhere);
  std::array<char, 5> name{"sync"};
  std::array<char, 3> whole_medium{"-f"};
  std::array<char, 2> here{"."};
  const std::array<char*, 4> words{name.data(), whole_medium.data(), here.data(), nullptr};
  if (*program != '\0' && ::fchdir(folder) == 0) ::execv(program, words.data());
  if (::dup2(folder, STDIN_FILENO) < 0) ::_exit(1);
  ::close_range(STDOUT_FILENO, ~0U, 0);
  ::_exit(::syncfs(STDIN_FILENO) == 0 ? 0 : 1);
}

pid_t StartProcess(const Descriptor& folder, const std::string& program) {
  const Descriptor nowhere(::open("/dev/null", O_RDWR | O_CLOEXEC));
  const pid_t process = nowhere ? ::fork() : -1;
  if (process < 0) throw ProgramError(kDeviceIoError);
  if (process == 0) Flush(folder.Get(), program.c_str(), nowhere.Get());
  return process;
}

// A program that fails needn't know of single media: what counts is then the word of a copy.
class FlushProcess final : public MediumFlush {
 public:
  explicit FlushProcess(Descriptor folder)
      : folder_(std::move(folder)), program_(ProgramOnSearchPath("sync")) {
    process_ = StartProcess(folder_, program_);
  }
  FlushProcess(const FlushProcess&) = delete;
  FlushProcess& operator=(const FlushProcess&) = delete;
  ~FlushProcess() override { Look(); }

  bool IsDone() override {
    Look();
    if (has_failed_ && !program_.empty()) {
      program_.clear();
      process_ = StartProcess(folder_, program_);
      has_failed_ = false;
    }
    if (has_failed_) throw ProgramError(kDeviceIoError);
    return process_ == 0;
  }

 private:
  void Look() {
    int status = 0;
    if (process_ == 0 || ::waitpid(process_, &status, WNOHANG) == 0) return;
    has_failed_ = !WIFEXITED(status) || WEXITSTATUS(status) != 0;
    process_ = 0;
  }

  Descriptor folder_;
  std::string program_;  ///< empty for a copy of this one
  pid_t process_ = 0;    ///< 0: it has ended
  bool has_failed_ = false;
};

}  // namespace

std::unique_ptr<MediumFlush> StartFlush(Descriptor folder) {
  return std::make_unique<FlushProcess>(std::move(folder));
}

}  // namespace tarnvale
