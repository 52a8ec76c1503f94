// What distinguishes each type of button.
#include <gtest/gtest.h>

#include "kit/button_look.h"
#include "kit/button_shape.h"
#include "tests/kit/recording_painter.h"

namespace tarnvale::testing {
namespace {

constexpr Size kSize{60, 24};
constexpr int kRight = kSize.width_px - 1;
constexpr int kBottom = kSize.height_px - 1;

// Scheme 3: face C0, shadow 80, light DF, highlight FF, dark 0.
constexpr Color kFace = 0xC0C0C0;
constexpr Color kShadow = 0x808080;
constexpr Color kLight = 0xDFDFDF;
constexpr Color kHighlight = 0xFFFFFF;
constexpr Color kDark = 0x000000;
constexpr Color kSelection = 0x800000;

ButtonLook LookOf(int type) {
  ButtonLook look;
  look.type = type;
  look.scheme = 3;
  look.colors = DeriveButtonColors({.scheme = 3});
  look.caption = "Go";
  return look;
}

ButtonLook Over(int type) {
  ButtonLook look = LookOf(type);
  look.over = true;
  return look;
}

ButtonLook Pressed(int type) {
  ButtonLook look = LookOf(type);
  look.state = ButtonState::kPressed;
  return look;
}

ButtonLook Disabled(int type) {
  ButtonLook look = LookOf(type);
  look.enabled = false;
  return look;
}

ButtonLook Focused(ButtonLook look) {
  look.has_focus = true;
  return look;
}

Canvas Drawn(const ButtonLook& look) {
  Canvas canvas(kSize, 1);
  RecordingPainter text;
  DrawButton(look, canvas, text);
  return canvas;
}

// The colours across the left edge and the right edge at half height, from the
// outside in.
using Edges = std::vector<Color>;

Edges LeftOf(const Canvas& canvas, int count) {
  Edges edges;
  for (int x = 0; x < count; ++x) edges.push_back(canvas.PixelAt(x, 11).value_or(0xFFFFFFFF));
  return edges;
}

Edges RightOf(const Canvas& canvas, int count) {
  Edges edges;
  for (int i = 0; i < count; ++i) {
    edges.push_back(canvas.PixelAt(kRight - i, 11).value_or(0xFFFFFFFF));
  }
  return edges;
}

// Every second pixel of a focus rectangle's upper edge is inverted.
bool HasFocusRect(const Canvas& canvas, int inset) {
  const Color inverted = kFace ^ 0xFFFFFFU;
  const int x = inset + 10;
  return canvas.PixelAt(x, inset) == inverted || canvas.PixelAt(x + 1, inset) == inverted;
}

TEST(ButtonType1, HasABevelOfHighlightAndShadowInADarkFrame) {
  EXPECT_EQ(LeftOf(Drawn(LookOf(1)), 4), (Edges{kDark, kHighlight, kHighlight, kFace}));
  EXPECT_EQ(RightOf(Drawn(LookOf(1)), 4), (Edges{kDark, kShadow, kShadow, kFace}));
  EXPECT_EQ(LeftOf(Drawn(Pressed(1)), 4), (Edges{kDark, kShadow, kShadow, kFace}));
  EXPECT_EQ(LeftOf(Drawn(Disabled(1)), 4), LeftOf(Drawn(LookOf(1)), 4));
}

TEST(ButtonType2, HasTheClassicBevel) {
  EXPECT_EQ(LeftOf(Drawn(LookOf(2)), 3), (Edges{kHighlight, kLight, kFace}));
  EXPECT_EQ(RightOf(Drawn(LookOf(2)), 3), (Edges{kDark, kShadow, kFace}));
  EXPECT_EQ(LeftOf(Drawn(Pressed(2)), 3), (Edges{kDark, kShadow, kFace}));
  EXPECT_EQ(RightOf(Drawn(Pressed(2)), 3), (Edges{kHighlight, kLight, kFace}));
  EXPECT_EQ(LeftOf(Drawn(Disabled(2)), 3), (Edges{kHighlight, kLight, kFace}));
}

TEST(ButtonType2, IsFramedWithFocusOrAsTheDefaultButton) {
  EXPECT_EQ(LeftOf(Drawn(Focused(LookOf(2))), 3), (Edges{kDark, kHighlight, kLight}));
  EXPECT_TRUE(HasFocusRect(Drawn(Focused(LookOf(2))), 4));
  ButtonLook standard = LookOf(2);
  standard.is_default = true;
  EXPECT_EQ(LeftOf(Drawn(standard), 3), (Edges{kDark, kHighlight, kLight}));
  EXPECT_TRUE(HasFocusRect(Drawn(standard), 4));
  standard.show_focus_rect = false;
  EXPECT_FALSE(HasFocusRect(Drawn(standard), 4));
}

TEST(ButtonType2, IsFlatWhilePressedWithFocus) {
  const Canvas canvas = Drawn(Focused(Pressed(2)));
  EXPECT_EQ(LeftOf(canvas, 3), (Edges{kDark, kShadow, kFace}));
  EXPECT_EQ(RightOf(canvas, 3), (Edges{kDark, kShadow, kFace}));
}

TEST(ButtonType4, IsFilledWithTheLightFaceInADarkOutline) {
  const Canvas canvas = Drawn(LookOf(4));
  EXPECT_EQ(canvas.PixelAt(30, 5), 0xF0F0F0U);
  EXPECT_EQ(canvas.PixelAt(30, 0), kDark);
  EXPECT_EQ(canvas.PixelAt(1, 1), kDark);
  EXPECT_FALSE(canvas.PixelAt(1, 0).has_value());
  EXPECT_EQ(canvas.PixelAt(30, kBottom - 1), kShadow);
}

TEST(ButtonType4, HasTheSameLinesWhileDisabled) {
  const Canvas normal = Drawn(LookOf(4));
  const Canvas disabled = Drawn(Disabled(4));
  for (int y = 0; y < kSize.height_px; ++y) {
    for (int x = 0; x < kSize.width_px; ++x)
      ASSERT_EQ(normal.PixelAt(x, y), disabled.PixelAt(x, y));
  }
}

TEST(ButtonType4, IsDarkWithShadowEdgesWhilePressed) {
  const Canvas canvas = Drawn(Pressed(4));
  EXPECT_EQ(canvas.PixelAt(30, 5), 0x585858U);  // the shadow less 40
  EXPECT_EQ(canvas.PixelAt(30, kBottom - 1), kShadow);
}

TEST(ButtonTypes, ShowTheFocusRectangleOnlyWhereTheirLookHasOne) {
  const auto shows = [](ButtonLook look) {
    // Type 11 has no ground of its own.
    const auto area = static_cast<std::size_t>(kSize.width_px * kSize.height_px);
    look.ground = {kSize.width_px, kSize.height_px, std::vector<std::uint32_t>(area, 0xFF808080)};
    const Canvas plain = Drawn(look);
    const Canvas focused = Drawn(Focused(look));
    const int inset = CaptionRectangle(look.type, kSize).left_px;
    // Inverted dots on the upper edge of the caption's rectangle.
    const int x = inset + 10;
    const auto is_inverted = [&](int at) {
      const auto before = plain.PixelAt(at, inset);
      return before && focused.PixelAt(at, inset) == (*before ^ 0xFFFFFFU);
    };
    return is_inverted(x) || is_inverted(x + 1);
  };
  std::vector<int> normal;
  std::vector<int> pressed;
  for (int type = 1; type <= 14; ++type) {
    if (shows(LookOf(type))) normal.push_back(type);
    if (shows(Pressed(type))) pressed.push_back(type);
  }
  EXPECT_EQ(normal, (std::vector<int>{1, 2, 6, 7, 8, 9, 11, 12, 14}));
  EXPECT_EQ(pressed, (std::vector<int>{6}));
}

TEST(ButtonType5, IsFlatWithAHighlightInAnOuterFrame) {
  const Canvas canvas = Drawn(LookOf(5));
  EXPECT_EQ(LeftOf(canvas, 3), (Edges{0x666666, kHighlight, 0xCCCCCC}));  // shadow - 26, face + 12
  EXPECT_EQ(RightOf(canvas, 3), (Edges{0x666666, kHighlight, 0xCCCCCC}));
  EXPECT_EQ(canvas.PixelAt(30, 0), 0x666666U);
  EXPECT_EQ(canvas.PixelAt(30, 1), kHighlight);
  EXPECT_EQ(canvas.PixelAt(30, kBottom), 0x666666U);
  EXPECT_EQ(canvas.PixelAt(0, 0), 0x9A9A9AU);  // shadow + 26
  EXPECT_EQ(canvas.PixelAt(kRight, kBottom), 0x9A9A9AU);
  EXPECT_FALSE(canvas.PixelAt(0, kBottom).has_value());
  EXPECT_FALSE(canvas.PixelAt(kRight, 0).has_value());
}

TEST(ButtonType5, ExchangesItsEdgesWhilePressed) {
  const Canvas canvas = Drawn(Pressed(5));
  EXPECT_EQ(LeftOf(canvas, 3), (Edges{kHighlight, 0x666666, 0xCCCCCC}));
  EXPECT_EQ(RightOf(canvas, 3), (Edges{kHighlight, 0x666666, 0xCCCCCC}));
}

TEST(ButtonType5, FramesItsCaptionWithFocus) {
  // The caption is 12 by 13 in the middle of (4, 4, 52, 16): the frame around it
  // begins at 22.
  const Canvas canvas = Drawn(Focused(LookOf(5)));
  EXPECT_EQ(canvas.PixelAt(22, 11), 0xCC9999U);
  EXPECT_EQ(canvas.PixelAt(37, 11), 0xCC9999U);
  ButtonLook hidden = Focused(LookOf(5));
  hidden.show_focus_rect = false;
  EXPECT_EQ(Drawn(hidden).PixelAt(22, 11), 0xCCCCCCU);
}

TEST(ButtonType6, HasAThinFrameInsideARim) {
  EXPECT_EQ(LeftOf(Drawn(LookOf(6)), 3), (Edges{kFace, 0xE7E7E7, kFace}));  // light + 8
  EXPECT_EQ(RightOf(Drawn(LookOf(6)), 3), (Edges{kFace, kShadow, kFace}));
  EXPECT_EQ(LeftOf(Drawn(Pressed(6)), 3), (Edges{kFace, kShadow, kFace}));
  EXPECT_EQ(LeftOf(Drawn(Disabled(6)), 3), (Edges{kFace, 0xE7E7E7, kFace}));
}

TEST(ButtonType7, HasAThinFrameAlways) {
  for (const ButtonLook& look : {LookOf(7), Over(7), Disabled(7)}) {
    EXPECT_EQ(LeftOf(Drawn(look), 2), (Edges{kHighlight, kFace}));
    EXPECT_EQ(RightOf(Drawn(look), 2), (Edges{kShadow, kFace}));
  }
  EXPECT_EQ(LeftOf(Drawn(Pressed(7)), 2), (Edges{kShadow, kFace}));
  EXPECT_TRUE(HasFocusRect(Drawn(Focused(LookOf(7))), 3));
}

TEST(ButtonType8, HasItsFrameOnlyWhileHovered) {
  EXPECT_EQ(LeftOf(Drawn(LookOf(8)), 2), (Edges{kFace, kFace}));
  EXPECT_EQ(LeftOf(Drawn(Over(8)), 2), (Edges{kHighlight, kFace}));
  EXPECT_EQ(LeftOf(Drawn(Pressed(8)), 2), (Edges{kShadow, kFace}));
}

TEST(ButtonType9, IsFilledInTheSelectionFillWhileHovered) {
  ButtonLook look = Over(9);
  look.colors.selection_fill = 0x123456;
  EXPECT_EQ(LeftOf(Drawn(look), 2), (Edges{kSelection, 0x123456}));
  EXPECT_EQ(LeftOf(Drawn(LookOf(9)), 2), (Edges{kFace, kFace}));
  EXPECT_EQ(LeftOf(Drawn(Disabled(9)), 2), (Edges{kFace, kFace}));
}

TEST(ButtonType9, IsFilledDeeperWhilePressed) {
  // The selection to white at 128: blue 128 * 127 / 255 + 128 = 191.
  EXPECT_EQ(LeftOf(Drawn(Pressed(9)), 2), (Edges{kSelection, 0xBF8080}));
}

TEST(ButtonType12, HasADoubleFrameWhileHovered) {
  EXPECT_EQ(LeftOf(Drawn(LookOf(12)), 3), (Edges{kHighlight, kFace, kFace}));
  EXPECT_EQ(LeftOf(Drawn(Over(12)), 3), (Edges{kHighlight, kHighlight, kFace}));
  EXPECT_EQ(LeftOf(Drawn(Pressed(12)), 3), (Edges{kShadow, kShadow, kFace}));
  EXPECT_EQ(LeftOf(Drawn(Disabled(12)), 3), (Edges{kHighlight, kFace, kFace}));
}

TEST(ButtonType13, IsAnEllipseInTheShadowColourWhileHovered) {
  EXPECT_EQ(LeftOf(Drawn(LookOf(13)), 3), (Edges{kFace, kFace, kFace}));
  EXPECT_EQ(LeftOf(Drawn(Over(13)), 3), (Edges{kFace, kShadow, kShadow}));
  EXPECT_EQ(LeftOf(Drawn(Pressed(13)), 3), (Edges{kShadow, kFace, kFace}));
  EXPECT_EQ(LeftOf(Drawn(Disabled(13)), 3), (Edges{kFace, kFace, kFace}));
  EXPECT_FALSE(Drawn(LookOf(13)).PixelAt(3, 3).has_value());
}

TEST(ButtonType14, ShadesTheHighlightBy58) {
  // Row 12 of 24: 255 - 29.
  const Canvas canvas = Drawn(LookOf(14));
  EXPECT_EQ(canvas.PixelAt(30, 12), 0xE2E2E2U);
  EXPECT_EQ(Drawn(Disabled(14)).PixelAt(30, 12), 0xE2E2E2U);
}

TEST(ButtonType14, IsFlatInTheLightColourWhileHovered) {
  EXPECT_EQ(Drawn(Over(14)).PixelAt(30, 12), kLight);
}

TEST(ButtonType14, HasAMarkerStripAtTheLeftEdge) {
  EXPECT_EQ(LeftOf(Drawn(LookOf(14)), 5),
            (Edges{kDark, kHighlight, kSelection, kSelection, kSelection}));
  EXPECT_EQ(LeftOf(Drawn(Disabled(14)), 5), (Edges{kDark, kHighlight, kShadow, kShadow, kShadow}));
}

TEST(ButtonTypes, WriteTheirCaptionInTheOverColourWhileHovered) {
  for (const int type : {1, 2, 3, 4, 5, 6, 7, 8, 9, 11, 12, 13, 14}) {
    ButtonLook look = Over(type);
    look.colors.text_over = 0x0000AB;
    Canvas canvas(kSize, 1);
    RecordingPainter text;
    DrawButton(look, canvas, text);
    ASSERT_EQ(text.drawn.size(), 1U) << type;
    EXPECT_EQ(text.drawn[0].look.color, 0x0000ABU) << type;
  }
}

TEST(ButtonTypes, StandTheSmallestSizes) {
  for (int type = 0; type <= 15; ++type) {
    for (int side = 0; side < 8; ++side) {
      for (const ButtonLook& look : {Focused(Over(type)), Focused(Pressed(type)), Disabled(type)}) {
        Canvas canvas({side, side}, 2);
        RecordingPainter text;
        DrawButton(look, canvas, text);
        EXPECT_EQ(canvas.WidthPx(), side);
      }
    }
  }
}

}  // namespace
}  // namespace tarnvale::testing
