#include "tests/chain/installation.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include "tests/hosts/contract/native_files.h"

namespace tarnvale::testing {
namespace {

namespace fs = std::filesystem;

// The companions carry the names under which the program starts them.
constexpr const char* kCompanions[] = {"Quit.exe", "U3-Data.exe"};

[[noreturn]] void Become(const std::vector<std::string>& command) {
  std::vector<char*> arguments;
  arguments.reserve(command.size() + 1);
  for (const std::string& word : command) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  ::execv(arguments.front(), arguments.data());
  ::_exit(127);
}

}  // namespace

int RunToEnd(const std::vector<std::string>& command) {
  const pid_t process = ::fork();
  if (process == 0) Become(command);
  int status = -1;
  const auto limit = std::chrono::steady_clock::now() + std::chrono::minutes(1);
  while (::waitpid(process, &status, WNOHANG) == 0) {
    if (std::chrono::steady_clock::now() > limit) {
      std::fprintf(stderr, "%s doesn't end\n", command.back().c_str());
      ::kill(process, SIGKILL);
      ::waitpid(process, &status, 0);
      break;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::map<std::string, std::string> Tree(const std::string& folder) {
  std::map<std::string, std::string> files;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (!entry.is_regular_file()) continue;
    files[entry.path().lexically_relative(folder)] = ReadNative(entry.path());
  }
  return files;
}

Installation::Installation(const std::string& programs, const ProgramsOf& system)
    : system_(system) {
  fs::copy_file(programs + "/" + system.program, folder_ / system.program);
  for (const char* name : kCompanions) fs::copy_file(programs + "/" + name, folder_ / name);
  for (const char* name : {"Data", "Documents", "Storage", "Archives", "Home"}) {
    fs::create_directory(folder_ / name);
  }
  Write("Data.txt", "\"" + PathOf("Data") + "\"\r\n");
}

Installation::~Installation() {
  if (!Runs()) return;
  ::kill(process_, SIGKILL);
  ::waitpid(process_, nullptr, 0);
}

std::string Installation::PathOf(const std::string& name) const {
  std::string path = folder_ / name;
  std::replace(path.begin(), path.end(), '/', '\\');
  return system_.drive + path;
}

void Installation::Write(const std::string& name, const std::string& content) const {
  fs::create_directories(fs::path(folder_ / name).parent_path());
  WriteNative(folder_ / name, content);
}

std::string Installation::Content(const std::string& name) const {
  return ReadNative(folder_ / name);
}

std::vector<std::string> Installation::Command(std::vector<std::string> words) const {
  words.insert(words.begin(), system_.runner.begin(), system_.runner.end());
  return words;
}

void Installation::Start() {
  const std::vector<std::string> command = Command({folder_ / system_.program});
  const std::string output = folder_ / "output";
  const std::string home = folder_ / "Home";
  const std::string state = folder_ / "State";
  process_ = ::fork();
  if (process_ != 0) return;
  // It goes with us, however we go.
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  const int file = ::open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  ::dup2(file, STDOUT_FILENO);
  ::dup2(file, STDERR_FILENO);
  ::setenv("HOME", home.c_str(), 1);
  ::setenv("XDG_STATE_HOME", state.c_str(), 1);
  Become(command);
}

bool Installation::Runs() {
  if (process_ <= 0) return false;
  if (::waitpid(process_, nullptr, WNOHANG) == 0) return true;
  process_ = 0;
  return false;
}

}  // namespace tarnvale::testing
