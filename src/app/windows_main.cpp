// The program on Windows: its host, and everything composed on it.
#include <string>

#include "app/program.h"
#include "app/windows_machine.h"
#include "base/out_of_memory.h"
#include "hosts/windows/handle.h"
#include "hosts/windows/paths.h"
#include "hosts/windows/system_headers.h"
#include "hosts/windows/windows_processes.h"

namespace {

// A folder on a drive that has another letter today finds its data again. The program starts
// this companion too, but doesn't wait for it.
void NameDataFolder() {
  constexpr DWORD kPatienceMs = 10000;
  using tarnvale::Handle;
  const std::wstring folder = tarnvale::NativeFolderOf(tarnvale::OwnProgramFile());
  std::wstring command = L'"' + tarnvale::Joined(folder, L"U3-Data.exe") + L'"';
  STARTUPINFOW start{};
  start.cb = sizeof start;
  PROCESS_INFORMATION started{};
  if (::CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                       &start, &started) == 0) {
    return;
  }
  const Handle process(started.hProcess);
  const Handle thread(started.hThread);
  ::WaitForSingleObject(process.Get(), kPatienceMs);
}

}  // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
  tarnvale::RaiseOutOfMemory();
  NameDataFolder();
  tarnvale::WindowsMachine machine;
  tarnvale::ShowFaults(machine.Parts());
  const int status = tarnvale::Program(machine.Parts()).Run();
  machine.EndProcess(status);
}
