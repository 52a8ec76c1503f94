#include "hosts/windows/windows_event_loop.h"

#include <algorithm>
#include <mutex>
#include <utility>

#include "hosts/windows/windows_clock.h"

// A message runs one job, and the next one's is posted before it does, so that whatever
// loop turns goes on with them, also from within a job. The system hands out posted messages before
// what the user does and before what is to be painted, and WM_TIMER last of all: due timers are
// looked for behind each message, the user's comes first in each pass, and a pass ends in time even
// if messages keep coming. The alarm (WM_TIMER) only wakes a loop that sleeps.

namespace tarnvale {
namespace {

constexpr UINT kJobMessage = MessageWindow::kFirstMessage;
constexpr UINT_PTR kAlarm = 1;

/// How long a pass goes on taking messages.
constexpr std::chrono::milliseconds kPassLimit{10};

/// Sleeps until there is a message of some kinds, even one that was seen and left.
void Sleep(DWORD limit_ms, DWORD kinds) {
  ::MsgWaitForMultipleObjectsEx(0, nullptr, limit_ms, kinds, MWMO_INPUTAVAILABLE);
}

}  // namespace

WindowsEventLoop::WindowsEventLoop() : PacedLoop([] { return WindowsClock().Uptime(); }) {}

WindowsEventLoop::~WindowsEventLoop() {
  if (IsEnding()) TakeQuitBack();
}

void WindowsEventLoop::Post(std::function<void()> job) {
  const std::lock_guard lock(jobs_lock_);
  jobs_.push_back(std::move(job));
  if (!is_job_announced_) AnnounceJob();
}

// The lock is held. A queue of messages can be full; the next job tries again.
void WindowsEventLoop::AnnounceJob() {
  is_job_announced_ = ::PostMessageW(messages_.Get(), kJobMessage, 0, 0) != 0;
}

std::optional<LRESULT> WindowsEventLoop::OnMessage(UINT message) {
  if (message != kJobMessage && message != WM_TIMER) return std::nullopt;
  if (message == kJobMessage) RunJob();
  RunDue();
  return 0;
}

void WindowsEventLoop::RunJob() {
  std::function<void()> job;
  {
    const std::lock_guard lock(jobs_lock_);
    is_job_announced_ = false;
    if (jobs_.empty()) return;
    job = std::move(jobs_.front());
    jobs_.pop_front();
    if (!jobs_.empty()) AnnounceJob();
  }
  Deliver(job);
}

void WindowsEventLoop::StartAlarm(std::optional<Milliseconds> wait) {
  if (!wait) {
    ::KillTimer(messages_.Get(), kAlarm);
    return;
  }
  // The system takes nothing above, and makes it 10 ms at least. Too early an alarm is
  // followed by another one.
  const auto interval = std::min<Milliseconds::rep>(wait->count(), USER_TIMER_MAXIMUM);
  ::SetTimer(messages_.Get(), kAlarm, static_cast<UINT>(interval), nullptr);
}

void WindowsEventLoop::Pump(Milliseconds wait) {
  if (wait > Milliseconds::zero()) {
    // The message of the program's end stays, among those that are posted.
    Sleep(static_cast<DWORD>(wait.count()),
          IsEnding() ? QS_ALLINPUT & ~QS_POSTMESSAGE : QS_ALLINPUT);
  }
  const Nanoseconds limit = Uptime() + kPassLimit;
  MSG message;
  const UINT users = (QS_INPUT | QS_PAINT) << 16U;
  for (const UINT which : {users, 0U}) {
    while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE | which) != 0 && Dispatch(message)) {
      if (Uptime() >= limit) break;
    }
  }
}

// False for the program's end. Its message ends the loops of the system's as well, of a box or
// a menu: it stays for those around this pass.
bool WindowsEventLoop::Dispatch(const MSG& message) {
  if (message.message == WM_QUIT) {
    Quit(static_cast<int>(message.wParam));
    return false;
  }
  ::TranslateMessage(&message);
  ::DispatchMessageW(&message);
  RunDue();
  return true;
}

void WindowsEventLoop::Serve() {
  while (!IsEnding()) {
    Pass();
    if (!IsEnding()) Sleep(INFINITE, QS_ALLINPUT);
  }
}

int WindowsEventLoop::Run() {
  const int code = PacedLoop::Run();
  TakeQuitBack();
  return code;
}

void WindowsEventLoop::Quit(int code) {
  PacedLoop::Quit(code);
  ::PostQuitMessage(code);
  // Not everywhere does the message close a menu.
  ::EndMenu();
}

void WindowsEventLoop::TakeQuitBack() {
  MSG message;
  ::PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);
}

}  // namespace tarnvale
