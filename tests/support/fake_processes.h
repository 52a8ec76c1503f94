// Other programs, of which none is started.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/processes.h"
#include "tests/support/fake_files.h"

namespace tarnvale::testing {

enum class StartKind { kOpenWithDesktop, kProgram, kMinimized };

struct StartedProcess {
  StartKind kind = StartKind::kProgram;
  std::string text;  ///< path or command line
  bool operator==(const StartedProcess&) const = default;
};

/// Starts only files that FakeFiles holds, as a host does: a test that expects a
/// start writes the program first. A program named without a folder is found
/// when it is among `known_commands`.
class FakeProcesses : public Processes {
 public:
  explicit FakeProcesses(FakeFiles& files) : files_(files) {}

  /// What was started, in order.
  const std::vector<StartedProcess>& Started() const { return started_; }
  /// What could not be started.
  const std::vector<StartedProcess>& Refused() const { return refused_; }
  /// Makes the next start fail though the program is there.
  void FailStart() { ++failing_starts_; }

  std::map<std::string, std::string> variables;
  std::set<std::string> known_commands;
  bool previous_instance = false;

  bool OpenWithDesktop(const Path& file) override;
  bool StartProgram(const Path& program) override;
  void StartMinimized(const std::string& command_line) override;
  std::optional<std::string> Variable(const std::string& name) override;
  bool PreviousInstance() override { return previous_instance; }

 private:
  bool Record(StartKind kind, const std::string& text, bool found);

  FakeFiles& files_;
  int failing_starts_ = 0;
  std::vector<StartedProcess> started_;
  std::vector<StartedProcess> refused_;
};

}  // namespace tarnvale::testing
