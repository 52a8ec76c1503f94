#include "shell/program_icon.h"

#include <gtest/gtest.h>

#include "base/failure.h"

namespace tarnvale {
namespace {

TEST(ProgramIconTest, TheResourceOfItsNameIsTheOnlyOne) {
  Window window;
  SetWindowIcon(window, "AAA");
  EXPECT_EQ(window.Icon.Get(), "AAA");
  try {
    SetWindowIcon(window, "BBB");
    FAIL() << "a resource that isn't there was found";
  } catch (const ProgramError& error) {
    EXPECT_EQ(error.Number(), kResourceNotFound);
  }
  EXPECT_EQ(window.Icon.Get(), "AAA");
}

}  // namespace
}  // namespace tarnvale
