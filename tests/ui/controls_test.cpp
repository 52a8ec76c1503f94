#include "ui/controls.h"

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/support/fake_machine.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(TextBoxTest, AppendedTextIsReportedAlone) {
  TextBox box(TextKind::kMemo);
  box.Text = std::string("one\n");
  int changes = 0;
  std::string appended;
  box.Text.Changed().Listen([&] { ++changes; });
  box.Appended.Listen([&](const std::string& text) { appended = text; });
  box.Append("two\n");
  EXPECT_EQ(box.Text.Get(), "one\ntwo\n");
  EXPECT_EQ(appended, "two\n");
  EXPECT_EQ(changes, 0);
}

TEST(TextBoxTest, AppendingReachesTheBoundProperty) {
  Property<std::string> text{std::string("one")};
  TextBox box(text);
  box.Append(" two");
  EXPECT_EQ(text.Get(), "one two");
}

TEST(TextBoxTest, AppendingPutsTheCaretAtTheEnd) {
  TextBox box(TextKind::kMemo);
  box.Text = std::string("one");
  box.SelectAll();
  box.Append(" two");
  EXPECT_EQ(box.Selection.Get(), (TextSelection{7, 0}));
}

TEST(TextBoxTest, SelectAllSpansTheText) {
  TextBox box;
  box.Text = std::string("hello");
  box.SelectAll();
  EXPECT_EQ(box.Selection.Get(), (TextSelection{0, 5}));
}

class ListBoxTest : public ::testing::Test {
 protected:
  ListBoxTest() {
    rows.Assign({"a", "b", "c"});
    list.SelectionChanged.Listen([this] { ++changes; });
  }

  std::vector<std::size_t> Selected() const {
    std::vector<std::size_t> selected;
    for (std::size_t i = 0; i < 10; ++i) {
      if (list.IsSelected(i)) selected.push_back(i);
    }
    return selected;
  }

  RowList rows;
  ListBox list{rows};
  int changes = 0;
};

TEST_F(ListBoxTest, OneRowIsSelectedAtATime) {
  list.Select(0, true);
  list.Select(2, true);
  EXPECT_THAT(Selected(), ElementsAre(2));
  EXPECT_EQ(changes, 2);
}

TEST_F(ListBoxTest, ManyRowsCanBeSelectedWhereThatIsAllowed) {
  list.MultiSelect = true;
  list.Select(2, true);
  list.Select(0, true);
  EXPECT_THAT(Selected(), ElementsAre(0, 2));
  EXPECT_EQ(list.FirstSelected(), 0U);
  list.Select(0, false);
  EXPECT_EQ(list.FirstSelected(), 2U);
}

TEST_F(ListBoxTest, SelectingWhatIsSelectedNotifiesNoListener) {
  list.Select(1, true);
  list.Select(1, true);
  list.Select(0, false);
  EXPECT_EQ(changes, 1);
}

TEST_F(ListBoxTest, RowsBeyondTheEndAreIgnored) {
  list.Select(3, true);
  EXPECT_THAT(Selected(), IsEmpty());
  EXPECT_FALSE(list.IsSelected(3));
  EXPECT_EQ(changes, 0);
}

TEST_F(ListBoxTest, SelectNoneNotifiesOnlyWhenSomethingWasSelected) {
  list.SelectNone();
  EXPECT_EQ(changes, 0);
  list.Select(1, true);
  list.SelectNone();
  EXPECT_EQ(changes, 2);
  EXPECT_FALSE(list.FirstSelected().has_value());
}

TEST_F(ListBoxTest, TheSelectionStaysWithItsRows) {
  list.MultiSelect = true;
  list.Select(0, true);
  list.Select(2, true);
  rows.Append("d");
  EXPECT_THAT(Selected(), ElementsAre(0, 2));
  rows.RemoveAt(1);
  EXPECT_THAT(Selected(), ElementsAre(0, 1));
  rows.RemoveAt(0);
  EXPECT_THAT(Selected(), ElementsAre(0));
  EXPECT_EQ(rows.At(0), "c");
}

TEST_F(ListBoxTest, NewRowsAreNotSelected) {
  list.Select(1, true);
  rows.Assign({"x", "y", "z", "w"});
  EXPECT_THAT(Selected(), IsEmpty());
  list.Select(3, true);
  EXPECT_THAT(Selected(), ElementsAre(3));
}

TEST_F(ListBoxTest, TheRowsMayOutliveTheList) {
  auto brief = std::make_unique<ListBox>(rows);
  brief.reset();
  rows.Append("d");
  rows.RemoveAt(0);
  rows.Clear();
  EXPECT_EQ(rows.Count(), 0U);
}

TEST(TextListTest, BeyondTheEndThereIsNothing) {
  RowList rows;
  rows.Append("a");
  EXPECT_EQ(rows.At(1), "");
  rows.RemoveAt(1);
  EXPECT_EQ(rows.Count(), 1U);
}

TEST(TextListTest, ChangesAreReported) {
  RowList rows;
  std::vector<std::string> reported;
  rows.Appended.Listen([&] { reported.push_back("appended"); });
  rows.Removed.Listen(
      [&](std::size_t index) { reported.push_back("removed " + std::to_string(index)); });
  rows.Reset.Listen([&] { reported.push_back("reset"); });
  rows.Append("a");
  rows.Append("b");
  rows.RemoveAt(1);
  rows.RemoveAt(5);
  rows.Clear();
  EXPECT_THAT(reported, ElementsAre("appended", "appended", "removed 1", "reset"));
}

