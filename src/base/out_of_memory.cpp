#include "base/out_of_memory.h"

namespace tarnvale {

void RaiseOutOfMemory() {
  std::set_new_handler([] { throw OutOfMemory(); });
}

}  // namespace tarnvale
