#include <QListView>

#include "tests/hosts/qt/qt_fixture.h"

namespace tarnvale {
namespace {

class QtLists : public QtFixture {
 protected:
  QListView& View(Control& list) { return WidgetOf<QListView>(list); }
};

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
