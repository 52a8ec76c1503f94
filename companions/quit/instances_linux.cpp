#include <poll.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include "companions/quit/instances.h"

// Some versions of this header leave out that it is C.
extern "C" {
#include <sys/pidfd.h>
}

namespace tarnvale {
namespace {

namespace fs = std::filesystem;

constexpr const char* kProgramName = "tarnvale";
// What the system puts behind the name of a program file that was replaced
// while it ran.
constexpr std::string_view kDeletedSuffix = " (deleted)";

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

class LinuxInstance final : public Instance {
 public:
  explicit LinuxInstance(pid_t number) : process_(::pidfd_open(number, 0)) {}
  LinuxInstance(const LinuxInstance&) = delete;
  LinuxInstance& operator=(const LinuxInstance&) = delete;
  ~LinuxInstance() override {
    if (process_ >= 0) ::close(process_);
  }

  void RequestEnd() const override { ::pidfd_send_signal(process_, SIGTERM, nullptr, 0); }
  void Kill() const override { ::pidfd_send_signal(process_, SIGKILL, nullptr, 0); }
  void AwaitEnd(std::chrono::milliseconds patience) const override {
    pollfd ended{process_, POLLIN, 0};
    if (process_ >= 0) ::poll(&ended, 1, static_cast<int>(patience.count()));
  }

 private:
  int process_;
};

Instances InstancesOf(const std::string& program) {
  Instances found;
  for (const auto& entry : fs::directory_iterator("/proc")) {
    const std::string name = entry.path().filename().string();
    if (name.find_first_not_of("0123456789") != std::string::npos) continue;
    // Looked at after it is held: what is seen then is the one that is held, or
    // its signal reaches nobody.
    auto held = std::make_unique<LinuxInstance>(std::stoi(name));
    if (IsOfThisUser(entry.path()) && Runs(entry.path(), program)) found.push_back(std::move(held));
  }
  return found;
}

}  // namespace

Instances FindInstances() {
  try {
    const fs::path own = ProgramFileOf("/proc/self");
    if (own.empty()) throw NobodyKnows();
    return InstancesOf((own.parent_path() / kProgramName).string());
  } catch (const fs::filesystem_error&) {
    throw NobodyKnows();
  }
}

std::chrono::milliseconds Uptime() {
  return std::chrono::duration_cast<std::chrono::milliseconds>(
      std::chrono::steady_clock::now().time_since_epoch());
}

}  // namespace tarnvale
