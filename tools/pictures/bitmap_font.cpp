#include "tools/pictures/bitmap_font.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace tarnvale {
namespace {

// Rows from the height of a capital down, separated by "/"; the eighth and
// ninth lie below the base line. A glyph is as wide as its first row.
constexpr std::array<std::string_view, 95> kGlyphs = {
    "...",                                                      // blank
    "#/#/#/#/#/./#",                                            // !
    "#.#/#.#",                                                  // "
    ".#.#./.#.#./#####/.#.#./#####/.#.#./.#.#.",                // #
    "..#../.####/#.#../.###./..#.#/####./..#..",                // $
    "##..#/##..#/...#./..#../.#.../#..##/#..##",                // %
    ".##../#..#./#.#../.#.../#.#.#/#..#./.##.#",                // &
    "#/#",                                                      // '
    "..#/.#./#../#../#../.#./..#",                              // (
    "#../.#./..#/..#/..#/.#./#..",                              // )
    "...../..#../#.#.#/.###./#.#.#/..#..",                      // *
    "...../..#../..#../#####/..#../..#..",                      // +
    "../../../../../.#/.#/#.",                                  // ,
    "..../..../..../####",                                      // -
    "./././././#/#",                                            // .
    "...#/...#/..#./..#./.#../.#../#...",                       // /
    ".###./#...#/#..##/#.#.#/##..#/#...#/.###.",                // 0
    ".#./##./.#./.#./.#./.#./###",                              // 1
    ".###./#...#/....#/...#./..#../.#.../#####",                // 2
    ".###./#...#/....#/..##./....#/#...#/.###.",                // 3
    "...#./..##./.#.#./#..#./#####/...#./...#.",                // 4
    "#####/#..../####./....#/....#/#...#/.###.",                // 5
    "..##./.#.../#..../####./#...#/#...#/.###.",                // 6
    "#####/....#/...#./..#../..#../.#.../.#...",                // 7
    ".###./#...#/#...#/.###./#...#/#...#/.###.",                // 8
    ".###./#...#/#...#/.####/....#/...#./.##..",                // 9
    "././#/././#",                                              // :
    "../../.#/../../.#/.#/#.",                                  // ;
    "...#/..#./.#../#.../.#../..#./...#",                       // <
    "..../..../####/..../####",                                 // =
    "#.../.#../..#./...#/..#./.#../#...",                       // >
    ".##./#..#/...#/..#./.#../..../.#..",                       // ?
    ".###./#...#/#.###/#.#.#/#.##./#..../.####",                // @
    "..#../..#../.#.#./.#.#./#####/#...#/#...#",                // A
    "####./#...#/#...#/####./#...#/#...#/####.",                // B
    ".###./#...#/#..../#..../#..../#...#/.###.",                // C
    "####./#...#/#...#/#...#/#...#/#...#/####.",                // D
    "####/#.../#.../###./#.../#.../####",                       // E
    "####/#.../#.../###./#.../#.../#...",                       // F
    ".###./#...#/#..../#..##/#...#/#...#/.####",                // G
    "#...#/#...#/#...#/#####/#...#/#...#/#...#",                // H
    "###/.#./.#./.#./.#./.#./###",                              // I
    "..##/...#/...#/...#/...#/#..#/.##.",                       // J
    "#...#/#..#./#.#../##.../#.#../#..#./#...#",                // K
    "#.../#.../#.../#.../#.../#.../####",                       // L
    "#.....#/##...##/#.#.#.#/#..#..#/#.....#/#.....#/#.....#",  // M
    "#...#/##..#/##..#/#.#.#/#..##/#..##/#...#",                // N
    ".###./#...#/#...#/#...#/#...#/#...#/.###.",                // O
    "####./#...#/#...#/####./#..../#..../#....",                // P
    ".###./#...#/#...#/#...#/#.#.#/#..#./.##.#",                // Q
    "####./#...#/#...#/####./#.#../#..#./#...#",                // R
    ".####/#..../#..../.###./....#/....#/####.",                // S
    "#####/..#../..#../..#../..#../..#../..#..",                // T
    "#...#/#...#/#...#/#...#/#...#/#...#/.###.",                // U
    "#...#/#...#/#...#/.#.#./.#.#./..#../..#..",                // V
    "#.....#/#.....#/#..#..#/#..#..#/#.#.#.#/.#...#./.#...#.",  // W
    "#...#/#...#/.#.#./..#../.#.#./#...#/#...#",                // X
    "#...#/#...#/.#.#./..#../..#../..#../..#..",                // Y
    "#####/....#/...#./..#../.#.../#..../#####",                // Z
    "##/#./#./#./#./#./##",                                     // [
    "#.../#.../.#../.#../..#./..#./...#",                       // backslash
    "##/.#/.#/.#/.#/.#/##",                                     // ]
    "..#../.#.#./#...#",                                        // ^
    "...../...../...../...../...../...../...../#####",          // _
    "#./.#",                                                    // `
    "..../..../.##./...#/.###/#..#/.###",                       // a
    "#.../#.../###./#..#/#..#/#..#/###.",                       // b
    ".../.../.##/#../#../#../.##",                              // c
    "...#/...#/.###/#..#/#..#/#..#/.###",                       // d
    "..../..../.##./#..#/####/#.../.###",                       // e
    ".##/#../###/#../#../#../#..",                              // f
    "..../..../.###/#..#/#..#/#..#/.###/...#/.##.",             // g
    "#.../#.../###./#..#/#..#/#..#/#..#",                       // h
    "#/./#/#/#/#/#",                                            // i
    ".#/../.#/.#/.#/.#/.#/.#/#.",                               // j
    "#.../#.../#..#/#.#./##../#.#./#..#",                       // k
    "#/#/#/#/#/#/#",                                            // l
    "......./......./######./#..#..#/#..#..#/#..#..#/#..#..#",  // m
    "..../..../###./#..#/#..#/#..#/#..#",                       // n
    "..../..../.##./#..#/#..#/#..#/.##.",                       // o
    "..../..../###./#..#/#..#/#..#/###./#.../#...",             // p
    "..../..../.###/#..#/#..#/#..#/.###/...#/...#",             // q
    ".../.../#.#/##./#../#../#..",                              // r
    "..../..../.###/#.../.##./...#/###.",                       // s
    ".#./.#./###/.#./.#./.#./..#",                              // t
    "..../..../#..#/#..#/#..#/#..#/.###",                       // u
    "...../...../#...#/#...#/.#.#./.#.#./..#..",                // v
    "......./......./#..#..#/#..#..#/#..#..#/#.#.#.#/.#...#.",  // w
    "...../...../#...#/.#.#./..#../.#.#./#...#",                // x
    "..../..../#..#/#..#/#..#/#..#/.###/...#/.##.",             // y
    "..../..../####/...#/.##./#.../####",                       // z
    "..#/.#./.#./#../.#./.#./..#",                              // {
    "#/#/#/#/#/#/#/#",                                          // |
    "#../.#./.#./..#/.#./.#./#..",                              // }
    "...../...../.#.../#.#.#/...#.",                            // ~
};

constexpr int kAscent = 7;       // rows above the base line
constexpr int kLineHeight = 13;  // of a text of the standard size
constexpr int kTopRows = 3;      // blank rows above the capitals
constexpr int kUnderlineRow = kTopRows + kAscent + 1;
constexpr double kStandardSize = 9;

std::string_view GlyphOf(char c) {
  const bool known = c >= ' ' && c <= '~';
  return kGlyphs[static_cast<std::size_t>((known ? c : '?') - ' ')];
}

int WidthOf(std::string_view glyph) {
  return static_cast<int>(std::min(glyph.find('/'), glyph.size()));
}

// One character of a text, and whether it stands under an access key mark.
struct Shown {
  char character;
  bool underlined;
};

std::vector<Shown> ShownCharacters(const std::string& text, const TextLook& look) {
  std::vector<Shown> shown;
  bool marked = false;
  for (const char c : text) {
    if (look.access_key_marks && c == '&' && !marked) {
      marked = true;
      continue;
    }
    shown.push_back({c, look.font.underline || (marked && c != '&' && look.show_access_key)});
    marked = false;
  }
  return shown;
}

// Whole multiples of the one size that there is.
int MagnificationOf(const Font& font) {
  return std::max(static_cast<int>(font.size_pt / kStandardSize + 0.4), 1);
}

class Pen {
 public:
  Pen(Canvas& canvas, Rect clip, Color color, int magnification)
      : canvas_(canvas), clip_(clip), color_(color), magnification_(magnification) {}

