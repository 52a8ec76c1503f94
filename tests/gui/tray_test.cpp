// The icon in a real notification area, clicked by a real mouse.
#include <gmock/gmock.h>

#include <QApplication>
#include <QMenu>
#include <QProcess>
#include <QScreen>
#include <QTest>

#include "hosts/qt/qt_text.h"
#include "tests/gui/gui_fixture.h"

namespace tarnvale::testing {
namespace {

using ::testing::HasSubstr;

class GuiTray : public GuiTest {
 protected:
  ~GuiTray() override { EndArea(); }

  void StartArea() {
    area_.start("trayer", {"--edge", "bottom", "--align", "right", "--widthtype", "request",
                           "--height", "24", "--SetDockType", "true"});
    ASSERT_TRUE(area_.waitForStarted()) << "trayer isn't installed";
  }
  void EndArea() {
    if (area_.state() == QProcess::NotRunning) return;
    area_.terminate();
    area_.waitForFinished();
  }

  /// The icon's own window; none while it isn't on the screen.
  static QWidget* IconWindow() {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      if (widget->inherits("QSystemTrayIconSys") && widget->isVisible()) return widget;
    }
    return nullptr;
  }
  /// What the X server has within the area's window.
  static QByteArray AreaTree() {
    QProcess info;
    info.start("xwininfo", {"-tree", "-name", "panel"});
    info.waitForFinished();
    return info.readAllStandardOutput();
  }
  static bool IsInArea(const QWidget& icon) {
    return AreaTree().contains("0x" + QByteArray::number(icon.winId(), 16) + ' ');
  }
  /// Of this program, whichever.
  static bool AreaHoldsIcon() { return AreaTree().contains("gui_test"); }
  /// The icon is in the area, and the area shows it.
  bool IsIconShown() {
    return IconWindow() != nullptr && IsInArea(*IconWindow()) && CountOfBluePixels() > 20;
  }
  static int CountOfBluePixels() {
    const QRect place(IconWindow()->mapToGlobal(QPoint(0, 0)), IconWindow()->size());
    const QImage shown = QGuiApplication::primaryScreen()
                             ->grabWindow(0, place.x(), place.y(), place.width(), place.height())
                             .toImage();
    int count = 0;
    for (int y = 0; y < shown.height(); ++y) {
      for (int x = 0; x < shown.width(); ++x) {
        const QColor color = shown.pixelColor(x, y);
        if (color.blue() > color.red() + 60) ++count;
      }
    }
    return count;
  }

  void ClickIcon(const QStringList& click) {
    ASSERT_NE(IconWindow(), nullptr);
    MovePointerTo(IconWindow()->mapToGlobal(IconWindow()->rect().center()));
    LetDisplay(QStringList("click") + click);
  }

  /// The program with its window in the area.
  Program& StartInTray(const std::string& ini = "[Setup]\r\nWizard=1\r\n") {
    StartArea();
    EXPECT_TRUE(WaitFor([&] { return QSystemTrayIcon::isSystemTrayAvailable(); }));
    Program& p = Start(ini);
    EndSplash();
    EXPECT_TRUE(WaitFor([&] { return tray.IsPresent.Get(); }));
    EXPECT_TRUE(WaitFor([&] { return IsIconShown(); }));
    EXPECT_TRUE(WaitFor([&] { return !NativeOf(p.form).isVisible(); }));
    return p;
  }

  /// Right click on the icon; `act` gets the menu once it is shown.
  void WithPopUpMenu(const std::function<void(QMenu&)>& act) {
    bool was_open = false;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, [&] {
      auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
      if (menu == nullptr || !menu->isVisible()) return;
      poll.stop();
      was_open = true;
      act(*menu);
      menu->close();
    });
    poll.start(5);
    // The area may still be moving the icon to its place.
    for (int tries = 0; tries < 5 && !was_open; ++tries) {
      ClickIcon({"3"});
      WaitFor([&] { return was_open; }, 2000);
    }
    EXPECT_TRUE(was_open);
    EXPECT_TRUE(WaitFor([&] { return QApplication::activePopupWidget() == nullptr; }));
  }

