#include "tests/hosts/ftp/ftp_server.h"

#include <grp.h>
#include <pwd.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <fstream>
#include <thread>

#include "tests/hosts/contract/loopback.h"

namespace tarnvale::testing {
namespace {

// The server lets nobody in as root.
constexpr uid_t kNobody = 65534;

uid_t UserOfSessions() {
  return ::geteuid() == 0 ? kNobody : ::geteuid();
}

gid_t GroupOfSessions() {
  return ::geteuid() == 0 ? kNobody : ::getegid();
}

}  // namespace

std::string FtpServer::Obstacle() {
  const bool has_names =
      ::getpwuid(UserOfSessions()) != nullptr && ::getgrgid(GroupOfSessions()) != nullptr;
  return has_names ? "" : "the FTP server runs for nobody without a name";
}

FtpServer::FtpServer(int port, Encryption encryption)
    : port_(port == 0 ? FreeLoopbackPort() : port) {
  if (!Obstacle().empty()) return;
  Launch(encryption);
  answers_ = WaitUntilItAnswers();
}

FtpServer::~FtpServer() {
  if (process_ <= 0) return;
  ::kill(process_, SIGTERM);
  ::waitpid(process_, nullptr, 0);
}

std::filesystem::path FtpServer::Home() const {
  return folder_ / "home";
}

void FtpServer::Launch(Encryption encryption) {
  constexpr std::array kNames{"none", "offered", "demanded", "newest"};
  const std::string folder = folder_.Path();
  const std::string port = std::to_string(port_);
  process_ = ::fork();
  if (process_ != 0) return;
  // It goes with us, however we go.
  ::prctl(PR_SET_PDEATHSIG, SIGTERM);
  ::execl(FTP_SERVE, FTP_SERVE, folder.c_str(), port.c_str(),
          kNames[static_cast<std::size_t>(encryption)], nullptr);
  ::_exit(127);
}

std::filesystem::path FtpServer::PathOf(const std::string& name) const {
  return Home() / name;
}

bool FtpServer::WaitUntilItAnswers() const {
  const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (std::chrono::steady_clock::now() < limit) {
    if (AnswersOnLoopback(port_)) return true;
    if (::waitpid(process_, nullptr, WNOHANG) != 0) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return false;
}

// Each session is a process of its own.
bool FtpServer::IsIdle() const {
  const std::string process = std::to_string(process_);
  std::ifstream file("/proc/" + process + "/task/" + process + "/children");
  std::string session;
  return !(file >> session);
}

int FtpServer::Count(const std::string& command) const {
  std::ifstream file(folder_ / "verbs");
  int count = 0;
  for (std::string line; std::getline(file, line);) count += line == command ? 1 : 0;
  return count;
}

}  // namespace tarnvale::testing
