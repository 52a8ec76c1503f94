#include "platform/temporary_name.h"

#include <cstddef>

#include "base/stable_hash.h"

namespace tarnvale {
namespace {

constexpr std::string_view kPrefix = ".tarnvale-";
constexpr std::string_view kSuffix = ".part";
constexpr std::size_t kDigits = 16;
constexpr std::size_t kMarkAt = kPrefix.size();
constexpr std::size_t kSlotAt = kMarkAt + kDigits + 1;
constexpr std::size_t kNameLength = kSlotAt + kDigits + kSuffix.size();

}  // namespace

std::string TemporaryName(std::string_view mark, std::string_view slot) {
  return std::string(kPrefix).append(mark).append("-").append(slot).append(kSuffix);
}

bool IsTemporaryName(std::string_view name) {
  return name.size() == kNameLength && name.substr(0, kPrefix.size()) == kPrefix &&
         name.substr(kNameLength - kSuffix.size()) == kSuffix &&
         IsHexadecimal(name.substr(kMarkAt, kDigits)) && name[kSlotAt - 1] == '-' &&
         IsHexadecimal(name.substr(kSlotAt, kDigits));
}

std::string_view MarkOfTemporary(std::string_view name) {
  return IsTemporaryName(name) ? name.substr(kMarkAt, kDigits) : std::string_view();
}

std::string_view SlotOfTemporary(std::string_view name) {
  return IsTemporaryName(name) ? name.substr(kSlotAt, kDigits) : std::string_view();
}

}  // namespace tarnvale
