// The FTP client on the program's own event loop, with a drive of its own.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "tests/hosts/contract/network_parts.h"
#include "tests/hosts/ftp/ftp_host.h"
#include "tests/support/awake_clock.h"
#include "ui/timer.h"

namespace tarnvale::testing {

// What only the client on libcurl does.
#ifdef _WIN32
#define SKIP_ON_WININET(reason) GTEST_SKIP() << "WinINet " << (reason)
#else
#define SKIP_ON_WININET(reason) static_cast<void>(0)
#endif

/// The limit of most tests, and the commands of their transfers.
inline constexpr int kLimitSeconds = 1;
inline constexpr const char* kGet = R"(GET "a" "C:\Data\a")";
inline constexpr const char* kPut = R"(PUT "C:\Data\a" "a")";

/// How a command went.
struct FtpRun {
  std::vector<int> states;
  int code = kTransferNoError;  ///< 0 when it completed
  double seconds = 0;
  double awake_seconds = 0;  ///< without what the whole machine stood still
};

/// More than the systems at both ends hold, if many.
inline std::string Megabytes(std::size_t count) {
  return std::string(count * 1000000, 'x');
}

class FtpStage : public FtpDrive {
 protected:
  FtpStage();
  ~FtpStage() override;

  /// Sets host, login and a limit in this order, as a session is set up.
  void Configure(const std::string& host, const std::string& user, const std::string& password,
                 int limit_s = 10);
  void Configure(int port, int limit_s = 10);

  /// A new client, with this patience.
  void SetPatience(const FtpPatience& patience);

  /// Executes a command and waits for its end.
  FtpRun Run(const std::string& command);
  /// Waits for the end of what runs.
  FtpRun Wait();
  /// Lets the loop run until `condition` holds. False when it never did.
  bool WaitFor(const std::function<bool()>& condition);

  /// The longest time in which no timer of the program could tick, though the machine ran.
  double WorstGap() const { return worst_gap_; }

  std::filesystem::path Native(const std::string& name) const {
    return PathOnDrive("Data/" + name);
  }

  HostLoop loop;
  std::unique_ptr<FtpTransportUnderTest> transport;
  /// All that was reported since the last command began.
  std::vector<int> reported;

 private:
  using Clock = std::chrono::steady_clock;

  Timer pulse_{loop.Timers(), 10, true};
  AwakeClock awake_;
  double last_pulse_ = 0;
  double worst_gap_ = 0;
};

}  // namespace tarnvale::testing
