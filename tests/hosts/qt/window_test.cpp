#include <QApplication>
#include <QMenu>

#include "tests/hosts/qt/qt_fixture.h"
#include "ui/timer.h"

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

TEST_F(QtWindows, ShowingAMinimisedWindowKeepsItMinimised) {
  window.State = WindowState::kMinimized;
  window.ClientSize = {200, 100};
  host.Adopt(window);
  window.Show();
  ASSERT_TRUE(WaitFor([&] { return Native().isVisible(); }));
  EXPECT_TRUE(Native().isMinimized());
  EXPECT_EQ(window.State.Get(), WindowState::kMinimized);
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
