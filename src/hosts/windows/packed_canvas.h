// What a drawn control has drawn, kept in little room.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "hosts/windows/surface.h"
#include "ui/raster.h"

namespace tarnvale {

/// The pixels of a canvas as runs of one colour: most of a frame or a button is one, and what
/// would be megabytes for a screen of the main window is some kilobytes.
class PackedCanvas {
 public:
  void Keep(const Canvas& canvas);
  void Forget() { *this = PackedCanvas(); }
  /// Over what lies below, its upper left corner at `left` and `top`.
  void Blend(Surface& surface, int left, int top) const;

  std::size_t Runs() const { return runs_.size(); }

 private:
  struct Run {
    int end;              ///< the column behind its last one
    std::uint32_t pixel;  ///< straight alpha, 0xAABBGGRR
  };

  std::vector<Run> runs_;
  std::vector<std::size_t> row_starts_;  ///< where each row's runs begin
};

}  // namespace tarnvale
