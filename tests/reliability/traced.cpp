#include "tests/reliability/traced.h"

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <iterator>
#include <set>
#include <stdexcept>
#include <vector>

namespace tarnvale::reliability {

#ifdef __x86_64__
namespace {

constexpr unsigned kMostSeconds = 30;
constexpr int kSystemCallStop = SIGTRAP | 0x80;

struct Named {
  int number;
  const char* name;
  int count_argument = -1;  ///< of a call that may move fewer bytes
};

constexpr Named kCalls[] = {
    {SYS_read, "read", 2},
    {SYS_write, "write", 2},
    {SYS_pread64, "pread64", 2},
    {SYS_pwrite64, "pwrite64", 2},
    {SYS_readv, "readv"},
    {SYS_writev, "writev"},
    {SYS_copy_file_range, "copy_file_range", 4},
    {SYS_sendfile, "sendfile", 3},
    {SYS_open, "open"},
    {SYS_openat, "openat"},
    {SYS_openat2, "openat2"},
    {SYS_close, "close"},
    {SYS_stat, "stat"},
    {SYS_lstat, "lstat"},
    {SYS_fstat, "fstat"},
    {SYS_newfstatat, "newfstatat"},
    {SYS_statx, "statx"},
    {SYS_statfs, "statfs"},
    {SYS_fstatfs, "fstatfs"},
    {SYS_lseek, "lseek"},
    {SYS_getdents64, "getdents64"},
    {SYS_access, "access"},
    {SYS_faccessat, "faccessat"},
    {SYS_faccessat2, "faccessat2"},
    {SYS_rename, "rename"},
    {SYS_renameat, "renameat"},
    {SYS_renameat2, "renameat2"},
    {SYS_link, "link"},
    {SYS_linkat, "linkat"},
    {SYS_symlink, "symlink"},
    {SYS_symlinkat, "symlinkat"},
    {SYS_readlink, "readlink"},
    {SYS_readlinkat, "readlinkat"},
    {SYS_unlink, "unlink"},
    {SYS_unlinkat, "unlinkat"},
    {SYS_rmdir, "rmdir"},
    {SYS_mkdir, "mkdir"},
    {SYS_mkdirat, "mkdirat"},
    {SYS_chmod, "chmod"},
    {SYS_fchmod, "fchmod"},
    {SYS_fchmodat, "fchmodat"},
    {SYS_chown, "chown"},
    {SYS_fchown, "fchown"},
    {SYS_fchownat, "fchownat"},
    {SYS_utimensat, "utimensat"},
    {SYS_truncate, "truncate"},
    {SYS_ftruncate, "ftruncate"},
    {SYS_fallocate, "fallocate"},
    {SYS_fsync, "fsync"},
    {SYS_fdatasync, "fdatasync"},
    {SYS_syncfs, "syncfs"},
    {SYS_sync_file_range, "sync_file_range"},
    {SYS_fadvise64, "fadvise64"},
    {SYS_flock, "flock"},
    {SYS_fcntl, "fcntl"},
    {SYS_ioctl, "ioctl"},
    {SYS_getxattr, "getxattr"},
    {SYS_lgetxattr, "lgetxattr"},
    {SYS_fgetxattr, "fgetxattr"},
    {SYS_setxattr, "setxattr"},
    {SYS_lsetxattr, "lsetxattr"},
    {SYS_fsetxattr, "fsetxattr"},
    {SYS_listxattr, "listxattr"},
    {SYS_flistxattr, "flistxattr"},
    {SYS_removexattr, "removexattr"},
    {SYS_fremovexattr, "fremovexattr"},
    {SYS_chdir, "chdir"},
    {SYS_fchdir, "fchdir"},
    {SYS_getcwd, "getcwd"},
};

const Named* Find(std::int64_t number) {
  const auto* const found = std::find_if(std::begin(kCalls), std::end(kCalls),
                                         [&](const Named& call) { return call.number == number; });
  return found == std::end(kCalls) ? nullptr : found;
}

// Only these stop the process: everything else runs at full speed.
void StopAtFileCalls() {
  std::vector<sock_filter> filter;
  filter.push_back(BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)));
  for (const Named& call : kCalls) {
    filter.push_back(
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<std::uint32_t>(call.number), 0, 1));
    filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_TRACE));
  }
  filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
  const sock_fprog program{static_cast<unsigned short>(filter.size()), filter.data()};
  if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
      ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0) {
    ::_exit(99);
  }
}