class OptionGroupTest : public ::testing::Test {
 protected:
  Property<bool> complete{true};
  Property<bool> incremental{false};
  Property<bool> sync{false};
};

TEST_F(OptionGroupTest, OneThatComesOnPutsTheOthersOut) {
  const OptionGroup group({&complete, &incremental, &sync});
  sync = true;
  EXPECT_FALSE(complete);
  EXPECT_TRUE(sync);
  incremental = true;
  EXPECT_FALSE(sync);
}

TEST_F(OptionGroupTest, PuttingOneOutLeavesNone) {
  const OptionGroup group({&complete, &incremental, &sync});
  complete = false;
  EXPECT_FALSE(complete || incremental || sync);
}

TEST_F(OptionGroupTest, TheFlagsMayOutliveTheGroup) {
  { const OptionGroup group({&complete, &incremental, &sync}); }
  sync = true;
  EXPECT_TRUE(complete);
}

class FileListTest : public ::testing::Test {
 protected:
  FileListTest() {
    machine.files.Write("C:\\Data\\b.txt", "");
    machine.files.Write("C:\\Data\\a.doc", "");
    machine.files.Write("C:\\Data\\hidden.txt", "");
    machine.files.SetAttributes("C:\\Data\\hidden.txt", attribute::kHidden);
    machine.files.Write("C:\\Data\\system.txt", "");
    machine.files.SetAttributes("C:\\Data\\system.txt", attribute::kSystem);
    machine.files.Write("C:\\Data\\read-only.txt", "");
    machine.files.SetAttributes("C:\\Data\\read-only.txt", attribute::kReadOnly);
    list.Folder = std::string("C:\\Data");
  }

  FakeMachine machine;
  FileList list{machine.files};
};

TEST_F(FileListTest, ShowsTheFilesOfItsFolder) {
  EXPECT_THAT(list.Rows(), ElementsAre("a.doc", "b.txt", "read-only.txt"));
}

TEST_F(FileListTest, FollowsItsPatternAtOnce) {
  list.Pattern = std::string("*.doc");
  EXPECT_THAT(list.Rows(), ElementsAre("a.doc"));
}

TEST_F(FileListTest, ShowsHiddenAndSystemFilesWhenSetTo) {
  list.ShowHidden = true;
  EXPECT_THAT(list.Rows(), ElementsAre("a.doc", "b.txt", "hidden.txt", "read-only.txt"));
  list.ShowSystem = true;
  EXPECT_EQ(list.Rows().size(), 5U);
}

TEST_F(FileListTest, AllAttributesOfAFileMustBeShown) {
  machine.files.SetAttributes("C:\\Data\\hidden.txt", attribute::kHidden | attribute::kReadOnly);
  list.ShowHidden = true;
  list.ShowReadOnly = false;
  EXPECT_THAT(list.Rows(), ElementsAre("a.doc", "b.txt"));
}

TEST_F(FileListTest, AFileWhoseAttributesCannotBeReadIsShown) {
  machine.files.FailOn("Attributes", "C:\\Data\\b.txt", kDeviceUnavailable);
  list.ShowReadOnly = false;
  EXPECT_THAT(list.Rows(), ElementsAre("a.doc", "b.txt"));
}

TEST_F(FileListTest, WhatHappensOnTheMediumShowsAfterRefresh) {
  int changes = 0;
  list.RowsChanged.Listen([&] { ++changes; });
  machine.files.Write("C:\\Data\\c.txt", "");
  EXPECT_EQ(list.Rows().size(), 3U);
  list.Refresh();
  EXPECT_EQ(list.Rows().size(), 4U);
  EXPECT_EQ(changes, 1);
}

TEST_F(FileListTest, AFolderThatIsMissingOrCannotBeReadHasNoRows) {
  list.Folder = std::string("C:\\Missing");
  EXPECT_THAT(list.Rows(), IsEmpty());
  machine.files.FailNext("List", 75);
  list.Folder = std::string("C:\\Data");
  EXPECT_THAT(list.Rows(), IsEmpty());
  list.Folder = std::string();
  EXPECT_THAT(list.Rows(), IsEmpty());
}

TEST_F(FileListTest, TheFileNameIsTheRowThatWasSelectedLast) {
  EXPECT_EQ(list.FileName(), "");
  list.Select(1, true);
  list.Select(0, true);
  EXPECT_EQ(list.FileName(), "a.doc");
  EXPECT_TRUE(list.IsSelected(0));
  EXPECT_TRUE(list.IsSelected(1));
}

TEST_F(FileListTest, RefreshGivesTheSelectionUp) {
  list.Select(1, true);
  list.Refresh();
  EXPECT_FALSE(list.IsSelected(1));
  EXPECT_EQ(list.FileName(), "");
}

TEST_F(FileListTest, SelectionChangesAreReported) {
  int changes = 0;
  list.SelectionChanged.Listen([&] { ++changes; });
  list.SelectNone();
  list.Select(9, true);
  EXPECT_EQ(changes, 0);
  list.Select(0, true);
  list.Select(0, true);
  list.SelectNone();
  EXPECT_EQ(changes, 2);
}

}  // namespace
}  // namespace tarnvale::testing
