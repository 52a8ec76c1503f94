#include <QAbstractScrollArea>
#include <QApplication>
#include <QDropEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QUrl>

#include "tests/hosts/qt/qt_fixture.h"

namespace tarnvale {
namespace {

class QtTextBoxes : public QtFixture {
 protected:
  QLineEdit& Edit(TextBox& box) { return WidgetOf<QLineEdit>(box); }
};

TEST_F(QtTextBoxes, APasswordIsNotShown) {
  TextBox box{TextKind::kPassword};
  box.Text = std::string("secret");
  Place(box);
  Show();
  EXPECT_EQ(Edit(box).displayText(), "******");
}

TEST_F(QtTextBoxes, DroppedFilesArriveInTheProgramsPaths) {
  TextBox box;
  box.AcceptsFiles = true;
  std::vector<Path> dropped;
  box.FilesDropped.Listen([&](const std::vector<Path>& paths) { dropped = paths; });
  Place(box);
  Show();
  QMimeData data;
  data.setUrls({QUrl::fromLocalFile("/a b.txt"), QUrl("http://host/x")});
  QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&Edit(box), &enter);
  EXPECT_TRUE(enter.isAccepted());
  QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&Edit(box), &drop);
  EXPECT_EQ(dropped, std::vector<Path>{"C:/a b.txt"});
  EXPECT_EQ(box.Text.Get(), "");
}

TEST_F(QtTextBoxes, DroppedFilesThatNoPathCanNameAreLeftOut) {
  TextBox line;
  TextBox memo{TextKind::kMemo};
  for (TextBox* box : {&line, &memo}) {
    box->AcceptsFiles = true;
    Place(*box);
  }
  Show();
  for (TextBox* box : {&line, &memo}) {
    std::vector<Path> dropped;
    box->FilesDropped.Listen([&](const std::vector<Path>& paths) { dropped = paths; });
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile("/a\\b.txt"), QUrl::fromLocalFile("/c.txt")});
    auto* memo_edit = qobject_cast<QAbstractScrollArea*>(&PeerOf(*box).FocusWidget());
    QWidget& edit = memo_edit == nullptr ? PeerOf(*box).FocusWidget() : *memo_edit->viewport();
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&edit, &enter);
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&edit, &drop);
    EXPECT_EQ(dropped, std::vector<Path>{"C:/c.txt"});
  }
}

TEST_F(QtTextBoxes, AppendingAHundredThousandLinesIsQuick) {
  TextBox box{TextKind::kMemo};
  box.ReadOnly = true;
  Place(box);
  Show();
  QElapsedTimer since;
  since.start();
  for (int i = 0; i < 100000; ++i) {
    box.Append("Backup Status: OK!\r\n");
    loop.Yield();
  }
  auto& edit = WidgetOf<QPlainTextEdit>(box);
  ASSERT_TRUE(WaitFor([&] { return edit.blockCount() == 100001; }));
  EXPECT_LT(since.elapsed(), 5000);
  EXPECT_EQ(edit.textCursor().position(), edit.toPlainText().size());
}

}  // namespace
}  // namespace tarnvale
