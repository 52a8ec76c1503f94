#include "platform/event_loop.h"

namespace tarnvale {

void EventLoop::Deliver(const std::function<void()>& handler) {
  try {
    handler();
  } catch (const ProgramError& error) {
    Fault.Emit(error);
  }
}

}  // namespace tarnvale
