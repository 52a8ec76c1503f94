#include <QScrollBar>
#include <QTreeView>

#include "tests/hosts/qt/qt_fixture.h"

namespace tarnvale {
namespace {

class QtFolderTree : public QtFixture {
 protected:
  QTreeView& View() { return WidgetOf<QTreeView>(tree); }
  std::string Current() { return FromQt(View().currentIndex().data().toString()); }
  void StartAt(const Path& folder) {
    tree.Start(folder);
    Place(tree);
    Show();
    ASSERT_TRUE(WaitFor([&] { return View().isExpanded(View().model()->index(0, 0)); }));
  }
  std::vector<std::string> Children(const QModelIndex& index) {
    std::vector<std::string> names;
    for (int row = 0; row < View().model()->rowCount(index); ++row) {
      names.push_back(FromQt(View().model()->index(row, 0, index).data().toString()));
    }
    return names;
  }

  FolderTree tree;
};

TEST_F(QtFolderTree, OpensDownToTheStartFolderAndSelectsIt) {
  files.MakeFolder("C:\\home\\ann\\Documents");
  files.MakeFolder("C:\\home\\bob");
  StartAt("C:\\home\\ann");
  EXPECT_EQ(Current(), "ann");
  EXPECT_TRUE(View().isExpanded(View().currentIndex().parent()));
  EXPECT_EQ(tree.SelectedPath.Get(), "C:\\home\\ann");
}

TEST_F(QtFolderTree, FindsTheStartFolderWithoutRegardToCase) {
  files.MakeFolder("C:\\Home\\Ann");
  StartAt("c:\\home\\ann");
  EXPECT_EQ(Current(), "Ann");
}

TEST_F(QtFolderTree, AStartFolderThatIsMissingSelectsNothingAndKeepsItsPath) {
  StartAt("C:\\no\\where");
  EXPECT_FALSE(View().currentIndex().isValid());
  EXPECT_EQ(tree.SelectedPath.Get(), "C:\\no\\where");
}

TEST_F(QtFolderTree, GettingTheFocusSelectsNothing) {
  TextBox before;
  Place(before);
  StartAt("C:\\no\\where");
  window.Focus(tree);
  ASSERT_TRUE(View().hasFocus());
  loop.WaitPass();
  EXPECT_EQ(tree.SelectedPath.Get(), "C:\\no\\where");
}

TEST_F(QtFolderTree, ReportsTheFolderThatTheUserSelects) {
  files.MakeFolder("C:\\home\\ann");
  files.MakeFolder("C:\\home\\bob");
  StartAt("C:\\home\\ann");
  QTest::keyClick(&View(), Qt::Key_Down);
  EXPECT_EQ(tree.SelectedPath.Get(), "C:\\home\\bob");
  QTest::keyClick(&View(), Qt::Key_Home);
  EXPECT_EQ(tree.SelectedPath.Get(), "C:\\");
}

TEST_F(QtFolderTree, StartsAnewAtAnotherFolder) {
  files.MakeFolder("C:\\home\\ann");
  files.MakeFolder("C:\\media\\disk");
  StartAt("C:\\home\\ann");
  tree.Start("C:\\media\\disk");
  EXPECT_TRUE(WaitFor([&] { return Current() == "disk"; }));
}

TEST_F(QtFolderTree, ReadsAFolderAgainWhenItIsOpenedAgain) {
  files.MakeFolder("C:\\home\\ann");
  files.MakeFolder("C:\\home\\eve");
  StartAt("C:\\home\\ann");
  const QModelIndex home = View().currentIndex().parent();
  ASSERT_TRUE(WaitFor([&] { return Children(home).size() == 2; }));
  View().collapse(home);
  files.Remove("C:\\home\\eve");
  files.MakeFolder("C:\\home\\bob");
  View().expand(home);
  EXPECT_TRUE(WaitFor([&] { return Children(home) == std::vector<std::string>{"ann", "bob"}; }));
}

TEST_F(QtFolderTree, AFolderThatVanishedGoesWhenItIsOpened) {
  files.MakeFolder("C:\\home\\ann\\deep");
  files.MakeFolder("C:\\home\\bob");
  StartAt("C:\\home\\ann");
  const QModelIndex home = View().currentIndex().parent();
  files.Remove("C:\\home\\ann");
  View().expand(View().currentIndex());
  EXPECT_TRUE(WaitFor([&] { return Children(home) == std::vector<std::string>{"bob"}; }));
  EXPECT_NE(tree.SelectedPath.Get(), "C:\\home\\ann");
}

TEST_F(QtFolderTree, AFolderWithoutFoldersLosesItsBox) {
  files.MakeFolder("C:\\home\\ann");
  StartAt("C:\\home\\ann");
  const QModelIndex ann = View().currentIndex();
  EXPECT_TRUE(WaitFor([&] { return !View().model()->hasChildren(ann); }));
}

TEST_F(QtFolderTree, NamesThatAreScrolledToAreShownWhole) {
  const std::string narrow = "C:\\a\\";
  for (int i = 10; i < 60; ++i) files.MakeFolder(narrow + std::to_string(i));
  const std::string wide = "with many more letters than the others have";
  files.MakeFolder(narrow + wide);
  StartAt(narrow + "10");
  const QAbstractItemView& cells = View();
  const int narrow_width = View().columnWidth(0);
  View().verticalScrollBar()->setValue(View().verticalScrollBar()->maximum());
  EXPECT_GT(View().columnWidth(0), narrow_width);
  EXPECT_GE(View().columnWidth(0), cells.sizeHintForColumn(0));
}

TEST_F(QtFolderTree, FiftyThousandSubFoldersOpenQuickly) {
  for (int i = 0; i < 50000; ++i) files.MakeFolder("C:\\many\\folder " + std::to_string(i));
  files.MakeFolder("C:\\other");
  StartAt("C:\\other");
  QElapsedTimer since;
  since.start();
  const QModelIndex many = View().model()->index(0, 0, View().model()->index(0, 0));
  View().expand(many);
  ASSERT_TRUE(WaitFor([&] { return View().model()->rowCount(many) == 50000; }));
  View().grab();
  EXPECT_LT(since.elapsed(), 3000);
}

}  // namespace
}  // namespace tarnvale
