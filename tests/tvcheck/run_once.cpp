// A run of the program's own engine, without its window.
//   run_once run SETTINGS MODE    one backup; MODE: brenlow, fennick, tolvern
//   run_once pack FOLDER ARCHIVE  as automatic compression does
//   run_once leave FOLDER         leaves what a copy leaves that was killed

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "base/failure.h"
#include "codec/archive.h"
#include "core/engine.h"
#include "native/console.h"
#include "native/native_file.h"
#include "ui/headless_machine.h"
#ifdef _WIN32
#include "hosts/windows/handle.h"
#else
#include "hosts/linux/replacement.h"
#endif

namespace tarnvale {
namespace {

// The program finds its settings by a folder, this one is given the file.
void Run(const std::string& settings, const std::string& mode) {
  NativeHost host;
  HeadlessMachine machine(host.Parts());
  Engine engine(machine.Parts());
  Path path = PathOfNative(host, settings);
  path.resize(path.rfind('\\'));
  BackupSettings& chosen = engine.settings;
  const auto read = [&](const char* section, const char* key) {
    return machine.Parts().profiles.Read(section, key, "", 255, path + "\\Tarnvale.ini");
  };
  for (int item = 0; !read("Entries", std::to_string(item).c_str()).empty(); ++item) {
    chosen.Entries.Append(read("Entries", std::to_string(item).c_str()));
  }
  if (mode == "brenlow") chosen.ChooseMode(chosen.BackupMode.Complete);
  if (mode == "fennick") chosen.ChooseMode(chosen.BackupMode.Incremental);
  if (mode == "tolvern") chosen.ChooseMode(chosen.BackupMode.Sync);
  chosen.DataFolder = path;
  engine.run.RunDestination = read("Destiny", "Dir");
  engine.run.EngineFree = "1";
  engine.backup.RunBackup();
}

void Pack(const std::string& folder, const std::string& archive) {
  NativeHost host;
  HeadlessMachine machine(host.Parts());
  usercontrol11(machine.Parts())
      .SaveFilesToArchiv(PathOfNative(host, folder), PathOfNative(host, archive), true);
}

[[noreturn]] void Leave(const std::string& folder) {
  NativeHost host;
  TemporarySlot slot(host.temporaries);
#ifdef _WIN32
  const auto native = host.drives.ToNative(PathOfNative(host, folder));
  const Handle left(::CreateFileW(slot.Begin(*native).c_str(), GENERIC_WRITE, 0, nullptr,
                                  CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
#else
  Replacement left(slot, folder);
  left.Create(0600);
#endif
  std::_Exit(0);
}

}  // namespace
}  // namespace tarnvale

int main(int argc, char** argv) {
  using namespace tarnvale;
  const std::vector<std::string> words = Arguments(argc, argv);
  try {
    if (words.size() == 2 && words[0] == "leave") Leave(words[1]);
    if (words.size() != 3) return 2;
    words[0] == "pack" ? Pack(words[1], words[2]) : Run(words[1], words[2]);
    return 0;
  } catch (const ProgramError& error) {
    std::fprintf(stderr, "run_once: %s\n", error.Description().c_str());
    return 1;
  }
}
