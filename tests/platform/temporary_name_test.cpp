#include "platform/temporary_name.h"

#include <gtest/gtest.h>

#include <string>

namespace tarnvale {
namespace {

const std::string kMark = "0123456789abcdef";
const std::string kSlot = "fedcba9876543210";

TEST(TemporaryNameTest, HoldsItsMarkAndItsSlot) {
  const std::string name = TemporaryName(kMark, kSlot);
  EXPECT_EQ(name, ".tarnvale-0123456789abcdef-fedcba9876543210.part");
  EXPECT_EQ(MarkOfTemporary(name), kMark);
  EXPECT_EQ(SlotOfTemporary(name), kSlot);
}

TEST(TemporaryNameTest, NoOtherNameIsATemporary) {
  for (const char* name : {"", ".tarnvale-.part", ".tarnvale-0123456789abcdef-fedcba9876543210",
                           ".tarnvale-0123456789abcdef-fedcba987654321.part",
                           ".tarnvale-0123456789abcdef+fedcba9876543210.part",
                           ".tarnvale-0123456789abcdeF-fedcba9876543210.part",
                           ".tarnvale-0123456789abcdef-fedcba987654321g.part",
                           ".tarnvale-0123456789abcdef-fedcba9876543210.parT",
                           "xtarnvale-0123456789abcdef-fedcba9876543210.part"}) {
    EXPECT_FALSE(IsTemporaryName(name)) << name;
    EXPECT_TRUE(MarkOfTemporary(name).empty()) << name;
    EXPECT_TRUE(SlotOfTemporary(name).empty()) << name;
  }
}

}  // namespace
}  // namespace tarnvale
