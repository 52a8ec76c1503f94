#include "hosts/windows/threads.h"

#include <memory>
#include <utility>

namespace tarnvale {
namespace {

using Job = std::function<void()>;

// What the thread is given room for; the default is a megabyte.
constexpr SIZE_T kStackBytes = SIZE_T{256} * 1024;

DWORD WINAPI RunJob(void* given) noexcept {
  const std::unique_ptr<Job> job(static_cast<Job*>(given));
  (*job)();
  return 0;
}

}  // namespace

Handle StartThread(Job job) {
  auto given = std::make_unique<Job>(std::move(job));
  Handle thread(::CreateThread(nullptr, kStackBytes, &RunJob, given.get(),
                               STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr));
  if (thread) static_cast<void>(given.release());
  return thread;
}

}  // namespace tarnvale
