// What a tree holds, before it is packed.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tarnvale {

struct LeftOut {
  std::string path;  ///< native
  std::string reason;
};

struct TreeSums {
  std::int64_t files = 0;
  /// Of the container that they will make.
  std::int64_t container_bytes = 4;
  /// What no archive can give back, by its name.
  std::vector<LeftOut> left_out;
};

/// Counts what packing takes of a native folder. The packing itself passes over
/// what it can't read; here it raises CommandFailure, which names the culprit.
TreeSums CheckTree(const std::string& folder);

}  // namespace tarnvale
