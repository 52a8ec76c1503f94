#include "app/linux_machine.h"

#include <cstdlib>
#include <string>

namespace tarnvale {

LinuxMachine::LinuxMachine(int& argc, char** argv)
    : desktop_(argc, argv, system_->files,
               {.to_program = [this](const std::string& native) { return system_->PathOf(native); },
                .to_native = [this](const Path& path) { return system_->NativeOf(path); }}),
      ftp_(std::in_place, desktop_.Loop(), system_->transfer_files),
      machine_{system_->Parts(),
               {desktop_.Loop(), desktop_.Boxes(), desktop_.Surroundings(), desktop_.Windows(),
                desktop_.Dialogs(), desktop_.Tray(), desktop_.Network(), *ftp_}} {
  desktop_.Loop().Lingering.Listen([this](int status) { EndProcess(status); });
}

void LinuxMachine::EndProcess(int status) {
  ftp_.reset();
  system_.reset();
  std::_Exit(status);
}

}  // namespace tarnvale
