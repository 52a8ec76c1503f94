#include "tests/hosts/ftp/ftp_server.h"

#include <grp.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <thread>

#include "tests/hosts/contract/loopback.h"

namespace tarnvale::testing {
namespace {

namespace fs = std::filesystem;

constexpr const char* kProgram = "/usr/sbin/proftpd";
// Of kServerPassword.
constexpr const char* kPasswordHash =
    "$6$tarnvale$.0Li/eiS/zztL/hdCNN4FbtfOemBA9aPA1hR0FUh4gSYGcKE62OAj.94QLG6rAsLdNkzqnI59S9AtarGCn"
    "EMr0";
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
    : encryption_(encryption), port_(port == 0 ? FreeLoopbackPort() : port) {
  if (!Obstacle().empty()) return;
  fs::create_directory(Home());
  // The sessions' user must get there; the server wants its list of users hidden.
  fs::permissions(folder_ / ".", fs::perms::owner_all | fs::perms::others_exec);
  EXPECT_EQ(::chown(Home().c_str(), UserOfSessions(), GroupOfSessions()), 0);
  WriteUsers();
  WriteConfiguration();
  Launch();
  answers_ = WaitUntilItAnswers();
}

FtpServer::~FtpServer() {
  if (process_ <= 0) return;
  ::kill(process_, SIGTERM);
  ::waitpid(process_, nullptr, 0);
}

fs::path FtpServer::Home() const {
  return folder_ / "home";
}

void FtpServer::WriteUsers() const {
  const std::string users = folder_ / "users";
  std::ofstream(users) << kServerUser << ':' << kPasswordHash << ':' << UserOfSessions() << ':'
                       << GroupOfSessions() << "::" << Home().string() << ":/bin/sh\n";
  fs::permissions(users, fs::perms::owner_read | fs::perms::owner_write);
}

void FtpServer::WriteConfiguration() const {
  std::ofstream file(folder_ / "configuration");
  file << "ServerType standalone\nServerName test\nUseIPv6 on\n"
       << "SocketBindTight on\nDefaultAddress 127.0.0.1 ::1\nPort " << port_ << "\n"
       << "User " << ::getpwuid(UserOfSessions())->pw_name << "\n"
       << "Group " << ::getgrgid(GroupOfSessions())->gr_name << "\n"
       << "PidFile " << std::string(folder_ / "pid") << "\nScoreboardFile none\n"
       << "SystemLog " << std::string(folder_ / "log") << "\nTransferLog none\nWtmpLog off\n"
       << "LogFormat verb \"%m\"\nExtendedLog " << std::string(folder_ / "verbs") << " ALL verb\n"
       << "AuthUserFile " << std::string(folder_ / "users") << "\nAuthOrder mod_auth_file.c\n"
       << "RequireValidShell off\nUseReverseDNS off\nDelayEngine off\nAllowOverwrite on\n";
  if (::geteuid() == 0) file << "DefaultRoot ~\n";
  if (encryption_ == Encryption::kNone) return;
  MakeCertificate();
  const std::string certificate = folder_ / "certificate";
  file << "LoadModule mod_tls.c\nTLSEngine on\nTLSLog none\n"
       << "TLSRSACertificateFile " << certificate << "\n"
       << "TLSRSACertificateKeyFile " << certificate << "\n"
       << "TLSRequired " << (encryption_ == Encryption::kOffered ? "off" : "on") << "\n";
  if (encryption_ != Encryption::kNewest) return;
  file << "TLSProtocol TLSv1.3\nTLSOptions NoSessionReuseRequired\n";
}

// Nobody vouches for it, and it is another host's.
void FtpServer::MakeCertificate() const {
  const std::string certificate = folder_ / "certificate";
  const std::string command =
      "openssl req -x509 -newkey rsa:2048 -nodes -days 2 -subj /CN=another.example"
      " -keyout '" +
      certificate + "' -out '" + certificate + ".public' >'" + certificate + ".log' 2>&1" +
      " && cat '" + certificate + ".public' >>'" + certificate + "'";
  EXPECT_EQ(std::system(command.c_str()), 0);
  fs::permissions(certificate, fs::perms::owner_read | fs::perms::owner_write);
}

void FtpServer::Launch() {
  const std::string configuration = folder_ / "configuration";
  const std::string output = folder_ / "output";
  process_ = ::fork();
  if (process_ != 0) return;
  // It goes with us, however we go.
  ::prctl(PR_SET_PDEATHSIG, SIGTERM);
  std::freopen(output.c_str(), "w", stdout);
  std::freopen(output.c_str(), "a", stderr);
  ::execl(kProgram, kProgram, "-n", "-q", "-c", configuration.c_str(), nullptr);
  ::_exit(127);
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

int FtpServer::Count(const std::string& command) const {
  std::ifstream file(folder_ / "verbs");
  int count = 0;
  for (std::string line; std::getline(file, line);) count += line == command ? 1 : 0;
  return count;
}

}  // namespace tarnvale::testing
