// Properties: values that report their changes.
#pragma once

#include <memory>
#include <utility>

#include "base/signal.h"

namespace tarnvale {

/// A value with change notification.
template <class T>
class Property {
 public:
  Property() = default;
  // Implicit, so that a member reads `Property<bool> SaveLog{true}`.
  Property(T value) : value_(std::move(value)) {}  // NOLINT(google-explicit-constructor)
  Property(const Property&) = delete;
  /// Takes over the value and keeps the listeners.
  Property& operator=(const Property& other) {
    if (this != &other) Set(other.value_);
    return *this;
  }

  const T& Get() const { return value_; }
  operator const T&() const { return value_; }  // NOLINT(google-explicit-constructor)

  Property& operator=(T value) {
    Set(std::move(value));
    return *this;
  }

  void Set(T value) {
    if (value != value_) {
      value_ = std::move(value);
      Changed.Emit();
    }
    WasSet.Emit();
  }

  /// Changes the value in place without notifying: for a caller that
  /// reports the change by other means.
  template <class Change>
  void ModifyQuietly(Change&& change) {
    std::forward<Change>(change)(value_);
  }

  /// Emitted after each change. A handler reads the value by Get(): it may have
  /// moved on since.
  Signal<> Changed;
  /// Emitted after each setting, also to the value that was there already; after
  /// Changed.
  Signal<> WasSet;

 private:
  T value_{};
};

/// A control's view of a property: its own, or one that belongs to a record of
/// the program and must outlive the control.
template <class T>
class Bound {
 public:
  Bound() : own_(std::make_unique<Property<T>>()), target_(own_.get()) {}
  // Implicit both, so that a window can declare `TextBox Text5{settings.CompressDir}`.
  Bound(T value)  // NOLINT(google-explicit-constructor)
      : own_(std::make_unique<Property<T>>(std::move(value))), target_(own_.get()) {}
  Bound(Property<T>& target) : target_(&target) {}  // NOLINT(google-explicit-constructor)

  const T& Get() const { return target_->Get(); }
  operator const T&() const { return target_->Get(); }  // NOLINT(google-explicit-constructor)
  Bound& operator=(T value) {
    target_->Set(std::move(value));
    return *this;
  }
  /// Both take over the value; what this is bound to stays.
  Bound& operator=(const Property<T>& other) {
    Set(other.Get());
    return *this;
  }
  Bound& operator=(const Bound& other) {
    if (this != &other) Set(other.Get());
    return *this;
  }
  Bound(const Bound&) = delete;
  void Set(T value) { target_->Set(std::move(value)); }
  Signal<>& Changed() { return target_->Changed; }
  Signal<>& WasSet() { return target_->WasSet; }
  Property<T>& Target() { return *target_; }

 private:
  std::unique_ptr<Property<T>> own_;
  Property<T>* target_;
};

/// Sets a property only if it has another value: for a tick that keeps a drawn
/// control in step with something, as those draw themselves at each setting.
template <class Settable, class T>
void SetIfOther(Settable& property, const T& value) {
  if (property.Get() != value) property = value;
}

}  // namespace tarnvale
