// Ends the running instance of the program that lies in this program's own
// folder, and no other process.
//
// The main program starts it on every way out, after its tray icon is gone, and
// waits to be ended. Exit status: 0 when no such instance is left, 1 otherwise.

#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr const char* kProgramName = "tarnvale";
// What the system puts behind the name of a program file that was replaced
// while it ran.
constexpr const char* kDeletedSuffix = " (deleted)";

// An instance may be in the middle of a copy; every file is then its old or its
// new self, so a second of patience is politeness, not safety.
constexpr auto kPatience = 1s;
constexpr auto kPollInterval = 10ms;

std::string ProgramFileOf(const fs::path& process) {
  std::error_code error;
  std::string file = fs::read_symlink(process / "exe", error).string();
  const std::string suffix = kDeletedSuffix;
  if (file.ends_with(suffix)) file.resize(file.size() - suffix.size());
  return file;
}

std::vector<pid_t> Instances(const std::string& program) {
  std::vector<pid_t> found;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator("/proc", error)) {
    const std::string name = entry.path().filename().string();
    if (name.find_first_not_of("0123456789") != std::string::npos) continue;
    if (ProgramFileOf(entry.path()) == program) found.push_back(std::stoi(name));
  }
  return found;
}

void Signal(const std::string& program, int number) {
  for (const pid_t instance : Instances(program)) kill(instance, number);
}

bool WaitUntilGone(const std::string& program) {
  const auto end = std::chrono::steady_clock::now() + kPatience;
  while (!Instances(program).empty()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(kPollInterval);
  }
  return true;
}

}  // namespace

int main() {
  const fs::path own = ProgramFileOf("/proc/self");
  if (own.empty()) return 1;
  const std::string program = (own.parent_path() / kProgramName).string();
  Signal(program, SIGTERM);
  if (WaitUntilGone(program)) return 0;
  Signal(program, SIGKILL);
  return WaitUntilGone(program) ? 0 : 1;
}
