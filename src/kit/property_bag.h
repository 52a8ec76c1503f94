// Given, unused: keyed values, in which a control's properties are kept with its window.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <variant>

#include "base/failure.h"
#include "base/numbers.h"
#include "kit/picture.h"
#include "ui/raster.h"

namespace tarnvale {

class PropertyBag {
 public:
  using Value = std::variant<bool, std::int64_t, std::string, Font, Picture>;

  bool Holds(const std::string& key) const { return values_.count(key) != 0; }

  void Write(const std::string& key, bool value) { values_[key] = value; }
  void Write(const std::string& key, std::int64_t value) { values_[key] = value; }
  void Write(const std::string& key, int value) { values_[key] = std::int64_t{value}; }
  void Write(const std::string& key, std::int16_t value) { values_[key] = std::int64_t{value}; }
  void Write(const std::string& key, Color value) { values_[key] = std::int64_t{value}; }
  void Write(const std::string& key, const char* value) { values_[key] = std::string(value); }
  void Write(const std::string& key, const std::string& value) { values_[key] = value; }
  void Write(const std::string& key, const Font& value) { values_[key] = value; }
  void Write(const std::string& key, const Picture& value) { values_[key] = value; }

  // The value of a key; the default when it isn't there. Each raises 13 when
  // the key holds another kind of value, and the whole numbers raise 6 when it
  // doesn't fit. Flags and whole numbers pass for each other: true is -1.
  bool ReadFlag(const std::string& key, bool standard) const;
  std::int32_t ReadInt32(const std::string& key, std::int32_t standard) const;
  std::int16_t ReadInt16(const std::string& key, std::int16_t standard) const;
  Color ReadColor(const std::string& key, Color standard) const;
  std::string ReadText(const std::string& key, const std::string& standard) const;
  Font ReadFont(const std::string& key, const Font& standard) const;
  Picture ReadPicture(const std::string& key) const;

 private:
  const Value* Find(const std::string& key) const;
  std::int64_t ReadNumber(const std::string& key, std::int64_t standard) const;

  std::map<std::string, Value> values_;
};

}  // namespace tarnvale
