// Names made of texts.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tarnvale {

/// A value as 16 hexadecimal digits.
std::string Hexadecimal(std::uint64_t value);

/// Whether a text is one that Hexadecimal gives.
bool IsHexadecimal(std::string_view text);

/// 16 hexadecimal digits that stand for a text: the same in every process and
/// release, which std::hash is not.
std::string StableHash(std::string_view text);

}  // namespace tarnvale
