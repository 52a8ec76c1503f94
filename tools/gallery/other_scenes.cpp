#include <string>

#include "kit/check_box.h"
#include "kit/group_box.h"
#include "kit/progress_bar.h"
#include "tools/gallery/scenes.h"
#include "tools/gallery/sheet_writer.h"

namespace tarnvale {
namespace {

constexpr int kSheetMargin = 12;

// Stripes for the pattern of mode 8.
Raster Stripes() {
  constexpr int kSide = 8;
  Canvas canvas({kSide, kSide}, 1);
  canvas.FillRect({0, 0, kSide, kSide}, 0xF0D8C0);
  for (int i = 0; i < kSide; ++i) {
    canvas.SetPixel(i, kSide - 1 - i, 0xC56A31);
    canvas.SetPixel((i + 1) % kSide, kSide - 1 - i, 0xD89060);
  }
  return TakePicture(canvas);
}

void PutGroup(SheetWriter& sheet, const std::string& caption, int border, int appearance,
              bool enabled, int scale, int x, int y) {
  GroupBox box;
  box.Caption = caption;
  box.BorderStyle = border;
  box.Appearance = static_cast<std::int16_t>(appearance);
  box.Enabled = enabled;
  sheet.Put(box, {200, 70}, scale, x, y);
}

void PutCheck(SheetWriter& sheet, const std::string& caption, bool checked, bool focus, int scale,
              int x, int y) {
  CheckBox box;
  constexpr Size kSize{180, 18};
  box.OnResize(kSize);
  box.Caption = caption;
  box.Checked = checked;
  box.OnFocusChanged(focus);
  sheet.Put(box, kSize, scale, x, y);
}

}  // namespace

GallerySheet ProgressSheet() {
  constexpr Size kBar{180, 20};
  constexpr int kRow = 30;
  SheetWriter sheet(kSheetMargin + 4 * (kBar.width_px + kSheetMargin) + 64, 24 + 12 * kRow);
  int column = 0;
  for (const int percent : {0, 25, 60, 100}) {
    const int x = 64 + kSheetMargin + column * (kBar.width_px + kSheetMargin);
    sheet.Write(std::to_string(percent) + " %", x, 6);
    for (int row = 0; row < 12; ++row) {
      XP_ProgressBar bar;
      const int mode = row < 10 ? row : row == 10 ? 2 : 9;
      bar.Scrolling = mode;
      bar.ShowText = row >= 10 || mode == 6;
      if (mode == 8) bar.Image = Picture{Stripes(), false};
      bar.Value = percent;
      if (column == 0) {
        sheet.Write("mode " + std::to_string(mode), kSheetMargin, 28 + row * kRow);
        if (row >= 10) sheet.Write("with text", kSheetMargin, 40 + row * kRow);
      }
      sheet.Put(bar, kBar, 1, x, 24 + row * kRow);
    }
    ++column;
  }
  return {"progress-modes", sheet.Take()};
}

GallerySheet GroupSheet() {
  SheetWriter sheet(kSheetMargin * 4 + 600, 90 + 180);
  PutGroup(sheet, "&General && Backup Settings", 1, 1, true, 1, kSheetMargin, 10);
  PutGroup(sheet, "Out Of Use", 1, 1, false, 1, kSheetMargin * 2 + 200, 10);
  PutGroup(sheet, "Flat", 1, 0, true, 1, kSheetMargin * 3 + 400, 10);
  PutGroup(sheet, "Backup Progress", 1, 1, true, 2, kSheetMargin, 100);
  PutGroup(sheet, "", 1, 1, true, 1, kSheetMargin * 3 + 400, 100);
  PutGroup(sheet, "No Border", 0, 1, true, 1, kSheetMargin * 3 + 400, 180);
  return {"group-box", sheet.Take()};
}

GallerySheet CheckBoxSheet() {
  SheetWriter sheet(600, 136);
  PutCheck(sheet, "Include &Sub Directories", true, false, 1, kSheetMargin, 10);
  PutCheck(sheet, "Include Sub Directories", false, false, 1, 210, 10);
  PutCheck(sheet, "With the focus", true, true, 1, 400, 10);
  PutCheck(sheet, "Include Sub Directories", true, false, 2, kSheetMargin, 44);
  PutCheck(sheet, "Include Sub Directories", false, true, 2, kSheetMargin, 90);
  return {"check-box", sheet.Take()};
}

}  // namespace tarnvale
