#include "base/property.h"

#include <gtest/gtest.h>

#include <string>

namespace tarnvale {
namespace {

TEST(PropertyTest, AChangeIsReportedOnceItIsMade) {
  Property<int> property{1};
  int seen = 0;
  property.Changed.Listen([&] { seen = property.Get(); });
  property = 2;
  EXPECT_EQ(seen, 2);
  EXPECT_EQ(property, 2);
}

TEST(PropertyTest, SettingTheSameValueNotifiesNoListener) {
  Property<std::string> property{std::string("x")};
  int changes = 0;
  property.Changed.Listen([&] { ++changes; });
  property = std::string("x");
  property.Set("x");
  EXPECT_EQ(changes, 0);
}

TEST(PropertyTest, EachSettingIsReportedAfterItsChange) {
  Property<int> property{1};
  std::string order;
  property.Changed.Listen([&] { order += 'c'; });
  property.WasSet.Listen([&] { order += 's'; });
  property = 1;
  EXPECT_EQ(order, "s");
  property = 2;
  EXPECT_EQ(order, "scs");
}

TEST(PropertyTest, SettingAnotherValueOnlySetsNothingElse) {
  Property<int> property{1};
  int settings = 0;
  property.WasSet.Listen([&] { ++settings; });
  SetIfOther(property, 1);
  EXPECT_EQ(settings, 0);
  SetIfOther(property, 2);
  EXPECT_EQ(settings, 1);
  EXPECT_EQ(property, 2);
}

TEST(PropertyTest, AQuietChangeNotifiesNoListener) {
  Property<std::string> property{std::string("x")};
  int changes = 0;
  property.Changed.Listen([&] { ++changes; });
  property.ModifyQuietly([](std::string& value) { value += "y"; });
  EXPECT_EQ(property.Get(), "xy");
  EXPECT_EQ(changes, 0);
}

TEST(PropertyTest, AHandlerMayChangeTheValueAgain) {
  Property<int> property{0};
  property.Changed.Listen([&] {
    if (property < 3) property = property + 1;
  });
  property = 1;
  EXPECT_EQ(property, 3);
}

TEST(BoundTest, ABoundValueIsItsTargets) {
  Property<std::string> target{std::string("x")};
  Bound<std::string> bound{target};
  int changes = 0;
  bound.Changed().Listen([&] { ++changes; });
  bound = std::string("y");
  EXPECT_EQ(target.Get(), "y");
  target = std::string("z");
  EXPECT_EQ(bound.Get(), "z");
  EXPECT_EQ(changes, 2);
  EXPECT_EQ(&bound.Target(), &target);
}

TEST(BoundTest, WithoutATargetTheValueIsItsOwn) {
  Bound<bool> bound{true};
  EXPECT_TRUE(bound.Get());
  bound = false;
  EXPECT_FALSE(bound.Get());
  Bound<int> other;
  EXPECT_EQ(other.Get(), 0);
}

}  // namespace
}  // namespace tarnvale
