#include "platform/qt/peers/accessible.h"

#include <QAccessibleWidget>
#include <QWidget>

namespace tarnvale {
namespace {

class SelfDrawnAccessible final : public QAccessibleWidget {
 public:
  SelfDrawnAccessible(QWidget* widget, AccessibleSource& source)
      : QAccessibleWidget(widget, source.AccessibleRole()), source_(source) {}

  QAccessible::Role role() const override { return source_.AccessibleRole(); }

  QStringList actionNames() const override {
    QStringList names = QAccessibleWidget::actionNames();
    if (source_.CanBePressed() && widget()->isEnabled()) names.prepend(pressAction());
    return names;
  }

  void doAction(const QString& name) override {
    if (name == pressAction() && source_.CanBePressed() && widget()->isEnabled()) {
      source_.PressAccessibly();
    } else {
      QAccessibleWidget::doAction(name);
    }
  }

 private:
  AccessibleSource& source_;
};

QAccessibleInterface* MakeAccessible(const QString& /*class_name*/, QObject* object) {
  auto* source = dynamic_cast<AccessibleSource*>(object);
  auto* widget = qobject_cast<QWidget*>(object);
  if (source == nullptr || widget == nullptr) return nullptr;
  return new SelfDrawnAccessible(widget, *source);
}

}  // namespace

void InstallAccessibility() {
  QAccessible::installFactory(MakeAccessible);
}

}  // namespace tarnvale
