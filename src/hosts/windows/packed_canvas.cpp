#include "hosts/windows/packed_canvas.h"

#include <algorithm>
#include <cstddef>

#include "hosts/windows/blend.h"

namespace tarnvale {

void PackedCanvas::Keep(const Canvas& canvas) {
  runs_.clear();
  row_starts_.clear();
  const std::uint32_t* pixel = canvas.DevicePixels();
  for (int y = 0; y < canvas.DeviceHeight(); ++y) {
    row_starts_.push_back(runs_.size());
    for (int x = 0; x < canvas.DeviceWidth(); ++x, ++pixel) {
      const bool goes_on = x > 0 && runs_.back().pixel == *pixel;
      if (!goes_on) runs_.push_back({.end = 0, .pixel = *pixel});
      runs_.back().end = x + 1;
    }
  }
  runs_.shrink_to_fit();
}

void PackedCanvas::Blend(Surface& surface, int left, int top) const {
  const RECT& clip = surface.Clip();
  const int first_row = std::max<int>(clip.top - top, 0);
  const int last_row = std::min<int>(clip.bottom - top, static_cast<int>(row_starts_.size()));
  for (int y = first_row; y < last_row; ++y) {
    std::uint32_t* row = surface.Row(top + y) - surface.Area().left;
    int begin = 0;
    // The next row's first run ends no later than this row's last.
    for (std::size_t i = row_starts_[static_cast<std::size_t>(y)];
         i < runs_.size() && runs_[i].end > begin; ++i) {
      const int from = std::max<int>(left + begin, clip.left);
      const int to = std::min<int>(left + runs_[i].end, clip.right);
      for (int x = from; x < to; ++x) row[x] = Blended(runs_[i].pixel, row[x]);
      begin = runs_[i].end;
    }
  }
}

}  // namespace tarnvale
