// The whole program composed on the real host, with a desktop that answers by script.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/program.h"
#include "tests/reliability/workbench.h"

namespace tarnvale::testing {
class FakeClock;
class FakeWindows;
class ManualLoop;
}  // namespace tarnvale::testing

namespace tarnvale::reliability {

/// The program, and what a person in front of it does.
class WholeProgram {
 public:
  /// `report` is called with the text of each box, and with the number of each error
  /// that left its handler.
  WholeProgram(const LinuxSurroundings& surroundings,
               const std::function<void(const std::string&)>& report);
  ~WholeProgram();

  Program& Parts();
  /// Does it as the loop does it with what a person does.
  void Do(const std::function<void()>& action);
  /// What the next dialogs are answered with, in order.
  void Choose(const std::vector<Path>& paths);
  /// What moves the program's own time and shows its windows.
  testing::ManualLoop& Loop();
  testing::FakeClock& Clock();
  testing::FakeWindows& Windows();

 private:
  struct Machinery;
  std::unique_ptr<Machinery> machinery_;
};

}  // namespace tarnvale::reliability
