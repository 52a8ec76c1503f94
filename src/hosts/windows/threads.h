// Threads and locks by the system's own calls: the compilers bring none.
#pragma once

#include <functional>

#include "hosts/windows/handle.h"
#include "hosts/windows/system_headers.h"

namespace tarnvale {

/// For std::lock_guard. The thread that holds it may take it again.
class CriticalSection {
 public:
  CriticalSection() { ::InitializeCriticalSection(&section_); }
  CriticalSection(const CriticalSection&) = delete;
  CriticalSection& operator=(const CriticalSection&) = delete;
  ~CriticalSection() { ::DeleteCriticalSection(&section_); }

  void lock() { ::EnterCriticalSection(&section_); }
  void unlock() { ::LeaveCriticalSection(&section_); }

 private:
  CRITICAL_SECTION section_{};
};

/// Runs `job`, which must not raise, on a thread of its own, and returns the thread; none
/// when the system has no thread to spare.
Handle StartThread(std::function<void()> job);

}  // namespace tarnvale
