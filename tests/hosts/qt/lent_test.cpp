// What the desktop host lends to the drawn controls, on a real window.
#include <QApplication>
#include <QDropEvent>
#include <QMessageBox>
#include <QMimeData>
#include <QUrl>

#include "kit/chameleon_button.h"
#include "kit/group_box.h"
#include "kit/progress_bar.h"
#include "tests/hosts/qt/qt_fixture.h"
#include "ui/timer.h"

namespace tarnvale {
namespace {

class QtLent : public QtFixture {
 protected:
  GroupBox frame;
  chameleonButton button;
  TextBox field;
};

TEST_F(QtLent, TheNumberOfTheWindow) {
  XP_ProgressBar bar;
  Place(button);
  Place(bar);
  EXPECT_EQ(button.hWnd(), 0U);
  Show();
  EXPECT_EQ(button.hWnd(), Native().winId());
  EXPECT_EQ(bar.hWnd(), Native().winId());
  EXPECT_EQ(bar.hdc(), 0U) << "surfaces have no numbers here";
}

TEST_F(QtLent, TheColoursOfTheContainer) {
  frame.BackColor = MakeColor(10, 200, 30);
  frame.ForeColor = MakeColor(1, 2, 3);
  button.ColorScheme = 4;
  Place(frame);
  window.Place({{&button, &frame, {5, 20, 60, 26}}});
  Show();
  EXPECT_EQ(button.Drawn()->colors.face, MakeColor(10, 200, 30));
  EXPECT_EQ(button.Drawn()->colors.text, MakeColor(1, 2, 3));
  frame.BackColor = MakeColor(200, 10, 30);
  EXPECT_EQ(button.Drawn()->colors.face, MakeColor(200, 10, 30));
}

TEST_F(QtLent, TheColoursOfTheWindow) {
  button.ColorScheme = 4;
  Place(button);
  Show();
  const QColor ground = Native().palette().color(QPalette::Window);
  EXPECT_EQ(button.Drawn()->colors.face, MakeColor(ground.red(), ground.green(), ground.blue()));
}

TEST_F(QtLent, ACopyOfTheContainerForTheTransparentType) {
  frame.BackColor = MakeColor(10, 200, 30);
  Place(frame);
  window.Place({{&button, &frame, {20, 30, 60, 26}}});
  Show();
  button.ButtonType = 11;
  const Raster& ground = button.Drawn()->ground;
  const int scale = qCeil(Native().devicePixelRatioF());
  ASSERT_EQ(ground.width, 60 * scale);
  ASSERT_EQ(ground.height, 26 * scale);
  EXPECT_EQ(ground.At(30, 13) & 0xFFFFFFU, MakeColor(10, 200, 30));
}

TEST_F(QtLent, EnterForTheDefaultButton) {
  int clicks = 0;
  button.Click.Listen([&] { ++clicks; });
  Place(field);
  Place(button);
  window.DefaultButton = &button;
  Show();
  EXPECT_TRUE(button.DisplayAsDefault);
  window.Focus(field);
  QTest::keyClick(&WidgetOf(field), Qt::Key_Return);
  EXPECT_EQ(clicks, 1);
  window.DefaultButton = nullptr;
  EXPECT_FALSE(button.DisplayAsDefault);
  QTest::keyClick(&WidgetOf(field), Qt::Key_Return);
  EXPECT_EQ(clicks, 1);
}

TEST_F(QtLent, TheMouseIconAsPointer) {
  Raster icon{16, 16, std::vector<std::uint32_t>(256, 0xFF0000FF)};
  button.MouseIcon = Picture{.image = icon};
  button.MousePointer = 99;
  Place(button);
  Show();
  const QCursor cursor = WidgetOf(button).cursor();
  EXPECT_EQ(cursor.shape(), Qt::BitmapCursor);
  EXPECT_EQ(cursor.pixmap().toImage().pixelColor(8, 8), QColor(255, 0, 0));
}

TEST_F(QtLent, EachCharacterThatIsTyped) {
  std::u32string typed;
  button.KeyPress.Listen([&](const KeyPress& press) { typed += press.character; });
  Place(button);
  Place(field);
  Show();
  QWidget& widget = WidgetOf(button);
  QTest::keyClicks(&widget, "aB 1");
  QTest::keyClick(&widget, Qt::Key_Escape);
  QTest::keyClick(&widget, Qt::Key_Backspace);
  QTest::keyClick(&widget, Qt::Key_Delete);
  QTest::keyClick(&widget, Qt::Key_F5);
  EXPECT_EQ(typed, U"aB 1\x1B\b");
}

TEST_F(QtLent, TheBoxOfABackStyle) {
  Place(frame);
  Show();
  std::string text;
  Timer timer(loop.Timers(), 10, true);
  timer.Tick.Listen([&] {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (box == nullptr) return;
    timer.Enabled = false;
    text = FromQt(box->text());
    box->close();
  });
  loop.Deliver([&] { frame.BackStyle = 0; });
  EXPECT_TRUE(text.starts_with("This feature has not yet been implemented!")) << text;
  EXPECT_EQ(frame.BackStyle, 1);
}

TEST_F(QtLent, WhatIsDraggedOverIt) {
  std::vector<std::string> steps;
  frame.OLEDropMode = 1;
  frame.OLEDragOver.Listen([&](DragStep& step) {
    steps.push_back("over " + step.data);
    if (step.at.x_px > 100) step.effect = 0;
  });
  frame.OLEDragDrop.Listen([&](DragStep& step) { steps.push_back("drop " + step.data); });
  Place(frame);
  Show();
  QMimeData data;
  data.setText("a.txt");
  QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, {});
  QApplication::sendEvent(&WidgetOf(frame), &enter);
  EXPECT_TRUE(enter.isAccepted());
  QDragMoveEvent refused({150, 5}, Qt::CopyAction, &data, Qt::LeftButton, {});
  QApplication::sendEvent(&WidgetOf(frame), &refused);
  EXPECT_FALSE(refused.isAccepted());
  QDropEvent drop({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, {});
  QApplication::sendEvent(&WidgetOf(frame), &drop);
  EXPECT_TRUE(drop.isAccepted());
  data.setUrls({QUrl("file:///tmp/one.txt"), QUrl("file:///tmp/two.txt")});
  frame.OLEDragOver.Listen([](DragStep& step) { step.effect = kMoves; });
  QDragEnterEvent only_copies({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, {});
  QApplication::sendEvent(&WidgetOf(frame), &only_copies);
  EXPECT_FALSE(only_copies.isAccepted());
  EXPECT_EQ(steps, (std::vector<std::string>{"over a.txt", "over a.txt", "drop a.txt",
                                             "over C:/tmp/one.txt\nC:/tmp/two.txt"}));
  frame.OLEDropMode = 0;
  EXPECT_TRUE(WaitFor([&] { return !WidgetOf(frame).acceptDrops(); }));
}

// Over another frame, which would copy it.
TEST_F(QtLent, WhatADropOfWhatIsDraggedAwayWouldDo) {
  GroupBox target;
  std::vector<std::string> steps;
  const auto note = [&](const std::string& what) {
    return [&steps, what](DragStep& step) {
      steps.push_back(what + std::to_string(step.effect) + step.data);
    };
  };
  frame.OLEStartDrag.Listen([](DragStep& step) { step.data = " text"; });
  frame.OLEGiveFeedback.Listen(note("would be "));
  frame.OLECompleteDrag.Listen(note("was "));
  target.OLEDropMode = 1;
  target.OLEDragOver.Listen([](DragStep& step) { step.effect = 1; });
  target.OLEDragDrop.Listen([&](DragStep& step) {
    steps.push_back("drop" + step.data);
    step.effect = 1;
  });
  Place(frame);
  Place(target);
  Show();
  QWindow* const native = Native().windowHandle();
  const QPoint over = WidgetOf(target).mapTo(&Native(), WidgetOf(target).rect().center());
  int moves = 0;
  Timer timer(loop.Timers(), 50, true);
  timer.Tick.Listen([&] {
    if (moves > 100) {
      QTest::keyClick(native, Qt::Key_Escape);
    } else if (steps.empty()) {
      QTest::mouseMove(native, over + QPoint(++moves % 2, 0));
    } else {
      timer.Enabled = false;
      QTest::mouseRelease(native, Qt::LeftButton, {}, over);
    }
  });
  loop.Deliver([&] { frame.OLEDrag(); });
  EXPECT_EQ(steps, (std::vector<std::string>{"would be 1 text", "drop text", "was 1 text"}));
}

}  // namespace
}  // namespace tarnvale
