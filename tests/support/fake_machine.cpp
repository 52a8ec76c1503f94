#include "tests/support/fake_machine.h"

#include <gtest/gtest.h>

namespace tarnvale::testing {

FakeMachine::FakeMachine() {
  loop.Fault.Listen([this](const ProgramError& error) {
    if (!expected_faults_.empty() && expected_faults_.front() == error.Number()) {
      expected_faults_.pop_front();
      return;
    }
    ADD_FAILURE() << "a handler failed with " << error.Number() << ": " << error.Description();
  });
}

FakeMachine::~FakeMachine() {
  for (const int number : expected_faults_) {
    ADD_FAILURE() << "no handler failed with " << number << ", as was expected";
  }
}

}  // namespace tarnvale::testing
