// Installations of `Quit.exe` beside a program that it may end.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "tests/hosts/contract/temporary_folder.h"

namespace tarnvale::testing {

/// The program that is ended sleeps: what it would do otherwise makes no difference.
class QuitStage : public ::testing::Test {
 protected:
  ~QuitStage() override {
    for (const pid_t process : running_) {
      ::kill(process, SIGKILL);
      ::waitpid(process, nullptr, 0);
    }
  }

  /// Makes a folder with a copy of both programs and returns it.
  std::string Install(const std::string& name) const {
    std::string installed = folder / name;
    std::filesystem::create_directories(installed);
    std::filesystem::copy_file(QUIT_PROGRAM, installed + "/Quit.exe");
    std::filesystem::copy_file("/bin/sleep", installed + "/tarnvale");
    return installed;
  }

  /// Starts an instance of the program in a folder, after `preparation` in its own
  /// process. Returns when it runs; 0 when the preparation or the start failed.
  pid_t StartInstance(
      const std::string& installed,
      const std::function<bool()>& preparation = [] { return true; }) {
    const pid_t process = Start({installed + "/tarnvale", "1000"}, preparation);
    if (process > 0) running_.push_back(process);
    return process;
  }

  /// Runs `Quit.exe` to its end and returns its exit status.
  int Quit(
      const std::string& installed,
      const std::function<bool()>& preparation = [] { return true; }) const {
    const pid_t process = Start({installed + "/Quit.exe"}, preparation);
    int status = 0;
    EXPECT_EQ(::waitpid(process, &status, 0), process);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  bool Lives(pid_t process) { return EndOf(process) == 0; }

  /// The signal that a process was ended by; 0 while it lives.
  int EndOf(pid_t process) {
    int status = 0;
    if (::waitpid(process, &status, WNOHANG) != process) return 0;
    std::erase(running_, process);
    return WIFSIGNALED(status) ? WTERMSIG(status) : -1;
  }

  TemporaryFolder folder;

 private:
  static pid_t Start(const std::vector<std::string>& command,
                     const std::function<bool()>& preparation) {
    // The end that the new process writes to is closed by its start.
    std::array<int, 2> failure{};
    EXPECT_EQ(::pipe2(failure.data(), O_CLOEXEC), 0);
    const pid_t process = ::fork();
    if (process == 0) {
      std::vector<char*> words;
      for (const std::string& word : command) words.push_back(const_cast<char*>(word.c_str()));
      words.push_back(nullptr);
      if (preparation()) ::execv(words[0], words.data());
      ::_exit(::write(failure[1], "x", 1) == 1 ? 127 : 126);
    }
    ::close(failure[1]);
    char failed = 0;
    const bool runs = ::read(failure[0], &failed, 1) == 0;
    ::close(failure[0]);
    if (!runs) ::waitpid(process, nullptr, 0);
    return runs ? process : 0;
  }

  std::vector<pid_t> running_;
};

}  // namespace tarnvale::testing
