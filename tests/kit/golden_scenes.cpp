#include "tests/kit/golden_scenes.h"

#include <functional>

#include "kit/chameleon_button.h"
#include "kit/check_box.h"
#include "kit/group_box.h"
#include "kit/progress_bar.h"
#include "tools/pictures/bitmap_font.h"
#include "tools/pictures/sheet.h"

namespace tarnvale::testing {
namespace {

Raster Painted(OwnerDrawn& control, Size size) {
  Canvas canvas(size, 1);
  BitmapTextPainter text;
  control.Paint(canvas, text);
  return TakePicture(canvas);
}

// --- buttons ---

struct State {
  std::string name;
  std::function<void(chameleonButton&)> enter;
};

constexpr Point kOnButton{20, 10};

const std::vector<State>& States() {
  static const std::vector<State> states = {
      {"normal", [](chameleonButton&) {}},
      {"over", [](chameleonButton& b) { b.OnMouseMove(MouseButton::kNone, kOnButton); }},
      {"focus", [](chameleonButton& b) { b.OnFocusChanged(true); }},
      {"default", [](chameleonButton& b) { b.DisplayAsDefault = true; }},
      {"pressed", [](chameleonButton& b) { b.OnMouseDown(MouseButton::kLeft, kOnButton); }},
      {"pressed-focus",
       [](chameleonButton& b) {
         b.OnFocusChanged(true);
         b.OnMouseDown(MouseButton::kLeft, kOnButton);
       }},
      {"disabled", [](chameleonButton& b) { b.Enabled = false; }},
  };
  return states;
}

std::vector<GoldenScene> ButtonScenes(const std::string& group, int type) {
  constexpr Size kSize{72, 24};
  std::vector<GoldenScene> scenes;
  for (const State& state : States()) {
    chameleonButton button;
    button.OnResize(kSize);
    button.ButtonType = type;
    button.Caption = "&Browse";
    state.enter(button);
    scenes.push_back({group, group + "-" + state.name, Painted(button, kSize)});
  }
  return scenes;
}

std::vector<GoldenScene> EffectScenes(const std::string& group) {
  constexpr Size kSize{72, 24};
  std::vector<GoldenScene> scenes;
  for (const int type : {2, 3, 9}) {
    for (int effect = 1; effect <= 3; ++effect) {
      chameleonButton button;
      button.OnResize(kSize);
      button.ButtonType = type;
      button.Caption = "&Browse";
      button.SpecialEffect = effect;
      button.OnMouseMove(MouseButton::kNone, kOnButton);
      scenes.push_back({group, group + "-" + std::to_string(type) + "-" + std::to_string(effect),
                        Painted(button, kSize)});
    }
  }
  return scenes;
}

std::vector<GoldenScene> SchemeScenes(const std::string& group) {
  constexpr Size kSize{72, 24};
  std::vector<GoldenScene> scenes;
  for (const int type : {2, 3, 4, 5, 14}) {
    for (int scheme = 2; scheme <= 4; ++scheme) {
      chameleonButton button;
      button.OnResize(kSize);
      button.ButtonType = type;
      button.Caption = "&Browse";
      button.BackColor = 0xC8E0D0;
      button.ForeColor = 0x204010;
      button.Ambient = AmbientLook{.name = {}, .font = {}, .back = 0xE8D0D8, .fore = 0x602040};
      button.ColorScheme = scheme;
      scenes.push_back({group, group + "-" + std::to_string(type) + "-" + std::to_string(scheme),
                        Painted(button, kSize)});
    }
  }
  return scenes;
}

// --- bars ---

void AddBar(std::vector<GoldenScene>& scenes, const std::string& name, int mode, int percent,
            const std::function<void(XP_ProgressBar&)>& change) {
  XP_ProgressBar bar;
  bar.Scrolling = mode;
  bar.Value = percent;
  if (mode == 8) {
    bar.Image = Picture{Raster{2, 2, {0xFFC56A31, 0xFFEBB99D, 0xFFEBB99D, 0xFFC56A31}}, false};
  }
  change(bar);
  const bool upright = bar.Orientation != 0;
  scenes.push_back({"progress", name, Painted(bar, upright ? Size{20, 120} : Size{120, 20})});
}

std::vector<GoldenScene> ProgressScenes() {
  std::vector<GoldenScene> scenes;
  const auto as_it_is = [](XP_ProgressBar&) {};
  for (int mode = 0; mode <= 9; ++mode) {
    for (const int percent : {0, 45, 100}) {
      AddBar(scenes, "progress-" + std::to_string(mode) + "-" + std::to_string(percent), mode,
             percent, as_it_is);
    }
    AddBar(scenes, "progress-" + std::to_string(mode) + "-text", mode, 45,
           [](XP_ProgressBar& bar) { bar.ShowText = true; });
  }
  for (int mode = 0; mode <= 2; ++mode) {
    AddBar(scenes, "progress-" + std::to_string(mode) + "-upright", mode, 45,
           [](XP_ProgressBar& bar) { bar.Orientation = 1; });
  }
  for (std::int16_t brush = 0; brush <= 5; ++brush) {
    AddBar(scenes, "progress-7-brush-" + std::to_string(brush), 7, 45,
           [brush](XP_ProgressBar& bar) { bar.BrushStyle = brush; });
  }
  return scenes;
}

// --- frames and ticks ---

std::vector<GoldenScene> GroupScenes() {
  std::vector<GoldenScene> scenes;
  const auto add = [&](const std::string& name, const std::function<void(GroupBox&)>& change) {
    GroupBox box;
    box.Caption = "&General && Backup";
    change(box);
    scenes.push_back({"group", "group-" + name, Painted(box, {140, 48})});
  };
  add("etched", [](GroupBox&) {});
  add("flat", [](GroupBox& box) { box.Appearance = 0; });
  add("disabled", [](GroupBox& box) { box.Enabled = false; });
  add("no-caption", [](GroupBox& box) { box.Caption = ""; });
  add("no-border", [](GroupBox& box) { box.BorderStyle = 0; });
  return scenes;
}

std::vector<GoldenScene> CheckScenes() {
  std::vector<GoldenScene> scenes;
  const auto add = [&](const std::string& name, const std::function<void(CheckBox&)>& change) {
    CheckBox box;
    constexpr Size kSize{120, 17};
    box.OnResize(kSize);
    box.Caption = "Sub &Directories";
    change(box);
    scenes.push_back({"check", "check-" + name, Painted(box, kSize)});
  };
  add("clear", [](CheckBox&) {});
  add("ticked", [](CheckBox& box) { box.Checked = true; });
  add("focus", [](CheckBox& box) { box.OnFocusChanged(true); });
  add("bold", [](CheckBox& box) { box.Bold = true; });
  return scenes;
}

}  // namespace

std::vector<std::string> GoldenGroups() {
  std::vector<std::string> groups;
  for (int type = 1; type <= 14; ++type) groups.push_back("button-" + std::to_string(type));
  for (const char* group : {"effect", "scheme", "progress", "group", "check"}) {
    groups.emplace_back(group);
  }
  return groups;
}

std::vector<GoldenScene> DrawGroupOfScenes(const std::string& group) {
  if (group == "effect") return EffectScenes(group);
  if (group == "scheme") return SchemeScenes(group);
  if (group == "progress") return ProgressScenes();
  if (group == "group") return GroupScenes();
  if (group == "check") return CheckScenes();
  return ButtonScenes(group, std::stoi(group.substr(group.find('-') + 1)));
}

}  // namespace tarnvale::testing
