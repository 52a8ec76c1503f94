#include "hosts/qt/peers/accessible.h"

#include <QAccessibleWidget>
#include <QLineEdit>
#include <QVariant>

namespace tarnvale {
namespace {

constexpr const char* kGoing = "tarnvale_going";

class SelfDrawnAccessible final : public QAccessibleWidget, public QAccessibleValueInterface {
 public:
  SelfDrawnAccessible(QWidget* widget, AccessibleSource& source)
      : QAccessibleWidget(widget, source.AccessibleRole()), source_(source) {}

  QAccessible::Role role() const override { return source_.AccessibleRole(); }

  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    const AccessibleState reported = source_.StateForReaders();
    state.checkable = reported.checked.has_value();
    state.checked = reported.checked.value_or(false);
    state.pressed = reported.pressed;
    return state;
  }

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::ValueInterface && source_.StateForReaders().range) {
      return static_cast<QAccessibleValueInterface*>(this);
    }
    return QAccessibleWidget::interface_cast(type);
  }

  // How far it got. It only shows that.
  QVariant currentValue() const override { return Range().value; }
  QVariant minimumValue() const override { return Range().min; }
  QVariant maximumValue() const override { return Range().max; }
  QVariant minimumStepSize() const override { return 1; }
  void setCurrentValue(const QVariant&) override {}

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
  AccessibleRange Range() const {
    return source_.StateForReaders().range.value_or(AccessibleRange{});
  }

  AccessibleSource& source_;
};

QAccessibleInterface* MakeAccessible(const QString& /*class_name*/, QObject* object) {
  auto* source = dynamic_cast<AccessibleSource*>(object);
  auto* widget = qobject_cast<QWidget*>(object);
  if (source == nullptr || widget == nullptr) return nullptr;
  return new SelfDrawnAccessible(widget, *source);
}

bool HidesItsText(QAccessibleEvent& event) {
  const QAccessibleInterface* source = event.accessibleInterface();
  const auto* edit = source == nullptr ? nullptr : qobject_cast<QLineEdit*>(source->object());
  return edit != nullptr && edit->echoMode() != QLineEdit::Normal;
}

QString Stars(const QString& text) {
  return QString(text.size(), QLatin1Char('*'));
}

void HandleUpdate(QAccessibleEvent* event);

// Where nothing handles updates, nothing else can be called to notify readers.
void NotifyDesktop(QAccessibleEvent& event) {
  QAccessible::installUpdateHandler(nullptr);
  QAccessible::updateAccessibility(&event);
  QAccessible::installUpdateHandler(HandleUpdate);
}

template <class Event>
void NotifyDesktop(Event forwarded, const QAccessibleTextCursorEvent& event) {
  forwarded.setCursorPosition(event.cursorPosition());
  NotifyDesktop(static_cast<QAccessibleEvent&>(forwarded));
}

// Qt hides a password from readers that query it, and reports it to those that listen:
// here they get stars, as the eye does.
void NotifyStars(QAccessibleEvent& event) {
  QObject* edit = event.accessibleInterface()->object();
  switch (event.type()) {
    case QAccessible::TextInserted: {
      const auto& now = static_cast<QAccessibleTextInsertEvent&>(event);
      const QString stars = Stars(now.textInserted());
      NotifyDesktop(QAccessibleTextInsertEvent(edit, now.changePosition(), stars), now);
      return;
    }
    case QAccessible::TextRemoved: {
      const auto& now = static_cast<QAccessibleTextRemoveEvent&>(event);
      const QString stars = Stars(now.textRemoved());
      NotifyDesktop(QAccessibleTextRemoveEvent(edit, now.changePosition(), stars), now);
      return;
    }
    case QAccessible::TextUpdated: {
      const auto& now = static_cast<QAccessibleTextUpdateEvent&>(event);
      NotifyDesktop(QAccessibleTextUpdateEvent(edit, now.changePosition(), Stars(now.textRemoved()),
                                               Stars(now.textInserted())),
                    now);
      return;
    }
    case QAccessible::ValueChanged:
      return;
    default:
      NotifyDesktop(event);
  }
}

// Of a control in a window that is going: its record, which its interface would look at, may
// have gone.
bool IsLate(const QAccessibleEvent& event) {
  const auto* widget = qobject_cast<QWidget*>(event.object());
  return widget != nullptr && !widget->isWindow() && widget->window()->property(kGoing).toBool();
}

void HandleUpdate(QAccessibleEvent* event) {
  if (IsLate(*event)) return;
  if (HidesItsText(*event)) {
    NotifyStars(*event);
  } else {
    NotifyDesktop(*event);
  }
}

}  // namespace

void InstallAccessibility() {
  QAccessible::installFactory(MakeAccessible);
  QAccessible::installUpdateHandler(HandleUpdate);
}

void SilenceControls(QWidget& window) {
  window.setProperty(kGoing, true);
}

void NotifyReaders(QWidget& widget, const AccessibleState& before, const AccessibleState& now) {
  QAccessible::State changed;
  changed.checked = before.checked != now.checked;
  changed.pressed = before.pressed != now.pressed;
  if (changed.checked || changed.pressed) {
    QAccessibleStateChangeEvent event(&widget, changed);
    QAccessible::updateAccessibility(&event);
  }
  if (now.range && before.range != now.range) {
    QAccessibleValueChangeEvent event(&widget, now.range->value);
    QAccessible::updateAccessibility(&event);
  }
}

}  // namespace tarnvale
