// The answers of a test to the program's boxes and dialogs.
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <utility>

#include "tests/support/manual_loop.h"

namespace tarnvale::testing {

template <class Answer>
class ScriptedAnswers {
 public:
  explicit ScriptedAnswers(ManualLoop& loop) : loop_(loop) {}

  void Add(Answer answer) { answers_.push_back(std::move(answer)); }
  /// Runs `action` while the next question that has none yet is open.
  void WhileOpen(std::function<void()> action) { actions_.push_back(std::move(action)); }

  /// Yields once, as a person takes a while, and gives the next answer; nothing
  /// when there is none.
  std::optional<Answer> Next() {
    // Taken first: the question may bring another one about.
    std::optional<Answer> answer = Taken(answers_);
    loop_.Yield();
    if (const auto action = Taken(actions_)) (*action)();
    return answer;
  }

  /// Those that nothing used.
  const std::deque<Answer>& Left() const { return answers_; }

 private:
  template <class T>
  static std::optional<T> Taken(std::deque<T>& queue) {
    if (queue.empty()) return std::nullopt;
    std::optional<T> first(std::move(queue.front()));
    queue.pop_front();
    return first;
  }

  ManualLoop& loop_;
  std::deque<Answer> answers_;
  std::deque<std::function<void()>> actions_;
};

}  // namespace tarnvale::testing
