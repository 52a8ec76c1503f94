#include "platform/standard_number.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <iterator>

namespace tarnvale {
namespace {

constexpr int kSignificantDigits = 15;

// Adds one to a number in decimal digits.
void Increment(std::string& digits) {
  for (auto at = digits.rbegin(); at != digits.rend(); ++at) {
    if (*at != '9') {
      ++*at;
      return;
    }
    *at = '0';
  }
  digits.insert(digits.begin(), '1');
}

// `value`, at least 0, in hundredths, without leading zeros beyond three digits. Not by
// `std::to_chars`, which would bring 174 KB of tables into each program for Windows.
std::string Hundredths(double value) {
  // "d.dddddddddddddde+xx", with the decimal mark of the process's locale.
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%.*e", kSignificantDigits - 1, value);
  const char* const begin = text.data();
  const char* const e = std::find(begin, begin + text.size(), 'e');
  std::string digits;
  std::copy_if(begin, e, std::back_inserter(digits), [](char c) { return c >= '0' && c <= '9'; });
  const int exponent = std::atoi(e + 1);
  // The digits in front of the second decimal's end.
  const int kept = exponent + 3;
  if (kept < 0) return "000";
  const auto count = static_cast<std::size_t>(kept);
  if (digits.size() <= count) {
    digits.append(count - digits.size(), '0');
  } else {
    const bool up = digits[count] >= '5';
    digits.resize(count);
    if (up) Increment(digits);
  }
  if (digits.size() < 3) digits.insert(0, 3 - digits.size(), '0');
  return digits;
}

std::string Grouped(std::string digits, const NumberMarks& marks) {
  if (marks.thousands.empty() || marks.grouping.empty()) return digits;
  std::size_t group = 0;
  std::size_t at = digits.size();
  while (true) {
    const int size = marks.grouping[std::min(group, marks.grouping.size() - 1)];
    if (size <= 0 || size > 100 || at <= static_cast<std::size_t>(size)) return digits;
    at -= static_cast<std::size_t>(size);
    digits.insert(at, marks.thousands);
    ++group;
  }
}

}  // namespace

std::string StandardNumberText(double value, const NumberMarks& marks) {
  const std::string digits = Hundredths(std::fabs(value));
  const bool is_zero = digits.find_first_not_of('0') == std::string::npos;
  const std::size_t whole = digits.size() - 2;
  return (value < 0 && !is_zero ? "-" : "") + Grouped(digits.substr(0, whole), marks) +
         marks.decimal + digits.substr(whole);
}

}  // namespace tarnvale
