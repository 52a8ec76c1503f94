// The program: one host, and everything composed on it.
#include "app/linux_machine.h"
#include "app/program.h"
#include "base/out_of_memory.h"
#include "hosts/linux/linux_workers.h"

int main(int argc, char** argv) {
  tarnvale::RaiseOutOfMemory();
  tarnvale::LinuxMachine machine(argc, argv);
  tarnvale::ShowFaults(machine.Parts());
  tarnvale::LinuxWorkers workers;
  const int status = tarnvale::Program(machine.Parts(), workers).Run();
  machine.EndProcess(status);
}
