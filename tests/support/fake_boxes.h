// Message boxes that are answered by script.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/manual_loop.h"
#include "tests/support/scripted_answers.h"
#include "ui/message_boxes.h"

namespace tarnvale::testing {

/// An unexpected box fails the test, and so does an answer that nothing used
/// for. Each box yields once before it is answered.
class FakeBoxes : public MessageBoxes {
 public:
  explicit FakeBoxes(ManualLoop& loop) : scripts_(loop) {}
  ~FakeBoxes() override;

  /// Answers the next box that has no answer yet, whatever it says.
  void Answer(BoxAnswer answer);
  /// The same, and checks what the box says.
  void Expect(std::string text, BoxIcon icon, BoxAnswer answer);
  /// Runs `action` while the next box that has none yet is open.
  void WhileOpen(std::function<void()> action) { scripts_.WhileOpen(std::move(action)); }

  /// All boxes so far, the unexpected ones included.
  const std::vector<BoxRequest>& Shown() const { return shown_; }

  BoxAnswer Show(const BoxRequest& request) override;

 private:
  struct Script {
    std::optional<std::string> text;
    BoxIcon icon = BoxIcon::kNone;
    BoxAnswer answer = BoxAnswer::kOk;
  };

  ScriptedAnswers<Script> scripts_;
  std::vector<BoxRequest> shown_;
};

}  // namespace tarnvale::testing
