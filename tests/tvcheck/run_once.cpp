// A run of the program's own engine, without its window.
//   run_once run SETTINGS MODE    one backup; MODE: brenlow, fennick, tolvern
//   run_once pack FOLDER ARCHIVE  as automatic compression does
//   run_once leave FOLDER         leaves what a copy leaves that was killed

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "base/failure.h"
#include "codec/archive.h"
#include "core/engine.h"
#include "hosts/linux/linux_host.h"
#include "hosts/linux/replacement.h"
#include "ui/headless_machine.h"

namespace tarnvale {
namespace {

namespace fs = std::filesystem;

// The program finds its settings by a folder, this one is given the file.
void Run(const std::string& settings, const std::string& mode) {
  LinuxHost host;
  HeadlessMachine machine(host.Parts());
  Engine engine(machine.Parts());
  const Path path = DrivePaths("/").FromNative(fs::absolute(settings).parent_path().string());
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
  LinuxHost host;
  HeadlessMachine machine(host.Parts());
  usercontrol11(machine.Parts())
      .SaveFilesToArchiv(DrivePaths("/").FromNative(folder), DrivePaths("/").FromNative(archive),
                         true);
}

[[noreturn]] void Leave(const std::string& folder) {
  Temporaries temporaries(DefaultStateFolder());
  TemporarySlot slot(temporaries);
  Replacement left(slot, folder);
  left.Create(0600);
  ::_exit(0);
}

}  // namespace
}  // namespace tarnvale

int main(int argc, char** argv) {
  using namespace tarnvale;
  const std::string what = argc > 2 ? argv[1] : "";
  try {
    if (what == "leave") Leave(argv[2]);
    if (argc != 4) return 2;
    what == "pack" ? Pack(argv[2], argv[3]) : Run(argv[2], argv[3]);
    return 0;
  } catch (const ProgramError& error) {
    std::fprintf(stderr, "run_once: %s\n", error.Description().c_str());
    return 1;
  }
}
