// The program's progress bar.
#pragma once

#include <cstdint>
#include <string>

#include "base/property.h"
#include "base/signal.h"
#include "kit/picture.h"
#include "kit/property_bag.h"
#include "kit/system_colors.h"
#include "ui/owner_drawn.h"

namespace tarnvale {

/// An owner-drawn progress bar with ten drawing modes.
///
/// It holds its position as a percent. `Value` is seen through that: setting v
/// stores v * 100 / Max + Min, rounded; reading gives percent / 100 * Max, plus
/// Min when that is above 0. A percent above 100 is cut to 100 by the redraw that
/// follows, so a value above Max reads as Max. Required, though it is only right
/// for Min = 0.
class XP_ProgressBar : public OwnerDrawn {
 public:
  XP_ProgressBar();
  /// A bar whose `Value` is a record of the program: what is written there moves
  /// the bar, and the record then holds what reading `Value` gives. It must
  /// outlive the bar.
  explicit XP_ProgressBar(Property<int>& value);

  Property<std::int16_t> BrushStyle{4};
  Property<tarnvale::Color> Color{SystemColorNumber(kColorSelection)};
  Property<tarnvale::Font> Font;
  Property<Picture> Image;
  Property<std::int32_t> Min{0};
  Property<std::int32_t> Max{100};
  /// 0 horizontal; otherwise the bar of modes 0 to 2 runs from the bottom up.
  Property<std::int32_t> Orientation{0};
  /// The drawing mode, 0 to 9.
  Property<std::int32_t> Scrolling{0};
  Property<bool> ShowText{false};

  /// The position: reads and sets like a `Property<int>`.
  class Position {
   public:
    Position(XP_ProgressBar& bar, Property<int>& record) : bar_(bar), record_(record) {}
    Position(const Position&) = delete;
    Position& operator=(const Position&) = delete;

    int Get() const { return record_.Get(); }
    operator int() const { return record_.Get(); }  // NOLINT(google-explicit-constructor)
    Position& operator=(int value) {
      Set(value);
      return *this;
    }
    void Set(int value);
    Signal<>& Changed() { return record_.Changed; }

   private:
    XP_ProgressBar& bar_;
    Property<int>& record_;
  };

  Position Value;

  /// What the bar holds, at most 100 once it was drawn.
  int Percent() const { return percent_; }

  /// The native window's and drawing surface's numbers, as the host lent them; 0
  /// without one.
  std::uintptr_t hWnd() const { return native_window_; }
  std::uintptr_t hdc() const { return native_surface_; }
  void OnLent(const LentByHost& lent) override {
    native_window_ = lent.native_window;
    native_surface_ = lent.native_surface;
  }

  /// Cuts the percent to 100 and requests a painting.
  void DrawProgressBar();

  void ReadProperties(const PropertyBag& bag);
  void WriteProperties(PropertyBag& bag) const;
  /// Emitted with the name of each property that was set.
  Signal<const std::string&> PropertyChanged;

  // What the host calls.
  /// The canvas is the picture that is made off screen and copied as a whole.
  void Paint(Canvas& canvas, TextPainter& text) override;
  Kind AccessibleKind() const override { return Kind::kProgressBar; }
  AccessibleState StateForReaders() const override;
  void OnResize(Size) override { DrawProgressBar(); }

 private:
  void FollowProperties();
  void PropertySet(const char* name);
  void StoreValue(int value);
  int ReadValue() const;
  void RecordReading();
  void RecordWasSet();

  Property<int> own_value_{0};
  Property<int>& record_;
  Subscription record_subscription_;
  std::int32_t percent_ = 0;
  bool reading_ = false;
  bool is_recording_ = false;
  std::uintptr_t native_window_ = 0;
  std::uintptr_t native_surface_ = 0;
};

}  // namespace tarnvale
