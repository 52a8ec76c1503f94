#include "hosts/linux/detached_start.h"

#include <fcntl.h>
#include <linux/close_range.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <string_view>

#include "hosts/linux/descriptor.h"

namespace tarnvale {
namespace {

constexpr unsigned kFirstOther = 3;  // behind input, output and error output

// Everything from here to the new program runs in a copy of a process that may
// have had threads: no memory may be allocated.
[[noreturn]] void Report(int pipe, int error) {
  const ssize_t written = ::write(pipe, &error, sizeof error);
  ::_exit(written < 0 ? 2 : 1);
}

void ResetSignals() {
  struct sigaction standard {};
  standard.sa_handler = SIG_DFL;
  for (int number = 1; number < NSIG; ++number) ::sigaction(number, &standard, nullptr);
  sigset_t none;
  ::sigemptyset(&none);
  ::sigprocmask(SIG_SETMASK, &none, nullptr);
}

[[noreturn]] void BecomeProgram(const char* program, char* const* words, int nowhere, int pipe) {
  if (LeaveTheProgram(nowhere)) ::execv(program, words);
  Report(pipe, errno);
}

// The copy in between ends at once, so that the program has no parent here and
// leaves nothing behind that would have to be waited for.
[[noreturn]] void Divide(const char* program, char* const* words, int nowhere, int pipe) {
  const pid_t child = ::fork();
  if (child < 0) Report(pipe, errno);
  if (child == 0) BecomeProgram(program, words, nowhere, pipe);
  ::_exit(0);
}

// Both ends above the standard ones, so that those can be replaced.
bool MakePipe(Descriptor& read_end, Descriptor& write_end) {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return false;
  read_end = Descriptor(ends[0]);
  const Descriptor low(ends[1]);
  write_end = Descriptor(::fcntl(low.Get(), F_DUPFD_CLOEXEC, static_cast<int>(kFirstOther)));
  return static_cast<bool>(write_end);
}

int ReadReport(int pipe) {
  int error = 0;
  ssize_t got = 0;
  do {
    got = ::read(pipe, &error, sizeof error);
  } while (got < 0 && errno == EINTR);
  return got == static_cast<ssize_t>(sizeof error) ? error : 0;
}

}  // namespace

bool LeaveTheProgram(int nowhere) {
  ::setsid();
  ResetSignals();
  for (int fd = 0; fd < static_cast<int>(kFirstOther); ++fd) {
    if (::dup2(nowhere, fd) < 0) return false;
  }
  // What was opened without thinking of children closes as the program starts.
  ::close_range(kFirstOther, ~0U, CLOSE_RANGE_CLOEXEC);
  return true;
}

int StartDetached(const std::string& program, const std::vector<std::string>& words) {
  std::vector<std::string> texts = words;
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  const Descriptor low(::open("/dev/null", O_RDWR | O_CLOEXEC));
  const Descriptor nowhere(::fcntl(low.Get(), F_DUPFD_CLOEXEC, static_cast<int>(kFirstOther)));
  Descriptor read_end;
  Descriptor write_end;
  if (!nowhere || !MakePipe(read_end, write_end)) return errno;
  const pid_t child = ::fork();
  if (child < 0) return errno;
  if (child == 0) Divide(program.c_str(), pointers.data(), nowhere.Get(), write_end.Get());
  write_end.Close();
  const int error = ReadReport(read_end.Get());
  while (::waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
  }
  return error;
}

bool IsProgram(const std::string& native) {
  struct stat info {};
  return ::stat(native.c_str(), &info) == 0 && S_ISREG(info.st_mode) &&
         ::faccessat(AT_FDCWD, native.c_str(), X_OK, AT_EACCESS) == 0;
}

std::string ProgramOnSearchPath(const std::string& name) {
  const char* search_path = std::getenv("PATH");
  if (search_path == nullptr || name.empty()) return {};
  std::string_view rest = search_path;
  while (true) {
    const auto end = std::min(rest.find(':'), rest.size());
    const std::string folder(rest.substr(0, end));
    // A relative folder would depend on where the program was started.
    std::string candidate = folder + "/" + name;
    if (candidate.front() == '/' && !folder.empty() && IsProgram(candidate)) return candidate;
    if (end == rest.size()) return {};
    rest.remove_prefix(end + 1);
  }
}

}  // namespace tarnvale
