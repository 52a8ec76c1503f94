#include "ui/dialog_record.h"

#include <gmock/gmock.h>

#include <string>

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A record with one thing set.
template <class Member, class Value>
FileDialogRecord With(Member member, Value value) {
  FileDialogRecord record;
  record.*member = value;
  return record;
}

/// "a|b||" with a NUL for each stroke.
std::string WithNuls(std::string text) {
  for (char& c : text) {
    if (c == '|') c = '\0';
  }
  return text;
}

FileDialogRecord Buffers(std::size_t file, std::size_t title) {
  FileDialogRecord record;
  record.file.resize(file);
  record.file_title.resize(title);
  return record;
}

TEST(DialogRecordTest, FiltersArePairsOfDescriptionAndPatterns) {
  const auto filters = FiltersOf(
      With(&FileDialogRecord::filter, WithNuls("Archives (*.tvz)|*.tvz; *.tvs|All Files|*.*||")));
  ASSERT_EQ(filters.size(), 2U);
  EXPECT_EQ(filters[0].description, "Archives (*.tvz)");
  EXPECT_THAT(filters[0].patterns, ElementsAre("*.tvz", "*.tvs"));
  EXPECT_EQ(filters[1].description, "All Files");
  EXPECT_THAT(filters[1].patterns, ElementsAre("*.*"));
}

TEST(DialogRecordTest, ALastDescriptionWithoutPatternShowsAllFiles) {
  const auto filters = FiltersOf(With(&FileDialogRecord::filter, WithNuls("Logs|*.txt|Rest||")));
  ASSERT_EQ(filters.size(), 2U);
  EXPECT_THAT(filters[1].patterns, ElementsAre("*.*"));
  EXPECT_THAT(FiltersOf({}), IsEmpty());
}

TEST(DialogRecordTest, TheFirstFilterCountsFromOneAndIsOneOfThem) {
  EXPECT_EQ(FirstFilterOf(With(&FileDialogRecord::filter_index, 0), 3), 0U);
  EXPECT_EQ(FirstFilterOf(With(&FileDialogRecord::filter_index, 2), 3), 1U);
  EXPECT_EQ(FirstFilterOf(With(&FileDialogRecord::filter_index, 9), 3), 2U);
  EXPECT_EQ(FirstFilterOf(With(&FileDialogRecord::filter_index, -4), 3), 0U);
}

TEST(DialogRecordTest, TheExtensionHasNoPoint) {
  EXPECT_EQ(DefaultExtensionOf(With(&FileDialogRecord::default_ext, ".tvz")), "tvz");
  EXPECT_EQ(DefaultExtensionOf(With(&FileDialogRecord::default_ext, "tvz")), "tvz");
  EXPECT_EQ(DefaultExtensionOf({}), "");
}

TEST(DialogRecordTest, AFileIsOfferedByFolderAndName) {
  const OfferedFile offered =
      OfferedBy(With(&FileDialogRecord::file, WithNuls("C:\\Work/a.txt||||")));
  EXPECT_EQ(offered.folder, "C:\\Work/");
  EXPECT_EQ(offered.name, "a.txt");
  EXPECT_EQ(OfferedBy(With(&FileDialogRecord::file, "a.txt")).folder, "");
  EXPECT_EQ(OfferedBy(With(&FileDialogRecord::file, "C:\\Work\\*.txt")).name, "")
      << "a pattern names no file";
}

TEST(DialogRecordTest, OnlyTheFlagOffersToCreateAMissingFile) {
  EXPECT_EQ(QuestionOfMissing(With(&FileDialogRecord::flags, kFileMustExist), "C:\\a.txt"), "");
  EXPECT_EQ(QuestionOfMissing(With(&FileDialogRecord::flags, kCreatePrompt), "C:\\a.txt"),
            "a.txt\nThis file doesn't exist. Create it?");
}

TEST(DialogRecordTest, WhatFitsFillsBothBuffers) {
  FileDialogRecord record = Buffers(9, 6);
  EXPECT_TRUE(GiveBack(record, "C:\\\xC3\xA9.txt"));
  EXPECT_EQ(record.file, WithNuls("C:\\\xC3\xA9.txt|"));
  EXPECT_EQ(record.file_title, WithNuls("\xC3\xA9.txt|"));
}

TEST(DialogRecordTest, ANameThatDoesNotFitAloneChangesNothing) {
  FileDialogRecord record = Buffers(20, 5);
  const FileDialogRecord before = record;
  EXPECT_FALSE(GiveBack(record, "C:\\a.txt"));
  EXPECT_EQ(record.file, before.file);
  EXPECT_EQ(record.file_title, before.file_title);
}

TEST(DialogRecordTest, WhatDoesNotFitOrIsEmptyChangesNothing) {
  FileDialogRecord record = Buffers(8, 8);
  const FileDialogRecord before = record;
  for (const char* chosen : {"", "C:\\a.txt"}) {
    EXPECT_FALSE(GiveBack(record, chosen));
    EXPECT_EQ(record.file, before.file);
    EXPECT_EQ(record.file_title, before.file_title);
  }
}

}  // namespace
}  // namespace tarnvale::testing