  // One pixel of the font, counted from the text's upper left corner.
  void Dot(int left, int top, int x, int y) {
    canvas_.FillRect(Clipped({left + x * magnification_, top + y * magnification_, magnification_,
                              magnification_}),
                     color_);
  }

 private:
  Rect Clipped(Rect dot) const {
    const int left = std::max(dot.left_px, clip_.left_px);
    const int top = std::max(dot.top_px, clip_.top_px);
    const int right = std::min(dot.RightPx(), clip_.RightPx());
    const int bottom = std::min(dot.BottomPx(), clip_.BottomPx());
    return {left, top, std::max(right - left, 0), std::max(bottom - top, 0)};
  }

  Canvas& canvas_;
  Rect clip_;
  Color color_;
  int magnification_;
};

void DrawGlyph(Pen& pen, int left, int top, std::string_view glyph, const Font& font) {
  int x = 0;
  int y = kTopRows;
  for (const char c : glyph) {
    if (c == '/') {
      x = 0;
      ++y;
      continue;
    }
    const int slant = font.italic ? (kTopRows + kAscent - y) / 4 : 0;
    if (c == '#') {
      pen.Dot(left, top, x + slant, y);
      if (font.bold) pen.Dot(left, top, x + slant + 1, y);
    }
    ++x;
  }
}

// Dots from one glyph's start to the next one's.
int AdvanceOf(std::string_view glyph, const Font& font) {
  return WidthOf(glyph) + (font.bold ? 2 : 1);
}

int LeftOf(const Rect& area, int width, TextLook::Align align) {
  switch (align) {
    case TextLook::Align::kCenter:
      return area.left_px + (area.width_px - width) / 2;
    case TextLook::Align::kRight:
      return area.RightPx() - width;
    default:
      return area.left_px;
  }
}

}  // namespace

Size BitmapTextPainter::Measure(const std::string& text, const TextLook& look) {
  int dots = 0;
  for (const Shown& shown : ShownCharacters(text, look)) {
    dots += AdvanceOf(GlyphOf(shown.character), look.font);
  }
  const int magnification = MagnificationOf(look.font);
  return {dots * magnification, kLineHeight * magnification};
}

void BitmapTextPainter::Draw(Canvas& canvas, const std::string& text, const TextLook& look,
                             Rect area) {
  const Size size = Measure(text, look);
  const int magnification = MagnificationOf(look.font);
  int left = LeftOf(area, size.width_px, look.align);
  const int top = area.top_px + (area.height_px - size.height_px) / 2;
  Pen pen(canvas, area, look.color, magnification);
  for (const Shown& shown : ShownCharacters(text, look)) {
    const std::string_view glyph = GlyphOf(shown.character);
    DrawGlyph(pen, left, top, glyph, look.font);
    if (shown.underlined) {
      for (int x = 0; x < WidthOf(glyph); ++x) pen.Dot(left, top, x, kUnderlineRow);
    }
    left += AdvanceOf(glyph, look.font) * magnification;
  }
}

}  // namespace tarnvale
