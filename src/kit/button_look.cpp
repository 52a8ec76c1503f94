#include "kit/button_look.h"

#include <array>
#include <cstddef>

#include "kit/button_drawing.h"

namespace tarnvale {
namespace {

struct Blocks {
  void (*normal)(ButtonDrawing&);
  void (*pressed)(ButtonDrawing&);
  void (*disabled)(ButtonDrawing&);
};

constexpr std::array<Blocks, 14> kBlocks = {{
    {DrawOldNormal, DrawOldPressed, DrawOldDisabled},                          //  1
    {DrawClassicNormal, DrawClassicPressed, DrawClassicDisabled},              //  2
    {DrawShadedNormal, DrawShadedPressed, DrawShadedDisabled},                 //  3
    {DrawRoundedNormal, DrawRoundedPressed, DrawRoundedDisabled},              //  4
    {DrawMetalNormal, DrawMetalPressed, DrawMetalDisabled},                    //  5
    {DrawThinNormal, DrawThinPressed, DrawThinDisabled},                       //  6
    {DrawFlatNormal, DrawFlatPressed, DrawFlatDisabled},                       //  7
    {DrawHoverFlatNormal, DrawFlatPressed, DrawFlatDisabled},                  //  8
    {DrawSelectionNormal, DrawSelectionPressed, DrawSelectionDisabled},        //  9
    {DrawNothing, DrawNothing, DrawNothing},                                   // 10
    {DrawTransparentNormal, DrawTransparentPressed, DrawTransparentDisabled},  // 11
    {DrawDoubleNormal, DrawDoublePressed, DrawFlatDisabled},                   // 12
    {DrawOvalNormal, DrawOvalPressed, DrawOvalDisabled},                       // 13
    {DrawStripNormal, DrawStripPressed, DrawStripDisabled},                    // 14
}};

void DrawBackground(ButtonDrawing& d) {
  if (d.look.type == kTransparentButton) {
    d.canvas.BlitDevice(d.look.ground, 0, 0);
  } else {
    d.Fill(d.colors.face);
  }
}

}  // namespace

void DrawButton(const ButtonLook& look, Canvas& canvas, TextPainter& text) {
  ButtonDrawing d(look, canvas, text);
  DrawBackground(d);
  if (look.type < 1 || look.type > static_cast<int>(kBlocks.size())) return;
  const Blocks& blocks = kBlocks[static_cast<std::size_t>(look.type - 1)];
  if (!look.enabled) {
    blocks.disabled(d);
  } else if (look.state == ButtonState::kPressed) {
    blocks.pressed(d);
  } else {
    blocks.normal(d);
  }
  ClipToButtonRegion(look.type, canvas);
}

}  // namespace tarnvale
