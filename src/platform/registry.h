// The system's registry, as far as the program reads it.
#pragma once

#include <string>

namespace tarnvale {

class Registry {
 public:
  virtual ~Registry() = default;

  /// The content of a value as text. `path` names the value behind the last
  /// backslash: "HKEY_CURRENT_USER\Identities\Default User ID"; letters count
  /// without regard to case. Raises 53 when there is no such value, and always
  /// on a system that has no registry.
  virtual std::string Read(const std::string& path) = 0;
};

}  // namespace tarnvale
