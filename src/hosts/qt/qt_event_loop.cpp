#include "hosts/qt/qt_event_loop.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QEventLoop>
#include <QThread>

#include <utility>

namespace tarnvale {

QtEventLoop::QtEventLoop()
    : PacedLoop([] { return std::chrono::steady_clock::now().time_since_epoch(); }) {
  for (QTimer* timer : {&alarm_, &limit_}) {
    timer->setSingleShot(true);
    timer->setTimerType(Qt::PreciseTimer);
  }
  QObject::connect(&alarm_, &QTimer::timeout, &receiver_, [this] {
    ForgetAlarm();
    RunDue();
  });
  // Every loop of Qt passes here before it sleeps, nested ones too: the one
  // moment at which the alarm has to be right.
  QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock,
                   &receiver_, [this] { SetAlarm(); });
}

void QtEventLoop::StartAlarm(std::optional<Milliseconds> wait) {
  if (wait) {
    alarm_.start(*wait);
  } else {
    alarm_.stop();
  }
}

int QtEventLoop::Nesting() const {
  return QThread::currentThread()->loopLevel() + PacedLoop::Nesting();
}

void QtEventLoop::Pump(Milliseconds wait) {
  if (wait == Milliseconds::zero()) {
    QCoreApplication::processEvents();
    return;
  }
  limit_.start(wait);
  QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  limit_.stop();
}

void QtEventLoop::Serve() {
  const int code = QCoreApplication::exec();
  if (!IsEnding()) PacedLoop::Quit(code);
}

void QtEventLoop::Quit(int code) {
  PacedLoop::Quit(code);
  if (IsRunning()) QCoreApplication::exit(code);
}

void QtEventLoop::Post(std::function<void()> job) {
  QMetaObject::invokeMethod(
      &receiver_, [this, job = std::move(job)] { Deliver(job); }, Qt::QueuedConnection);
}

}  // namespace tarnvale
