#include "ui/accessible_names.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/fake_machine.h"

namespace tarnvale::testing {
namespace {

TEST(AccessibleNamesTest, ALabelNamesWhatComesBehindItInItsContainer) {
  Window window;
  PictureBox box;
  Label label;
  Label value{TextRole::kValue};
  TextBox first;
  TextBox second;
  TextBox inner;
  TextBox behind;
  window.Place({{&label, nullptr, {}},
                {&first, nullptr, {}},
                {&value, nullptr, {}},
                {&second, nullptr, {}},
                {&box, nullptr, {}},
                {&inner, &box, {}},
                {&behind, nullptr, {}}});
  const auto labels = LabelsOf(window);
  EXPECT_EQ(labels.at(&first), &label);
  EXPECT_EQ(labels.at(&second), &label) << "a fact is no label";
  EXPECT_EQ(labels.count(&inner), 0U);
  EXPECT_EQ(labels.count(&behind), 0U) << "another container came between";
}

TEST(AccessibleNamesTest, TheFirstOfFiveNamesCounts) {
  Label label;
  label.Caption = std::string(" Folder: ");
  CheckButton check;
  EXPECT_EQ(NameForReaders(check, nullptr), "");
  EXPECT_EQ(NameForReaders(check, &label), "Folder:");
  check.ToolTip = std::string("the tip");
  EXPECT_EQ(NameForReaders(check, &label), "the tip");
  check.Caption = std::string("&Browse && go");
  EXPECT_EQ(NameForReaders(check, &label), "Browse & go");
  check.AccessibleName = std::string("Choose");
  EXPECT_EQ(NameForReaders(check, &label), "Choose");
}

TEST(AccessibleNamesTest, ACaptionIsReadAsItIsShown) {
  OptionButton option;
  option.Caption = std::string("&At a time");
  EXPECT_EQ(NameForReaders(option, nullptr), "At a time");
  Label label;
  label.Caption = std::string("Save && load && go");
  EXPECT_EQ(NameForReaders(label, nullptr), "Save & load & go");
  Label value{TextRole::kValue};
  value.Caption = std::string("a&&b.txt");
  EXPECT_EQ(NameForReaders(value, nullptr), "a&&b.txt") << "a fact is shown as it is";
}

TEST(AccessibleNamesTest, WhatNothingElseNamesIsCalledByItsKind) {
  FakeMachine machine;
  EXPECT_EQ(NameForReaders(FileList(machine.files), nullptr), "Files");
  EXPECT_EQ(NameForReaders(PictureBox(), nullptr), "");
  EXPECT_EQ(NameForReaders(TextBox(), nullptr), "Text field");
  EXPECT_EQ(NameForReaders(TextBox(TextKind::kMemo), nullptr), "Text");
  EXPECT_EQ(NameForReaders(ListBox(), nullptr), "List");
  EXPECT_EQ(NameForReaders(ComboBox(), nullptr), "Choice");
  EXPECT_EQ(NameForReaders(FolderTree(), nullptr), "Folders");
}

}  // namespace
}  // namespace tarnvale::testing
