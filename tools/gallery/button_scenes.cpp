#include <array>
#include <functional>

#include "kit/chameleon_button.h"
#include "tools/gallery/scenes.h"
#include "tools/gallery/sheet_writer.h"

namespace tarnvale {
namespace {

constexpr Size kButton{120, 26};
constexpr int kMargin = 12;

using Setup = std::function<void(chameleonButton&)>;

struct Scene {
  std::string label;
  Setup setup;
};

void Hover(chameleonButton& button) {
  button.OnMouseMove(MouseButton::kNone, {30, 12});
}

const std::array<Scene, 6>& States() {
  static const std::array<Scene, 6> states = {{
      {"normal", [](chameleonButton&) {}},
      {"over", Hover},
      {"focus", [](chameleonButton& button) { button.OnFocusChanged(true); }},
      {"default", [](chameleonButton& button) { button.DisplayAsDefault = true; }},
      {"pressed",
       [](chameleonButton& button) {
         button.OnMouseDown(MouseButton::kLeft, {30, 12});
       }},
      {"disabled", [](chameleonButton& button) { button.Enabled = false; }},
  }};
  return states;
}

void PutButton(SheetWriter& sheet, const Setup& setup, int scale, int x, int y) {
  chameleonButton button;
  button.OnResize(kButton);
  button.Caption = "&Browse Files";
  setup(button);
  sheet.Put(button, kButton, scale, x, y);
}

// A small disk, on the mask colour.
Raster DiskPicture() {
  constexpr int kSide = 16;
  Canvas canvas({kSide, kSide}, 1);
  canvas.FillRect({0, 0, kSide, kSide}, 0xC0C0C0);
  canvas.FillRect({1, 1, 14, 14}, 0xB0602A);
  canvas.FrameRect({1, 1, 14, 14}, 0x5A3010);
  canvas.FillRect({4, 2, 8, 5}, 0xF4F4F4);
  canvas.FillRect({9, 3, 2, 3}, 0x5A3010);
  canvas.FillRect({4, 9, 8, 5}, 0x2FC7FF);
  canvas.Line(5, 11, 11, 11, 0x1080C0);
  return TakePicture(canvas);
}

// Rows of buttons, one scene after the other.
GallerySheet Rows(const std::string& file, const std::vector<Scene>& scenes, int columns) {
  constexpr int kCellWidth = kButton.width_px + kMargin;
  constexpr int kCellHeight = kButton.height_px + 26;
  const int count = static_cast<int>(scenes.size());
  const int rows = (count + columns - 1) / columns;
  SheetWriter sheet(kMargin + columns * kCellWidth, kMargin + rows * kCellHeight);
  for (int i = 0; i < count; ++i) {
    const int x = kMargin + i % columns * kCellWidth;
    const int y = kMargin + i / columns * kCellHeight;
    const Scene& scene = scenes[static_cast<std::size_t>(i)];
    sheet.Write(scene.label, x, y - 4);
    PutButton(sheet, scene.setup, 1, x, y + 11);
  }
  return {file, sheet.Take()};
}

}  // namespace

GallerySheet ButtonSheet(int type) {
  constexpr int kColumn = 2 * kButton.width_px + kMargin;
  // A face on its own ground would be unseen.
  const bool is_bare = type == 10 || type == 13;
  SheetWriter sheet(kMargin + 3 * kColumn, 236,
                    is_bare ? Color{0xC2D6DB} : SystemColor(kColorButtonFace));
  const Setup choose_type = [type](chameleonButton& button) { button.ButtonType = type; };
  int i = 0;
  for (const Scene& state : States()) {
    const Setup setup = [&](chameleonButton& button) {
      choose_type(button);
      state.setup(button);
    };
    const int x = kMargin + i % 3 * kColumn;
    const int y = 8 + i / 3 * 112;
    sheet.Write(state.label, x, y);
    PutButton(sheet, setup, 1, x, y + 15);
    PutButton(sheet, setup, 2, x, y + 46);
    ++i;
  }
  return {"button-" + std::to_string(type), sheet.Take()};
}

GallerySheet ButtonColorSheet() {
  const auto scheme = [](int number, int type) {
    return [=](chameleonButton& button) {
      button.ButtonType = type;
      button.BackColor = 0xC8E0D0;
      button.BackOver = 0xB0F0C8;
      button.ForeColor = 0x204010;
      button.ForeOver = 0x0000A0;
      button.Ambient = AmbientLook{.name = {}, .font = {}, .back = 0xE8D0D8, .fore = 0x602040};
      button.ColorScheme = number;
    };
  };
  std::vector<Scene> scenes;
  for (const int type : {2, 3, 14}) {
    for (int number = 1; number <= 4; ++number) {
      scenes.push_back({"type " + std::to_string(type) + ", scheme " + std::to_string(number),
                        scheme(number, type)});
    }
  }
  scenes.push_back({"scheme 2, over", [&](chameleonButton& button) {
                      scheme(2, 2)(button);
                      Hover(button);
                    }});
  scenes.push_back({"soft bevel", [](chameleonButton& button) {
                      button.ButtonType = 3;
                      button.SoftBevel = true;
                    }});
  for (int effect = 1; effect <= 3; ++effect) {
    for (const int type : {2, 3}) {
      scenes.push_back({"type " + std::to_string(type) + ", effect " + std::to_string(effect),
                        [=](chameleonButton& button) {
                          button.ButtonType = type;
                          button.SpecialEffect = effect;
                        }});
    }
  }
  return Rows("button-colors", scenes, 4);
}

GallerySheet ButtonPictureSheet() {
  const auto with_picture = [](int type, int position) {
    return [=](chameleonButton& button) {
      button.ButtonType = type;
      button.PictureNormal = Picture{DiskPicture(), false};
      button.PicturePosition = position;
    };
  };
  std::vector<Scene> scenes = {{"left", with_picture(3, 0)},
                               {"right", with_picture(3, 1)},
                               {"behind", with_picture(3, 4)},
                               {"pressed, type 3", [=](chameleonButton& button) {
                                  with_picture(3, 0)(button);
                                  button.OnMouseDown(MouseButton::kLeft, {9, 9});
                                }}};
  for (const int type : {5, 6, 9}) {
    scenes.push_back({"pressed, type " + std::to_string(type), [=](chameleonButton& button) {
                        with_picture(type, 0)(button);
                        button.OnMouseDown(MouseButton::kLeft, {9, 9});
                      }});
  }
  scenes.push_back({"type 9", with_picture(9, 0)});
  scenes.push_back({"grey", [=](chameleonButton& button) {
                      with_picture(3, 0)(button);
                      button.UseGreyscale = true;
                    }});
  scenes.push_back({"grey, over", [=](chameleonButton& button) {
                      with_picture(3, 0)(button);
                      button.UseGreyscale = true;
                      Hover(button);
                    }});
  scenes.push_back({"without mask", [=](chameleonButton& button) {
                      with_picture(3, 0)(button);
                      button.UseMaskColor = false;
                    }});
  scenes.push_back({"disabled", [=](chameleonButton& button) {
                      with_picture(2, 0)(button);
                      button.Enabled = false;
                    }});
  return Rows("button-pictures", scenes, 4);
}

}  // namespace tarnvale
