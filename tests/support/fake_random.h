// Random numbers by script.
#pragma once

#include <deque>
#include <vector>

#include "platform/random_source.h"

namespace tarnvale::testing {

/// Gives what was scripted, then 0.5 for ever.
class FakeRandom : public RandomSource {
 public:
  void Script(const std::vector<double>& numbers) {
    numbers_.insert(numbers_.end(), numbers.begin(), numbers.end());
  }

  double Next() override {
    if (numbers_.empty()) return 0.5;
    const double next = numbers_.front();
    numbers_.pop_front();
    return next;
  }

 private:
  std::deque<double> numbers_;
};

}  // namespace tarnvale::testing
