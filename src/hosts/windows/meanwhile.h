#pragma once

#include <utility>

namespace tarnvale {

/// A value that is back when this goes.
template <class Value>
class Meanwhile {
 public:
  Meanwhile(Value& value, Value now) : value_(value), before_(std::exchange(value, now)) {}
  Meanwhile(const Meanwhile&) = delete;
  Meanwhile& operator=(const Meanwhile&) = delete;
  ~Meanwhile() { value_ = before_; }

 private:
  Value& value_;
  Value before_;
};

}  // namespace tarnvale
