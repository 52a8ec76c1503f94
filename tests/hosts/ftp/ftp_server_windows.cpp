#include <cstdlib>
#include <fstream>
#include <string>

#include "hosts/windows/wide.h"
#include "tests/hosts/contract/loopback.h"
#include "tests/hosts/ftp/ftp_server.h"
#include "tests/hosts/windows/temporary_folder.h"

namespace tarnvale::testing {
namespace {

std::string Variable(const char* name) {
  const char* const value = std::getenv(name);
  return value != nullptr ? value : "";
}

std::size_t LinesOf(const std::filesystem::path& file, const std::string& wanted,
                    std::size_t leave_out) {
  std::ifstream lines(file);
  std::size_t count = 0;
  for (std::string line; std::getline(lines, line);) {
    if (leave_out > 0) {
      --leave_out;
    } else if (wanted.empty() || line == wanted) {
      ++count;
    }
  }
  return count;
}

}  // namespace

std::string FtpServer::Obstacle() {
  return Variable("TARNVALE_FTP_PORT").empty() ? "no server beside Wine: run it by with-server"
                                               : "";
}

FtpServer::FtpServer(int, Encryption) {
  if (!Obstacle().empty()) return;
  folder_ = "Z:" + Variable("TARNVALE_FTP_FOLDER");
  port_ = std::stoi(Variable("TARNVALE_FTP_PORT"));
  answers_ = WaitUntilItAnswers();
  for (const auto& entry : std::filesystem::directory_iterator(Home())) RemoveNative(entry.path());
  verbs_before_ = LinesOf(folder_ / "verbs", {}, 0);
}

FtpServer::~FtpServer() = default;

std::filesystem::path FtpServer::Home() const {
  return folder_ / "home";
}

std::filesystem::path FtpServer::PathOf(const std::string& name) const {
  return Home() / Wide(name);
}

bool FtpServer::WaitUntilItAnswers() const {
  constexpr DWORD kPatience_ms = 20000;
  const DWORD start = ::GetTickCount();
  while (::GetTickCount() - start < kPatience_ms) {
    if (AnswersOnLoopback(port_)) return true;
    ::Sleep(10);
  }
  return false;
}

int FtpServer::Count(const std::string& command) const {
  return static_cast<int>(LinesOf(folder_ / "verbs", command, verbs_before_));
}

}  // namespace tarnvale::testing
