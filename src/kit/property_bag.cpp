#include "kit/property_bag.h"

#include <limits>

namespace tarnvale {
namespace {

template <class T>
T ReadAs(const PropertyBag::Value* value, const T& standard) {
  if (value == nullptr) return standard;
  const T* held = std::get_if<T>(value);
  if (held == nullptr) throw ProgramError(kTypeMismatch);
  return *held;
}

}  // namespace

const PropertyBag::Value* PropertyBag::Find(const std::string& key) const {
  const auto found = values_.find(key);
  return found == values_.end() ? nullptr : &found->second;
}

std::int64_t PropertyBag::ReadNumber(const std::string& key, std::int64_t standard) const {
  const Value* value = Find(key);
  if (value == nullptr) return standard;
  if (const bool* flag = std::get_if<bool>(value)) return *flag ? -1 : 0;
  return ReadAs<std::int64_t>(value, standard);
}

bool PropertyBag::ReadFlag(const std::string& key, bool standard) const {
  return ReadNumber(key, standard ? -1 : 0) != 0;
}

std::int32_t PropertyBag::ReadInt32(const std::string& key, std::int32_t standard) const {
  return ToInt32(ReadNumber(key, standard));
}

std::int16_t PropertyBag::ReadInt16(const std::string& key, std::int16_t standard) const {
  return ToInt16(ReadNumber(key, standard));
}

Color PropertyBag::ReadColor(const std::string& key, Color standard) const {
  const std::int64_t value = ReadNumber(key, standard);
  if (value < 0 || value > std::numeric_limits<Color>::max()) throw ProgramError(kOverflow);
  return static_cast<Color>(value);
}

std::string PropertyBag::ReadText(const std::string& key, const std::string& standard) const {
  return ReadAs<std::string>(Find(key), standard);
}

Font PropertyBag::ReadFont(const std::string& key, const Font& standard) const {
  return ReadAs<Font>(Find(key), standard);
}

Picture PropertyBag::ReadPicture(const std::string& key) const {
  return ReadAs<Picture>(Find(key), {});
}

}  // namespace tarnvale
