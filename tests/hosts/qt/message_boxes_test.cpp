#include "hosts/qt/qt_message_boxes.h"
#include "hosts/qt/qt_pictures.h"

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>

#include "tests/hosts/qt/qt_fixture.h"
#include "ui/timer.h"

namespace tarnvale {
namespace {

class QtMessages : public QtFixture {
 protected:
  /// Shows a box and calls `act` as soon as it is up.
  BoxAnswer Answer(const BoxRequest& request, const std::function<void(QMessageBox&)>& act) {
    Timer timer(loop.Timers(), 10, true);
    timer.Tick.Listen([&] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      if (box == nullptr || !box->isActiveWindow()) return;
      timer.Enabled = false;
      act(*box);
    });
    return boxes.Show(request);
  }
  static void Escape(QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); }
  static void Close(QMessageBox& box) { box.close(); }

  QtMessageBoxes boxes;
};

TEST_F(QtMessages, TheButtonsAnswerForThemselves) {
  const BoxRequest question{.text = "Proceed?", .buttons = BoxButtons::kYesNo};
  EXPECT_EQ(Answer(question,
                   [](QMessageBox& box) {
                     QTest::mouseClick(box.button(QMessageBox::Yes), Qt::LeftButton);
                   }),
            BoxAnswer::kYes);
  EXPECT_EQ(Answer(question,
                   [](QMessageBox& box) {
                     QTest::mouseClick(box.button(QMessageBox::No), Qt::LeftButton);
                   }),
            BoxAnswer::kNo);
}

TEST_F(QtMessages, EscapeAndTheCloseBoxAnswerNoOrCancel) {
  const BoxRequest yes_no{.text = "?", .buttons = BoxButtons::kYesNo};
  const BoxRequest ok_cancel{.text = "?", .buttons = BoxButtons::kOkCancel};
  EXPECT_EQ(Answer(yes_no, Escape), BoxAnswer::kNo);
  EXPECT_EQ(Answer(yes_no, Close), BoxAnswer::kNo);
  EXPECT_EQ(Answer(ok_cancel, Escape), BoxAnswer::kCancel);
  EXPECT_EQ(Answer(ok_cancel, Close), BoxAnswer::kCancel);
}

TEST_F(QtMessages, ABoxBearsTheIconOfTheFirstWindow) {
  window.Icon = "AAA";
  Show();
  QImage seen;
  Answer({.text = "Done"}, [&](QMessageBox& box) {
    seen = box.windowIcon().pixmap(16, 16).toImage();
    Escape(box);
  });
  EXPECT_FALSE(seen.isNull());
  EXPECT_EQ(seen, PictureNamed("AAA").pixmap(16, 16).toImage());
}

TEST_F(QtMessages, ABoxWithNothingButOkAnswersOk) {
  EXPECT_EQ(Answer({.text = "Done"}, Escape), BoxAnswer::kOk);
  EXPECT_EQ(Answer({.text = "Done"},
                   [](QMessageBox& box) {
                     QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
                     EXPECT_FALSE(box.isVisible());
                   }),
            BoxAnswer::kOk);
}

TEST_F(QtMessages, TimersTickBehindABox) {
  Timer other(loop.Timers(), 10, true);
  int ticks = 0;
  other.Tick.Listen([&] {
    ++ticks;
    QWidget* box = QApplication::activeModalWidget();
    if (ticks == 5) box->close();
  });
  boxes.Show({.text = "Waiting"});
  EXPECT_EQ(ticks, 5);
}

TEST_F(QtMessages, ATimerThatShowsABoxDoesNotTickBehindIt) {
  Timer timer(loop.Timers(), 10, true);
  Timer closing(loop.Timers(), 50, true);
  int boxes_shown = 0;
  int ticks = 0;
  timer.Tick.Listen([&] {
    timer.Enabled = false;
    timer.Enabled = true;
    ++boxes_shown;
    boxes.Show({.text = "Once"});
    timer.Enabled = false;
  });
  closing.Tick.Listen([&] {
    if (++ticks < 4) return;
    if (QWidget* box = QApplication::activeModalWidget()) box->close();
  });
  ASSERT_TRUE(WaitFor([&] { return !timer.Enabled; }));
  EXPECT_EQ(boxes_shown, 1);
}

TEST_F(QtMessages, ShowsTextTitleAndLineEnds) {
  QString text;
  QString title;
  Answer({.text = "first\r\nsecond\rthird\n<b>", .title = "Exit Tarnvale"}, [&](QMessageBox& box) {
    EXPECT_EQ(box.textFormat(), Qt::PlainText);
    text = box.text();
    title = box.windowTitle();
    box.close();
  });
  EXPECT_EQ(text, "first\nsecond\nthird\n<b>");
  EXPECT_EQ(title, "Exit Tarnvale");
}

TEST_F(QtMessages, EachIconIsAPictureOfItsOwn) {
  std::vector<QImage> pictures;
  for (const BoxIcon icon : {BoxIcon::kNone, BoxIcon::kInformation, BoxIcon::kQuestion,
                             BoxIcon::kExclamation, BoxIcon::kStop}) {
    Answer({.text = "?", .icon = icon}, [&](QMessageBox& box) {
      const QImage picture = box.iconPixmap().toImage();
      for (const QImage& other : pictures) EXPECT_NE(picture, other);
      pictures.push_back(picture);
      box.close();
    });
  }
  ASSERT_EQ(pictures.size(), 5U);
  EXPECT_TRUE(pictures[0].isNull());
}

TEST_F(QtMessages, AFaultInATimerBehindABoxLeavesTheBoxOpen) {
  QtEventLoop other;
  int faults = 0;
  other.Fault.Listen([&](const ProgramError&) { ++faults; });
  Timer failing(other.Timers(), 10, true);
  failing.Tick.Listen([&] {
    failing.Enabled = false;
    throw ProgramError(kOverflow);
  });
  Timer closing(loop.Timers(), 10, true);
  closing.Tick.Listen([&] {
    if (faults == 1) QApplication::activeModalWidget()->close();
  });
  EXPECT_EQ(boxes.Show({.text = "Standing", .buttons = BoxButtons::kYesNo}), BoxAnswer::kNo);
}

TEST_F(QtMessages, TheActiveWindowStaysTheProgramsUnderABox) {
  TextBox box_on_window;
  Place(box_on_window);
  Show();
  Window* active = nullptr;
  QWidget* owner = nullptr;
  Answer({.text = "?"}, [&](QMessageBox& box) {
    active = host.Surroundings().ActiveWindow;
    owner = box.parentWidget();
    box.close();
  });
  EXPECT_EQ(active, &window);
  EXPECT_EQ(owner, &Native());
}

}  // namespace
}  // namespace tarnvale
