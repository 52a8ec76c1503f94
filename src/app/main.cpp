// The program: one host, and everything composed on it.

#include "app/program.h"
#include "platform/linux/linux_host.h"
#include "platform/linux/linux_sockets.h"
#include "platform/linux/paths.h"
#include "platform/no_ftp_transport.h"
#include "platform/qt/qt_host.h"

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
  NoFtpTransport ftp;
  LinuxSockets sockets(desktop.Loop(), desktop.Sockets());
  Machine machine{system.files,
                  system.open_files,
                  system.profiles,
                  system.processes,
                  system.clock,
                  system.random,
                  system.formats,
                  desktop.Loop(),
                  desktop.Boxes(),
                  desktop.Surroundings(),
                  desktop.Windows(),
                  desktop.Dialogs(),
                  desktop.Tray(),
                  system.registry,
                  system.applications,
                  sockets,
                  ftp};
  ShowFaults(desktop.Loop(), desktop.Boxes());

  return Program(machine).Run();
}

}  // namespace
}  // namespace tarnvale

int main(int argc, char** argv) {
  return tarnvale::RunProgram(argc, argv);
}
