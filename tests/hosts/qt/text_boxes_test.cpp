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

TEST_F(QtTextBoxes, ReportTheTypedText) {
  TextBox box;
  Place(box);
  Show();
  QTest::keyClicks(&Edit(box), "C:\\Backup");
  EXPECT_EQ(box.Text.Get(), "C:\\Backup");
}

TEST_F(QtTextBoxes, ShowTheRecordsText) {
  Property<std::string> text{"before"};
  TextBox box{text};
  Place(box);
  Show();
  EXPECT_EQ(Edit(box).text(), "before");
  text = "after";
  EXPECT_EQ(Edit(box).text(), "after");
}

TEST_F(QtTextBoxes, ShowWhatAHandlerMadeOfTheTypedText) {
  TextBox box;
  Place(box);
  Show();
  box.Text.Changed().Listen([&] {
    if (box.Text.Get() == "ab") box.Text = std::string("AB");
  });
  QTest::keyClicks(&Edit(box), "ab");
  EXPECT_EQ(Edit(box).text(), "AB");
}

TEST_F(QtTextBoxes, AMaskedFieldBeginsWithZerosInTheRecordToo) {
  TextBox box{TextKind::kMasked};
  box.Mask = "##:##";
  Place(box);
  Show();
  EXPECT_EQ(box.Text.Get(), "00:00");
  EXPECT_EQ(Edit(box).text(), "00:00");
}

TEST_F(QtTextBoxes, AMaskedFieldOverwritesDigitByDigitAcrossTheColon) {
  TextBox box{TextKind::kMasked};
  box.Mask = "##:##";
  Place(box);
  Show();
  box.SelectAll();
  QTest::keyClicks(&Edit(box), "1");
  EXPECT_EQ(box.Text.Get(), "10:00");
  QTest::keyClicks(&Edit(box), "7x45");
  EXPECT_EQ(box.Text.Get(), "17:45");
  EXPECT_EQ(Edit(box).text(), "17:45");
}

TEST_F(QtTextBoxes, AMaskedFieldErasesToZeros) {
  TextBox box{TextKind::kMasked};
  box.Mask = "##:##";
  box.Text = std::string("17:45");
  Place(box);
  Show();
  Edit(box).deselect();
  Edit(box).setCursorPosition(5);
  QTest::keyClick(&Edit(box), Qt::Key_Backspace);
  EXPECT_EQ(box.Text.Get(), "17:40");
  box.SelectAll();
  QTest::keyClick(&Edit(box), Qt::Key_Delete);
  EXPECT_EQ(box.Text.Get(), "00:00");
}

TEST_F(QtTextBoxes, APasswordIsNotShown) {
  TextBox box{TextKind::kPassword};
  box.Text = std::string("secret");
  Place(box);
  Show();
  EXPECT_EQ(Edit(box).displayText(), "******");
}

TEST_F(QtTextBoxes, SelectAllSelectsWhatIsShown) {
  TextBox box;
  box.Text = std::string("h\xC3\xA4user");
  Place(box);
  Show();
  box.Selection = TextSelection{1, 2};
  EXPECT_EQ(FromQt(Edit(box).selectedText()), "\xC3\xA4");
  box.SelectAll();
  EXPECT_EQ(FromQt(Edit(box).selectedText()), "h\xC3\xA4user");
}

TEST_F(QtTextBoxes, TheUsersSelectionIsReportedInBytes) {
  TextBox box;
  box.Text = std::string("h\xC3\xA4user");
  Place(box);
  Show();
  Edit(box).setSelection(1, 2);
  EXPECT_EQ(box.Selection.Get(), (TextSelection{1, 3}));
}

TEST_F(QtTextBoxes, AClickKeepsTheSelectionThatTheFocusMade) {
  TextBox first;
  TextBox second;
  second.Text = std::string("00:00");
  second.GotFocus.Listen([&] { second.SelectAll(); });
  Place(first);
  Place(second);
  Show();
  QTest::mouseClick(&Edit(second), Qt::LeftButton, {}, QPoint(10, 10));
  EXPECT_EQ(Edit(second).selectedText(), "00:00");
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

TEST_F(QtTextBoxes, AMemoReportsTypedLinesWithBothLineEnds) {
  TextBox box{TextKind::kMemo};
  Place(box);
  Show();
  auto& edit = WidgetOf<QPlainTextEdit>(box);
  QTest::keyClicks(&edit, "a");
  QTest::keyClick(&edit, Qt::Key_Return);
  QTest::keyClicks(&edit, "b");
  EXPECT_EQ(box.Text.Get(), "a\r\nb");
}

TEST_F(QtTextBoxes, AMemoBreaksLinesAtEveryKindOfLineEnd) {
  TextBox box{TextKind::kMemo};
  box.Text = std::string("a\r\nb\rc\nd");
  Place(box);
  Show();
  EXPECT_EQ(WidgetOf<QPlainTextEdit>(box).toPlainText(), "a\nb\nc\nd");
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

TEST_F(QtTextBoxes, TypingIntoAMemoKeepsWhatWasAppended) {
  TextBox box{TextKind::kMemo};
  Place(box);
  Show();
  box.Append("log");
  auto& edit = WidgetOf<QPlainTextEdit>(box);
  QTest::keyClicks(&edit, "x");
  EXPECT_EQ(box.Text.Get().size(), 4U);
  EXPECT_NE(box.Text.Get().find("log"), std::string::npos);
  EXPECT_EQ(FromQt(edit.toPlainText()), box.Text.Get());
}

TEST_F(QtTextBoxes, AReadOnlyFieldTakesNoKeys) {
  TextBox box;
  Place(box);
  Show();
  box.ReadOnly = true;
  QTest::keyClicks(&Edit(box), "x");
  EXPECT_EQ(box.Text.Get(), "");
}

}  // namespace
}  // namespace tarnvale
