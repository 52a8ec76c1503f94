#include "kit/progress_bar.h"

#include <algorithm>
#include <limits>

#include "base/failure.h"
#include "base/numbers.h"
#include "kit/progress_drawing.h"
#include "kit/quietly.h"

namespace tarnvale {
namespace {

std::int32_t PercentOf(std::int32_t value, std::int32_t min, std::int32_t max) {
  // With a max of 0 there is no such number: this raises 6.
  return RoundToInt32(Multiply32(value, 100) / static_cast<double>(max) + min);
}

}  // namespace

XP_ProgressBar::XP_ProgressBar() : Value(*this, own_value_), record_(own_value_) {
  FollowProperties();
}

XP_ProgressBar::XP_ProgressBar(Property<int>& value) : Value(*this, value), record_(value) {
  FollowProperties();
  StoreValue(value);
}

void XP_ProgressBar::FollowProperties() {
  const auto redrawing = [this](auto& property, const char* name) {
    property.WasSet.Listen([this, name] {
      PropertySet(name);
      DrawProgressBar();
    });
  };
  redrawing(Color, "Color");
  redrawing(Image, "Image");
  redrawing(Orientation, "Orientation");
  redrawing(Scrolling, "Scrolling");
  redrawing(ShowText, "ShowText");
  // Required: these take effect at the next redraw.
  const auto reporting = [this](auto& property, const char* name) {
    property.WasSet.Listen([this, name] { PropertySet(name); });
  };
  reporting(BrushStyle, "BrushStyle");
  reporting(Font, "Font");
  reporting(Min, "Min");
  reporting(Max, "Max");
  // What Value reads depends on its ends too.
  Min.Changed.Listen([this] { RecordReading(); });
  Max.Changed.Listen([this] { RecordReading(); });
  record_subscription_ = record_.WasSet.Subscribe([this] { RecordWasSet(); });
}

void XP_ProgressBar::PropertySet(const char* name) {
  if (!reading_) PropertyChanged.Emit(name);
}

void XP_ProgressBar::Position::Set(int value) {
  bar_.StoreValue(value);
}

// The bar's own report brings what it reads already.
void XP_ProgressBar::RecordWasSet() {
  if (!is_recording_ || record_ != ReadValue()) StoreValue(record_);
}

void XP_ProgressBar::StoreValue(int value) {
  PassedOver pass;
  pass.Step([&] { percent_ = PercentOf(value, Min, Max); });
  PropertySet("Value");
  DrawProgressBar();
}

int XP_ProgressBar::ReadValue() const {
  // A reading beyond 32 bits needs a negative percent or bounds that no bar has;
  // it stops at the end of the range instead of failing in a redraw.
  constexpr double kLowest = std::numeric_limits<std::int32_t>::min();
  constexpr double kHighest = std::numeric_limits<std::int32_t>::max();
  const double reading = percent_ / 100.0 * Max + std::max<std::int32_t>(Min, 0);
  return RoundToInt32(std::clamp(reading, kLowest, kHighest));
}

void XP_ProgressBar::DrawProgressBar() {
  percent_ = std::min<std::int32_t>(percent_, 100);
  RecordReading();
  LookChanged.Emit();
}

// Keeps the record at what Value reads.
void XP_ProgressBar::RecordReading() {
  const Quietly quietly(is_recording_);
  SetIfOther(record_, ReadValue());
}

void XP_ProgressBar::Paint(Canvas& canvas, TextPainter& text) {
  ProgressLook look;
  look.percent = percent_;
  look.mode = Scrolling;
  look.color = Color;
  look.brush_style = BrushStyle;
  look.upright = Orientation != 0;
  look.show_text = ShowText;
  look.font = Font;
  look.image = &Image.Get();
  DrawProgress(look, canvas, text);
}

AccessibleState XP_ProgressBar::StateForReaders() const {
  return {.range = AccessibleRange{.value = record_, .min = Min, .max = Max}};
}

void XP_ProgressBar::ReadProperties(const PropertyBag& bag) {
  const Quietly quietly(reading_);
  BrushStyle = bag.ReadInt16("BrushStyle", 4);
  Color = bag.ReadColor("Color", SystemColorNumber(kColorSelection));
  Font = bag.ReadFont("Font", {});
  Image = bag.ReadPicture("Image");
  Min = bag.ReadInt32("Min", 0);
  Max = bag.ReadInt32("Max", 100);
  Orientation = bag.ReadInt32("Orientation", 0);
  Scrolling = bag.ReadInt32("Scrolling", 0);
  ShowText = bag.ReadFlag("ShowText", false);
  Value = bag.ReadInt32("Value", 0);
}

void XP_ProgressBar::WriteProperties(PropertyBag& bag) const {
  bag.Write("BrushStyle", BrushStyle.Get());
  bag.Write("Color", Color.Get());
  bag.Write("Font", Font.Get());
  bag.Write("Image", Image.Get());
  bag.Write("Min", Min.Get());
  bag.Write("Max", Max.Get());
  bag.Write("Orientation", Orientation.Get());
  bag.Write("Scrolling", Scrolling.Get());
  bag.Write("ShowText", ShowText.Get());
  bag.Write("Value", Value.Get());
}

}  // namespace tarnvale
