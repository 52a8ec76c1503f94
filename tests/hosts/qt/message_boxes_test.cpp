#include "hosts/qt/qt_message_boxes.h"
#include "hosts/qt/qt_pictures.h"

#include <QApplication>
#include <QMessageBox>

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
};

TEST_F(QtMessages, EscapeAndTheCloseBoxAnswerNoOrCancel) {
  const BoxRequest yes_no{.text = "?", .buttons = BoxButtons::kYesNo};
  const BoxRequest ok_cancel{.text = "?", .buttons = BoxButtons::kOkCancel};
  EXPECT_EQ(Answer(yes_no, Escape), BoxAnswer::kNo);
  EXPECT_EQ(Answer(yes_no, Close), BoxAnswer::kNo);
  EXPECT_EQ(Answer(ok_cancel, Escape), BoxAnswer::kCancel);
}

TEST_F(QtMessages, ShowMarksAsText) {
  Answer({.text = "<b>"}, [](QMessageBox& box) {
    EXPECT_EQ(box.textFormat(), Qt::PlainText);
    box.close();
  });
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

}  // namespace
}  // namespace tarnvale
