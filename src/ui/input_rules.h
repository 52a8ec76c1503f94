// Which keys and presses of the mouse get to a control, and which to its window; what is
// dragged.
//
// What a host has to see to beside this: a control that is hidden or disabled while it
// has the focus of the active window passes it on as Tab does, which its host reports at
// once (Window::FocusNext). Hidden in a window that isn't active, it keeps it: no
// LostFocus, which may show a box, runs unattended.
#pragma once

#include <string>
#include <vector>

#include "platform/files.h"

namespace tarnvale {

class Control;
class OwnerDrawn;

/// The button that Enter presses while this control has the focus; null for none, and
/// where Enter is the control's own: it belongs to a field of many lines, and to a
/// button.
OwnerDrawn* PressedByEnter(const Control& focused);

/// Whether a press of the mouse on a control gets through to it. The host has moved the
/// focus first, and a handler may have called it back: then the press is lost. A popup
/// doesn't take the focus, and what is on it is clicked without it.
bool MayTakePress(const Control& control);

/// What a control gets that a text or files are dragged over: the files go first, by their
/// paths, one to a line.
std::string DraggedText(const std::string& text, const std::vector<Path>& files);

/// The effect of a drop that a control wants: what of it the drag allows, and one of them.
int AllowedEffect(int wanted, int allowed);

}  // namespace tarnvale
