// An FTP client without a server, on the virtual clock.
#pragma once

#include <chrono>
#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ftp_transport.h"
#include "tests/support/manual_loop.h"
#include "tests/support/scripted_failures.h"
#include "ui/timer.h"

namespace tarnvale::testing {

/// One state that a command reports, counted from the command's start in steps of
/// 10 ms.
struct ReportedState {
  std::chrono::milliseconds at{};
  TransportState state{};
  std::int32_t code = kTransferNoError;  ///< the response code from then on
};

/// What a command does: the states that it reports, in order, and how long it runs.
struct FtpCourse {
  std::vector<ReportedState> reported = {};
  std::chrono::milliseconds lasts = {};
};

/// Records every call but the questions, "Execute DIR", and fails by script. A
/// command takes the course that the test gave its verb, otherwise that of a
/// server with which all goes well.
class FakeFtpTransport : public FtpTransport, public ScriptedFailures {
 public:
  explicit FakeFtpTransport(ManualLoop& loop);

  /// What commands with this verb ("DIR") do from now on.
  void Let(std::string verb, FtpCourse course) { courses_[std::move(verb)] = std::move(course); }
  /// Reports a state now, as a server that does something by itself.
  void Report(TransportState state, std::int32_t code = kTransferNoError);

  /// The commands that were given to Execute, refused ones included.
  std::vector<std::string> Commands() const;
  /// Each call as Calls() has it, before it runs or fails.
  Signal<const std::string&> Called;

  bool IsConnected() const { return is_connected_; }

  void SetProtocol(TransferProtocol protocol) override;
  void SetRemoteHost(const std::string& host) override;
  void SetUserName(const std::string& name) override;
  void SetPassword(const std::string& password) override;
  void SetRequestTimeout(std::int32_t seconds) override;
  void Cancel() override;
  void Execute(const std::string& command) override;
  bool IsBusy() const override { return is_busy_; }
  std::int32_t ResponseCode() const override { return code_; }

 private:
  void Note(const std::string& function, const std::string& subject = {});
  FtpCourse CourseOf(const std::string& verb) const;
  void Step();

  std::map<std::string, FtpCourse> courses_;
  std::string host_;
  bool is_connected_ = false;
  bool is_busy_ = false;
  std::int32_t code_ = kTransferNoError;

  FtpCourse course_;
  std::size_t reported_count_ = 0;
  std::chrono::milliseconds elapsed_{};
  Timer timer_;
};

}  // namespace tarnvale::testing
