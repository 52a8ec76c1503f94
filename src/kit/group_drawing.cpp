#include "kit/group_drawing.h"

#include <algorithm>
#include <optional>

#include "base/failure.h"
#include "base/numbers.h"
#include "kit/drawing.h"
#include "kit/system_colors.h"

namespace tarnvale {
namespace {

constexpr int kTextLeft = 9;
constexpr int kGapLeft = 7;

struct GroupDrawing {
  const GroupLook& look;
  Canvas& canvas;
  TextPainter& text;
  Size measured;  // of the caption
  Rect outer;

  Rect TextRect() const { return {kTextLeft, 0, measured.width_px, measured.height_px}; }
  // An ampersand may be wider than the "A" that was measured for it: nothing is cut off.
  Rect UncutTextRect() const {
    return {kTextLeft, 0, std::max(canvas.WidthPx() - kTextLeft, 0), measured.height_px};
  }
  TextLook CaptionLook() const {
    TextLook caption;
    caption.font = look.font;
    caption.color = look.fore;
    caption.access_key_marks = true;
    return caption;
  }
};

GroupDrawing Begin(const GroupLook& look, Canvas& canvas, TextPainter& text) {
  GroupDrawing d{look, canvas, text, {}, {}};
  TextLook plain;
  plain.font = look.font;
  d.measured = text.Measure(MeasuredCaption(look.caption), plain);
  const int top = RoundToInt32(d.measured.height_px / 2.0);
  d.outer = {0, top, canvas.WidthPx(), canvas.HeightPx() - top};
  return d;
}

// No answer when the test itself fails.
std::optional<bool> AskForTheme(VisualTheme* theme) {
  if (theme == nullptr) return false;
  try {
    return IsThemed(*theme);
  } catch (const ProgramError&) {
    return std::nullopt;
  }
}

// Cuts the caption's gap out of the frame.
void FillGap(GroupDrawing& d) {
  if (d.look.caption.empty()) return;
  const int right = d.measured.width_px + kTextLeft;
  d.canvas.FillRect({kGapLeft, 0, right - kGapLeft, d.measured.height_px}, d.look.back);
}

// A box of white lines two pixels wide, centred on the outline, and a black one
// of one pixel.
void DrawFlatBorder(GroupDrawing& d) {
  const Rect o = d.outer;
  for (const int grown : {0, 1}) {
    d.canvas.FrameRect(
        {o.left_px + grown, o.top_px + grown, o.width_px - 2 * grown, o.height_px - 2 * grown},
        kWhite);
  }
  d.canvas.FrameRect({o.left_px, o.top_px, o.width_px, o.height_px}, kBlack);
}

void DrawClassic(GroupDrawing& d) {
  if (d.look.appearance != 0) {
    DrawEtchedEdge(d.canvas, d.outer);
  } else {
    DrawFlatBorder(d);
  }
  FillGap(d);
  if (d.look.caption.empty()) return;
  if (d.look.enabled) {
    d.text.Draw(d.canvas, d.look.caption, d.CaptionLook(), d.UncutTextRect());
  } else {
    DrawEngraved(d.canvas, d.text, d.look.caption, d.CaptionLook(), d.UncutTextRect(),
                 SystemColor(kColorButtonHighlight), SystemColor(kColorButtonShadow));
  }
}

void DrawThemed(GroupDrawing& d, VisualTheme& theme) {
  constexpr int kGroupBoxPart = 4;
  constexpr int kHidePrefix = 0x100000;
  constexpr int kOutOfUse = 32;
  const ThemeHandle handle = theme.OpenThemeData("BUTTON");
  theme.DrawThemeBackground(handle, d.canvas, kGroupBoxPart, 0, d.outer);
  FillGap(d);
  const VisualTheme::TextFlags flags{.first = theme.KeyboardCues() ? 0 : kHidePrefix,
                                     .second = d.look.enabled ? 0 : kOutOfUse};
  theme.DrawThemeText(handle, d.canvas, d.text, kGroupBoxPart, 1, d.look.caption, flags,
                      d.TextRect(), d.look.font);
  theme.CloseThemeData(handle);
}

void ClearBackColor(Canvas& canvas, Color back) {
  for (int y = 0; y < canvas.HeightPx(); ++y) {
    for (int x = 0; x < canvas.WidthPx(); ++x) {
      if (canvas.PixelAt(x, y) == back) canvas.ClearPixel(x, y);
    }
  }
}

void DrawFrameAndCaption(const GroupLook& look, Canvas& canvas, TextPainter& text,
                         VisualTheme* theme) {
  GroupDrawing d = Begin(look, canvas, text);
  const std::optional<bool> themed = AskForTheme(theme);
  if (!themed) return;
  if (*themed) {
    DrawThemed(d, *theme);
  } else {
    DrawClassic(d);
  }
}

}  // namespace

std::string MeasuredCaption(const std::string& caption) {
  if (caption.empty()) return " ";
  std::string measured;
  for (std::size_t i = 0; i < caption.size(); ++i) {
    if (caption[i] != '&') {
      measured += caption[i];
    } else if (i + 1 < caption.size() && caption[i + 1] == '&') {
      measured += 'A';
      ++i;
    }
  }
  return measured;
}

void DrawGroup(const GroupLook& look, Canvas& canvas, TextPainter& text, VisualTheme* theme) {
  canvas.FillRect(ClientRect(canvas), look.back);
  if (look.border_style == 0) return;
  DrawFrameAndCaption(look, canvas, text, theme);
  if (look.back_style == 0) ClearBackColor(canvas, look.back);
}

}  // namespace tarnvale
