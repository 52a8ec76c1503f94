// A real FTP server on the loopback, for as long as the object lives.
#pragma once

#include <filesystem>
#include <string>

#ifndef _WIN32
#include <sys/types.h>

#include "tests/hosts/contract/temporary_folder.h"
#endif

namespace tarnvale::testing {

inline constexpr const char* kServerUser = "ann";
inline constexpr const char* kServerPassword = "open sesame";

class FtpServer {
 public:
  /// What it does about encryption.
  /// kNewest: demanded, and of the latest version only.
  enum class Encryption { kNone, kOffered, kDemanded, kNewest };

  /// Why it can't be started for this user; empty when it can. Under Wine it is there
  /// already (with-server), and this object empties its folder.
  static std::string Obstacle();

  /// Starts it on a port, 0 for a free one, and waits until it answers.
  explicit FtpServer(int port = 0, Encryption encryption = Encryption::kNone);
  FtpServer(const FtpServer&) = delete;
  FtpServer& operator=(const FtpServer&) = delete;
  ~FtpServer();

  /// False when there is no such server, or it didn't start.
  bool Answers() const { return answers_; }
  int Port() const { return port_; }
  /// The user's root folder.
  std::filesystem::path Home() const;
  std::filesystem::path PathOf(const std::string& name) const;

#ifndef _WIN32
  /// False as long as anybody's session goes on.
  bool IsIdle() const;
#endif
  /// How often it was given this command by anybody, e.g. "USER".
  int Count(const std::string& command) const;

 private:
  bool WaitUntilItAnswers() const;

#ifdef _WIN32
  std::filesystem::path folder_;
  std::size_t verbs_before_ = 0;
#else
  void Launch(Encryption encryption);

  TemporaryFolder folder_;
  pid_t process_ = 0;
#endif
  int port_ = 0;
  bool answers_ = false;
};

}  // namespace tarnvale::testing
