// The icon in a real panel, which shows an exported menu and reports activations only.
#include <gmock/gmock.h>

#include <QApplication>
#include <QScreen>

#include <optional>

#include "hosts/qt/qt_text.h"
#include "tests/gui/gui_fixture.h"

namespace tarnvale::testing {
namespace {

using ::testing::HasSubstr;

/// The panel is at the bottom of the screen, with nothing in it but the area.
class GuiPanel : public GuiTest {
 protected:
  static constexpr int kPanelHeight = 33;

  static QImage ScreenFrom(int top, int height) {
    QScreen& screen = *QGuiApplication::primaryScreen();
    return screen.grabWindow(0, 0, top, screen.size().width(), height).toImage();
  }
  static int PanelTop() { return QGuiApplication::primaryScreen()->size().height() - kPanelHeight; }

  /// Where the blue icon is in the panel; none while it isn't.
  static std::optional<QPoint> Icon() {
    const QImage panel = ScreenFrom(PanelTop(), kPanelHeight);
    QPoint sum;
    int count = 0;
    for (int y = 0; y < panel.height(); ++y) {
      for (int x = 0; x < panel.width(); ++x) {
        const QColor color = panel.pixelColor(x, y);
        if (color.blue() <= color.red() + 60) continue;
        sum += QPoint(x, y);
        ++count;
      }
    }
    if (count < 20) return std::nullopt;
    return QPoint(0, PanelTop()) + sum / count;
  }
  /// Something lies over the bare ground beside the icon.
  static bool IsMenuOpen() {
    const QImage above = ScreenFrom(PanelTop() - 60, 50);
    const QPoint beside(Icon().value_or(QPoint()).x() + 40, 25);
    return above.valid(beside) && qGray(above.pixel(beside)) > 60;
  }

  Program& StartInPanel() {
    Program& p = Start();
    EndSplash();
    EXPECT_TRUE(WaitFor([&] { return tray.IsPresent.Get(); }));
    EXPECT_TRUE(WaitFor([&] { return Icon().has_value(); }));
    EXPECT_TRUE(WaitFor([&] { return !NativeOf(p.form).isVisible(); }));
    return p;
  }
  void ClickIcon(const QStringList& click) {
    const std::optional<QPoint> icon = Icon();
    ASSERT_TRUE(icon.has_value());
    MovePointerTo(*icon);
    LetDisplay(QStringList("click") + click);
  }
  /// Opens the icon's menu by the right button and chooses in it by keys. The panel asks for the
  /// menu's rows again while it is open; on a slow machine that takes the selection away. Then
  /// Enter chooses nothing, and the menu stays: as a person would, begin again.
  void ChooseInPanel(const QStringList& keys) {
    constexpr int kCloses_ms = 3000;
    for (int tries = 0; tries < 5; ++tries) {
      ClickIcon({"3"});
      ASSERT_TRUE(WaitFor([] { return IsMenuOpen(); })) << "the panel opens the icon's menu";
      LetDisplay(QStringList{"key", "--delay", "150"} + keys);
      if (WaitFor([] { return !IsMenuOpen(); }, kCloses_ms)) return;
      LetDisplay({"key", "Escape", "Escape"});
      ASSERT_TRUE(WaitFor([] { return !IsMenuOpen(); }));
    }
    FAIL() << "the menu's rows can't be chosen";
  }
};

TEST_F(GuiPanel, BackupNowIsReachedInItsMenu) {
  Program& p = StartInPanel();
  AnswerNextBox(QMessageBox::No);
  ChooseInPanel({"Down", "Return"});
  EXPECT_TRUE(WaitFor([&] { return DialogsAreDone(); }));
  EXPECT_THAT(box_text, HasSubstr("Tarnvale Will Now Perform A Backup For Your Files"));
  EXPECT_FALSE(NativeOf(p.form).isVisible());
}

TEST_F(GuiPanel, ExitIsReachedInItsMenuAndTakesTheIconAway) {
  StartInPanel();
  ChooseInPanel({"Up", "Return"});
  EXPECT_TRUE(WaitFor([&] { return Starts("Quit.exe") == 1; }));
  EXPECT_TRUE(WaitFor([] { return !Icon().has_value(); }));
}

TEST_F(GuiPanel, TwoQuickClicksBringTheWindowUp) {
  Program& p = StartInPanel();
  ClickIcon({"--repeat", "2", "--delay", "60", "1"});
  EXPECT_TRUE(WaitUntilActive(p.form));
  EXPECT_TRUE(p.form.InTaskBar);
}

TEST_F(GuiPanel, WhereOneActivationIsAllARowBringsTheWindowUp) {
  Program& p = StartInPanel();
  ClickIcon({"1"});
  ChooseInPanel({"Down", "Down", "Right", "Down", "Return"});
  EXPECT_TRUE(WaitUntilActive(p.form));
  EXPECT_TRUE(p.form.List.GroupBox1.Visible);
  EXPECT_TRUE(p.form.InTaskBar);
}

}  // namespace
}  // namespace tarnvale::testing
