// Screen readers and widgets that draw themselves.
#pragma once

#include <QAccessible>
#include <QString>
#include <QWidget>

#include "ui/owner_drawn.h"

namespace tarnvale {

/// What a widget that draws itself reports to a screen reader. To be inherited beside
/// QWidget.
class AccessibleSource {
 public:
  virtual ~AccessibleSource() = default;
  virtual QAccessible::Role AccessibleRole() const = 0;
  /// What it reports beside what every widget does.
  virtual AccessibleState StateForReaders() const { return {}; }
  /// A screen reader can press it.
  virtual bool CanBePressed() const { return false; }
  virtual void PressAccessibly() {}
};

/// Makes Qt query such widgets, and report to readers nothing of what a password field
/// holds but its length. Once, after the QApplication was made.
void InstallAccessibility();

/// Reports nothing any more of the controls of a window that is going. Their records may
/// have gone, and readers would look at these.
void SilenceControls(QWidget& window);

/// Reports to a screen reader that listens what has changed in a widget's state.
void NotifyReaders(QWidget& widget, const AccessibleState& before, const AccessibleState& now);

}  // namespace tarnvale
