// The raster canvas: a 32-bit pixel buffer with the primitives that the drawn
// controls need. The same pixels come out on every system.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ui/geometry.h"

namespace tarnvale {

/// A colour as 0x00BBGGRR: red in the low byte.
using Color = std::uint32_t;

inline constexpr Color kBlack = 0x000000;
inline constexpr Color kWhite = 0xFFFFFF;

inline int RedOf(Color color) {
  return static_cast<int>(color & 0xFFU);
}
inline int GreenOf(Color color) {
  return static_cast<int>(color >> 8U & 0xFFU);
}
inline int BlueOf(Color color) {
  return static_cast<int>(color >> 16U & 0xFFU);
}
/// Channels 0 to 255.
inline Color MakeColor(int red, int green, int blue) {
  return static_cast<Color>(red) | static_cast<Color>(green) << 8U |
         static_cast<Color>(blue) << 16U;
}

/// A picture: rows of pixels from the top, each 0xAABBGGRR with straight alpha.
struct Raster {
  int width = 0;
  int height = 0;
  std::vector<std::uint32_t> pixels;

  bool Empty() const { return pixels.empty(); }
  std::uint32_t At(int x, int y) const {
    return pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                  static_cast<std::size_t>(x)];
  }
  bool operator==(const Raster&) const = default;
};

/// Drawing surface of one control. All coordinates are logical pixels; at scale
/// s each of them is a block of s by s device pixels, so that shapes stay crisp.
/// Whatever lies outside is clipped. A pixel is opaque, or transparent where a
/// control leaves its container showing.
class Canvas {
 public:
  /// `scale` at least 1. Everything begins transparent.
  Canvas(Size size, int scale);

  /// Starts anew at a size, keeping the memory.
  void Reset(Size size, int scale);

  int WidthPx() const { return size_.width_px; }
  int HeightPx() const { return size_.height_px; }
  int Scale() const { return scale_; }
  int DeviceWidth() const { return size_.width_px * scale_; }
  int DeviceHeight() const { return size_.height_px * scale_; }

  /// Device pixels, rows from the top, 0xAABBGGRR. A host's TextPainter draws
  /// into them; everything else uses the primitives.
  std::uint32_t* DevicePixels() { return pixels_.data(); }
  const std::uint32_t* DevicePixels() const { return pixels_.data(); }

  /// The logical pixel's upper left device pixel; none where it is transparent
  /// or outside.
  std::optional<Color> PixelAt(int x, int y) const;

  void SetPixel(int x, int y, Color color);
  /// Makes one pixel transparent.
  void ClearPixel(int x, int y);
  void FillRect(Rect rect, Color color);
  /// The outline of a rectangle, one pixel wide, inside its bounds.
  void FrameRect(Rect rect, Color color);
  /// A line that includes its start and leaves out its end, as the classic line
  /// call does.
  void Line(int x1, int y1, int x2, int y2, Color color);
  /// The outline of the ellipse that fills `bounds`, and its inside.
  void FrameEllipse(Rect bounds, Color color);
  void FillEllipse(Rect bounds, Color color);
  /// Makes everything outside the ellipse that fills `bounds` transparent.
  void ClipToEllipse(Rect bounds);
  /// A 3-D frame one pixel wide: the first colour at top and left, the second
  /// at bottom and right (which own the two shared corners).
  void Edge(Rect rect, Color top_left, Color bottom_right);
  /// Hatches an area; `pattern` is one of the classic hatches 0 (horizontal),
  /// 1 (vertical), 2 (down), 3 (up), 4 (cross), 5 (diagonal cross), period 8,
  /// counted from the canvas's corner. Any other number draws nothing.
  void Hatch(Rect rect, int pattern, Color color, Color ground);

  /// Copies part of a picture to (x, y). Pixels of alpha below 128 are left out,
  /// and so are pixels of the colour `mask`.
  void Blit(const Raster& picture, Rect source, int x, int y, std::optional<Color> mask);
  /// Fills an area with copies of a picture, the first in its upper left corner.
  /// Pixels of alpha below 128 are left out; an empty picture draws nothing.
  void Tile(const Raster& picture, Rect rect);
  /// Copies a picture that was made for this canvas's scale: one pixel of it is
  /// one device pixel. (x, y) is logical. Pixels of alpha below 128 are left out.
  void BlitDevice(const Raster& picture, int x, int y);

 private:
  void Put(int x, int y, std::uint32_t pixel);

  Size size_;
  int scale_ = 1;
  std::vector<std::uint32_t> pixels_;
};

struct Font {
  std::string family;  ///< empty: the program's one typeface
  double size_pt = 9;  ///< points of 1/72 inch at 96 dpi
  bool bold = false;
  bool italic = false;
  bool underline = false;
  bool operator==(const Font&) const = default;
};

struct TextLook {
  Font font;
  Color color = kBlack;
  enum class Align { kLeft, kCenter, kRight } align = Align::kLeft;
  /// "&" marks the next character as access key, "&&" is shown as "&".
  bool access_key_marks = false;
  /// Underlines the access key.
  bool show_access_key = true;
};

/// Draws text into canvases; the one thing in drawing that is the host's.
class TextPainter {
 public:
  virtual ~TextPainter() = default;
  /// Size of one line of text, in logical pixels. An empty text has a height.
  virtual Size Measure(const std::string& text, const TextLook& look) = 0;
  /// Draws one line, centred from top to bottom, clipped to `area`, in the full
  /// resolution of the canvas.
  virtual void Draw(Canvas& canvas, const std::string& text, const TextLook& look, Rect area) = 0;
};

}  // namespace tarnvale
