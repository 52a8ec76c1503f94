#include "userdata/panel_pictures.h"

#include <gtest/gtest.h>

namespace tarnvale::testing {
namespace {

constexpr PanelPicture kAll[] = {PanelPicture::kBrowser, PanelPicture::kMail,
                                 PanelPicture::kSystem};

unsigned AlphaOf(std::uint32_t pixel) {
  return pixel >> 24U;
}

TEST(PanelPicturesTest, AreDrawnAnewForEachScale) {
  for (const PanelPicture which : kAll) {
    EXPECT_EQ(DrawPanelPicture(which, 1).width, 48);
    EXPECT_EQ(DrawPanelPicture(which, 2).height, 96);
    EXPECT_EQ(DrawPanelPicture(which, 2).pixels.size(), 96U * 96U);
  }
}

TEST(PanelPicturesTest, AreClearInTheCornersAndSolidInTheMiddle) {
  for (const PanelPicture which : kAll) {
    const Raster picture = DrawPanelPicture(which, 1);
    EXPECT_EQ(AlphaOf(picture.At(0, 0)), 0U);
    EXPECT_EQ(AlphaOf(picture.At(47, 0)), 0U);
    EXPECT_EQ(AlphaOf(picture.At(47, 47)), 0U);
    EXPECT_EQ(AlphaOf(picture.At(23, 23)), 255U);
  }
}

TEST(PanelPicturesTest, WearTheGoldArrowInTheLowerRight) {
  for (const PanelPicture which : kAll) {
    EXPECT_EQ(DrawPanelPicture(which, 1).At(36, 34), 0xFF38B8F4U);
    EXPECT_EQ(DrawPanelPicture(which, 1).At(30, 40), 0xFFFFFFFFU) << "on a white ground";
  }
}

TEST(PanelPicturesTest, AreAGlobeALetterAndAWindow) {
  const Raster globe = DrawPanelPicture(PanelPicture::kBrowser, 1);
  EXPECT_GT(RedOf(globe.At(22, 9)), RedOf(globe.At(18, 9))) << "a meridian";
  EXPECT_EQ(AlphaOf(globe.At(5, 5)), 0U) << "round";
  EXPECT_EQ(DrawPanelPicture(PanelPicture::kMail, 1).At(22, 12), 0xFFFFFFFFU) << "paper";
  EXPECT_EQ(DrawPanelPicture(PanelPicture::kSystem, 1).At(22, 19), 0xFFEED7C9U) << "a line";
}

}  // namespace
}  // namespace tarnvale::testing
