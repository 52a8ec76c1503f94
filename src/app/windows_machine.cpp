#include "app/windows_machine.h"

#include <cstdlib>
#include <string>
#include <utility>

#include "kit/system_colors.h"

namespace tarnvale {

WindowsMachine::WindowsMachine()
    : desktop_(system_->files, drives_),
      ftp_(std::in_place, desktop_.Loop(), system_->transfer_files),
      machine_{system_->Parts(),
               {desktop_.Loop(), desktop_.Boxes(), desktop_.Surroundings(), desktop_.Windows(),
                desktop_.Dialogs(), desktop_.Tray(), desktop_.Network(), *ftp_}} {
  auto& contrast = desktop_.HighContrast();
  contrast.Changed.Listen([&contrast] { UseSystemColors(contrast); });
  UseSystemColors(contrast);
  desktop_.SessionEnds().Listen([this] { EndProcess(0); });
  desktop_.Loop().Lingering.Listen([this](int status) { EndProcess(status); });
}

void WindowsMachine::EndProcess(int status) {
  ftp_.reset();
  system_.reset();
  std::_Exit(status);
}

}  // namespace tarnvale
