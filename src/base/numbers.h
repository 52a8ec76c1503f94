// Checked arithmetic and number conversions. What does not fit raises error 6,
// what is no number raises error 13; halves round to the even neighbour.
#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include "base/failure.h"

namespace tarnvale {

/// Narrows a whole number. Raises 6 when it doesn't fit into `To`.
template <class To>
To Narrow(std::int64_t value) {
  static_assert(sizeof(To) < sizeof(std::int64_t));
  if (value < std::numeric_limits<To>::min() || value > std::numeric_limits<To>::max()) {
    throw ProgramError(kOverflow);
  }
  return static_cast<To>(value);
}

inline std::int16_t ToInt16(std::int64_t value) {
  return Narrow<std::int16_t>(value);
}
inline std::int32_t ToInt32(std::int64_t value) {
  return Narrow<std::int32_t>(value);
}
/// 0 to 255. Raises 6 otherwise.
inline std::uint8_t ToByte(std::int64_t value) {
  return Narrow<std::uint8_t>(value);
}

/// Sum, difference and product of signed 32-bit numbers. Raise 6 when the
/// result doesn't fit.
inline std::int32_t Add32(std::int32_t a, std::int64_t b) {
  // No sum beyond this fits, and up to it the sum fits 64 bits.
  constexpr std::int64_t kLimit = std::int64_t{1} << 33;
  if (b > kLimit || b < -kLimit) throw ProgramError(kOverflow);
  return ToInt32(std::int64_t{a} + b);
}
inline std::int32_t Subtract32(std::int32_t a, std::int32_t b) {
  return ToInt32(std::int64_t{a} - b);
}
inline std::int32_t Multiply32(std::int32_t a, std::int32_t b) {
  return ToInt32(std::int64_t{a} * b);
}
inline std::int16_t Add16(std::int16_t a, std::int16_t b) {
  return ToInt16(std::int64_t{a} + b);
}

/// The nearest whole number, exact halves to the even one. `value` must be
/// finite; raises 6 when it doesn't fit 64 bits.
std::int64_t RoundHalfEven(double value);

/// RoundHalfEven narrowed to signed 32 bits. Raises 6.
std::int32_t RoundToInt32(double value);

/// The number that a whole text denotes: blanks around it, a sign, digits, one
/// decimal point and an exponent are allowed. Raises 13 for an empty text or
/// anything else, and 6 for a number beyond the range of a double; one too small
/// for a double is 0.
double ToNumber(std::string_view text);

/// The number at the start of a text, as far as it is one; 0 when there is
/// none. Blanks are skipped. Raises 6 for a number beyond a double's range.
double LeadingNumber(std::string_view text);

/// Text to number, rounded half to even, narrowed to 0..255. Raises 13 or 6.
std::uint8_t TextToByte(std::string_view text);

/// The decimal digits of a whole number.
std::string ToText(std::int64_t value);

}  // namespace tarnvale
