#include "shell/program_icon.h"

#include <gtest/gtest.h>

#include "base/failure.h"

namespace tarnvale {
namespace {

TEST(ProgramIconTest, HasTheTraySizesAndTheWindowSizesLargestFirst) {
  std::vector<int> sizes;
  for (const Raster& icon : ProgramIcons()) sizes.push_back(icon.width);
  EXPECT_EQ(sizes, (std::vector<int>{128, 64, 48, 32, 24, 22, 16}));
}

TEST(ProgramIconTest, CornersAreClearAndTheMiddleIsSolid) {
  const Raster icon = DrawProgramIcon(32);
  EXPECT_EQ(icon.At(0, 0) >> 24U, 0U);
  EXPECT_EQ(icon.At(31, 31) >> 24U, 0U);
  EXPECT_EQ(icon.At(16, 16) >> 24U, 255U);
}

TEST(ProgramIconTest, IsAMirrorImageLeftToRight) {
  const Raster icon = DrawProgramIcon(48);
  for (int y = 0; y < icon.height; ++y) {
    for (int x = 0; x < icon.width / 2; ++x) {
      ASSERT_EQ(icon.At(x, y), icon.At(icon.width - 1 - x, y)) << x << "," << y;
    }
  }
}

TEST(ProgramIconTest, IsTheResourceOfItsNameAndTheOnlyOne) {
  EXPECT_EQ(IconResource("AAA").size(), ProgramIcons().size());
  try {
    IconResource("BBB");
    FAIL() << "a resource that isn't there was found";
  } catch (const ProgramError& error) {
    EXPECT_EQ(error.Number(), kResourceNotFound);
  }
}

TEST(ProgramIconTest, AWindowGetsAllSizesOfAResource) {
  Window window;
  SetWindowIcon(window, "AAA");
  EXPECT_EQ(window.Icon.Get(), ProgramIcons());
}

}  // namespace
}  // namespace tarnvale
