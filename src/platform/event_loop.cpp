#include "platform/event_loop.h"

#include <new>
#include <optional>

#include "base/out_of_memory.h"

namespace tarnvale {
namespace {

// What a statement raises, memory that a library couldn't get included.
std::optional<ProgramError> ErrorOf(const std::function<void()>& statement) {
  try {
    statement();
    return std::nullopt;
  } catch (const ProgramError& error) {
    return error;
  } catch (const std::bad_alloc&) {
    return OutOfMemory();
  }
}

}  // namespace

void EventLoop::Deliver(const std::function<void()>& handler) {
  const auto error = ErrorOf(handler);
  // Showing it can fail as well where memory is short; the program lives on.
  if (error) ErrorOf([&] { Fault.Emit(*error); });
}

}  // namespace tarnvale
