#include "kit/button_colors.h"

#include "kit/system_colors.h"

namespace tarnvale {
namespace {

constexpr int kSelectionWeight = 176;

void TakeSystemColors(ButtonColors& colors) {
  colors.face = colors.face_over = SystemColor(kColorButtonFace);
  colors.text = colors.text_over = SystemColor(kColorButtonText);
  colors.shadow = SystemColor(kColorButtonShadow);
  colors.light = SystemColor(kColor3DLight);
  colors.highlight = SystemColor(kColorButtonHighlight);
  colors.dark = SystemColor(kColor3DDarkShadow);
  colors.selection = SystemColor(kColorSelection);
}

void TakeClassicColors(ButtonColors& colors) {
  colors.face = colors.face_over = 0xC0C0C0;
  colors.text = colors.text_over = 0;
  colors.shadow = 0x808080;
  colors.light = 0xDFDFDF;
  colors.highlight = 0xFFFFFF;
  colors.dark = 0;
  colors.selection = 0x800000;
}

void DeriveFromFace(ButtonColors& colors) {
  colors.shadow = colors.Shifted(colors.face, -64);
  colors.light = colors.Shifted(colors.face, 31);
  colors.highlight = colors.Shifted(colors.face, 47);
  colors.dark = colors.Shifted(colors.face, -192);
}

}  // namespace

ButtonColors DeriveButtonColors(const ButtonColorSource& source) {
  ButtonColors colors;
  colors.shift.soft_bevel = source.soft_bevel;
  TakeSystemColors(colors);
  switch (source.scheme) {
    case 2:
      colors.face = TranslateColor(source.back);
      colors.face_over = TranslateColor(source.back_over);
      colors.text = TranslateColor(source.fore);
      colors.text_over = TranslateColor(source.fore_over);
      DeriveFromFace(colors);
      colors.selection = colors.Shifted(colors.face, -128);
      break;
    case 3:
      TakeClassicColors(colors);
      break;
    case 4:
      colors.face = colors.face_over = TranslateColor(source.parent_back);
      colors.text = colors.text_over = TranslateColor(source.parent_fore);
      DeriveFromFace(colors);
      break;
    default:
      break;
  }
  colors.selection_fill =
      source.scheme == 3 ? colors.face : BlendToColor(colors.selection, kSelectionWeight);
  return colors;
}

}  // namespace tarnvale
