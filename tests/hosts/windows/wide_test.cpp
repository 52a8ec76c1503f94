#include "hosts/windows/wide.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

TEST(WideTest, TextsGoThroughBothWays) {
  for (const std::string text : {"", "plain",
                                 "Gr\xC3\xBC\xC3\x9F"
                                 "e",
                                 "\xE2\x82\xAC", "\xF0\x9F\x92\xBE end"}) {
    EXPECT_EQ(Narrow(Wide(text)), text);
  }
  EXPECT_EQ(Wide("\xF0\x9F\x92\xBE"), L"\xD83D\xDCBE");
}

TEST(WideTest, HalfAPairGoesThroughBothWays) {
  for (const std::wstring name : {L"a\xD83D", L"\xDCBE z", L"\xDCBE\xD83D"}) {
    EXPECT_EQ(Wide(Narrow(name)), name);
  }
}

TEST(WideTest, BytesOfNoTextAreNoOtherText) {
  EXPECT_EQ(Wide("a\xFF"), L"a\xFFFD");
  EXPECT_EQ(Wide("\xC3"), L"\xFFFD");
}

}  // namespace
}  // namespace tarnvale
