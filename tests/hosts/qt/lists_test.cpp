#include <QListView>

#include "tests/hosts/qt/qt_fixture.h"

namespace tarnvale {
namespace {

class QtLists : public QtFixture {
 protected:
  QListView& View(Control& list) { return WidgetOf<QListView>(list); }
  QPoint Row(Control& list, int row) {
    QListView& view = View(list);
    return view.visualRect(view.model()->index(row, 0)).center();
  }
  void Click(Control& list, int row, Qt::KeyboardModifiers modifiers = {}) {
    QTest::mouseClick(View(list).viewport(), Qt::LeftButton, modifiers, Row(list, row));
  }
  int SelectedCount(Control& list) {
    return static_cast<int>(View(list).selectionModel()->selectedRows().size());
  }
};

TEST_F(QtLists, ReportTheRowsThatTheUserSelects) {
  ListBox list;
  list.MultiSelect = true;
  list.Rows.Assign({"a", "b", "c", "d"});
  Place(list);
  Show();
  Click(list, 1);
  Click(list, 3, Qt::ControlModifier);
  EXPECT_FALSE(list.IsSelected(0));
  EXPECT_TRUE(list.IsSelected(1));
  EXPECT_TRUE(list.IsSelected(3));
  Click(list, 0);
  EXPECT_TRUE(list.IsSelected(0));
  EXPECT_FALSE(list.IsSelected(3));
}

TEST_F(QtLists, ASingleListKeepsOneRow) {
  ListBox list;
  list.Rows.Assign({"a", "b"});
  Place(list);
  Show();
  Click(list, 0);
  Click(list, 1, Qt::ControlModifier);
  EXPECT_FALSE(list.IsSelected(0));
  EXPECT_EQ(list.FirstSelected(), 1U);
}

TEST_F(QtLists, ShowTheRowsThatTheProgramSelects) {
  ListBox list;
  list.MultiSelect = true;
  list.Rows.Assign({"a", "b", "c"});
  Place(list);
  Show();
  list.Select(0, true);
  list.Select(2, true);
  EXPECT_TRUE(WaitFor([&] { return SelectedCount(list) == 2; }));
  list.SelectNone();
  EXPECT_TRUE(WaitFor([&] { return SelectedCount(list) == 0; }));
}

TEST_F(QtLists, RemovingARowKeepsTheSelectionOfTheOthers) {
  ListBox list;
  list.MultiSelect = true;
  list.Rows.Assign({"a", "b", "c", "d"});
  Place(list);
  Show();
  Click(list, 1);
  Click(list, 3, Qt::ControlModifier);
  list.Rows.RemoveAt(1);
  EXPECT_FALSE(list.IsSelected(1));
  EXPECT_TRUE(list.IsSelected(2));
  ASSERT_TRUE(WaitFor([&] { return SelectedCount(list) == 1; }));
  EXPECT_EQ(View(list).selectionModel()->selectedRows().first().row(), 2);
}

TEST_F(QtLists, TenThousandRowsAreAppendedAndRemovedQuickly) {
  ListBox list;
  list.MultiSelect = true;
  Place(list);
  Show();
  QElapsedTimer since;
  since.start();
  for (int i = 0; i < 10000; ++i) list.Rows.Append("C:\\folder\\file " + std::to_string(i));
  loop.Yield();
  EXPECT_EQ(View(list).model()->rowCount(), 10000);
  for (int i = 0; i < 10000; ++i) list.Rows.RemoveAt(list.Rows.Count() - 1);
  EXPECT_LT(since.elapsed(), 5000);
  EXPECT_EQ(View(list).model()->rowCount(), 0);
}

TEST_F(QtLists, ADoubleClickComesAfterTheSelection) {
  FileList list{files};
  files.Write("C:\\data\\one.txt", "1");
  files.Write("C:\\data\\two.txt", "2");
  list.Folder = "C:\\data";
  std::string opened;
  list.DoubleClicked.Listen([&] { opened = list.FileName(); });
  Place(list);
  Show();
  Click(list, 1);
  QTest::mouseDClick(View(list).viewport(), Qt::LeftButton, {}, Row(list, 1));
  EXPECT_EQ(opened, "two.txt");
}

TEST_F(QtLists, AFileListShowsWhatItsFolderHolds) {
  FileList list{files};
  files.Write("C:\\data\\one.txt", "1");
  Place(list);
  Show();
  EXPECT_EQ(View(list).model()->rowCount(), 0);
  list.Folder = "C:\\data";
  ASSERT_EQ(View(list).model()->rowCount(), 1);
  EXPECT_EQ(View(list).model()->index(0, 0).data().toString(), "one.txt");
}

TEST_F(QtLists, TheFileSelectedLastIsTheOneThatTheUserWentTo) {
  FileList list{files};
  for (const char* name : {"a", "b", "c"}) files.Write(std::string("C:\\data\\") + name, "");
  list.Folder = "C:\\data";
  Place(list);
  Show();
  Click(list, 2);
  Click(list, 0, Qt::ShiftModifier);
  EXPECT_TRUE(list.IsSelected(1));
  EXPECT_EQ(list.FileName(), "a");
}

TEST_F(QtLists, FiftyThousandFilesAreShownAndSelectedQuickly) {
  FileList list{files};
  for (int i = 0; i < 50000; ++i) files.Write("C:\\data\\file " + std::to_string(i), "");
  Place(list);
  Show();
  QElapsedTimer since;
  since.start();
  list.Folder = "C:\\data";
  const qint64 read = since.elapsed();
  since.restart();
  View(list).grab();
  QTest::keyClick(&View(list), Qt::Key_A, Qt::ControlModifier);
  EXPECT_TRUE(list.IsSelected(49999));
  RecordProperty("read_ms", static_cast<int>(read));
  EXPECT_LT(since.elapsed(), 2000);
}

}  // namespace
}  // namespace tarnvale
