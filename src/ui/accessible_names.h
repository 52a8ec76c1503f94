// What screen readers call controls.
#pragma once

#include <map>
#include <string>

#include "ui/controls.h"
#include "ui/window.h"

namespace tarnvale {

/// The label that is placed before a control in the same container, for each control
/// that has one. A fact that the program fills in is no label.
std::map<const Control*, const Label*> LabelsOf(const Window& window);

/// The control's own name for it, its caption as it is seen, its tool tip, the label
/// before it, or the word for its kind: the first that there is.
std::string NameForReaders(const Control& control, const Label* label);

}  // namespace tarnvale
