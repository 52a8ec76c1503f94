// A second thread of a test, on either system: the compilers for Windows bring none.
#pragma once

#ifdef _WIN32
#include "hosts/windows/threads.h"
#else
#include <thread>
#endif

#include <functional>
#include <mutex>
#include <utility>

namespace tarnvale::testing {

#ifdef _WIN32

using Mutex = CriticalSection;

class Thread {
 public:
  Thread() = default;
  explicit Thread(std::function<void()> job) : thread_(StartThread(std::move(job))) {}
  void join() { ::WaitForSingleObject(thread_.Get(), INFINITE); }

 private:
  Handle thread_;
};

#else

using Mutex = std::mutex;
using Thread = std::thread;

#endif

}  // namespace tarnvale::testing
