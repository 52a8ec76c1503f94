// The program: one host, and everything composed on it.

#include <string>

#include "app/desktop_machine.h"
#include "app/program.h"

namespace tarnvale {
namespace {

// An error that left its handler ends that handler only; the person sees it.
void ShowFaults(const Machine& machine) {
  machine.loop.Fault.Listen([&boxes = machine.boxes](const ProgramError& error) {
    boxes.Show({.text = std::to_string(error.Number()) + "\n" + error.Description(),
                .icon = BoxIcon::kStop});
  });
}

}  // namespace
}  // namespace tarnvale

int main(int argc, char** argv) {
  tarnvale::DesktopMachine machine(argc, argv);
  tarnvale::ShowFaults(machine.Parts());
  return tarnvale::Program(machine.Parts()).Run();
}
