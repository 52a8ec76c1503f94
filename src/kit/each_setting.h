// Properties whose setter acts every time.
#pragma once

#include <utility>

#include "base/property.h"
#include "base/signal.h"

namespace tarnvale {

/// A `Bound` that reports each setting by the program, also to the value that it
/// has already.
template <class T>
class EachSetting {
 public:
  explicit EachSetting(T value) : bound_(std::move(value)) {}
  explicit EachSetting(Property<T>& target) : bound_(target) {}
  EachSetting(const EachSetting&) = delete;
  EachSetting& operator=(const EachSetting& other) { return *this = other.Get(); }

  const T& Get() const { return bound_.Get(); }
  operator const T&() const { return Get(); }  // NOLINT(google-explicit-constructor)
  EachSetting& operator=(T value) {
    Set(std::move(value));
    return *this;
  }
  void Set(T value) {
    bound_.Set(std::move(value));
    WasSet.Emit();
  }
  Signal<>& Changed() { return bound_.Changed(); }
  Property<T>& Target() { return bound_.Target(); }

  /// After Changed, and also when there was none.
  Signal<> WasSet;

 private:
  Bound<T> bound_;
};

}  // namespace tarnvale