pid_t StartStopped(const std::function<void()>& work) {
  std::fflush(nullptr);
  const pid_t child = ::fork();
  if (child != 0) return child;
  ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
  ::raise(SIGSTOP);
  StopAtFileCalls();
  int code = 0;
  try {
    work();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "child: %s\n", error.what());
    code = 98;
  }
  ::_exit(code);
}

class Tracer {
 public:
  Tracer(pid_t child, std::optional<Fault> fault, const std::function<void(const FileCall&)>& watch)
      : child_(child), fault_(fault), watch_(watch) {}

  TracedRun Run() {
    int status = 0;
    if (child_ < 0 || ::waitpid(child_, &status, 0) != child_ || !WIFSTOPPED(status)) {
      throw std::runtime_error("no child can be traced");
    }
    constexpr long kOptions = PTRACE_O_EXITKILL | PTRACE_O_TRACESECCOMP | PTRACE_O_TRACESYSGOOD |
                              PTRACE_O_TRACEFORK | PTRACE_O_TRACEVFORK | PTRACE_O_TRACECLONE |
                              PTRACE_O_TRACEEXEC;
    ::ptrace(PTRACE_SETOPTIONS, child_, nullptr, kOptions);
    ::ptrace(PTRACE_CONT, child_, nullptr, nullptr);
    Meet(child_);
    // Ends the wait below, which is for all there is.
    struct sigaction on_alarm {};
    on_alarm.sa_handler = [](int) {};
    ::sigaction(SIGALRM, &on_alarm, nullptr);
    ::alarm(kMostSeconds);
    while (!living_.empty()) {
      const pid_t process = ::waitpid(-1, &status, __WALL);
      if (process < 0 && errno == EINTR) {
        result_.hung = true;
        for (const pid_t stopped : known_) ::kill(stopped, SIGKILL);
        ::kill(child_, SIGKILL);
        continue;
      }
      if (process < 0) break;
      Handle(process, status);
    }
    ::alarm(0);
    return result_;
  }

 private:
  void Meet(pid_t process) {
    if (met_.insert(process).second) living_.insert(process);
  }

  void Handle(pid_t process, int status) {
    if (!WIFSTOPPED(status)) {
      living_.erase(process);
      if (process == child_) result_.status = status;
      return;
    }
    Meet(process);
    const int event = status >> 16;
    int signal = WSTOPSIG(status);
    if (event == PTRACE_EVENT_SECCOMP) {
      if (!AtCall(process)) return;
      signal = 0;
    } else if (event != 0) {
      unsigned long started = 0;
      const bool starts =
          event == PTRACE_EVENT_FORK || event == PTRACE_EVENT_VFORK || event == PTRACE_EVENT_CLONE;
      if (starts && ::ptrace(PTRACE_GETEVENTMSG, process, nullptr, &started) == 0) {
        Meet(static_cast<pid_t>(started));
      }
      signal = 0;
    } else if (signal == kSystemCallStop) {
      SetResult(process, -error_at_exit_);
      signal = 0;
    } else if (signal == SIGSTOP && process != child_ && known_.insert(process).second) {
      signal = 0;
    }
    ::ptrace(PTRACE_CONT, process, nullptr, static_cast<long>(signal));
  }

