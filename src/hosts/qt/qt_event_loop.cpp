#include "hosts/qt/qt_event_loop.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QEventLoop>
#include <QScopedValueRollback>
#include <QThread>

#include <algorithm>

namespace tarnvale {
namespace {

using std::chrono::milliseconds;
using Nanoseconds = std::chrono::nanoseconds;

/// Passes closer together than this count as one.
constexpr milliseconds kPassInterval{2};
/// The longest sleep of a wait pass.
constexpr milliseconds kWaitLimit{10};
/// How long handlers have to end by themselves after Quit.
constexpr milliseconds kFarewell{1000};
}  // namespace

QtEventLoop::QtEventLoop()
    : timers_([] { return Uptime(); }, [this](const auto& handler) { Deliver(handler); }) {
  timers_.AlignWith(OntoSharedMoments);
  timers_.Rescheduled.Listen([this] { next_due_is_stale_ = true; });
  for (QTimer* timer : {&alarm_, &limit_}) {
    timer->setSingleShot(true);
    timer->setTimerType(Qt::PreciseTimer);
  }
  QObject::connect(&alarm_, &QTimer::timeout, &receiver_, [this] {
    alarm_at_.reset();
    RunDue();
  });
  // Every loop of Qt passes here before it sleeps, nested ones too: the one
  // moment at which the alarm has to stand right.
  QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock,
                   &receiver_, [this] { SetAlarm(); });
}

QtEventLoop::~QtEventLoop() = default;

QtEventLoop::Nanoseconds QtEventLoop::Uptime() {
  return std::chrono::steady_clock::now().time_since_epoch();
}

void QtEventLoop::LearnNextDue() {
  if (!next_due_is_stale_) return;
  next_due_is_stale_ = false;
  next_due_ = timers_.NextDue();
}

void QtEventLoop::SetAlarm() {
  LearnNextDue();
  if (next_due_ == alarm_at_) return;
  alarm_at_ = next_due_;
  if (!next_due_) {
    alarm_.stop();
    return;
  }
  const Nanoseconds wait = std::max(*next_due_ - Uptime(), Nanoseconds::zero());
  alarm_.start(std::chrono::ceil<milliseconds>(wait));
}

int QtEventLoop::Nesting() const {
  return QThread::currentThread()->loopLevel() + passes_;
}

void QtEventLoop::Pass(QEventLoop::ProcessEventsFlags flags) {
  const QScopedValueRollback deeper(passes_, passes_ + 1);
  QCoreApplication::processEvents(flags);
  RunDue();
  last_pass_ = Uptime();
}

void QtEventLoop::RunDue() {
  // What was known of the next due moment is gone before a handler runs, as the
  // handler may wait in a loop of its own, and again after it.
  next_due_is_stale_ = true;
  timers_.RunDue();
  next_due_is_stale_ = true;
}

void QtEventLoop::LookForLingering() {
  if (running_ && quit_code_ && Uptime() - quit_at_ > kFarewell) Lingering.Emit(*quit_code_);
}

void QtEventLoop::Yield() {
  LookForLingering();
  const Nanoseconds now = Uptime();
  LearnNextDue();
  const bool timer_is_due = next_due_ && *next_due_ <= now;
  if (!timer_is_due && now - last_pass_ < kPassInterval) return;
  Pass(QEventLoop::AllEvents);
}

void QtEventLoop::WaitPass() {
  LookForLingering();
  limit_.start(kWaitLimit);
  Pass(QEventLoop::WaitForMoreEvents);
  limit_.stop();
}

int QtEventLoop::Run() {
  if (quit_code_) return *quit_code_;
  running_ = true;
  const int code = QCoreApplication::exec();
  running_ = false;
  return quit_code_.value_or(code);
}

void QtEventLoop::Quit(int code) {
  if (!quit_code_) quit_at_ = Uptime();
  quit_code_ = code;
  if (running_) QCoreApplication::exit(code);
}

void QtEventLoop::Post(std::function<void()> job) {
  QMetaObject::invokeMethod(
      &receiver_, [this, job = std::move(job)] { Deliver(job); }, Qt::QueuedConnection);
}

}  // namespace tarnvale
