// The pictures of the popups, and the names of what shows no text.
#include "shell/popup_pictures.h"

#include "tests/shell/popups_fixture.h"

namespace tarnvale::testing {
namespace {

using ::testing::Each;
using PopupPicturesTest = PopupsFixture;

TEST_F(PopupPicturesTest, EveryControlThatShowsNoTextHasAName) {
  Announce();
  for (const Window* window : {static_cast<Window*>(&Alert()), static_cast<Window*>(&Bar())}) {
    for (const Placement& placement : window->Placements()) {
      // The status line is known by what it says.
      if (placement.control == &Bar().Label1) continue;
      EXPECT_NE(placement.control->AccessibleName.Get(), "");
    }
  }
}

TEST_F(PopupPicturesTest, PicturesComeInBothScales) {
  Announce();
  const Size size = Alert().ClientSize;
  EXPECT_EQ(Alert().Image1.Picture.width, size.width_px);
  EXPECT_EQ(Alert().Image1.Picture.height, size.height_px);
  EXPECT_EQ(Alert().Image1.PictureAt2x.width, 2 * size.width_px);
  EXPECT_EQ(Alert().Image1.PictureAt2x.height, 2 * size.height_px);
}

TEST_F(PopupPicturesTest, AWindowsPictureLeavesNoPixelClear) {
  Announce();
  const auto alpha_of = [](const Raster& picture) {
    std::vector<std::uint32_t> alphas;
    for (const std::uint32_t pixel : picture.pixels) alphas.push_back(pixel >> 24U);
    return alphas;
  };
  EXPECT_THAT(alpha_of(Alert().Image1.Picture), Each(0xFFU));
  EXPECT_THAT(alpha_of(Bar().Backdrop.PictureAt2x), Each(0xFFU));
}

TEST_F(PopupPicturesTest, TheEmblemStandsInTheAlertsPicture) {
  Announce();
  EXPECT_THAT(Alert().Image1.Picture.pixels, ::testing::Contains(0xFF0000FFU).Times(64 * 64));
  EXPECT_THAT(Alert().Image1.PictureAt2x.pixels, ::testing::Contains(0xFF0000FFU).Times(128 * 128));
}

}  // namespace
}  // namespace tarnvale::testing
