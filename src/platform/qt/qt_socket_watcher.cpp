#include "platform/qt/qt_socket_watcher.h"

#include <QSocketNotifier>
#include <QTimer>

#include <utility>

namespace tarnvale {
namespace {

class QtSocketWatch final : public SocketWatch {
 public:
  QtSocketWatch(EventLoop& loop, NativeSocket socket, std::function<void(SocketReadiness)> ready)
      : reading_(new QSocketNotifier(socket, QSocketNotifier::Read)),
        writing_(new QSocketNotifier(socket, QSocketNotifier::Write)) {
    Want({});
    // The handlers hold copies: a watch may go inside its own handler.
    QObject::connect(reading_, &QSocketNotifier::activated,
                     [&loop, ready] { loop.Deliver([&] { ready({.readable = true}); }); });
    QObject::connect(writing_, &QSocketNotifier::activated,
                     [&loop, ready] { loop.Deliver([&] { ready({.writable = true}); }); });
  }
  QtSocketWatch(const QtSocketWatch&) = delete;
  QtSocketWatch& operator=(const QtSocketWatch&) = delete;
  ~QtSocketWatch() override {
    Want({});
    reading_->deleteLater();
    writing_->deleteLater();
  }

  void Want(SocketReadiness wanted) override {
    reading_->setEnabled(wanted.readable);
    writing_->setEnabled(wanted.writable);
  }

 private:
  QSocketNotifier* reading_;
  QSocketNotifier* writing_;
};

class QtAlarm final : public Alarm {
 public:
  QtAlarm(EventLoop& loop, std::function<void()> ring) : timer_(new QTimer) {
    timer_->setSingleShot(true);
    timer_->setTimerType(Qt::PreciseTimer);
    QObject::connect(timer_, &QTimer::timeout,
                     [&loop, ring = std::move(ring)] { loop.Deliver(ring); });
  }
  QtAlarm(const QtAlarm&) = delete;
  QtAlarm& operator=(const QtAlarm&) = delete;
  ~QtAlarm() override {
    timer_->stop();
    timer_->deleteLater();
  }

  void Set(std::chrono::milliseconds wait) override { timer_->start(wait); }
  void Clear() override { timer_->stop(); }

 private:
  QTimer* timer_;
};

}  // namespace

std::unique_ptr<SocketWatch> QtSocketWatcher::Watch(NativeSocket socket,
                                                    std::function<void(SocketReadiness)> ready) {
  return std::make_unique<QtSocketWatch>(loop_, socket, std::move(ready));
}

std::unique_ptr<Alarm> QtSocketWatcher::NewAlarm(std::function<void()> ring) {
  return std::make_unique<QtAlarm>(loop_, std::move(ring));
}

}  // namespace tarnvale
