// The program: one host, one engine, one main window.

#include "core/engine.h"
#include "platform/linux/linux_host.h"
#include "platform/linux/paths.h"
#include "platform/qt/qt_host.h"
#include "shell/form1.h"

namespace tarnvale {
namespace {

// An error that left its handler ends that handler only; the person sees it.
void ShowFaults(EventLoop& loop, MessageBoxes& boxes) {
  loop.Fault.Listen([&boxes](const ProgramError& error) {
    boxes.Show({.text = std::to_string(error.Number()) + "\n" + error.Description(),
                .icon = BoxIcon::kStop});
  });
}

int RunProgram(int argc, char** argv) {
  LinuxHost system;
  const DrivePaths drive("/");
  const PathTranslation paths{
      .to_program = [&](const std::string& native) { return drive.FromNative(native); },
      .to_native = [&](const Path& path) { return drive.ToNative(path).value_or(std::string()); }};
  QtHost desktop(argc, argv, system.files, paths);
  Machine machine{system.files,    system.open_files,      system.profiles,   system.processes,
                  system.clock,    system.random,          system.formats,    desktop.Loop(),
                  desktop.Boxes(), desktop.Surroundings(), desktop.Windows(), desktop.Dialogs(),
                  desktop.Tray()};
  ShowFaults(desktop.Loop(), desktop.Boxes());

  Engine engine(machine);
  Form1 form(engine);
  form.Closed.Listen([&] { desktop.Loop().Quit(0); });
  desktop.Windows().Adopt(form);

  form.Load();
  if (form.IsDying()) return 0;
  return desktop.Loop().Run();
}

}  // namespace
}  // namespace tarnvale

int main(int argc, char** argv) {
  return tarnvale::RunProgram(argc, argv);
}
