// Numbers with thousands separators and two decimals, for hosts' formats.
#pragma once

#include <string>
#include <string_view>

namespace tarnvale {

struct NumberMarks {
  std::string decimal = ".";
  /// Empty: digits aren't grouped.
  std::string thousands = ",";
  /// Sizes of the groups from the decimal mark on, each a char's value; the last
  /// one repeats. Zero or less ends the grouping.
  std::string grouping = "\3";
};

/// Two decimals, halves away from zero. A double counts as the shortest number
/// of 15 digits that it stands for, so that 1.005 gives "1.01". What rounds to
/// zero has no sign. `value` must be finite.
std::string StandardNumberText(double value, const NumberMarks& marks);

}  // namespace tarnvale
