#include "tests/gui/mail_server.h"

#include <fcntl.h>
#include <pwd.h>
#include <signal.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "tests/hosts/contract/loopback_server.h"

namespace tarnvale::testing {
namespace {

constexpr const char* kControl = "/usr/sbin/postfix";
constexpr const char* kMaster = "/usr/lib/postfix/sbin/master";
constexpr uid_t kNobody = 65534;

std::string Content(const std::string& file) {
  std::ostringstream bytes;
  bytes << std::ifstream(file, std::ios::binary).rdbuf();
  return bytes.str();
}

void Own(const std::string& folder, uid_t owner) {
  if (::chown(folder.c_str(), owner, static_cast<gid_t>(-1)) != 0) {
    throw std::runtime_error("can't give away " + folder);
  }
}

// Nothing of the server's is to be seen in the test's output, or to hold it open.
void BeQuiet() {
  const int nothing = ::open("/dev/null", O_RDWR);
  for (const int stream : {0, 1, 2}) ::dup2(nothing, stream);
}

std::uint16_t FreePort() {
  return LoopbackServer().Port();
}

}  // namespace

std::string MailServer::Obstacle() {
  if (!std::filesystem::exists(kMaster)) return "postfix isn't installed";
  if (::geteuid() != 0) return "postfix runs for root only";
  std::ifstream map("/proc/self/uid_map");
  unsigned long first = 0;
  unsigned long outside = 0;
  unsigned long count = 0;
  map >> first >> outside >> count;
  if (count <= kNobody) return "postfix needs more than one user";
  return "";
}

MailServer::MailServer(std::uint16_t port) : port_(port == 0 ? FreePort() : port) {
  WriteConfiguration();
  StartGuarded();
}

MailServer::~MailServer() {
  lifeline_.Close();
  ::waitpid(guard_, nullptr, 0);
}

std::string MailServer::Mailbox() const {
  return Content(folder_ / "mail/box");
}

std::string MailServer::Log() const {
  return Content(folder_ / "log");
}

void MailServer::WriteConfiguration() {
  std::filesystem::permissions(folder_.Path(), std::filesystem::perms(0755));
  for (const char* name : {"conf", "queue", "data", "mail"}) {
    std::filesystem::create_directory(folder_ / name);
  }
  Own(folder_ / "data", ::getpwnam("postfix")->pw_uid);
  Own(folder_ / "mail", kNobody);
  std::ofstream(folder_ / "conf/main.cf")
      << "compatibility_level = 3.6\n"
      << "queue_directory = " << folder_ / "queue"
      << "\n"
      << "data_directory = " << folder_ / "data"
      << "\n"
      << "maillog_file = " << folder_ / "log"
      << "\n"
      << "maillog_file_prefixes = " << folder_.Path() << "\n"
      << "myhostname = mail.test\nmydestination =\nlocal_recipient_maps =\nalias_maps =\n"
      << "inet_interfaces = loopback-only\ninet_protocols = ipv4\n"
      << "virtual_mailbox_domains = home.test\nvirtual_mailbox_maps = static:box\n"
      << "virtual_mailbox_base = " << folder_ / "mail"
      << "\n"
      << "virtual_uid_maps = static:" << kNobody << "\n"
      << "virtual_gid_maps = static:" << kNobody << "\n";
  std::ofstream(folder_ / "conf/master.cf")
      << "127.0.0.1:" << port_ << " inet n - n - - smtpd\n"
      << "cleanup unix n - n - 0 cleanup\nqmgr unix n - n 300 1 qmgr\n"
      << "rewrite unix - - n - - trivial-rewrite\nproxymap unix - - n - - proxymap\n"
      << "bounce unix - - n - 0 bounce\ndefer unix - - n - 0 bounce\n"
      << "trace unix - - n - 0 bounce\nflush unix n - n 1000? 0 flush\n"
      << "error unix - - n - - error\nretry unix - - n - - error\n"
      << "virtual unix - n n - - virtual\nanvil unix - - n - 1 anvil\n"
      << "postlog unix-dgram n - n - 1 postlogd\n";
}

// The guard ends the server when the other end of its pipe closes, which a
// killed test's does too.
void MailServer::StartGuarded() {
  int ends[2] = {-1, -1};
  if (::pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  Descriptor reading(ends[0]);
  lifeline_ = Descriptor(ends[1]);
  const std::string configuration = folder_ / "conf";
  guard_ = ::fork();
  if (guard_ != 0) return;
  ::setsid();
  BeQuiet();
  lifeline_.Close();
  // Makes the folders of the queue.
  const pid_t check = ::fork();
  if (check == 0) {
    ::execl(kControl, kControl, "-c", configuration.c_str(), "check", nullptr);
    ::_exit(127);
  }
  ::waitpid(check, nullptr, 0);
  const pid_t master = ::fork();
  if (master == 0) {
    ::setsid();
    ::execl(kMaster, kMaster, "-c", configuration.c_str(), "-s", nullptr);
    ::_exit(127);
  }
  char byte = 0;
  while (::read(reading.Get(), &byte, 1) > 0) continue;
  ::kill(master, SIGTERM);
  ::waitpid(master, nullptr, 0);
  ::_exit(0);
}

}  // namespace tarnvale::testing
