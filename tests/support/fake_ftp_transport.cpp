#include "tests/support/fake_ftp_transport.h"

#include <initializer_list>
#include <set>

#include "base/failure.h"
#include "base/text.h"

namespace tarnvale::testing {
namespace {

using std::chrono::milliseconds;

constexpr int kStepMs = 10;

bool IsHost(const std::string& text) {
  const std::string_view host = Trimmed(text);
  return !host.empty() && host.find_first_of(" \t/@?#\"") == std::string_view::npos;
}

std::string VerbOf(const std::string& command) {
  return command.substr(0, command.find(' '));
}

}  // namespace

FakeFtpTransport::FakeFtpTransport(ManualLoop& loop) : timer_(loop.Timers(), kStepMs, false) {
  timer_.Tick.Listen([this] { Step(); });
}

void FakeFtpTransport::Report(TransportState state, std::int32_t code) {
  code_ = code;
  StateChanged.Emit(state);
}

std::vector<std::string> FakeFtpTransport::Commands() const {
  constexpr std::string_view kExecute = "Execute ";
  std::vector<std::string> commands;
  for (const std::string& call : Calls()) {
    if (call.starts_with(kExecute)) commands.push_back(call.substr(kExecute.size()));
  }
  return commands;
}

void FakeFtpTransport::Note(const std::string& function, const std::string& subject) {
  Called.Emit(subject.empty() ? function : function + " " + subject);
  Enter(function, subject);
}

void FakeFtpTransport::SetProtocol(TransferProtocol protocol) {
  Note("SetProtocol", std::to_string(static_cast<int>(protocol)));
}

void FakeFtpTransport::SetRemoteHost(const std::string& host) {
  Note("SetRemoteHost", host);
  host_ = host;
}

void FakeFtpTransport::SetUserName(const std::string& name) {
  Note("SetUserName", name);
}

void FakeFtpTransport::SetPassword(const std::string& password) {
  Note("SetPassword", password);
}

void FakeFtpTransport::SetRequestTimeout(std::int32_t seconds) {
  Note("SetRequestTimeout", std::to_string(seconds));
}

void FakeFtpTransport::Cancel() {
  Note("Cancel");
  timer_.Enabled = false;
  is_busy_ = false;
  is_connected_ = false;
}

void FakeFtpTransport::Execute(const std::string& command) {
  Note("Execute", command);
  if (is_busy_) throw ProgramError(kStillExecuting);
  static const std::set<std::string> kVerbs{"DIR", "PUT", "GET", "CLOSE"};
  const std::string verb = VerbOf(command);
  if (!IsHost(host_) || !kVerbs.contains(verb)) throw ProgramError(kMalformedCommand);
  course_ = CourseOf(verb);
  is_connected_ = verb != "CLOSE";
  is_busy_ = true;
  reported_count_ = 0;
  elapsed_ = milliseconds::zero();
  // Enabling starts the interval anew.
  timer_.Enabled = false;
  timer_.Enabled = true;
}

FtpCourse FakeFtpTransport::CourseOf(const std::string& verb) const {
  if (const auto scripted = courses_.find(verb); scripted != courses_.end()) {
    return scripted->second;
  }
  FtpCourse course;
  const auto report = [&](std::initializer_list<TransportState> states) {
    for (const TransportState state : states) {
      course.lasts += milliseconds(kStepMs);
      course.reported.push_back({course.lasts, state});
    }
  };
  using enum TransportState;
  if (verb == "CLOSE") {
    report({kDisconnecting, kDisconnected});
  } else {
    if (!is_connected_) report({kResolvingHost, kHostResolved, kConnecting, kConnected});
    report({kRequesting, kRequestSent, kReceivingResponse, kResponseReceived});
  }
  report({kResponseCompleted});
  return course;
}

// A handler of a state may cancel, which ends the course.
void FakeFtpTransport::Step() {
  elapsed_ += milliseconds(kStepMs);
  while (is_busy_ && reported_count_ < course_.reported.size() &&
         course_.reported[reported_count_].at <= elapsed_) {
    const ReportedState& next = course_.reported[reported_count_++];
    Report(next.state, next.code);
  }
  if (elapsed_ < course_.lasts) return;
  is_busy_ = false;
  timer_.Enabled = false;
}

}  // namespace tarnvale::testing
