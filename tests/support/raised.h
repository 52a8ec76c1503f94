// Which error a statement raises.
#pragma once

#include <functional>

#include "base/failure.h"

namespace tarnvale::testing {

/// The number of the ProgramError that `statement` raises; 0 when it raises
/// none.
inline int RaisedBy(const std::function<void()>& statement) {
  try {
    statement();
  } catch (const ProgramError& error) {
    return error.Number();
  }
  return 0;
}

}  // namespace tarnvale::testing
