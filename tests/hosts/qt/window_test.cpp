#include <QApplication>
#include <QMenu>
#include <QPointer>

#include <algorithm>

#include "tests/hosts/qt/qt_fixture.h"
#include "ui/timer.h"
#include "ui/window_slot.h"

namespace tarnvale {
namespace {

class QtWindows : public QtFixture {};

TEST_F(QtWindows, HaveTheRecordsSizeCaptionAndFixedFrame) {
  TextBox box;
  Place(box);
  window.Caption = "Tarnvale";
  Show();
  EXPECT_EQ(Native().windowTitle(), "Tarnvale");
  EXPECT_EQ(Native().size(), QSize(window.ClientSize.width_px, window.ClientSize.height_px));
  EXPECT_EQ(Native().minimumSize(), Native().maximumSize());
  window.Caption = "Another";
  EXPECT_EQ(Native().windowTitle(), "Another");
}

TEST_F(QtWindows, TheMenuBarComesOnTopOfTheClientSize) {
  MenuItem file{"File"};
  MenuItem exit{"&Exit"};
  file.Add(exit);
  window.MenuBar = {&file};
  TextBox box;
  Place(box);
  Show();
  EXPECT_EQ(Native().height(), window.ClientSize.height_px + Native().Menus()->height());
  EXPECT_GT(Native().Menus()->height(), 10);
}

TEST_F(QtWindows, AMenuRowReportsItsClickAndFollowsItsRecord) {
  MenuItem file{"File"};
  MenuItem tools{"&Tools"};
  MenuItem exit{"&Exit"};
  int chosen = 0;
  exit.Clicked.Listen([&] { ++chosen; });
  file.Add(tools);
  tools.Add(exit);
  window.MenuBar = {&file};
  Show();
  QAction* row = Native().Menus()->actions()[0]->menu()->actions()[0]->menu()->actions()[0];
  row->trigger();
  EXPECT_EQ(chosen, 1);
  exit.Enabled = false;
  exit.Caption = "Leave";
  EXPECT_FALSE(row->isEnabled());
  EXPECT_EQ(row->text(), "Leave");
}

TEST_F(QtWindows, HidingAndShowingFollowTheRecord) {
  Show();
  window.Hide();
  EXPECT_TRUE(WaitFor([&] { return !Native().isVisible(); }));
  window.Visible = true;
  EXPECT_TRUE(WaitFor([&] { return Native().isVisible(); }));
}

TEST_F(QtWindows, TheCloseBoxAsksAndHides) {
  bool closed = false;
  window.Closed.Listen([&] { closed = true; });
  Show();
  Native().close();
  EXPECT_TRUE(closed);
  EXPECT_FALSE(window.Visible);
  EXPECT_TRUE(WaitFor([&] { return !Native().isVisible(); }));
}

TEST_F(QtWindows, ACancelledCloseLeavesTheWindowStanding) {
  window.CloseAsked.Listen([](CloseRequest& request) { request.cancelled = true; });
  Show();
  Native().close();
  loop.WaitPass();
  EXPECT_TRUE(window.Visible);
  EXPECT_TRUE(Native().isVisible());
}

TEST_F(QtWindows, TheProgramMinimisesAndRestoresAndBothAreReported) {
  std::vector<WindowState> states;
  window.Resized.Listen([&] { states.push_back(window.State); });
  Show();
  window.State = WindowState::kMinimized;
  ASSERT_TRUE(WaitFor([&] { return Native().isMinimized() && states.size() == 1; }));
  window.State = WindowState::kNormal;
  ASSERT_TRUE(WaitFor([&] { return !Native().isMinimized() && states.size() == 2; }));
  EXPECT_EQ(states, (std::vector<WindowState>{WindowState::kMinimized, WindowState::kNormal}));
}

TEST_F(QtWindows, TheUserMinimisesAndRestores) {
  int reported = 0;
  window.Resized.Listen([&] { ++reported; });
  Show();
  Native().setWindowState(Qt::WindowMinimized);
  EXPECT_TRUE(WaitFor([&] { return window.State.Get() == WindowState::kMinimized; }));
  EXPECT_EQ(reported, 1);
  Native().setWindowState(Qt::WindowNoState);
  EXPECT_TRUE(WaitFor([&] { return window.State.Get() == WindowState::kNormal; }));
  EXPECT_EQ(reported, 2);
}

TEST_F(QtWindows, ShowingAMinimisedWindowKeepsItMinimised) {
  window.State = WindowState::kMinimized;
  window.ClientSize = {200, 100};
  host.Adopt(window);
  window.Show();
  ASSERT_TRUE(WaitFor([&] { return Native().isVisible(); }));
  EXPECT_TRUE(Native().isMinimized());
  EXPECT_EQ(window.State.Get(), WindowState::kMinimized);
}

TEST_F(QtWindows, AMinimisedWindowThatLeftTheTaskBarIsNowhere) {
  window.Resized.Listen([&] {
    if (window.State.Get() == WindowState::kMinimized) window.InTaskBar = false;
  });
  Show();
  window.State = WindowState::kMinimized;
  EXPECT_TRUE(WaitFor([&] { return !Native().isVisible(); }));
  EXPECT_TRUE(window.Visible);
  window.State = WindowState::kNormal;
  window.Show();
  window.InTaskBar = true;
  EXPECT_TRUE(WaitFor([&] { return Native().isVisible() && !Native().isMinimized(); }));
}

TEST_F(QtWindows, TheActiveWindowIsKnownAndReported) {
  Window other;
  other.ClientSize = {100, 100};
  host.Adopt(other);
  Show();
  other.Show();
  ASSERT_TRUE(WaitFor([&] { return host.Surroundings().ActiveWindow.Get() == &other; }));
  Window* active_when_emitted = nullptr;
  window.Activated.Listen([&] { active_when_emitted = host.Surroundings().ActiveWindow; });
  Native().activateWindow();
  EXPECT_TRUE(WaitFor([&] { return active_when_emitted == &window; }));
}

TEST_F(QtWindows, ShowBringsAWindowForward) {
  Window other;
  other.ClientSize = {100, 100};
  host.Adopt(other);
  Show();
  other.Show();
  ASSERT_TRUE(WaitFor([&] { return host.Surroundings().ActiveWindow.Get() == &other; }));
  window.Show();
  EXPECT_TRUE(WaitFor([&] { return host.Surroundings().ActiveWindow.Get() == &window; }));
}

TEST_F(QtWindows, TabFollowsThePlacementsAndTheRecordKnows) {
  TextBox first;
  Label label;
  CheckButton second;
  TextBox hidden;
  TextBox third;
  hidden.Visible = false;
  for (Control* control : std::vector<Control*>{&first, &label, &second, &hidden, &third}) {
    Place(*control);
  }
  Show();
  ASSERT_TRUE(WaitFor([&] { return window.Focused() == &first; }));
  QTest::keyClick(&WidgetOf(first), Qt::Key_Tab);
  EXPECT_EQ(window.Focused(), &second);
  EXPECT_TRUE(WidgetOf(second).hasFocus());
  QTest::keyClick(&WidgetOf(second), Qt::Key_Tab);
  EXPECT_EQ(window.Focused(), &third);
  QTest::keyClick(&WidgetOf(third), Qt::Key_Tab, Qt::ShiftModifier);
  EXPECT_EQ(window.Focused(), &second);
}

TEST_F(QtWindows, AClickMovesTheRecordsFocus) {
  TextBox first;
  TextBox second;
  std::string reported;
  first.LostFocus.Listen([&] { reported += "lost "; });
  second.GotFocus.Listen([&] { reported += "got"; });
  Place(first);
  Place(second);
  Show();
  QTest::mouseClick(&WidgetOf(second), Qt::LeftButton);
  EXPECT_EQ(window.Focused(), &second);
  EXPECT_EQ(reported, "lost got");
}

TEST_F(QtWindows, TheProgramMovesTheFocus) {
  TextBox first;
  TextBox second;
  Place(first);
  Place(second);
  Show();
  window.Focus(second);
  EXPECT_TRUE(WidgetOf(second).hasFocus());
}

TEST_F(QtWindows, AControlThatIsHiddenOrDisabledPassesTheFocusOnAsTabDoes) {
  TextBox first;
  TextBox second;
  PictureBox panel;
  TextBox inside;
  Place(first);
  Place(second);
  Place(panel);
  Place(inside, &panel);
  Show();
  window.Focus(first);
  first.Enabled = false;
  EXPECT_EQ(window.Focused(), &second);
  first.Enabled = true;
  window.Focus(inside);
  panel.Visible = false;
  EXPECT_EQ(window.Focused(), &first);
  EXPECT_TRUE(WidgetOf(first).hasFocus());
}

TEST_F(QtWindows, AHiddenControlOfAWindowThatIsNotActiveKeepsTheFocus) {
  TextBox first;
  TextBox second;
  Place(first);
  Place(second);
  Show();
  window.Focus(first);
  Window other;
  other.ClientSize = {100, 100};
  host.Adopt(other);
  other.Show();
  ASSERT_TRUE(WaitFor([&] { return host.NativeOf(other)->isActiveWindow(); }));
  int losses = 0;
  first.LostFocus.Listen([&] { ++losses; });
  first.Visible = false;
  EXPECT_EQ(window.Focused(), &first);
  EXPECT_EQ(losses, 0);
}

TEST_F(QtWindows, AKeyThatTheWindowHandledNeverReachesTheControl) {
  TextBox first;
  TextBox second;
  Place(first);
  Place(second);
  window.KeyDown.Listen([&](KeyEvent& event) {
    if (event.press.key == Key::kOther) event.handled = true;
    if (event.press.key != Key::kEnter) return;
    event.handled = true;
    window.FocusNext();
  });
  Show();
  ASSERT_TRUE(WaitFor([&] { return window.Focused() == &first; }));
  QTest::keyClick(&WidgetOf(first), Qt::Key_X);
  EXPECT_EQ(first.Text.Get(), "");
  QTest::keyClick(&WidgetOf(first), Qt::Key_Return);
  EXPECT_EQ(window.Focused(), &second);
}

TEST_F(QtWindows, ADisabledWindowTakesNoInputAndDoesNotClose) {
  TextBox box;
  Place(box);
  window.Enabled = false;
  window.ClientSize = {300, 200};
  host.Adopt(window);
  window.Show();
  ASSERT_TRUE(WaitFor([&] { return Native().isVisible(); }));
  QTest::keyClicks(&WidgetOf(box), "x");
  Native().close();
  EXPECT_EQ(box.Text.Get(), "");
  EXPECT_TRUE(window.Visible);
  window.Enabled = true;
  QTest::keyClicks(&WidgetOf(box), "y");
  EXPECT_EQ(box.Text.Get(), "y");
}

TEST_F(QtWindows, APopupStandsWhereTheRecordSaysAndTakesNoFocus) {
  Window popup;
  popup.Frame = WindowFrame::kPopup;
  popup.ClientSize = {100, 60};
  popup.LeftTwips = 300;
  popup.TopTwips = host.ScreenHeightTwips();
  host.Adopt(popup);
  TextBox box;
  Place(box);
  Show();
  popup.Show();
  QtWindow& native = *host.NativeOf(popup);
  ASSERT_TRUE(WaitFor([&] { return native.isVisible(); }));
  EXPECT_EQ(native.pos(), QPoint(20, host.ScreenHeightTwips() / kTwipsPerPixel));
  popup.TopTwips = 600;
  EXPECT_TRUE(WaitFor([&] { return native.pos() == QPoint(20, 40); }));
  EXPECT_EQ(host.Surroundings().ActiveWindow.Get(), &window);
}

TEST_F(QtWindows, ALinkOfAPopupIsClickedWithoutTheFocus) {
  Window popup;
  popup.Frame = WindowFrame::kPopup;
  popup.ClientSize = {100, 60};
  Label link{TextRole::kLink};
  popup.Place({{&link, nullptr, {0, 0, 100, 60}}});
  host.Adopt(popup);
  popup.Show();
  QtWindow& native = *host.NativeOf(popup);
  ASSERT_TRUE(WaitFor([&] { return native.isVisible(); }));
  int clicks = 0;
  link.Clicked.Listen([&] { ++clicks; });
  QTest::mouseClick(&native.PeerOf(link)->Widget(), Qt::LeftButton);
  EXPECT_EQ(clicks, 1);
}

class SlotWindow : public Window {
 public:
  SlotWindow() {
    ClientSize = {100, 100};
    Place({{&box, nullptr, {10, 10, 80, 80}}});
  }
  TextBox box{TextKind::kMemo};
};

TEST_F(QtWindows, AClosedWindowOfASlotGoesWithItsNativeOneWhenNoHandlerOfItRuns) {
  WindowSlot<SlotWindow> slot(loop, host, [] { return std::make_unique<SlotWindow>(); });
  QPointer<QtWindow> native;
  bool lived_through_the_handler = false;
  Timer timer(loop.Timers(), 10, true);
  timer.Tick.Listen([&] {
    timer.Enabled = false;
    slot.Show();
    native = host.NativeOf(slot.Get());
    ASSERT_TRUE(WaitFor([&] { return native->isVisible(); }));
    slot.Get().Close();
    QElapsedTimer since;
    since.start();
    while (since.elapsed() < 300) loop.WaitPass();
    lived_through_the_handler = !native.isNull() && !native->isVisible();
  });
  EXPECT_TRUE(WaitFor([&] { return !timer.Enabled && native.isNull(); }));
  EXPECT_TRUE(lived_through_the_handler);
}

TEST_F(QtWindows, AWindowThatIsClosedByItsCrossGoesAsWell) {
  WindowSlot<SlotWindow> slot(loop, host, [] { return std::make_unique<SlotWindow>(); });
  slot.Show();
  const QPointer<QtWindow> native = host.NativeOf(slot.Get());
  ASSERT_TRUE(WaitFor([&] { return native->isVisible(); }));
  native->close();
  EXPECT_TRUE(WaitFor([&] { return native.isNull(); }));
  EXPECT_FALSE(slot.IsLoaded());
}

TEST_F(QtWindows, AClickIntoAWindowThatIsNotActiveIsNotLost) {
  Window above;
  above.ClientSize = {50, 50};
  host.Adopt(above);
  CheckButton check;
  TextBox box;
  Place(box);
  Place(check);
  Show();
  above.Show();
  ASSERT_TRUE(WaitFor([&] { return host.NativeOf(above)->isActiveWindow(); }));
  ASSERT_NE(window.Focused(), &check);
  QTest::mouseClick(&WidgetOf(check), Qt::LeftButton, {}, {8, 50});
  EXPECT_TRUE(check.Value);
  EXPECT_EQ(window.Focused(), &check);
}

TEST_F(QtWindows, AFieldThatCallsTheFocusBackIsLeftOncePerClickHoweverLateItsWindowIsActiveAgain) {
  Window above;
  above.ClientSize = {50, 50};
  host.Adopt(above);
  TextBox bad;
  CheckButton check;
  Place(bad);
  Place(check);
  Show();
  window.Focus(bad);
  int left = 0;
  bad.LostFocus.Listen([&] {
    ++left;
    // As a box does that a slow window manager has just taken away.
    above.Show();
    ASSERT_TRUE(WaitFor([&] { return host.NativeOf(above)->isActiveWindow(); }));
    window.Focus(bad);
  });
  QTest::mouseClick(&WidgetOf(check), Qt::LeftButton, {}, {8, 50});
  EXPECT_EQ(left, 1);
  EXPECT_EQ(window.Focused(), &bad);
  EXPECT_FALSE(check.Value) << "the click that was called back does nothing";
}

TEST_F(QtWindows, TheHourglassIsThePointerEverywhere) {
  host.Surroundings().Pointer = PointerShape::kHourglass;
  ASSERT_NE(QGuiApplication::overrideCursor(), nullptr);
  EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
  host.Surroundings().Pointer = PointerShape::kDefault;
  EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST_F(QtWindows, APopUpMenuShowsItsDefaultRowInBoldAndReportsTheChoice) {
  MenuItem menu{"File"};
  MenuItem backup{"&Backup Now"};
  MenuItem exit{"&Exit"};
  menu.Add(backup);
  menu.AddSeparator();
  menu.Add(exit);
  backup.IsDefault = true;
  std::string reported;
  exit.Clicked.Listen(
      [&] { reported += QApplication::activePopupWidget() == nullptr ? "exit" : "?"; });
  QString bold;
  Timer timer(loop.Timers(), 10, true);
  timer.Tick.Listen([&] {
    auto* popup = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if (popup == nullptr || !popup->isVisible()) return;
    timer.Enabled = false;
    bold = popup->defaultAction()->text();
    QTest::keyClick(popup, Qt::Key_E);
  });
  host.PopUp(menu);
  EXPECT_EQ(bold, "&Backup Now");
  EXPECT_EQ(reported, "exit");
}

TEST_F(QtWindows, AFaultOfAHandlerIsReportedAndGoesNoFurther) {
  QtEventLoop quiet;
  QtWindowHost other(quiet, files, [](const std::string& native) { return native; });
  int number = 0;
  quiet.Fault.Listen([&](const ProgramError& error) { number = error.Number(); });
  CheckButton check;
  check.Clicked.Listen([] { throw ProgramError(kTypeMismatch); });
  Window faulty;
  faulty.ClientSize = {100, 100};
  faulty.Place({{&check, nullptr, {10, 10, 80, 20}}});
  other.Adopt(faulty);
  faulty.Show();
  ASSERT_TRUE(WaitFor([&] { return other.NativeOf(faulty)->isActiveWindow(); }));
  QTest::keyClick(&other.NativeOf(faulty)->PeerOf(check)->Widget(), Qt::Key_Space);
  EXPECT_EQ(number, kTypeMismatch);
  EXPECT_TRUE(check.Value);
}

}  // namespace
}  // namespace tarnvale
