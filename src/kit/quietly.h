// Properties that are set together.
#pragma once

namespace tarnvale {

/// Holds a flag for a scope in which settings aren't reported one by one, also when
/// it is left by an error: a stored value may be of no use.
class Quietly {
 public:
  explicit Quietly(bool& flag) : flag_(flag), before_(flag) { flag_ = true; }
  ~Quietly() { flag_ = before_; }
  Quietly(const Quietly&) = delete;
  Quietly& operator=(const Quietly&) = delete;

 private:
  bool& flag_;
  bool before_;
};

}  // namespace tarnvale
