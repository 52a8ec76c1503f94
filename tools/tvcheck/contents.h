// Comparing the bytes of files.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "native/native_entry.h"

namespace tarnvale {

/// What reading two files gave.
struct Equality {
  bool equal = false;
  std::string failure = {};  ///< what the system says when one can't be read
};

class Contents {
 public:
  /// `on_bytes` is called with the bytes that were compared since.
  explicit Contents(std::function<void(std::int64_t)> on_bytes);

  /// Two entries that aren't followed: links are equal that lead to the same place.
  Equality Compare(const NativeEntry& source, const NativeEntry& copy);
  /// A file, which may be a link of the user's own, with bytes in memory.
  Equality Compare(const std::string& source, std::span<const std::uint8_t> copy);
  /// Such a file with another one, which isn't followed.
  Equality Compare(const std::string& source, const std::string& copy);

 private:
  bool AreEqual(const FileReader& source, const FileReader& copy);

  std::function<void(std::int64_t)> on_bytes_;
  std::vector<char> first_;
  std::vector<char> second_;
};

}  // namespace tarnvale
