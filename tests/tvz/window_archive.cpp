// Packs or unpacks with the program's own component, by paths of the program.
//   window_archive pack FOLDER ARCHIVE
//   window_archive unpack ARCHIVE FOLDER

#include <cstdio>
#include <string>

#include "base/failure.h"
#include "codec/archive.h"
#include "hosts/linux/linux_host.h"
#include "ui/headless_machine.h"

namespace tarnvale {
namespace {

int Run(const std::string& what, const std::string& from, const std::string& to) {
  const DrivePaths drive("/");
  LinuxHost host;
  HeadlessMachine machine(host.Parts());
  usercontrol11 component(machine.Parts());
  if (what == "pack") {
    component.SaveFilesToArchiv(drive.FromNative(from), drive.FromNative(to), true);
  } else {
    component.ExtractFilesFromArchiv(drive.FromNative(from), drive.FromNative(to), true);
  }
  return 0;
}

}  // namespace
}  // namespace tarnvale

int main(int argc, char** argv) {
  if (argc != 4) return 2;
  try {
    return tarnvale::Run(argv[1], argv[2], argv[3]);
  } catch (const tarnvale::ProgramError& error) {
    std::fprintf(stderr, "window_archive: %s\n", error.Description().c_str());
    return 1;
  }
}
