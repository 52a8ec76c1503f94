#include "shell/program_icon.h"

#include <string>

#include "base/failure.h"

namespace tarnvale {

void SetWindowIcon(Window& window, std::string_view resource) {
  if (resource != "AAA") throw ProgramError(kResourceNotFound);
  window.Icon = std::string(resource);
}

}  // namespace tarnvale
