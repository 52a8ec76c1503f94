// The program without a mouse.
#include <gmock/gmock.h>

#include <QApplication>
#include <QMenuBar>
#include <QTest>

#include <set>

#include "tests/gui/gui_fixture.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;

class GuiKeyboard : public GuiTest {
 protected:
  /// All that can be reached now by the keyboard.
  static std::set<Control*> Reachable(const Window& window) {
    std::set<Control*> controls;
    for (const Placement& placement : window.Placements()) {
      Control& control = *placement.control;
      if (control.TakesFocus() && Window::IsReachable(control)) controls.insert(&control);
    }
    return controls;
  }

  /// Presses a key until the focus is where it began, and gives what it visited.
  std::set<Control*> Visit(Window& window, int key) {
    std::set<Control*> visited;
    Control* first = window.Focused();
    for (std::size_t step = 0; step <= window.Placements().size(); ++step) {
      Press(key);
      Control* focused = window.Focused();
      EXPECT_EQ(QApplication::focusWidget(), &WidgetOf(*focused));
      visited.insert(focused);
      if (focused == first) break;
    }
    return visited;
  }
};

/// Times that can be left as they are.
constexpr const char* kQuiet = "[When]\r\nEach=01:00\r\nDefault=True\r\n[Setup]\r\nWizard=1\r\n";

TEST_F(GuiKeyboard, TabAndShiftTabReachEveryControlOfEachScreen) {
  Form1& f = StartAndBringUp(kQuiet).form;
  for (Label* link : {&f.Label44, &f.Label37, &f.Label36, &f.Label38, &f.Label39, &f.Label51}) {
    Click(*link);
    f.Focus(*link);
    EXPECT_EQ(Visit(f, Qt::Key_Tab), Reachable(f)) << link->Caption.Get();
    f.Focus(*link);
    EXPECT_EQ(Visit(f, Qt::Key_Backtab), Reachable(f)) << link->Caption.Get();
  }
  f.Restore.GroupBox15.Visible = false;
  f.Progress.GroupBox3.Visible = true;
  f.Focus(f.Label49);
  EXPECT_EQ(Visit(f, Qt::Key_Tab), Reachable(f)) << "the progress screen";
}

TEST_F(GuiKeyboard, TabReachesEveryControlOfTheTools) {
  Program& p = StartAndBringUp(kQuiet);
  for (Window* tool : std::vector<Window*>{&p.Compressor.Get(), &p.Splitter.Get()}) {
    tool->Show();
    ASSERT_TRUE(WaitUntilActive(*tool));
    ASSERT_TRUE(WaitFor([&] { return tool->Focused() != nullptr; }));
    EXPECT_EQ(Visit(*tool, Qt::Key_Tab), Reachable(*tool)) << tool->Caption.Get();
  }
}

TEST_F(GuiKeyboard, EnterMovesOnAsTabDoesThroughTheWholeSchedule) {
  Form1& f = StartAndBringUp(kQuiet).form;
  f.Focus(f.Label44);
  EXPECT_EQ(Visit(f, Qt::Key_Return), Reachable(f));
  EXPECT_EQ(f.Schedule.MaskEdBox2.Text.Get(), "01:00");
}

TEST_F(GuiKeyboard, SpaceWorksLinksButtonsAndBoxes) {
  Form1& f = StartAndBringUp(kQuiet).form;
  f.Focus(f.Label37);
  Press(Qt::Key_Space);
  EXPECT_TRUE(f.List.GroupBox1.Visible);
  f.Focus(f.List.Check1);
  Press(Qt::Key_Space);
  EXPECT_TRUE(f.List.Check1.Value);
  f.Focus(f.List.Command4);
  Press(Qt::Key_Space);
  EXPECT_EQ(f.List.List1.Rows.Count(), 1U);
}

TEST_F(GuiKeyboard, AListIsMadeAndEmptiedWithoutAMouse) {
  Form1& f = StartAndBringUp(kQuiet).form;
  f.Focus(f.Label37);
  Press(Qt::Key_Space);
  f.Focus(f.List.ListTree);
  Press(Qt::Key_Home);
  Press(Qt::Key_Right);
  Type("Work");
  ASSERT_TRUE(WaitFor([&] { return f.List.File1.Rows().size() == 2; }));
  f.Focus(f.List.File1);
  Press(Qt::Key_Home);
  Press(Qt::Key_Down, Qt::ShiftModifier);
  f.Focus(f.List.Command5);
  Press(Qt::Key_Space);
  EXPECT_THAT(f.List.List1.Rows.Rows(), ElementsAre("C:\\Work\\a.txt", "C:\\Work\\b.txt"));
  f.Focus(f.List.Command1);
  Press(Qt::Key_Delete);
  EXPECT_EQ(f.List.List1.Rows.Count(), 2U) << "Delete works in the list only";
  f.Focus(f.List.List1);
  Press(Qt::Key_Space);
  Press(Qt::Key_Delete);
  EXPECT_THAT(f.List.List1.Rows.Rows(), ElementsAre("C:\\Work\\b.txt"));
}

TEST_F(GuiKeyboard, TheMenuOpensByAltAndItsRowsByTheirMarks) {
  Form1& f = StartAndBringUp(kQuiet).form;
  f.Focus(f.Label44);
  QWidget& native = NativeOf(f);
  QTest::keyPress(&native, Qt::Key_Alt);
  QTest::keyRelease(&native, Qt::Key_Alt);
  ASSERT_TRUE(WaitFor([&] { return QApplication::focusWidget() == NativeOf(f).Menus(); }));
  Press(Qt::Key_Down);
  ASSERT_TRUE(WaitFor([] { return QApplication::activePopupWidget() != nullptr; }));
  Press(Qt::Key_F);  // Additional Features
  Press(Qt::Key_Down);
  Press(Qt::Key_Return);
  EXPECT_TRUE(f.Advanced.GroupBox6.Visible);
  EXPECT_EQ(f.Focused(), &f.Label44) << "the menu only borrows the focus";
  EXPECT_TRUE(WaitFor([&] { return QApplication::focusWidget() == &WidgetOf(f.Label44); }));
}

TEST_F(GuiKeyboard, ABoxIsAnsweredByItsMarksAndLeftByEscape) {
  Form1& f = StartAndBringUp(kQuiet).form;
  for (const int key : {Qt::Key_Escape, Qt::Key_N}) {
    WithNextDialog([this, key](QDialog& box) {
      EXPECT_TRUE(WaitFor([&] { return box.isActiveWindow(); }));
      QTest::keyClick(&box, static_cast<Qt::Key>(key),
                      key == Qt::Key_N ? Qt::AltModifier : Qt::NoModifier);
    });
    ASSERT_TRUE(WaitUntilActive(f));
    f.Focus(f.Label49);
    Press(Qt::Key_Space);
    EXPECT_TRUE(DialogsAreDone());
    EXPECT_FALSE(program->engine.timers[EngineTimer::kRunPause].Enabled);
  }
}

}  // namespace
}  // namespace tarnvale::testing
