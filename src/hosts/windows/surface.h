// Pixels that both the system and the program draw into.
#pragma once

#include <cstdint>

#include "hosts/windows/system_headers.h"
#include "ui/raster.h"

namespace tarnvale {

/// An object of the system's that is selected into a device context while this lives.
class Selected {
 public:
  Selected(HDC dc, HGDIOBJ object) : dc_(dc), before_(::SelectObject(dc, object)) {}
  Selected(const Selected&) = delete;
  Selected& operator=(const Selected&) = delete;
  ~Selected() { ::SelectObject(dc_, before_); }

 private:
  HDC dc_;
  HGDIOBJ before_;
};

COLORREF ToColorRef(Color color);

/// A part of a window's client area, or of a canvas, black at first. All coordinates are
/// the whole's, in device pixels; what lies outside is clipped.
class Surface {
 public:
  /// `area` isn't empty. Raises 7 where there is no memory for it.
  explicit Surface(const RECT& area);
  Surface(const Surface&) = delete;
  Surface& operator=(const Surface&) = delete;
  ~Surface();

  const RECT& Area() const { return area_; }
  HDC Dc() const { return dc_; }
  /// The pixels of one row, 0x00RRGGBB, from the area's left edge on. What the system has
  /// drawn so far is in them.
  std::uint32_t* Row(int y) const;

  /// What is drawn from now on stays within `part`.
  void ClipTo(const RECT& part);
  const RECT& Clip() const { return clip_; }

  void Fill(const RECT& rect, Color color);
  /// One pixel wide, inside its bounds.
  void Frame(const RECT& rect, Color color);
  /// Every other pixel of the frame, for what has the focus.
  void FrameDotted(const RECT& rect, Color color);
  /// From the first colour at `from` to the second at `to`, each left out beyond.
  void FillVertically(const RECT& rect, Color top, Color bottom);
  /// Straight alpha, 0xAABBGGRR, `width` pixels to a row.
  void Blend(const std::uint32_t* pixels, int width, int height, int left, int top);

 private:
  RECT area_;
  RECT clip_;
  HDC dc_ = nullptr;
  HBITMAP bitmap_ = nullptr;
  HGDIOBJ before_ = nullptr;
  std::uint32_t* pixels_ = nullptr;
};

}  // namespace tarnvale
