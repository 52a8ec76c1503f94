// Windows on a compositor without X11, which puts them where it likes.
#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <cstring>
#include <optional>

#include "tests/gui/every_window.h"

namespace tarnvale::testing {
namespace {

/// Where `part` lies in `whole`, pixel by pixel.
std::optional<QPoint> Find(const QImage& whole, const QImage& part) {
  const std::size_t row_bytes = 4 * static_cast<std::size_t>(part.width());
  const auto lies_at = [&](int left, int top) {
    for (int y = 0; y < part.height(); ++y) {
      const uchar* row = whole.constScanLine(top + y) + 4 * static_cast<std::ptrdiff_t>(left);
      if (std::memcmp(row, part.constScanLine(y), row_bytes) != 0) return false;
    }
    return true;
  };
  for (int top = 0; top + part.height() <= whole.height(); ++top) {
    for (int left = 0; left + part.width() <= whole.width(); ++left) {
      if (lies_at(left, top)) return QPoint(left, top);
    }
  }
  return std::nullopt;
}

class GuiWayland : public EveryWindowTest {
 protected:
  /// What the compositor shows.
  static QImage Screen() {
    const QTemporaryDir shots;
    QProcess camera;
    camera.setWorkingDirectory(shots.path());
    camera.start("weston-screenshooter");
    EXPECT_TRUE(camera.waitForFinished());
    const QStringList files = QDir(shots.path()).entryList({"*.png"});
    EXPECT_EQ(files.size(), 1);
    return QImage(shots.filePath(files.value(0))).convertToFormat(QImage::Format_RGB32);
  }
  /// Where a window, or what a control shows, is on the screen.
  static std::optional<QPoint> PlaceOf(QWidget& widget) {
    return Find(Screen(), widget.grab().toImage().convertToFormat(QImage::Format_RGB32));
  }
  bool IsSeen(Window& window) { return PlaceOf(NativeOf(window)).has_value(); }

  void LetMouse(const QStringList& what) {
    LetDisplay(QStringList{"search", "--class", "Weston"} + what);
  }
  /// Its picture would cover a part of what is looked for.
  void TakeMouseAway() { LetMouse({"mousemove", "--window", "%1", "0", "0"}); }
  /// By the mouse of the display.
  void ClickByMouse(Window& window, Control& control) {
    std::optional<QPoint> place;
    ASSERT_TRUE(WaitFor([&] { return (place = PlaceOf(NativeOf(window))).has_value(); }));
    QWidget& widget = WidgetOf(control);
    const QPoint at = *place + widget.mapTo(&NativeOf(window), widget.rect().center());
    LetMouse({"mousemove", "--window", "%1", QString::number(at.x()), QString::number(at.y()),
              "click", "1"});
    TakeMouseAway();
  }

  Program& StartInTray() {
    Program& p = Start();
    EndSplash();
    TakeMouseAway();
    EXPECT_TRUE(
        WaitFor([&] { return !program->engine.timers[EngineTimer::kStorageTree].Enabled; }));
    return p;
  }
};

TEST_F(GuiWayland, TheMainWindowAndEveryToolAreSeen) {
  Program& p = StartInTray();
  p.form.State = WindowState::kNormal;
  p.form.Show();
  EXPECT_TRUE(WaitFor([&] { return IsSeen(p.form); }));
  for (Label* link :
       {&p.form.Label34, &p.form.Label42, &p.form.Label56, &p.form.Label46, &p.form.Label41}) {
    Click(*link);
    const std::vector<Window*> others = OtherWindows(p);
    const auto tool = std::find_if(others.begin(), others.end(),
                                   [](const Window* window) { return window->Visible.Get(); });
    ASSERT_NE(tool, others.end());
    EXPECT_TRUE(WaitFor([&] { return IsSeen(**tool); })) << NameOf(**tool);
    NativeOf(**tool).close();
  }
}

TEST_F(GuiWayland, BothPopupsAreSeenAndSentAwayByTheMouse) {
  Program& p = StartInTray();
  ClickByMouse(p.form, p.form.Label38);
  EXPECT_TRUE(WaitFor([&] { return p.form.General.GroupBox5.Visible.Get(); }));
  p.engine.run.EngineFree = "1";
  cAlert(p.popups).Gmail();
  frmGmail& alert = p.popups.Alert();
  ClickByMouse(alert, alert.Label1);
  Progress& progress = p.popups.ProgressPopup();
  EXPECT_TRUE(WaitFor([&] { return progress.Visible.Get(); }));
  // One that still slides in isn't sent away by a click.
  EXPECT_TRUE(WaitFor([&] { return !progress.Timer1.Enabled; }));
  ClickByMouse(progress, progress.Image2);
  EXPECT_TRUE(WaitFor([&] { return !alert.Visible && !progress.Visible; }));
  EXPECT_TRUE(WaitFor([&] { return !IsSeen(alert) && !IsSeen(progress); }));
}

}  // namespace
}  // namespace tarnvale::testing
