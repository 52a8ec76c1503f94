// The drawing of buttons: the shaded type pixel by pixel, and the rules that all
// types share.
#include "kit/button_look.h"

#include <gtest/gtest.h>

#include "kit/button_drawing.h"
#include "tests/kit/recording_painter.h"
#include "tests/support/canvas_rows.h"

namespace tarnvale::testing {
namespace {

// Scheme 3: face C0, light face F0 = C0 + 48.
ButtonLook GreyLook(int type) {
  ButtonLook look;
  look.type = type;
  look.scheme = 3;
  look.colors = DeriveButtonColors({.scheme = 3});
  return look;
}

Canvas Drawn(const ButtonLook& look, Size size) {
  Canvas canvas(size, 1);
  RecordingPainter text;
  DrawButton(look, canvas, text);
  return canvas;
}

Color Grey(int level) {
  return MakeColor(level, level, level);
}

constexpr Color kFrame = 0x733C00;
constexpr Color kCorner = 0x7B4D10;

TEST(ShadedButton, HasASoftBevelWithoutFocus) {
  // Rows 3 to 6 of the gradient: F0 less round(2.5 * row), halves to the even.
  const std::map<Color, char> legend = {
      {kFrame, 'F'},     {kCorner, 'C'},    {Grey(0xC0), 'B'}, {Grey(0xD0), 'b'}, {Grey(0xCC), 'R'},
      {Grey(0xD8), 'r'}, {Grey(0xFF), 'T'}, {Grey(0xFA), 'U'}, {Grey(0xEB), 'L'}, {Grey(0xE6), 'l'},
      {Grey(0xE8), '3'}, {Grey(0xE4), '5'}, {Grey(0xE1), '6'}};
  EXPECT_EQ(RowsOf(Drawn(GreyLook(3), {10, 10}), legend),
            (Rows{"..FFFFFF..",  //
                  ".CTTTTTTC.",  //
                  "FLUUUUUUUF",  //
                  "FLl3333rRF",  //
                  "FLlllllrRF",  // row 4 is E6, as column 2 is
                  "FLl5555rRF",  //
                  "FLl6666rRF",  //
                  "FLbbbbbbRF",  //
                  ".CBBBBBBC.",  //
                  "..FFFFFF.."}));
}

TEST(ShadedButton, IsInvertedWhilePressed) {
  // From D0 = F0 - 32; the rows run from the bottom up.
  const std::map<Color, char> legend = {
      {kFrame, 'F'},     {kCorner, 'C'},    {Grey(0xE0), 'B'}, {Grey(0xDA), 'b'}, {Grey(0xD5), 'R'},
      {Grey(0xD0), 'r'}, {Grey(0xB0), 'T'}, {Grey(0xB8), 'U'}, {Grey(0xBA), 'l'}, {Grey(0xBE), '3'},
      {Grey(0xC1), '4'}, {Grey(0xC4), '5'}, {Grey(0xC6), '6'}};
  ButtonLook look = GreyLook(3);
  look.state = ButtonState::kPressed;
  EXPECT_EQ(RowsOf(Drawn(look, {10, 10}), legend),
            (Rows{"..FFFFFF..",  //
                  ".CTTTTTTC.",  //
                  "FTUUUUUUUF",  //
                  "FTl3333rRF",  //
                  "FTl4444rRF",  //
                  "FTl5555rRF",  //
                  "FTl6666rRF",  //
                  "FTbbbbbbRF",  //
                  ".CBBBBBBC.",  //
                  "..FFFFFF.."}));
}

const Rows kInnerFrame = {"..FFFFFF..",  //
                          ".CTTTTTTC.",  //
                          "FUUUUUUUUF",  //
                          "FOs3333sOF",  //
                          "FOs4444sOF",  //
                          "FOs5555sOF",  //
                          "FOs6666sOF",  //
                          "FOOOOOOOOF",  //
                          ".CBBBBBBC.",  //
                          "..FFFFFF.."};

std::map<Color, char> InnerFrameLegend(Color frame, Color bottom, Color top, Color row2,
                                       Color sides) {
  return {{kFrame, 'F'},     {kCorner, 'C'},    {frame, 'O'},     {bottom, 'B'},
          {top, 'T'},        {row2, 'U'},       {sides, 's'},     {Grey(0xE8), '3'},
          {Grey(0xE6), '4'}, {Grey(0xE4), '5'}, {Grey(0xE1), '6'}};
}

std::map<Color, char> Blue() {
  return InnerFrameLegend(0xE7AE8C, 0xEF826B, 0xFFE7CE, 0xF7D7BD, 0xF0D1B5);
}

std::map<Color, char> Orange() {
  return InnerFrameLegend(0x31B2FF, 0x0096E7, 0xCEF3FF, 0x8CDBFF, 0x6BCBFF);
}

TEST(ShadedButton, HasAnOrangeFrameWhileHovered) {
  ButtonLook look = GreyLook(3);
  look.over = true;
  EXPECT_EQ(RowsOf(Drawn(look, {10, 10}), Orange()), kInnerFrame);
}

TEST(ShadedButton, IsOrangeWhileHoveredWithFocusToo) {
  ButtonLook look = GreyLook(3);
  look.over = true;
  look.has_focus = true;
  EXPECT_EQ(RowsOf(Drawn(look, {10, 10}), Orange()), kInnerFrame);
}

TEST(ShadedButton, HasABlueFrameWithFocus) {
  ButtonLook look = GreyLook(3);
  look.has_focus = true;
  EXPECT_EQ(RowsOf(Drawn(look, {10, 10}), Blue()), kInnerFrame);
}

TEST(ShadedButton, HasABlueFrameAsTheDefaultButton) {
  ButtonLook look = GreyLook(3);
  look.is_default = true;
  EXPECT_EQ(RowsOf(Drawn(look, {10, 10}), Blue()), kInnerFrame);
}

TEST(ShadedButton, KeepsTheSoftBevelWhenTheFocusIsNotShown) {
  ButtonLook look = GreyLook(3);
  look.has_focus = true;
  look.show_focus_rect = false;
  const Canvas with_focus = Drawn(look, {10, 10});
  EXPECT_EQ(PixelsOf(with_focus), PixelsOf(Drawn(GreyLook(3), {10, 10})));
  EXPECT_EQ(with_focus.PixelAt(5, 1), Grey(0xFF));
}

TEST(ShadedButton, IsFlatWhileDisabled) {
  ButtonLook look = GreyLook(3);
  look.enabled = false;
  EXPECT_EQ(RowsOf(Drawn(look, {8, 6}), {{Grey(0xC0), 'f'}, {Grey(0xA8), 'c'}}),
            (Rows{"..ffff..",  //
                  ".cffffc.",  //
                  "ffffffff",  //
                  "ffffffff",  //
                  ".cffffc.",  //
                  "..ffff.."}));
}

TEST(ShadedButton, StepsHalfAsFarWithSoftBevelButKeepsItsFixedColours) {
  ButtonLook look = GreyLook(3);
  look.colors.shift.soft_bevel = true;
  // Light face C0 + 24 = D8; row 5 of the gradient: round(-12.5) = -12, halved -6.
  const Canvas canvas = Drawn(look, {10, 10});
  EXPECT_EQ(canvas.PixelAt(5, 5), Grey(0xD8 - 6));
  EXPECT_EQ(canvas.PixelAt(5, 1), Grey(0xD8 + 8));
  EXPECT_EQ(canvas.PixelAt(5, 8), Grey(0xD8 - 24));
  EXPECT_EQ(canvas.PixelAt(5, 0), kFrame);
  EXPECT_EQ(canvas.PixelAt(1, 1), kCorner);
}

TEST(Button, DrawsOnlyTheBackgroundForATypeOutOf1To14) {
  for (const int type : {0, 15, -3, 100}) {
    ButtonLook look = GreyLook(type);
    look.caption = "Browse";
    look.has_focus = true;
    RecordingPainter text;
    Canvas canvas({4, 2}, 1);
    DrawButton(look, canvas, text);
    EXPECT_EQ(RowsOf(canvas, {{Grey(0xC0), 'f'}}), (Rows{"ffff", "ffff"})) << type;
    EXPECT_TRUE(text.drawn.empty()) << type;
  }
}

TEST(Button, OfType10IsNothingButItsBackgroundInEveryState) {
  for (const bool enabled : {true, false}) {
    for (const ButtonState state : {ButtonState::kNormal, ButtonState::kPressed}) {
      ButtonLook look = GreyLook(10);
      look.caption = "Browse";
      look.enabled = enabled;
      look.state = state;
      EXPECT_EQ(RowsOf(Drawn(look, {3, 1}), {{Grey(0xC0), 'f'}}), (Rows{"fff"}));
    }
  }
}

TEST(Button, OfType11ShowsTheStoredGround) {
  ButtonLook look = GreyLook(11);
  look.ground = Raster{2, 1, {0xFF0000FF, 0xFF00FF00}};
  EXPECT_EQ(RowsOf(Drawn(look, {2, 1}), {{0x0000FF, 'r'}, {0x00FF00, 'g'}}), (Rows{"rg"}));
}

TEST(Button, OfType11IsTransparentWithoutStoredGround) {
  EXPECT_EQ(RowsOf(Drawn(GreyLook(11), {2, 1}), {}), (Rows{".."}));
}

// What each caption look writes: colour and offset from the caption's place.
struct Written {
  Color color;
  int moved;
  bool operator==(const Written&) const = default;
};

std::vector<Written> WrittenBy(const ButtonLook& look, CaptionLook caption) {
  Canvas canvas({80, 26}, 1);
  RecordingPainter text;
  ButtonDrawing drawing(look, canvas, text);
  DrawCaption(drawing, caption);
  std::vector<Written> written;
  for (const RecordingPainter::Drawing& d : text.drawn) {
    EXPECT_EQ(d.area.left_px - drawing.places.caption.left_px,
              d.area.top_px - drawing.places.caption.top_px);
    EXPECT_TRUE(d.look.access_key_marks);
    EXPECT_EQ(d.look.align, TextLook::Align::kCenter);
    written.push_back({d.look.color, d.area.left_px - drawing.places.caption.left_px});
  }
  return written;
}

ButtonLook CaptionedLook(int type) {
  ButtonLook look = GreyLook(type);
  look.caption = "&Browse";
  look.colors.text = 0x000001;
  look.colors.text_over = 0x000002;
  return look;
}

using Writing = std::vector<Written>;

TEST(Caption, IsInTheTextColourInLook0AndTheOverColourInLook1) {
  const ButtonLook look = CaptionedLook(2);
  EXPECT_EQ(WrittenBy(look, CaptionLook::kNormal), (Writing{{0x000001, 0}}));
  EXPECT_EQ(WrittenBy(look, CaptionLook::kOver), (Writing{{0x000002, 0}}));
}

TEST(Caption, IsMovedAndInTheOverColourWhilePressed) {
  ButtonLook look = CaptionedLook(2);
  look.state = ButtonState::kPressed;
  EXPECT_EQ(WrittenBy(look, CaptionLook::kPressed), (Writing{{0x000002, 1}}));
}

TEST(Caption, IsInTheLightColourWhileType4IsPressed) {
  ButtonLook look = CaptionedLook(4);
  look.state = ButtonState::kPressed;
  EXPECT_EQ(WrittenBy(look, CaptionLook::kPressed), (Writing{{Grey(0xDF), 1}}));
}

TEST(Caption, IsEngravedWhileDisabled) {
  EXPECT_EQ(WrittenBy(CaptionedLook(2), CaptionLook::kDisabled),
            (Writing{{Grey(0xFF), 1}, {Grey(0x80), 0}}));
}

TEST(Caption, HasItsOwnColoursInLooks4To7) {
  const ButtonLook look = CaptionedLook(2);
  EXPECT_EQ(WrittenBy(look, CaptionLook::kShadow), (Writing{{Grey(0x80), 0}}));
  EXPECT_EQ(WrittenBy(look, CaptionLook::kDim), (Writing{{Grey(0xF0 - 104), 0}}));
  EXPECT_EQ(WrittenBy(look, CaptionLook::kFaint), (Writing{{Grey(0xFF), 1}, {Grey(0xC0), 0}}));
  EXPECT_EQ(WrittenBy(look, CaptionLook::kRaised),
            (Writing{{Grey(0x80 - 50), 1}, {Grey(0xFF), 0}}));
}

TEST(SpecialEffect, Of1WritesADarkPassBelowAndALightOneAbove) {
  ButtonLook look = CaptionedLook(2);
  look.special_effect = 1;
  EXPECT_EQ(WrittenBy(look, CaptionLook::kNormal),
            (Writing{{Grey(0xC0 - 40), 1}, {Grey(0xC0 + 40), -1}, {0x000001, 0}}));
}

TEST(SpecialEffect, Of2IsTheOppositeOf1) {
  ButtonLook look = CaptionedLook(2);
  look.special_effect = 2;
  EXPECT_EQ(WrittenBy(look, CaptionLook::kOver),
            (Writing{{Grey(0xC0 + 40), 1}, {Grey(0xC0 - 40), -1}, {0x000002, 0}}));
}

TEST(SpecialEffect, Of3AndMoreIsADropShadow) {
  ButtonLook look = CaptionedLook(2);
  for (const int effect : {3, 7}) {
    look.special_effect = effect;
    EXPECT_EQ(WrittenBy(look, CaptionLook::kNormal),
              (Writing{{Grey(0xC0 - 40), 1}, {0x000001, 0}}));
  }
}

TEST(SpecialEffect, MovesWithThePressedCaption) {
  ButtonLook look = CaptionedLook(2);
  look.special_effect = 1;
  look.state = ButtonState::kPressed;
  EXPECT_EQ(WrittenBy(look, CaptionLook::kPressed),
            (Writing{{Grey(0xC0 - 40), 2}, {Grey(0xC0 + 40), 0}, {0x000002, 1}}));
}

TEST(SpecialEffect, ComesFromTheLightFaceInTypes3And4And14) {
  for (const int type : {3, 4, 14}) {
    ButtonLook look = CaptionedLook(type);
    look.special_effect = 3;
    EXPECT_EQ(WrittenBy(look, CaptionLook::kNormal).front().color, Grey(0xF0 - 40)) << type;
  }
}

TEST(SpecialEffect, ComesFromTheSelectionFillWhileType9IsHovered) {
  ButtonLook look = CaptionedLook(9);
  look.special_effect = 3;
  look.over = true;
  look.scheme = 1;
  look.colors.selection_fill = 0x808080;
  EXPECT_EQ(WrittenBy(look, CaptionLook::kOver).front().color, Grey(0x80 - 40));
  look.scheme = 2;
  EXPECT_EQ(WrittenBy(look, CaptionLook::kOver).front().color, Grey(0xC0 - 40));
  look.scheme = 1;
  look.state = ButtonState::kPressed;
  EXPECT_EQ(WrittenBy(look, CaptionLook::kPressed).front().color, Grey(0xC0 - 40));
}

TEST(SpecialEffect, LeavesDisabledCaptionsAlone) {
  ButtonLook look = CaptionedLook(2);
  look.special_effect = 1;
  EXPECT_EQ(WrittenBy(look, CaptionLook::kDisabled).size(), 2U);
}

TEST(Type14, WritesBoldAsTheDefaultButtonOnly) {
  ButtonLook look = CaptionedLook(14);
  Canvas canvas({80, 26}, 1);
  RecordingPainter text;
  DrawButton(look, canvas, text);
  EXPECT_FALSE(text.drawn.back().look.font.bold);
  look.is_default = true;
  DrawButton(look, canvas, text);
  EXPECT_TRUE(text.drawn.back().look.font.bold);
  EXPECT_FALSE(look.font.bold);
}

// A picture of one dark pixel, so that the places it appears in can be counted.
ButtonLook PicturedLook(int type) {
  ButtonLook look = GreyLook(type);
  look.picture_normal = Picture{Raster{1, 1, {0xFF000040}}, false};
  return look;
}

constexpr Color kPictureInk = 0x000040;
constexpr Size kSmall{11, 11};

TEST(ButtonPicture, StaysInItsPlaceWhilePressedInMostTypes) {
  ButtonLook look = PicturedLook(2);
  look.state = ButtonState::kPressed;
  EXPECT_EQ(Drawn(look, kSmall).PixelAt(5, 5), kPictureInk);
}

TEST(ButtonPicture, MovesWhilePressedInTypes3And5And6And9) {
  for (const int type : {3, 5, 6, 9}) {
    ButtonLook look = PicturedLook(type);
    look.state = ButtonState::kPressed;
    const Canvas canvas = Drawn(look, kSmall);
    EXPECT_NE(canvas.PixelAt(5, 5), kPictureInk) << type;
    EXPECT_EQ(canvas.PixelAt(6, 6), kPictureInk) << type;
  }
}

TEST(ButtonPicture, CastsASilhouetteWhilePressedInTypes5And6And9) {
  for (const int type : {5, 6, 9}) {
    ButtonLook look = PicturedLook(type);
    look.state = ButtonState::kPressed;
    EXPECT_EQ(Drawn(look, kSmall).PixelAt(7, 7), Grey(0xC0 - 64)) << type;
  }
}

TEST(ButtonPicture, IsEngravedWhileDisabled) {
  ButtonLook look = PicturedLook(2);
  look.enabled = false;
  const Canvas canvas = Drawn(look, kSmall);
  EXPECT_EQ(canvas.PixelAt(5, 5), Grey(0x80));
  EXPECT_EQ(canvas.PixelAt(6, 6), Grey(0xFF));
}

TEST(ButtonPicture, IsTheOtherOneWhileHovered) {
  ButtonLook look = PicturedLook(2);
  look.picture_over = Picture{Raster{1, 1, {0xFF0000EE}}, false};
  look.over = true;
  EXPECT_EQ(Drawn(look, kSmall).PixelAt(5, 5), 0x0000EEU);
}

TEST(ButtonPicture, StaysTheNormalOneWhileHoveredWithoutAnother) {
  ButtonLook look = PicturedLook(2);
  look.over = true;
  EXPECT_EQ(Drawn(look, kSmall).PixelAt(5, 5), kPictureInk);
}

TEST(ButtonPicture, IsGreyUntilHoveredWithGreyscale) {
  ButtonLook look = PicturedLook(2);
  look.use_greyscale = true;
  EXPECT_EQ(Drawn(look, kSmall).PixelAt(5, 5), Grey(19));  // 64 * 0.3 = 19.2
  look.over = true;
  EXPECT_EQ(Drawn(look, kSmall).PixelAt(5, 5), kPictureInk);
}

TEST(ButtonPicture, LeavesOutItsMaskColour) {
  ButtonLook look = PicturedLook(2);
  look.mask_color = kPictureInk;
  EXPECT_EQ(Drawn(look, kSmall).PixelAt(5, 5), Grey(0xC0));
  look.use_mask_color = false;
  EXPECT_EQ(Drawn(look, kSmall).PixelAt(5, 5), kPictureInk);
}

}  // namespace
}  // namespace tarnvale::testing
