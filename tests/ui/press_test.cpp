#include "ui/press.h"

#include <gtest/gtest.h>

namespace tarnvale::testing {
namespace {

TEST(PressTest, PressAndReleaseInsideIsAClick) {
  Press press;
  press.Down(MouseButton::kLeft);
  EXPECT_TRUE(press.Up(MouseButton::kLeft, true));
  EXPECT_FALSE(press.Up(MouseButton::kLeft, true)) << "one click a press";
}

TEST(PressTest, AReleaseOutsideIsNone) {
  Press press;
  press.Down(MouseButton::kLeft);
  EXPECT_FALSE(press.Up(MouseButton::kLeft, false));
}

TEST(PressTest, AnotherButtonTakesThePressOver) {
  Press press;
  press.Down(MouseButton::kLeft);
  press.Down(MouseButton::kRight);
  EXPECT_FALSE(press.Up(MouseButton::kLeft, true));
  EXPECT_TRUE(press.Up(MouseButton::kRight, true));
}

TEST(PressTest, TheSecondOfADoubleClickIsNone) {
  Press press;
  press.Down(MouseButton::kLeft);
  press.Forget();
  EXPECT_FALSE(press.Up(MouseButton::kLeft, true));
}

}  // namespace
}  // namespace tarnvale::testing
