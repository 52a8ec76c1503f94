// Packs or unpacks with the program's own component, by paths of the program.
//   window_archive pack FOLDER ARCHIVE
//   window_archive unpack ARCHIVE FOLDER

#include <cstdio>
#include <string>
#include <vector>

#include "base/failure.h"
#include "codec/archive.h"
#include "native/console.h"
#include "native/native_file.h"
#include "ui/headless_machine.h"

namespace tarnvale {
namespace {

int Run(const std::string& what, const std::string& from, const std::string& to) {
  NativeHost host;
  HeadlessMachine machine(host.Parts());
  usercontrol11 component(machine.Parts());
  if (what == "pack") {
    component.SaveFilesToArchiv(PathOfNative(host, from), PathOfNative(host, to), true);
  } else {
    component.ExtractFilesFromArchiv(PathOfNative(host, from), PathOfNative(host, to), true);
  }
  return 0;
}

}  // namespace
}  // namespace tarnvale

int main(int argc, char** argv) {
  const std::vector<std::string> arguments = tarnvale::Arguments(argc, argv);
  if (arguments.size() != 3) return 2;
  try {
    return tarnvale::Run(arguments[0], arguments[1], arguments[2]);
  } catch (const tarnvale::ProgramError& error) {
    std::fprintf(stderr, "window_archive: %s\n", error.Description().c_str());
    return 1;
  }
}
