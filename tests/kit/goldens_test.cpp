#include "tests/kit/goldens.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "tools/pictures/sheet.h"

namespace tarnvale::testing {
namespace {

class GoldensTest : public ::testing::TestWithParam<std::string> {};

// `control_goldens --diff FOLDER` shows what changed.
TEST_P(GoldensTest, AreDrawnExactly) {
  for (const GoldenScene& scene : DrawGroupOfScenes(GetParam())) {
    EXPECT_EQ(DifferenceFromGolden(scene).value_or(""), "");
  }
}

INSTANTIATE_TEST_SUITE_P(Groups, GoldensTest, ::testing::ValuesIn(GoldenGroups()),
                         [](const auto& group) {
                           std::string name = group.param;
                           std::replace(name.begin(), name.end(), '-', '_');
                           return name;
                         });

TEST(Goldens, ShowEachTypeOfButtonInItsOwnWay) {
  std::set<std::vector<std::uint32_t>> seen;
  for (int type = 1; type <= 14; ++type) {
    std::vector<std::uint32_t> all_states;
    for (const GoldenScene& scene : DrawGroupOfScenes("button-" + std::to_string(type))) {
      all_states.insert(all_states.end(), scene.picture.pixels.begin(), scene.picture.pixels.end());
    }
    EXPECT_TRUE(seen.insert(all_states).second) << type;
  }
}

TEST(Goldens, SayWhereADrawingDiffersFirst) {
  GoldenScene scene = DrawGroupOfScenes("check").front();
  scene.picture.pixels[static_cast<std::size_t>(scene.picture.width) + 2] ^= 1U;
  EXPECT_EQ(DifferenceFromGolden(scene), "check-clear: differs first at (2, 1)");
}

TEST(Goldens, SayWhenThereIsNone) {
  GoldenScene scene = DrawGroupOfScenes("check").front();
  scene.name = "check-unknown";
  EXPECT_EQ(DifferenceFromGolden(scene), "check-unknown: there is no golden");
}

TEST(SideBySide, MarksWhatDiffersInRed) {
  const Raster golden{2, 1, {0xFF000000, 0xFF000000}};
  const Raster drawing{2, 1, {0xFF000000, 0xFF00FF00}};
  const Raster sheet = SideBySide(golden, drawing);
  EXPECT_EQ(sheet.width, 3 * 8 + 4 * 8);
  EXPECT_EQ(sheet.At(8, 8), 0xFF000000U);       // the golden
  EXPECT_EQ(sheet.At(24 + 4, 8), 0xFF00FF00U);  // the drawing
  EXPECT_EQ(sheet.At(40, 8), 0xFFC8C8C8U);      // the same, pale
  EXPECT_EQ(sheet.At(40 + 4, 8), 0xFF0000FFU);  // other: red
}

}  // namespace
}  // namespace tarnvale::testing
