#include "tests/support/scripted_failures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

#include "base/failure.h"
#include "base/text.h"

namespace tarnvale::testing {

void ScriptedFailures::ClearFailures() {
  for (const Failure& failure : failures_) {
    EXPECT_TRUE(failure.was_met) << "no call met the failure of " << failure.function << " "
                                 << failure.path.value_or("");
  }
  failures_.clear();
}

void ScriptedFailures::FailNext(std::string function, int number) {
  failures_.push_back({std::move(function), std::nullopt, number, true, false});
}

void ScriptedFailures::FailAlways(std::string function, int number) {
  failures_.push_back({std::move(function), std::nullopt, number, false, false});
}

void ScriptedFailures::FailOn(std::string function, std::string path, int number) {
  failures_.push_back({std::move(function), std::move(path), number, false, false});
}

int ScriptedFailures::CallsOf(std::string_view function) const {
  return static_cast<int>(std::count_if(calls_.begin(), calls_.end(), [&](const auto& call) {
    return call.substr(0, call.find(' ')) == function;
  }));
}

void ScriptedFailures::Record(std::string_view function, std::string_view subject,
                              std::string_view target) {
  if (!is_recording_) return;
  std::string call(function);
  if (!subject.empty()) call.append(" ").append(subject);
  if (!target.empty()) call.append(" -> ").append(target);
  calls_.push_back(std::move(call));
}

std::optional<int> ScriptedFailures::TakeFailure(std::string_view function,
                                                 std::string_view subject,
                                                 std::string_view target) {
  const auto hit = std::find_if(failures_.begin(), failures_.end(), [&](const Failure& f) {
    return f.function == function &&
           (!f.path || EqualIgnoringCase(*f.path, subject) || EqualIgnoringCase(*f.path, target));
  });
  if (hit == failures_.end()) return std::nullopt;
  const int number = hit->number;
  hit->was_met = true;
  if (hit->once) failures_.erase(hit);
  return number;
}

void ScriptedFailures::RaiseScripted(std::string_view function, std::string_view subject,
                                     std::string_view target) {
  if (const auto number = TakeFailure(function, subject, target)) throw ProgramError(*number);
}

void ScriptedFailures::Enter(std::string_view function, std::string_view subject,
                             std::string_view target) {
  Record(function, subject, target);
  RaiseScripted(function, subject, target);
}

bool ScriptedFailures::EnterAndFails(std::string_view function, std::string_view subject) {
  Record(function, subject, {});
  return Fails(function, subject);
}

}  // namespace tarnvale::testing
