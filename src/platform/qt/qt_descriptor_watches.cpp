#include "platform/qt/qt_descriptor_watches.h"

#include <QSocketNotifier>

#include <utility>

namespace tarnvale {
namespace {

class QtDescriptorWatch final : public DescriptorWatch {
 public:
  QtDescriptorWatch(int descriptor, QSocketNotifier::Type type, std::function<void()> ready)
      : notifier_(new QSocketNotifier(descriptor, type)) {
    QObject::connect(notifier_, &QSocketNotifier::activated, notifier_,
                     [ready = std::move(ready)] { ready(); });
  }
  QtDescriptorWatch(const QtDescriptorWatch&) = delete;
  QtDescriptorWatch& operator=(const QtDescriptorWatch&) = delete;
  // The notifier itself may be what is running.
  ~QtDescriptorWatch() override {
    notifier_->setEnabled(false);
    notifier_->deleteLater();
  }

 private:
  QSocketNotifier* notifier_;
};

}  // namespace

std::unique_ptr<DescriptorWatch> QtDescriptorWatches::Watch(int descriptor, Readiness readiness,
                                                            std::function<void()> ready) {
  const auto type = readiness == Readiness::kRead ? QSocketNotifier::Read : QSocketNotifier::Write;
  return std::make_unique<QtDescriptorWatch>(descriptor, type, std::move(ready));
}

}  // namespace tarnvale
