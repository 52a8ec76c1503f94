// A variable of the environment for as long as a test needs it.
#pragma once

#include <stdlib.h>

#include <optional>
#include <string>

namespace tarnvale::testing {

/// Gives a variable a value, or none, for as long as it lives.
class VariableFor {
 public:
  VariableFor(const char* name, const char* value) : name_(name) {
    if (const char* old = ::getenv(name)) old_ = old;
    Set(value);
  }
  ~VariableFor() { Set(old_ ? old_->c_str() : nullptr); }
  VariableFor(const VariableFor&) = delete;
  VariableFor& operator=(const VariableFor&) = delete;

 private:
  void Set(const char* value) {
    if (value != nullptr) {
      ::setenv(name_, value, 1);
    } else {
      ::unsetenv(name_);
    }
  }

  const char* name_;
  std::optional<std::string> old_;
};

}  // namespace tarnvale::testing
