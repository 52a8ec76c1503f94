#include "platform/name_pairs.h"

#include <gmock/gmock.h>

#include "base/text.h"

namespace tarnvale {
namespace {

using ::testing::ElementsAre;

FolderContents Files(const std::vector<std::string>& names) {
  FolderContents contents;
  for (const std::string& name : names) contents.files.push_back({.name = name});
  return contents;
}

NamePairs Pair(const std::vector<std::string>& first, const std::vector<std::string>& second) {
  return PairNames(Files(first), Files(second), {.fold = ToLower, .in_first = {}, .in_second = {}});
}

TEST(NamePairsTest, EqualNamesBelongTogether) {
  const NamePairs pairs = Pair({"a", "b"}, {"b", "c"});
  EXPECT_THAT(pairs.files, ElementsAre(NamePairs::kNone, 0));
  EXPECT_FALSE(pairs.has_variants);
}

TEST(NamePairsTest, AnotherCaseStandsForANameThatNeitherFolderHas) {
  const NamePairs pairs = Pair({"a", "B"}, {"A", "B", "b"});
  EXPECT_THAT(pairs.files, ElementsAre(0, 1));
  EXPECT_TRUE(pairs.has_variants);
}

TEST(NamePairsTest, AnotherCaseStandsForOneNameOnly) {
  EXPECT_THAT(Pair({"Ab", "aB"}, {"ab"}).files, ElementsAre(0, NamePairs::kNone));
  EXPECT_THAT(Pair({"ab"}, {"Ab", "aB"}).files, ElementsAre(0));
}

}  // namespace
}  // namespace tarnvale
