#include "kit/button_shape.h"

#include <gtest/gtest.h>

#include "tests/support/canvas_rows.h"

namespace tarnvale::testing {
namespace {

Rows Shape(int type, Size size) {
  Canvas canvas(size, 1);
  canvas.FillRect({0, 0, size.width_px, size.height_px}, kWhite);
  ClipToButtonRegion(type, canvas);
  return RowsOf(canvas, {{kWhite, '#'}});
}

TEST(ButtonRegion, LosesItsCornerPixelsInTypes1And14) {
  const Rows expected = {".####.",  //
                         "######",  //
                         "######",  //
                         ".####."};
  EXPECT_EQ(Shape(1, {6, 4}), expected);
  EXPECT_EQ(Shape(14, {6, 4}), expected);
}

TEST(ButtonRegion, LosesBottomLeftAndTopRightInType5) {
  const Rows expected = {"#####.",  //
                         "######",  //
                         "######",  //
                         ".#####"};
  EXPECT_EQ(Shape(5, {6, 4}), expected);
}

TEST(ButtonRegion, IsRounderInTypes3And4) {
  const Rows expected = {"..####..",  //
                         ".######.",  //
                         "########",  //
                         ".######.",  //
                         "..####.."};
  EXPECT_EQ(Shape(3, {8, 5}), expected);
  EXPECT_EQ(Shape(4, {8, 5}), expected);
}

TEST(ButtonRegion, IsAnEllipseInType13) {
  const Rows expected = {"..####..",  //
                         ".######.",  //
                         "########",  //
                         "########",  //
                         ".######.",  //
                         "..####.."};
  EXPECT_EQ(Shape(13, {8, 6}), expected);
}

TEST(ButtonRegion, IsTheFullRectangleInAllOtherTypes) {
  for (const int type : {2, 6, 7, 8, 9, 10, 11, 12, 0, 15}) {
    EXPECT_EQ(Shape(type, {4, 2}), (Rows{"####", "####"})) << type;
  }
}

TEST(ButtonRegion, AnswersForThePointerAsItIsDrawn) {
  const Size size{9, 7};
  for (int type = 1; type <= 14; ++type) {
    const Rows shape = Shape(type, size);
    for (int y = 0; y < size.height_px; ++y) {
      for (int x = 0; x < size.width_px; ++x) {
        const bool drawn = shape[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)] == '#';
        EXPECT_EQ(IsInButtonRegion(type, size, {x, y}), drawn) << type << " " << x << " " << y;
      }
    }
  }
}

TEST(ButtonRegion, HoldsNothingOutsideTheButton) {
  EXPECT_FALSE(IsInButtonRegion(2, {10, 10}, {-1, 5}));
  EXPECT_FALSE(IsInButtonRegion(2, {10, 10}, {5, 10}));
}

TEST(CaptionRectangle, IsInsetBy4InTypes1To6) {
  for (int type = 1; type <= 6; ++type) {
    EXPECT_EQ(CaptionRectangle(type, {100, 26}), (Rect{4, 4, 92, 18})) << type;
  }
}

TEST(CaptionRectangle, IsInsetBy3InTypes7To13) {
  for (int type = 7; type <= 13; ++type) {
    EXPECT_EQ(CaptionRectangle(type, {100, 26}), (Rect{3, 3, 94, 20})) << type;
  }
}

TEST(CaptionRectangle, IsInsetBy5AndMovedInType14) {
  EXPECT_EQ(CaptionRectangle(14, {100, 26}), (Rect{6, 6, 90, 16}));
}

TEST(CaptionRectangle, IsNeverOfNegativeSize) {
  EXPECT_EQ(CaptionRectangle(2, {5, 3}), (Rect{4, 4, 0, 0}));
}

constexpr Rect kArea{4, 4, 92, 18};
constexpr Size kText{40, 13};
constexpr Size kPictureSize{16, 16};

TEST(CaptionPlaces, TakeTheWholeAreaWithoutPicture) {
  for (int position = 0; position <= 4; ++position) {
    EXPECT_EQ(PlaceCaption(kArea, kText, {}, position).caption, kArea);
  }
}

TEST(CaptionPlaces, StartRightOfAPictureAtTheLeft) {
  const CaptionPlaces places = PlaceCaption(kArea, kText, kPictureSize, 0);
  EXPECT_EQ(places.caption, (Rect{21, 4, 75, 18}));
  // The text begins at 38, the picture 4 pixels before it, in the middle.
  EXPECT_EQ(places.picture, (Point{18, 5}));
}

TEST(CaptionPlaces, EndLeftOfAPictureAtTheRight) {
  const CaptionPlaces places = PlaceCaption(kArea, kText, kPictureSize, 1);
  EXPECT_EQ(places.caption, (Rect{4, 4, 75, 18}));
  EXPECT_EQ(places.picture, (Point{65, 5}));
}

TEST(CaptionPlaces, StartBelowAPictureOnTop) {
  const CaptionPlaces places = PlaceCaption({4, 4, 92, 52}, kText, kPictureSize, 2);
  EXPECT_EQ(places.caption, (Rect{4, 21, 92, 35}));
  EXPECT_EQ(places.picture, (Point{42, 12}));
}

TEST(CaptionPlaces, EndAboveAPictureAtTheBottom) {
  const CaptionPlaces places = PlaceCaption({4, 4, 92, 52}, kText, kPictureSize, 3);
  EXPECT_EQ(places.caption, (Rect{4, 4, 92, 35}));
  EXPECT_EQ(places.picture, (Point{42, 32}));
}

TEST(CaptionPlaces, LieOverAPictureBehind) {
  const CaptionPlaces places = PlaceCaption(kArea, kText, kPictureSize, 4);
  EXPECT_EQ(places.caption, kArea);
  EXPECT_EQ(places.picture, (Point{42, 5}));
}

TEST(CaptionPlaces, KeepThePictureInTheAreaBesideALongText) {
  EXPECT_EQ(PlaceCaption(kArea, {200, 13}, kPictureSize, 0).picture.x_px, 4);
  EXPECT_EQ(PlaceCaption(kArea, {200, 13}, kPictureSize, 1).picture.x_px, 80);
}

TEST(CaptionPlaces, PutThePictureInTheMiddleWithoutText) {
  for (const int position : {0, 1, 2, 3, 4}) {
    EXPECT_EQ(PlaceCaption(kArea, {}, kPictureSize, position).picture, (Point{42, 5})) << position;
  }
}

}  // namespace
}  // namespace tarnvale::testing