  // False when the process goes on to the end of the call.
  bool AtCall(pid_t process) {
    user_regs_struct registers{};
    ::ptrace(PTRACE_GETREGS, process, nullptr, &registers);
    const FileCall call{
        process,
        static_cast<std::int64_t>(registers.orig_rax),
        {registers.rdi, registers.rsi, registers.rdx, registers.r10, registers.r8, registers.r9}};
    if (watch_) watch_(call);
    if (!fault_) return true;
    const int since = result_.calls++ - fault_->point;
    if (since < 0 || since >= fault_->calls) return true;
    if (fault_->error == 0) {
      Shorten(process, registers);
      return true;
    }
    if (since == 0) result_.failed_call = NameOfCall(call.number);
    if (call.number == SYS_close) {
      // It is closed all the same.
      error_at_exit_ = fault_->error;
      ::ptrace(PTRACE_SYSCALL, process, nullptr, nullptr);
      return false;
    }
    registers.orig_rax = ~0ULL;
    registers.rax = static_cast<unsigned long long>(-static_cast<long long>(fault_->error));
    ::ptrace(PTRACE_SETREGS, process, nullptr, &registers);
    return true;
  }

  void Shorten(pid_t process, user_regs_struct& registers) {
    const Named* const call = Find(static_cast<std::int64_t>(registers.orig_rax));
    if (call == nullptr || call->count_argument < 0) return;
    unsigned long long* const count = call->count_argument == 2   ? &registers.rdx
                                      : call->count_argument == 3 ? &registers.r10
                                                                  : &registers.r8;
    if (*count < 2) return;
    *count = std::max<unsigned long long>(1, std::min<unsigned long long>(*count, 4096) / 2);
    result_.failed_call = call->name;
    ::ptrace(PTRACE_SETREGS, process, nullptr, &registers);
  }

  static void SetResult(pid_t process, int result) {
    user_regs_struct registers{};
    ::ptrace(PTRACE_GETREGS, process, nullptr, &registers);
    registers.rax = static_cast<unsigned long long>(static_cast<long long>(result));
    ::ptrace(PTRACE_SETREGS, process, nullptr, &registers);
  }

  pid_t child_;
  std::optional<Fault> fault_;
  const std::function<void(const FileCall&)>& watch_;
  std::set<pid_t> known_;  ///< have stopped at their start
  std::set<pid_t> met_;
  std::set<pid_t> living_;
  int error_at_exit_ = 0;
  TracedRun result_;
};

}  // namespace

std::string NameOfCall(std::int64_t number) {
  const Named* const call = Find(number);
  return call == nullptr ? std::to_string(number) : call->name;
}

TracedRun RunTraced(const std::function<void()>& work, std::optional<Fault> fault,
                    const std::function<void(const FileCall&)>& watch) {
  return Tracer(StartStopped(work), fault, watch).Run();
}

bool CanTrace() {
  try {
    int calls = 0;
    const auto work = [] { ::syscall(SYS_access, "/", 0); };
    const TracedRun run = RunTraced(work, std::nullopt, [&](const FileCall&) { ++calls; });
    return run.status == 0 && calls == 1;
  } catch (const std::runtime_error&) {
    return false;
  }
}

#else

std::string NameOfCall(std::int64_t number) {
  return std::to_string(number);
}
TracedRun RunTraced(const std::function<void()>&, std::optional<Fault>,
                    const std::function<void(const FileCall&)>&) {
  throw std::runtime_error("the registers of this machine aren't known here");
}
bool CanTrace() {
  return false;
}

#endif

void CheckEnd(const TracedRun& run, const std::string& when, Findings& findings) {
  if (run.hung) {
    findings.Add(when + ": it hangs");
  } else if (!WIFEXITED(run.status) || WEXITSTATUS(run.status) != 0) {
    findings.Add(when + ": the process ends with status " + std::to_string(run.status));
  }
}

std::string TextIn(pid_t process, std::uint64_t address) {
  std::string text;
  std::array<char, 256> piece{};
  while (address != 0) {
    // Never across the end of a page: the next one may not be there.
    const std::size_t most = std::min<std::size_t>(piece.size(), 4096 - address % 4096);
    const iovec here{piece.data(), most};
    const iovec there{reinterpret_cast<void*>(address), most};  // NOLINT: an address of theirs
    const ssize_t got = ::process_vm_readv(process, &here, 1, &there, 1, 0);
    if (got <= 0) break;
    const std::string read(piece.data(), static_cast<std::size_t>(got));
    text += read.substr(0, read.find('\0'));
    if (read.find('\0') != std::string::npos) break;
    address += static_cast<std::uint64_t>(got);
  }
  return text;
}

}  // namespace tarnvale::reliability
