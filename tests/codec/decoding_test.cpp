#include "codec/decoding.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace tarnvale::testing {
namespace {

// A tree of codes that are written from the root down, for the values 0, 1, 2...
bool IsComplete(const std::vector<std::string>& codes) {
  const auto table = std::make_unique<CodeTable>();
  for (std::size_t value = 0; value < codes.size(); ++value) {
    SymbolCode& code = (*table)[value];
    for (const char bit : codes[value]) code.Data[code.Count++] = bit == '1' ? 1 : 0;
  }
  return DecodingTree(*table).IsComplete();
}

TEST(DecodingTreeTest, IsCompleteWhereAnyBitsLeadToAValue) {
  EXPECT_TRUE(IsComplete({"0", "1"}));
  EXPECT_TRUE(IsComplete({"0", "10", "110", "111"}));
  EXPECT_FALSE(IsComplete({"0"}));
  EXPECT_FALSE(IsComplete({"1"}));
  EXPECT_FALSE(IsComplete({"0", "10"}));
  EXPECT_FALSE(IsComplete({"0", "11"}));
}

TEST(DecodingTreeTest, IsNotCompleteWhereAValueHidesAnother) {
  EXPECT_FALSE(IsComplete({"0", "1", "10", "11"}));
}

}  // namespace
}  // namespace tarnvale::testing
