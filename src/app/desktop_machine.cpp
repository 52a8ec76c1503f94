#include "app/desktop_machine.h"

#include <string>

namespace tarnvale {

DesktopMachine::DesktopMachine(int& argc, char** argv)
    : desktop_(argc, argv, system_.files,
               {.to_program = [this](const std::string& native) { return system_.PathOf(native); },
                .to_native = [this](const Path& path) { return system_.NativeOf(path); }}),
      sockets_(desktop_.Loop(), desktop_.Sockets()),
      ftp_(desktop_.Loop(), system_.transfer_files),
      machine_{system_.Parts(),
               {desktop_.Loop(), desktop_.Boxes(), desktop_.Surroundings(), desktop_.Windows(),
                desktop_.Dialogs(), desktop_.Tray(), sockets_, ftp_}} {}

}  // namespace tarnvale
