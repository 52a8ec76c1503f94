// The program: one host, and everything composed on it.
#include "app/desktop_machine.h"
#include "app/program.h"
#include "base/out_of_memory.h"

int main(int argc, char** argv) {
  tarnvale::RaiseOutOfMemory();
  tarnvale::DesktopMachine machine(argc, argv);
  tarnvale::ShowFaults(machine.Parts());
  const int status = tarnvale::Program(machine.Parts()).Run();
  machine.EndProcess(status);
}
