#include "base/numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "base/text.h"

namespace tarnvale {
namespace {

struct Parsed {
  double value = 0;
  std::size_t length = 0;  // 0: no number at the start of the text
};

bool StartsLikeNumber(std::string_view digits) {
  if (digits.empty()) return false;
  if (digits.front() == '.') digits.remove_prefix(1);
  return !digits.empty() && digits.front() >= '0' && digits.front() <= '9';
}

// Whether a number beyond a double's range is a tiny one: its first digit that
// isn't 0 is behind the decimal point.
bool IsTiny(std::string_view number) {
  const auto e = std::min(number.find_first_of("eE"), number.size());
  const std::string_view digits = number.substr(0, e);
  const auto point = std::min(digits.find('.'), digits.size());
  const auto first = digits.find_first_of("123456789");
  // An exponent of more digits than this settles it alone.
  std::int64_t exponent = 0;
  if (e < number.size()) {
    std::string_view power = number.substr(e + 1);
    const bool negative = power.front() == '-';
    if (power.front() == '-' || power.front() == '+') power.remove_prefix(1);
    const auto result = std::from_chars(power.data(), power.data() + power.size(), exponent);
    if (result.ec != std::errc{}) return negative;
    if (negative) exponent = -exponent;
  }
  const auto place = static_cast<std::int64_t>(point) - static_cast<std::int64_t>(first);
  return place + exponent < 0;
}

// `from_chars` takes no leading plus, and takes "inf" and "nan", which are no
// numbers here: both are settled before it is called.
Parsed ParseStart(std::string_view text) {
  std::string_view digits = text;
  const bool negative = !digits.empty() && digits.front() == '-';
  if (!digits.empty() && (digits.front() == '-' || digits.front() == '+')) digits.remove_prefix(1);
  if (!StartsLikeNumber(digits)) return {};
  double value = 0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  const auto length = static_cast<std::size_t>(result.ptr - digits.data());
  if (result.ec == std::errc::result_out_of_range && !IsTiny(digits.substr(0, length))) {
    throw ProgramError(kOverflow);
  }
  if (result.ec == std::errc::invalid_argument) return {};
  return {negative ? -value : value, static_cast<std::size_t>(result.ptr - text.data())};
}

}  // namespace

std::int64_t RoundHalfEven(double value) {
  // 2^63 is exact as a double; everything below it fits.
  constexpr double kLimit = 9223372036854775808.0;
  if (!(value < kLimit && value >= -kLimit)) throw ProgramError(kOverflow);
  double whole = std::floor(value);
  const double fraction = value - whole;
  if (fraction > 0.5 || (fraction == 0.5 && std::fmod(whole, 2.0) != 0.0)) whole += 1.0;
  if (whole >= kLimit) throw ProgramError(kOverflow);
  return static_cast<std::int64_t>(whole);
}

std::int32_t RoundToInt32(double value) {
  return ToInt32(RoundHalfEven(value));
}

double ToNumber(std::string_view text) {
  text = Trimmed(text);
  const Parsed parsed = ParseStart(text);
  if (parsed.length == 0 || parsed.length != text.size()) throw ProgramError(kTypeMismatch);
  return parsed.value;
}

double LeadingNumber(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  return ParseStart(text).value;
}

std::uint8_t TextToByte(std::string_view text) {
  return ToByte(RoundHalfEven(ToNumber(text)));
}

std::string ToText(std::int64_t value) {
  return std::to_string(value);
}

}  // namespace tarnvale
