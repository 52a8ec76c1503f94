#include "ui/paced_loop.h"

#include <algorithm>
#include <utility>

namespace tarnvale {
namespace {

using std::chrono::milliseconds;

/// Passes closer together than this count as one.
constexpr milliseconds kPassInterval{2};
/// The longest sleep of a wait pass.
constexpr milliseconds kWaitLimit{10};
/// How long a handler may go on after the end.
constexpr milliseconds kLingering{1000};

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

PacedLoop::PacedLoop(std::function<Nanoseconds()> uptime)
    : uptime_(std::move(uptime)),
      timers_(uptime_, [this](const auto& handler) { Deliver(handler); }) {
  timers_.AlignWith(OntoSharedMoments);
  timers_.Rescheduled.Listen([this] { LearnAnew(); });
}

void PacedLoop::LearnAnew() {
  next_due_is_stale_ = true;
  OnRescheduled();
}

std::optional<PacedLoop::Nanoseconds> PacedLoop::NextDue() {
  if (std::exchange(next_due_is_stale_, false)) next_due_ = timers_.NextDue();
  return next_due_;
}

bool PacedLoop::IsTimerDue() {
  const auto next = NextDue();
  return next && *next <= Uptime();
}

void PacedLoop::SetAlarm() {
  const auto next = NextDue();
  if (next == alarm_at_) return;
  alarm_at_ = next;
  std::optional<Milliseconds> wait;
  if (next) wait = std::chrono::ceil<Milliseconds>(std::max(*next - Uptime(), Nanoseconds::zero()));
  StartAlarm(wait);
}

void PacedLoop::RunDue() {
  timers_.RunDue();
  LearnAnew();
}

void PacedLoop::Pass(Milliseconds wait) {
  const Deeper deeper(passes_);
  Pump(wait);
  RunDue();
  last_pass_ = Uptime();
}

void PacedLoop::LookForLingering() {
  if (is_running_ && quit_code_ && Uptime() - quit_at_ > kLingering) Lingering.Emit(*quit_code_);
}

void PacedLoop::Yield() {
  LookForLingering();
  if (Uptime() - last_pass_ >= kPassInterval || IsTimerDue()) Pass();
}

void PacedLoop::WaitPass() {
  LookForLingering();
  Pass(IsTimerDue() ? Milliseconds::zero() : kWaitLimit);
}

int PacedLoop::Run() {
  is_running_ = true;
  if (!quit_code_) Serve();
  is_running_ = false;
  return quit_code_.value_or(0);
}

void PacedLoop::Quit(int code) {
  if (!quit_code_) quit_at_ = Uptime();
  quit_code_ = code;
}

}  // namespace tarnvale
