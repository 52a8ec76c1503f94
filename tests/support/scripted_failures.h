// Failures by script, and a record of calls: what every fake can do.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnvale::testing {

/// Base of the fakes. Function names are those of the interface. A failure that no call
/// has met fails the test: it would show nothing.
class ScriptedFailures {
 public:
  ScriptedFailures() = default;
  ScriptedFailures(const ScriptedFailures&) = delete;
  ScriptedFailures& operator=(const ScriptedFailures&) = delete;

  /// The next call of a function raises `number`.
  void FailNext(std::string function, int number);
  /// Each call raises until ClearFailures.
  void FailAlways(std::string function, int number);
  /// Each call raises that names `path` as its source or its target, until
  /// ClearFailures.
  void FailOn(std::string function, std::string path, int number);
  void ClearFailures();

  /// The calls so far, "CopyWhole C:\a.txt -> D:\a.txt", those that failed
  /// included.
  const std::vector<std::string>& Calls() const { return calls_; }
  /// How many of them called one function.
  int CallsOf(std::string_view function) const;
  void ClearCalls() { calls_.clear(); }

 protected:
  ~ScriptedFailures() { ClearFailures(); }

  /// Records a call and raises what the script has for it.
  void Enter(std::string_view function, std::string_view subject = {},
             std::string_view target = {});
  /// False while what a fake calls itself is no call of its user's.
  bool is_recording_ = true;
  /// Raises what the script has, without a record.
  void RaiseScripted(std::string_view function, std::string_view subject,
                     std::string_view target = {});
  /// As Enter, for functions that report failures by their result: true when
  /// the script lets the call fail.
  bool EnterAndFails(std::string_view function, std::string_view subject);
  /// Likewise, without a record.
  bool Fails(std::string_view function, std::string_view subject) {
    return TakeFailure(function, subject, {}).has_value();
  }

 private:
  struct Failure {
    std::string function;
    std::optional<std::string> path;
    int number = 0;
    bool once = false;
    bool was_met = false;
  };
  std::optional<int> TakeFailure(std::string_view function, std::string_view subject,
                                 std::string_view target);
  void Record(std::string_view function, std::string_view subject, std::string_view target);

  std::vector<Failure> failures_;
  std::vector<std::string> calls_;
};

}  // namespace tarnvale::testing
