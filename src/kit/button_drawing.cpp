#include "kit/button_drawing.h"

#include "base/numbers.h"
#include "kit/picture_drawing.h"

namespace tarnvale {
namespace {

bool IsPressed(const ButtonDrawing& d) {
  return d.look.state == ButtonState::kPressed;
}

const Picture& PictureOf(const ButtonLook& look) {
  const bool shows_over = look.enabled && look.over && !look.picture_over.Empty();
  return shows_over ? look.picture_over : look.picture_normal;
}

void Write(ButtonDrawing& d, Color color, int moved) {
  d.text.Draw(d.canvas, d.look.caption, d.CaptionTextLook(color),
              Moved(d.places.caption, moved, moved));
}

Color EffectBase(const ButtonDrawing& d) {
  const ButtonLook& look = d.look;
  if (look.type == 3 || look.type == 4 || look.type == 14) return d.colors.LightFace();
  if (look.type == 9 && look.over && !IsPressed(d) && look.scheme != 2) {
    return d.colors.selection_fill;
  }
  return d.colors.face;
}

// Engraved, embossed or a drop shadow: passes under the caption itself.
void WriteEffect(ButtonDrawing& d, int moved) {
  const int effect = d.look.special_effect;
  if (effect == 0) return;
  const Color base = EffectBase(d);
  const int step = effect == 2 ? 40 : -40;
  Write(d, d.Shifted(base, step), moved + 1);
  if (effect == 1 || effect == 2) Write(d, d.Shifted(base, -step), moved - 1);
}

Color PressedTextColor(const ButtonDrawing& d) {
  return d.look.type == 4 ? d.colors.light : d.colors.text_over;
}

PictureTreatment MaskOf(const ButtonLook& look) {
  PictureTreatment treatment;
  if (look.use_mask_color) treatment.mask = look.mask_color;
  return treatment;
}

void DrawDisabledPicture(ButtonDrawing& d, const Picture& picture, Point at) {
  PictureTreatment treatment = MaskOf(d.look);
  treatment.threshold = true;
  treatment.silhouette = d.colors.highlight;
  DrawPicture(d.canvas, picture, {at.x_px + 1, at.y_px + 1}, treatment);
  treatment.silhouette = d.colors.shadow;
  DrawPicture(d.canvas, picture, at, treatment);
}

bool MovesPressedPicture(int type) {
  return type == 3 || type == 5 || type == 6 || type == 9;
}
bool CastsPictureShadow(int type) {
  return type == 5 || type == 6 || type == 9;
}

// Chosen: the silhouette lies one pixel further than the moved picture, as its
// shadow.
void DrawPictureShadow(ButtonDrawing& d, const Picture& picture, Point at) {
  PictureTreatment treatment = MaskOf(d.look);
  treatment.silhouette = d.Shifted(d.colors.face, -64);
  DrawPicture(d.canvas, picture, {at.x_px + 1, at.y_px + 1}, treatment);
}

}  // namespace

ButtonDrawing::ButtonDrawing(const ButtonLook& the_look, Canvas& the_canvas, TextPainter& the_text)
    : look(the_look),
      colors(the_look.colors),
      canvas(the_canvas),
      text(the_text),
      w(the_canvas.WidthPx()),
      h(the_canvas.HeightPx()),
      client(ClientRect(the_canvas)),
      font(the_look.font),
      caption_area(CaptionRectangle(the_look.type, {w, h})) {
  Place();
}

void ButtonDrawing::Place() {
  const Size measured =
      look.caption.empty() ? Size{} : text.Measure(look.caption, CaptionTextLook(kBlack));
  const Raster& image = PictureOf(look).image;
  places = PlaceCaption(caption_area, measured, {image.width, image.height}, look.picture_position);
}

TextLook ButtonDrawing::CaptionTextLook(Color color) const {
  TextLook text_look;
  text_look.font = font;
  text_look.color = color;
  text_look.align = TextLook::Align::kCenter;
  text_look.access_key_marks = true;
  return text_look;
}

void DrawCaption(ButtonDrawing& d, CaptionLook look) {
  DrawButtonPicture(d);
  if (d.look.caption.empty()) return;
  const ButtonColors& colors = d.colors;
  switch (look) {
    case CaptionLook::kNormal:
      WriteEffect(d, 0);
      Write(d, colors.text, 0);
      break;
    case CaptionLook::kOver:
      WriteEffect(d, 0);
      Write(d, colors.text_over, 0);
      break;
    case CaptionLook::kPressed:
      WriteEffect(d, 1);
      Write(d, PressedTextColor(d), 1);
      break;
    case CaptionLook::kDisabled:
      Write(d, colors.highlight, 1);
      Write(d, colors.shadow, 0);
      break;
    case CaptionLook::kShadow:
      Write(d, colors.shadow, 0);
      break;
    case CaptionLook::kDim:
      Write(d, d.Shifted(colors.LightFace(), -104), 0);
      break;
    case CaptionLook::kFaint:
      Write(d, colors.highlight, 1);
      Write(d, colors.face, 0);
      break;
    case CaptionLook::kRaised:
      Write(d, d.Shifted(colors.shadow, -50), 1);
      Write(d, colors.highlight, 0);
      break;
  }
}

void DrawLiveCaption(ButtonDrawing& d) {
  DrawCaption(d, d.look.over ? CaptionLook::kOver : CaptionLook::kNormal);
}

void DrawButtonPicture(ButtonDrawing& d) {
  const Picture& picture = PictureOf(d.look);
  if (picture.Empty()) return;
  Point at = d.places.picture;
  if (!d.look.enabled) {
    DrawDisabledPicture(d, picture, at);
    return;
  }
  if (IsPressed(d) && MovesPressedPicture(d.look.type)) {
    at = {at.x_px + 1, at.y_px + 1};
    if (CastsPictureShadow(d.look.type)) DrawPictureShadow(d, picture, at);
  }
  PictureTreatment treatment = MaskOf(d.look);
  treatment.greyscale = d.look.use_greyscale && !d.look.over;
  // Chosen: type 9 shows its picture pale until the pointer comes.
  treatment.blend = d.look.type == 9 && !d.look.over && !IsPressed(d);
  DrawPicture(d.canvas, picture, at, treatment);
}

void DrawFocusMark(ButtonDrawing& d) {
  if (d.look.HasFocusMark()) DrawFocusRect(d.canvas, d.caption_area);
}

void DrawShade(ButtonDrawing& d, Color base, double step) {
  for (int y = 1; y <= d.h; ++y) {
    d.Line(0, y, d.w, y, d.Shifted(base, static_cast<int>(RoundHalfEven(-step * y))));
  }
}

void DrawShadeUpward(ButtonDrawing& d, Color base, double step) {
  for (int y = 1; y <= d.h; ++y) {
    d.Line(0, d.h - y, d.w, d.h - y, d.Shifted(base, static_cast<int>(RoundHalfEven(-step * y))));
  }
}

}  // namespace tarnvale
