// The program's icon in all its sizes, on the grounds that it meets.
#include <array>

#include "shell/program_icon.h"
#include "tools/gallery/scenes.h"
#include "tools/pictures/sheet.h"

namespace tarnvale {
namespace {

constexpr int kIconMargin = 16;
constexpr int kRowHeight = 128 + 2 * kIconMargin;

// A window, the task panel, a dark desktop bar.
constexpr std::array<Color, 3> kGrounds = {0xD8E9EC, 0xEED0BF, 0x2E2A26};

std::uint32_t Over(std::uint32_t top, std::uint32_t ground) {
  const std::uint32_t alpha = top >> 24U;
  std::uint32_t mixed = 0xFF000000U;
  for (const unsigned shift : {0U, 8U, 16U}) {
    const std::uint32_t sum =
        (top >> shift & 0xFFU) * alpha + (ground >> shift & 0xFFU) * (255 - alpha);
    mixed |= (sum + 127) / 255 << shift;
  }
  return mixed;
}

void Blend(Raster& sheet, const Raster& icon, int left, int top) {
  for (int y = 0; y < icon.height; ++y) {
    for (int x = 0; x < icon.width; ++x) {
      const auto at = static_cast<std::size_t>(top + y) * static_cast<std::size_t>(sheet.width) +
                      static_cast<std::size_t>(left + x);
      sheet.pixels[at] = Over(icon.At(x, y), sheet.pixels[at]);
    }
  }
}

}  // namespace

GallerySheet IconSheet() {
  const std::vector<Raster> icons = ProgramIcons();
  int width = kIconMargin;
  for (const Raster& icon : icons) width += icon.width + kIconMargin;
  Raster sheet = MakeSheet(width, kRowHeight * static_cast<int>(kGrounds.size()), kGrounds[0]);
  for (std::size_t row = 0; row < kGrounds.size(); ++row) {
    const int top = kRowHeight * static_cast<int>(row);
    PutOnSheet(sheet, MakeSheet(width, kRowHeight, kGrounds[row]), 0, top);
    int left = kIconMargin;
    for (const Raster& icon : icons) {
      Blend(sheet, icon, left, top + (kRowHeight - icon.height) / 2);
      left += icon.width + kIconMargin;
    }
  }
  return {"icon", std::move(sheet)};
}

}  // namespace tarnvale
