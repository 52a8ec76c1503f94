#include "ui/row_selection.h"

#include <gtest/gtest.h>

#include <string>

namespace tarnvale::testing {
namespace {

class Rows : public RowSelection {
 public:
  explicit Rows(std::size_t count) {
    MultiSelect = true;
    StartRows(count);
    SelectionChanged.Listen([this] { history += All() + " "; });
  }
  using RowSelection::LastSelected;
  using RowSelection::RemoveRow;
  using RowSelection::StartRows;

  std::string All() const {
    std::string all;
    for (std::size_t i = 0; i < 4; ++i) all += IsSelected(i) ? 'x' : '.';
    return all;
  }
  std::string history;
};

TEST(RowSelectionTest, WhatTheUserSelectedIsTakenOverOldRowsFirstAndTheCurrentOneLast) {
  Rows rows(4);
  rows.Select(3, true);
  rows.history.clear();
  rows.Take({true, true, true, false}, 1);
  EXPECT_EQ(rows.history, ".... x... x.x. xxx. ");
  EXPECT_EQ(rows.LastSelected(), 1U);
}

TEST(RowSelectionTest, WhatIsSelectedAlreadyIsNotReportedAgain) {
  Rows rows(4);
  rows.Take({true, false, false, false}, 0);
  rows.history.clear();
  rows.Take({true, false, false, false}, 2);
  EXPECT_EQ(rows.history, "");
  EXPECT_EQ(rows.LastSelected(), 0U);
}

TEST(RowSelectionTest, TheLastOneStaysNamedUntilTheRowsChange) {
  Rows rows(4);
  rows.Select(2, true);
  rows.SelectNone();
  EXPECT_EQ(rows.LastSelected(), 2U);
  rows.StartRows(4);
  EXPECT_FALSE(rows.LastSelected().has_value());
}

}  // namespace
}  // namespace tarnvale::testing
