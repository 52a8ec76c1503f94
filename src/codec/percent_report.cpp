#include "codec/percent_report.h"

#include "base/numbers.h"

namespace tarnvale {

void PercentReport::Report(double percent) {
  const auto rounded = static_cast<std::int16_t>(RoundHalfEven(percent));
  if (rounded == last_) return;
  last_ = rounded;
  if (handler_) handler_(rounded);
}

std::size_t PhaseReports::NextDue(std::size_t from, std::size_t end) const {
  // The percent never falls from one index to the next, so the first that
  // differs can be searched by halves.
  const auto differs = [&](std::size_t multiple) {
    return RoundHalfEven(phase_.PercentAt(multiple * phase_.step)) != report_.Last();
  };
  std::size_t low = (from + phase_.step - 1) / phase_.step;
  std::size_t high = (end + phase_.step - 1) / phase_.step;
  if (low >= high) return end;
  while (low < high) {
    const std::size_t middle = low + (high - low) / 2;
    if (differs(middle)) {
      high = middle;
    } else {
      low = middle + 1;
    }
  }
  const std::size_t due = low * phase_.step;
  return due < end ? due : end;
}

void PhaseReports::ReportAll(std::size_t from, std::size_t end) {
  for (std::size_t due = NextDue(from, end); due < end; due = NextDue(due + 1, end)) ReportAt(due);
}

}  // namespace tarnvale
