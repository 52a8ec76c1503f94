#include "tests/support/fake_boxes.h"

#include <gtest/gtest.h>

#include <utility>

namespace tarnvale::testing {
namespace {

bool Offers(BoxButtons buttons, BoxAnswer answer) {
  switch (buttons) {
    case BoxButtons::kOk:
      return answer == BoxAnswer::kOk;
    case BoxButtons::kOkCancel:
      return answer == BoxAnswer::kOk || answer == BoxAnswer::kCancel;
    case BoxButtons::kYesNo:
      return answer == BoxAnswer::kYes || answer == BoxAnswer::kNo;
  }
  return false;
}

BoxAnswer AnswerOfClosing(BoxButtons buttons) {
  return buttons == BoxButtons::kYesNo ? BoxAnswer::kNo : BoxAnswer::kCancel;
}

}  // namespace

FakeBoxes::~FakeBoxes() {
  for (const Script& script : scripts_.Left()) {
    ADD_FAILURE() << "a box that was expected never came: " << script.text.value_or("(any text)");
  }
}

void FakeBoxes::Answer(BoxAnswer answer) {
  scripts_.Add({std::nullopt, BoxIcon::kNone, answer});
}

void FakeBoxes::Expect(std::string text, BoxIcon icon, BoxAnswer answer) {
  scripts_.Add({std::move(text), icon, answer});
}

BoxAnswer FakeBoxes::Show(const BoxRequest& request) {
  shown_.push_back(request);
  const std::optional<Script> script = scripts_.Next();
  if (!script) {
    ADD_FAILURE() << "unexpected box: " << request.text;
    return AnswerOfClosing(request.buttons);
  }
  if (script->text) {
    EXPECT_EQ(request.text, *script->text);
    EXPECT_EQ(request.icon, script->icon) << request.text;
  }
  EXPECT_TRUE(Offers(request.buttons, script->answer))
      << "the box has no button for the answer: " << request.text;
  return script->answer;
}

}  // namespace tarnvale::testing
