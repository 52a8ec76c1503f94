// Screen readers and widgets that draw themselves.
#pragma once

#include <QAccessible>
#include <QString>

namespace tarnvale {

/// What a widget that draws itself tells a screen reader. To be inherited beside
/// QWidget.
class AccessibleSource {
 public:
  virtual ~AccessibleSource() = default;
  virtual QAccessible::Role AccessibleRole() const = 0;
  /// A screen reader can press it.
  virtual bool CanBePressed() const { return false; }
  virtual void PressAccessibly() {}
};

/// Makes Qt ask such widgets. Once, after the QApplication was made.
void InstallAccessibility();

}  // namespace tarnvale