  static QAction* Row(QMenu& menu, const QString& caption) {
    for (QAction* action : menu.actions()) {
      if (action->text().remove('&') == caption) return action;
    }
    return nullptr;
  }
  static void ClickRow(QMenu& menu, const QString& caption) {
    QAction* row = Row(menu, caption);
    ASSERT_NE(row, nullptr);
    QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(row).center());
  }

 private:
  QProcess area_;
};

TEST_F(GuiTray, TheWindowStartsInTheAreaAndOffTheTaskBar) {
  Program& p = StartInTray();
  EXPECT_FALSE(p.form.InTaskBar);
  EXPECT_TRUE(IsInArea(*IconWindow()));
}

TEST_F(GuiTray, ADoubleClickBringsTheWindowUpAndTheIconStays) {
  Program& p = StartInTray();
  ClickIcon({"--repeat", "2", "--delay", "60", "1"});
  ASSERT_TRUE(WaitUntilActive(p.form));
  EXPECT_TRUE(p.form.InTaskBar);
  EXPECT_TRUE(IsIconShown());

  NativeOf(p.form).showMinimized();
  EXPECT_TRUE(WaitFor([&] { return !NativeOf(p.form).isVisible(); })) << "back into the area";
  EXPECT_FALSE(p.form.InTaskBar);
  EXPECT_TRUE(IsIconShown());
}

TEST_F(GuiTray, TheRightButtonOpensTheMenuWithBackupNowInBold) {
  StartInTray();
  WithPopUpMenu([&](QMenu& menu) {
    ASSERT_NE(menu.defaultAction(), nullptr);
    EXPECT_EQ(menu.defaultAction()->text(), "&Backup Now");
    QStringList captions;
    for (const QAction* action : menu.actions()) captions << action->text();
    EXPECT_EQ(captions, (QStringList{"&Backup Now", "Backup &Wizard", "Additional &Features", "",
                                     "Tarnvale &Tools", "", "&Exit"}));
    // On the screen, its row is darker than it is without being the default.
    const QRect row = menu.actionGeometry(menu.defaultAction());
    const auto ink = [&] {
      const QImage picture = menu.grab(row).toImage().convertToFormat(QImage::Format_Grayscale8);
      long sum = 0;
      for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) sum += 255 - qGray(picture.pixel(x, y));
      }
      return sum;
    };
    const long bold = ink();
    menu.setDefaultAction(nullptr);
    EXPECT_GT(bold, ink());
  });
}

TEST_F(GuiTray, ARowOfTheMenuBringsTheWindowUpOnItsScreen) {
  Program& p = StartInTray();
  WithPopUpMenu([&](QMenu& menu) {
    ClickRow(menu, "Backup Wizard");
    QMenu* below = Row(menu, "Backup Wizard")->menu();
    EXPECT_TRUE(WaitFor([&] { return below->isVisible(); }));
    ClickRow(*below, "Backup Files");
  });
  EXPECT_TRUE(WaitUntilActive(p.form));
  EXPECT_TRUE(p.form.List.GroupBox1.Visible);
  EXPECT_TRUE(p.form.InTaskBar);
}

TEST_F(GuiTray, BackupNowAsksWhileTheWindowStaysInTheArea) {
  Program& p = StartInTray();
  AnswerNextBox(QMessageBox::No);
  WithPopUpMenu([&](QMenu& menu) { ClickRow(menu, "Backup Now"); });
  EXPECT_TRUE(WaitFor([&] { return DialogsAreDone(); }));
  EXPECT_THAT(box_text, HasSubstr("Tarnvale Will Now Perform A Backup For Your Files"));
  EXPECT_FALSE(NativeOf(p.form).isVisible());
}

