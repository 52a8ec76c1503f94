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

using std::chrono::milliseconds;
using Nanoseconds = std::chrono::nanoseconds;

constexpr UINT kJobMessage = MessageWindow::kFirstMessage;
constexpr UINT_PTR kAlarm = 1;

/// Passes closer together than this count as one.
constexpr milliseconds kPassInterval{2};
/// How long a pass goes on taking messages.
constexpr milliseconds kPassLimit{10};
/// How long a handler may go on after the end.
constexpr milliseconds kFarewell{1000};
/// The longest sleep of a wait pass.
constexpr DWORD kWaitLimitMs = 10;

Nanoseconds Uptime() {
  return WindowsClock().Uptime();
}

/// Sleeps until there is a message of some kinds, even one that was seen and left.
void Sleep(DWORD limit_ms, DWORD kinds = QS_ALLINPUT) {
  ::MsgWaitForMultipleObjectsEx(0, nullptr, limit_ms, kinds, MWMO_INPUTAVAILABLE);
}

/// One more while it lives.
class Deeper {
 public:
  explicit Deeper(int& depth) : depth_(depth) { ++depth_; }
  Deeper(const Deeper&) = delete;
  Deeper& operator=(const Deeper&) = delete;
  ~Deeper() { --depth_; }

 private:
  int& depth_;
};

}  // namespace

WindowsEventLoop::WindowsEventLoop()
    : timers_([] { return Uptime(); },
              [this](const auto& handler) {
                // The handler may wait in a loop of the system's.
                SetAlarm();
                Deliver(handler);
              }) {
  timers_.AlignWith(OntoSharedMoments);
  timers_.Rescheduled.Listen([this] { SetAlarm(); });
}

WindowsEventLoop::~WindowsEventLoop() {
  if (quit_code_) TakeQuitBack();
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

void WindowsEventLoop::OnMessage(UINT message) {
  if (message == kJobMessage) RunJob();
  RunDue();
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

void WindowsEventLoop::RunDue() {
  timers_.RunDue();
  SetAlarm();
}

void WindowsEventLoop::SetAlarm() {
  const auto next = timers_.NextDue();
  if (next == next_due_) return;
  next_due_ = next;
  if (!next) {
    ::KillTimer(messages_.Get(), kAlarm);
    return;
  }
  const auto wait = std::chrono::ceil<milliseconds>(std::max(*next - Uptime(), Nanoseconds(0)));
  // The system takes nothing above, and makes it 10 ms at least. Too early an alarm is
  // followed by another one.
  const auto interval = std::min<std::int64_t>(wait.count(), USER_TIMER_MAXIMUM);
  ::SetTimer(messages_.Get(), kAlarm, static_cast<UINT>(interval), nullptr);
}

void WindowsEventLoop::Pass() {
  const Deeper deeper(passes_);
  const Nanoseconds limit = Uptime() + kPassLimit;
  MSG message;
  const UINT users = (QS_INPUT | QS_PAINT) << 16U;
  for (const UINT which : {users, 0U}) {
    while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE | which) != 0 && Serve(message)) {
      if (Uptime() >= limit) break;
    }
  }
  RunDue();
  last_pass_ = Uptime();
}

// False for the program's end. Its message ends the loops of the system's as well, of a box or
// a menu: it stays for those around this pass.
bool WindowsEventLoop::Serve(const MSG& message) {
  if (message.message == WM_QUIT) {
    Quit(static_cast<int>(message.wParam));
    return false;
  }
  ::TranslateMessage(&message);
  ::DispatchMessageW(&message);
  RunDue();
  return true;
}

void WindowsEventLoop::LookForLingering() {
  if (is_running_ && quit_code_ && Uptime() - quit_at_ > kFarewell) Lingering.Emit(*quit_code_);
}

void WindowsEventLoop::Yield() {
  LookForLingering();
  const Nanoseconds now = Uptime();
  const bool timer_is_due = next_due_ && *next_due_ <= now;
  if (timer_is_due || now - last_pass_ >= kPassInterval) Pass();
}

void WindowsEventLoop::WaitPass() {
  LookForLingering();
  const bool timer_is_due = next_due_ && *next_due_ <= Uptime();
  // The message of the program's end stays, among those that are posted.
  const DWORD kinds = quit_code_ ? QS_ALLINPUT & ~QS_POSTMESSAGE : QS_ALLINPUT;
  if (!timer_is_due) Sleep(kWaitLimitMs, kinds);
  Pass();
}

int WindowsEventLoop::Run() {
  is_running_ = true;
  while (!quit_code_) {
    Pass();
    if (!quit_code_) Sleep(INFINITE);
  }
  is_running_ = false;
  TakeQuitBack();
  return *quit_code_;
}

void WindowsEventLoop::Quit(int code) {
  if (!quit_code_) quit_at_ = Uptime();
  quit_code_ = code;
  ::PostQuitMessage(code);
  // Not everywhere does the message close a menu.
  ::EndMenu();
}

void WindowsEventLoop::TakeQuitBack() {
  MSG message;
  ::PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);
}

}  // namespace tarnvale
