// The program on Windows: its host, and everything composed on it.
#include "app/program.h"
#include "app/windows_machine.h"
#include "base/out_of_memory.h"
#include "hosts/windows/system_headers.h"
#include "platform/workers.h"

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
  tarnvale::RaiseOutOfMemory();
  tarnvale::WindowsMachine machine;
  tarnvale::ShowFaults(machine.Parts());
  const int status = tarnvale::Program(machine.Parts()).Run();
  machine.EndProcess(status);
}