TEST_F(GuiTray, ExitTakesTheIconAwayAndStartsTheCompanion) {
  Program& p = StartInTray();
  EXPECT_TRUE(AreaHoldsIcon());
  WithPopUpMenu([&](QMenu& menu) { ClickRow(menu, "Exit"); });
  EXPECT_TRUE(WaitFor([&] { return IconWindow() == nullptr; }));
  EXPECT_TRUE(WaitFor([&] { return !AreaHoldsIcon(); }));
  EXPECT_TRUE(WaitFor([&] { return Starts("Quit.exe") == 1; }));
  EXPECT_FALSE(NativeOf(p.form).isVisible());
}

// Counts the menus that open, and closes all but the first.
class OpenedMenus : public QObject {
 public:
  OpenedMenus() { qApp->installEventFilter(this); }
  int Count() const { return count_; }
  int RightPresses() const { return right_presses_; }

 protected:
  bool eventFilter(QObject* object, QEvent* event) override {
    auto* menu = qobject_cast<QMenu*>(object);
    if (menu != nullptr && event->type() == QEvent::Show && ++count_ > 1) {
      QMetaObject::invokeMethod(menu, &QWidget::close, Qt::QueuedConnection);
    }
    if (event->type() == QEvent::MouseButtonPress &&
        static_cast<QMouseEvent*>(event)->button() == Qt::RightButton) {
      ++right_presses_;
    }
    return false;
  }

 private:
  int count_ = 0;
  int right_presses_ = 0;
};

TEST_F(GuiTray, ARightClickDuringTheMenuOpensNoSecondOne) {
  StartInTray();
  const OpenedMenus opened;
  WithPopUpMenu([&](QMenu&) {
    ASSERT_EQ(opened.Count(), 1);
    const int before = opened.RightPresses();
    ClickIcon({"3"});
    ASSERT_TRUE(WaitFor([&] { return opened.RightPresses() > before; }));
    QGuiApplication::sync();
    EXPECT_EQ(opened.Count(), 1);
  });
}

TEST_F(GuiTray, AnAreaThatStartsLaterTakesTheIconAndTheMinimizedWindow) {
  Program& p = Start();
  EndSplash();
  ASSERT_TRUE(WaitFor([&] { return NativeOf(p.form).isMinimized(); }));
  EXPECT_TRUE(p.form.InTaskBar);
  EXPECT_EQ(IconWindow(), nullptr);
  StartArea();
  EXPECT_TRUE(WaitFor([&] { return IsIconShown(); }));
  EXPECT_TRUE(WaitFor([&] { return !NativeOf(p.form).isVisible(); }));
  EXPECT_FALSE(p.form.InTaskBar);
}

TEST_F(GuiTray, AnAreaThatGoesAwayGivesTheWindowBackToTheTaskBar) {
  Program& p = StartInTray();
  EndArea();
  EXPECT_TRUE(WaitFor([&] { return NativeOf(p.form).isVisible(); }));
  EXPECT_TRUE(NativeOf(p.form).isMinimized());
  EXPECT_TRUE(p.form.InTaskBar);
  // From there it comes up, as the task bar does it.
  NativeOf(p.form).setWindowState(Qt::WindowActive);
  EXPECT_TRUE(WaitFor([&] { return p.form.State.Get() == WindowState::kNormal; }));

  StartArea();
  EXPECT_TRUE(WaitFor([&] { return IsIconShown(); })) << "the next area shows the icon again";
  EXPECT_TRUE(NativeOf(p.form).isVisible()) << "a window that is up stays up";
}

TEST_F(GuiTray, TheTipNamesTheNextRun) {
  StartInTray("[When]\r\nEach=01:00\r\nDefault=True\r\n[Setup]\r\nWizard=1\r\n");
  EXPECT_TRUE(WaitFor(
      [] { return FromQt(IconWindow()->toolTip()).starts_with("Tarnvale [Next Scedule On: "); }));
}

}  // namespace
}  // namespace tarnvale::testing
