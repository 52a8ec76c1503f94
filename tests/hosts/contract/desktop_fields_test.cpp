// Fields of each desktop, and their records.
#include <string>

#include "tests/hosts/contract/desktop_under_test.h"

namespace tarnvale::testing {
namespace {

constexpr char kAccented[] = "h\xC3\xA4user";

class DesktopFields : public DesktopUnderTest {
 protected:
  void ShowField(TextBox& box) {
    Place(box);
    Show();
    window.Focus(box);
  }
  void ShowMask() {
    mask.Mask = "##:##";
    ShowField(mask);
  }

  TextBox field;
  TextBox mask{TextKind::kMasked};
  TextBox memo{TextKind::kMemo};
};

TEST_F(DesktopFields, TheTextIsMirroredBothWays) {
  Property<std::string> text{kAccented};
  TextBox bound{text};
  ShowField(bound);
  EXPECT_EQ(TextIn(bound), kAccented);
  text = "C:\\";
  EXPECT_EQ(TextIn(bound), "C:\\");
  SelectByHand(bound, 3, 0);
  Type(bound, "Zo\xC3\xAB");
  EXPECT_EQ(text.Get(), "C:\\Zo\xC3\xAB");
}

TEST_F(DesktopFields, AHandlerMayCorrectWhatIsTyped) {
  ShowField(field);
  field.Text.Changed().Listen([&] {
    if (field.Text.Get() == "ab") field.Text = std::string("AB");
  });
  Type(field, "ab");
  EXPECT_EQ(TextIn(field), "AB");
}

TEST_F(DesktopFields, EachChangeIsReportedOnce) {
  ShowField(field);
  int changes = 0;
  field.Text.Changed().Listen([&] { ++changes; });
  Type(field, "a");
  EXPECT_EQ(changes, 1);
  field.Text = "b";
  EXPECT_EQ(changes, 2);
}

TEST_F(DesktopFields, TheSelectionIsMirroredBothWaysInBytes) {
  field.Text = kAccented;
  ShowField(field);
  field.Selection = TextSelection{1, 2};
  EXPECT_EQ(SelectedTextIn(field), "\xC3\xA4");
  field.SelectAll();
  EXPECT_EQ(SelectedTextIn(field), kAccented);
  SelectByHand(field, 1, 2);
  EXPECT_EQ(field.Selection.Get(), (TextSelection{1, 3}));
}

TEST_F(DesktopFields, APressThatBringsTheFocusLeavesWhatItsHandlerSelected) {
  field.Text = "00:00";
  field.GotFocus.Listen([&] { field.SelectAll(); });
  Place(field);
  ShowField(memo);
  Click(field, {10, 10});
  EXPECT_EQ(window.Focused(), &field);
  EXPECT_EQ(SelectedTextIn(field), "00:00");
  Click(field, {10, 10});
  EXPECT_EQ(SelectedTextIn(field), "");
}

TEST_F(DesktopFields, AReadOnlyFieldTakesNoText) {
  ShowField(field);
  field.ReadOnly = true;
  Type(field, "x");
  EXPECT_EQ(field.Text.Get(), "");
  field.ReadOnly = false;
  Type(field, "x");
  EXPECT_EQ(field.Text.Get(), "x");
}

TEST_F(DesktopFields, AMaskBeginsWithZerosAndOverwritesDigitByDigitAcrossTheColon) {
  ShowMask();
  EXPECT_EQ(mask.Text.Get(), "00:00");
  EXPECT_EQ(TextIn(mask), "00:00");
  mask.SelectAll();
  Type(mask, "1");
  EXPECT_EQ(mask.Text.Get(), "10:00");
  Type(mask, "7x45");
  EXPECT_EQ(mask.Text.Get(), "17:45");
  EXPECT_EQ(TextIn(mask), "17:45");
}

TEST_F(DesktopFields, AMaskErasesToZeros) {
  mask.Text = std::string("17:45");
  ShowMask();
  SelectByHand(mask, 5, 0);
  Type(mask, "\b");
  EXPECT_EQ(mask.Text.Get(), "17:40");
  SelectByHand(mask, 0, 0);
  PressKey(Key::kDelete);
  EXPECT_EQ(mask.Text.Get(), "07:40");
  mask.SelectAll();
  PressKey(Key::kDelete);
  EXPECT_EQ(mask.Text.Get(), "00:00");
}

TEST_F(DesktopFields, AMemoBreaksLinesAtEveryKindOfLineEndAndReportsFullOnes) {
  memo.Text = std::string("a\r\nb\rc\nd");
  ShowField(memo);
  EXPECT_EQ(TextIn(memo), "a\nb\nc\nd");
  SelectByHand(memo, 0, 0);
  Type(memo, "x\r");
  EXPECT_EQ(memo.Text.Get(), "x\r\na\r\nb\r\nc\r\nd");
}

TEST_F(DesktopFields, TypingIntoAMemoKeepsWhatWasAppended) {
  ShowField(memo);
  memo.Append("log");
  Type(memo, "x");
  EXPECT_EQ(memo.Text.Get().size(), 4U);
  EXPECT_NE(memo.Text.Get().find("log"), std::string::npos);
  EXPECT_EQ(TextIn(memo), memo.Text.Get());
}

}  // namespace
}  // namespace tarnvale::testing
