// The number of the error that an action raises.
#pragma once

#include "base/failure.h"

namespace tarnvale::testing {

/// 0 when it raised none.
template <class Action>
int RaisedBy(Action&& action) {
  try {
    action();
  } catch (const ProgramError& error) {
    return error.Number();
  }
  return 0;
}

}  // namespace tarnvale::testing
