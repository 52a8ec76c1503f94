#include "platform/name_pairs.h"

#include <gmock/gmock.h>

#include "base/text.h"
#include "tests/support/fake_machine.h"

namespace tarnvale {
namespace {

using ::testing::ElementsAre;
using testing::FakeMachine;

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

// A medium that finds each name by its first two letters, too.
std::optional<std::size_t> ByTwoLetters(const std::string& name, const ListedNames& listed) {
  for (std::size_t i = 0; i < listed.size(); ++i) {
    if (listed[i].substr(0, 2) == name.substr(0, 2)) return i;
  }
  return std::nullopt;
}

TEST(NamePairsTest, WhatAMediumTakesForANameStandsForItWhicheverFolderItIs) {
  const FolderContents first = Files({"ab1", "cd1", "ef1", "same"});
  const FolderContents second = Files({"cd2", "cd3", "ef2", "same"});
  for (const bool is_second : {true, false}) {
    NameRules rules{.fold = ToLower, .in_first = {}, .in_second = {}};
    (is_second ? rules.in_second : rules.in_first) = ByTwoLetters;
    const NamePairs pairs = PairNames(first, second, rules);
    EXPECT_THAT(pairs.files, ElementsAre(NamePairs::kNone, 0, 2, 3)) << is_second;
    EXPECT_TRUE(pairs.has_variants);
  }
}

TEST(NamePairsTest, WhatAMediumFindsStandsForOneNameOnly) {
  const NameRules rules{.fold = ToLower, .in_first = {}, .in_second = ByTwoLetters};
  EXPECT_THAT(PairNames(Files({"ab1", "ab2", "ab3"}), Files({"ab8", "ab9"}), rules).files,
              ElementsAre(0, 1, NamePairs::kNone));
}

// Neither for one whose partner has it in another case, nor for a file that is a folder there.
TEST(NamePairsTest, NoMediumIsAskedForANameThatHasItsPlace) {
  const FolderContents first = Files({"ab1", "cd1"});
  FolderContents second = Files({"AB1", "ab2", "cd2"});
  second.folders = {"cd1"};
  for (const bool is_second : {true, false}) {
    NameRules rules{.fold = ToLower, .in_first = {}, .in_second = {}};
    (is_second ? rules.in_second : rules.in_first) = ByTwoLetters;
    EXPECT_THAT(PairNames(first, second, rules).files, ElementsAre(0, NamePairs::kNone))
        << is_second;
  }
}

TEST(NamePairsTest, FoldersWithoutAMediumFindNothing) {
  FakeMachine machine;
  const NameRules rules = NameRulesOf(machine.files, nullptr, nullptr);
  EXPECT_FALSE(rules.in_first);
  EXPECT_FALSE(rules.in_second);
  EXPECT_EQ(rules.fold("aB"), rules.fold("Ab"));
}

// Whoever of them comes first, the partner is the same one's.
TEST(NamePairsTest, OfSeveralFoldersOneAloneHasAName) {
  const NameRules rules{.fold = ToLower, .in_first = {}, .in_second = {}};
  FolderContents upper = Files({"AB", "c"});
  FolderContents lower = Files({"aB", "c"});
  FolderContents second = Files({"ab", "c"});
  upper.folders = {"AB"};
  lower.folders = {"aB"};
  second.folders = {"ab"};
  const NamePairs of_upper = PairNamesAmong(upper, {lower}, second, rules);
  EXPECT_THAT(of_upper.files, ElementsAre(0, 1));
  EXPECT_THAT(of_upper.folders, ElementsAre(0));
  const NamePairs of_lower = PairNamesAmong(lower, {upper}, second, rules);
  EXPECT_THAT(of_lower.files, ElementsAre(NamePairs::kNone, 1));
  EXPECT_THAT(of_lower.folders, ElementsAre(NamePairs::kNone));
  EXPECT_TRUE(of_lower.has_variants);
}

}  // namespace
}  // namespace tarnvale
