#include "base/stable_hash.h"

#include <array>
#include <cstdio>

namespace tarnvale {

std::string Hexadecimal(std::uint64_t value) {
  std::array<char, 17> text{};
  std::snprintf(text.data(), text.size(), "%016llx", static_cast<unsigned long long>(value));
  return text.data();
}

bool IsHexadecimal(std::string_view text) {
  return text.size() == 16 && text.find_first_not_of("0123456789abcdef") == std::string_view::npos;
}

// FNV-1a.
std::string StableHash(std::string_view text) {
  std::uint64_t hash = 0xcbf29ce484222325U;
  for (const char c : text) {
    hash ^= static_cast<unsigned char>(c);
    hash *= 0x100000001b3U;
  }
  return Hexadecimal(hash);
}

}  // namespace tarnvale
