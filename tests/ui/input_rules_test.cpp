#include "ui/input_rules.h"

#include <gtest/gtest.h>

#include "ui/owner_drawn.h"
#include "ui/window.h"

namespace tarnvale::testing {
namespace {

/// A drawn control of any kind.
class Drawn : public OwnerDrawn {
 public:
  explicit Drawn(Kind kind) : kind_(kind) {}
  void Paint(Canvas&, TextPainter&) override {}
  Kind AccessibleKind() const override { return kind_; }
  bool TakesFocus() const override { return true; }

 private:
  Kind kind_;
};

class InputRulesTest : public ::testing::Test {
 protected:
  InputRulesTest() {
    window.Place({{&button, nullptr, {}},
                  {&other, nullptr, {}},
                  {&tick, nullptr, {}},
                  {&field, nullptr, {}},
                  {&memo, nullptr, {}},
                  {&link, nullptr, {}}});
  }

  Window window;
  Drawn button{OwnerDrawn::Kind::kButton};
  Drawn other{OwnerDrawn::Kind::kButton};
  Drawn tick{OwnerDrawn::Kind::kCheckBox};
  TextBox field;
  TextBox memo{TextKind::kMemo};
  Label link{TextRole::kLink};
};

TEST_F(InputRulesTest, EnterPressesTheDefaultButtonWhereItIsNotTheControlsOwn) {
  EXPECT_EQ(PressedByEnter(field), nullptr) << "no default button";
  window.DefaultButton = &button;
  EXPECT_EQ(PressedByEnter(field), &button);
  EXPECT_EQ(PressedByEnter(tick), &button);
  EXPECT_EQ(PressedByEnter(memo), nullptr);
  EXPECT_EQ(PressedByEnter(other), nullptr);
  button.Enabled = false;
  EXPECT_EQ(PressedByEnter(field), nullptr);
}

TEST(InputRules, FilesThatAreDraggedAreTheirPathsOneToALine) {
  EXPECT_EQ(DraggedText("text", {}), "text");
  EXPECT_EQ(DraggedText("file:one", {"C:\\one"}), "C:\\one");
  EXPECT_EQ(DraggedText("", {"C:\\one", "C:\\two"}), "C:\\one\nC:\\two");
}

TEST(InputRules, ADropDoesOneOfTheThingsThatTheDragAllows) {
  EXPECT_EQ(AllowedEffect(kCopies, kCopies | kMoves), kCopies);
  EXPECT_EQ(AllowedEffect(kMoves, kCopies), 0);
  EXPECT_EQ(AllowedEffect(kCopies | kMoves, kCopies | kMoves), kCopies);
  EXPECT_EQ(AllowedEffect(kCopies | kMoves, kMoves), kMoves);
}

TEST_F(InputRulesTest, APressGetsThroughToTheControlThatHasTheFocus) {
  window.Focus(field);
  EXPECT_TRUE(MayTakePress(field));
  EXPECT_FALSE(MayTakePress(memo)) << "the focus was called back";
  EXPECT_TRUE(MayTakePress(link)) << "it takes no focus by a click";
  window.Frame = WindowFrame::kPopup;
  EXPECT_TRUE(MayTakePress(memo));
}

}  // namespace
}  // namespace tarnvale::testing
