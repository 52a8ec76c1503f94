#include "kit/property_bag.h"

#include <gtest/gtest.h>

#include "tests/support/raised.h"

namespace tarnvale::testing {
namespace {

TEST(PropertyBag, ReadsWhatWasWritten) {
  PropertyBag bag;
  bag.Write("FLAG", true);
  bag.Write("NUMBER", -7);
  bag.Write("COLOUR", Color{0x8000000F});
  bag.Write("TEXT", std::string("&Browse"));
  bag.Write("FONT", Font{.family = "Sans", .size_pt = 12, .bold = true});
  bag.Write("PICTURE", Picture{Raster{1, 1, {0xFF123456}}, true});
  EXPECT_TRUE(bag.ReadFlag("FLAG", false));
  EXPECT_EQ(bag.ReadInt32("NUMBER", 0), -7);
  EXPECT_EQ(bag.ReadInt16("NUMBER", 0), -7);
  EXPECT_EQ(bag.ReadColor("COLOUR", 0), 0x8000000FU);
  EXPECT_EQ(bag.ReadText("TEXT", ""), "&Browse");
  EXPECT_EQ(bag.ReadFont("FONT", {}).family, "Sans");
  EXPECT_TRUE(bag.ReadPicture("PICTURE").is_icon);
}

TEST(PropertyBag, GivesTheDefaultForAMissingKey) {
  const PropertyBag bag;
  EXPECT_FALSE(bag.Holds("BTYPE"));
  EXPECT_TRUE(bag.ReadFlag("ENAB", true));
  EXPECT_EQ(bag.ReadInt32("BTYPE", 2), 2);
  EXPECT_EQ(bag.ReadText("TX", "name"), "name");
  EXPECT_TRUE(bag.ReadPicture("PICN").Empty());
}

TEST(PropertyBag, ReplacesAValueThatIsWrittenAgain) {
  PropertyBag bag;
  bag.Write("FX", 1);
  bag.Write("FX", 3);
  EXPECT_EQ(bag.ReadInt32("FX", 0), 3);
}

TEST(PropertyBag, TakesFlagsForNumbersAndBack) {
  PropertyBag bag;
  bag.Write("VALUE", true);
  bag.Write("SOFT", 0);
  EXPECT_EQ(bag.ReadInt32("VALUE", 0), -1);
  EXPECT_FALSE(bag.ReadFlag("SOFT", true));
}

TEST(PropertyBag, RaisesTypeMismatchForAnotherKindOfValue) {
  PropertyBag bag;
  bag.Write("BTYPE", "three");
  EXPECT_EQ(RaisedBy([&] { bag.ReadInt32("BTYPE", 2); }), kTypeMismatch);
  EXPECT_EQ(RaisedBy([&] { bag.ReadFont("BTYPE", {}); }), kTypeMismatch);
}

TEST(PropertyBag, RaisesOverflowForANumberThatDoesNotFit) {
  PropertyBag bag;
  bag.Write("BrushStyle", 40000);
  bag.Write("Color", -1);
  EXPECT_EQ(RaisedBy([&] { bag.ReadInt16("BrushStyle", 4); }), kOverflow);
  EXPECT_EQ(RaisedBy([&] { bag.ReadColor("Color", 0); }), kOverflow);
}

}  // namespace
}  // namespace tarnvale::testing
