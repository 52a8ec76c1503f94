// Ends this user's running instances of the program that lies in this program's
// own folder, and no other process.
//
// The main program starts it on every way out, after its tray icon is gone, and
// waits to be ended. Exit status: 0 when no such instance is left, 1 otherwise.

#include <poll.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

// Some versions of this header leave out that it is C.
extern "C" {
#include <sys/pidfd.h>
}

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr const char* kProgramName = "tarnvale";
// What the system puts behind the name of a program file that was replaced
// while it ran.
constexpr std::string_view kDeletedSuffix = " (deleted)";

// An instance may be in the middle of a copy; every file is then its old or its
// new self, so a second of patience is politeness, not safety.
constexpr auto kPatience = 1s;

std::string ProgramFileOf(const fs::path& process) {
  std::error_code error;
  std::string file = fs::read_symlink(process / "exe", error).string();
  if (file.ends_with(kDeletedSuffix)) file.resize(file.size() - kDeletedSuffix.size());
  return file;
}

bool LeadToTheSame(const fs::path& one, const fs::path& other) {
  struct stat first {};
  struct stat second {};
  return ::stat(one.c_str(), &first) == 0 && ::stat(other.c_str(), &second) == 0 &&
         first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

// By what the system says of the process itself: its folder in /proc belongs to
// root while it keeps others from looking into it.
bool IsOfThisUser(const fs::path& process) {
  std::ifstream status(process / "status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("Uid:")) return std::strtoul(line.c_str() + 4, nullptr, 10) == ::getuid();
  }
  return false;
}

// The very file: in a container another one may have the same path. Of a file that
// was replaced only the path is left, and counts where paths mean the same.
bool Runs(const fs::path& process, const std::string& program) {
  struct stat running {};
  if (::stat((process / "exe").c_str(), &running) != 0) return false;
  if (LeadToTheSame(process / "exe", program)) return true;
  return running.st_nlink == 0 && ProgramFileOf(process) == program &&
         LeadToTheSame(process / "ns/mnt", "/proc/self/ns/mnt");
}

/// A process that is held, not known by a number: that may belong to another
/// process the moment after it was read.
class Instance {
 public:
  explicit Instance(pid_t number) : process_(::pidfd_open(number, 0)) {}
  Instance(Instance&& other) noexcept : process_(std::exchange(other.process_, -1)) {}
  Instance& operator=(Instance&&) = delete;
  ~Instance() {
    if (process_ >= 0) ::close(process_);
  }

  void Signal(int number) const { ::pidfd_send_signal(process_, number, nullptr, 0); }
  void AwaitEnd(Clock::time_point latest) const {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(latest - Clock::now());
    pollfd ended{process_, POLLIN, 0};
    if (process_ >= 0) ::poll(&ended, 1, std::max(0, static_cast<int>(left.count())));
  }

 private:
  int process_;
};

std::vector<Instance> Instances(const std::string& program) {
  std::vector<Instance> found;
  for (const auto& entry : fs::directory_iterator("/proc")) {
    const std::string name = entry.path().filename().string();
    if (name.find_first_not_of("0123456789") != std::string::npos) continue;
    // Looked at after it is held: what is seen then is the one that is held, or
    // its signal reaches nobody.
    Instance held(std::stoi(name));
    if (IsOfThisUser(entry.path()) && Runs(entry.path(), program)) found.push_back(std::move(held));
  }
  return found;
}

// True when none is left.
bool End(const std::string& program, int number) {
  const std::vector<Instance> instances = Instances(program);
  for (const Instance& instance : instances) instance.Signal(number);
  const auto latest = Clock::now() + kPatience;
  for (const Instance& instance : instances) instance.AwaitEnd(latest);
  return Instances(program).empty();
}

}  // namespace

int main() {
  try {
    const fs::path own = ProgramFileOf("/proc/self");
    if (own.empty()) return 1;
    const std::string program = (own.parent_path() / kProgramName).string();
    return End(program, SIGTERM) || End(program, SIGKILL) ? 0 : 1;
  } catch (const fs::filesystem_error&) {
    return 1;  // Nobody knows whether one is left.
  }
}
