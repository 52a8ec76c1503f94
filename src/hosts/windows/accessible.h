// What screen readers find: Active Accessibility, which every version of the system has.
#pragma once

#include "hosts/windows/system_headers.h"

namespace tarnvale {

class NativePeer;
class WindowsWindow;

/// Whether a WM_GETOBJECT wants the object of the window's inside.
bool WantsClientObject(LPARAM object);

/// The answer to a WM_GETOBJECT of a window with drawn controls: all of its controls, each by
/// the number of its place in the tab order, counted from 1. The system's own controls are
/// objects of their own.
LRESULT SceneForReaders(WindowsWindow& window, WPARAM flags);

/// The answer of one of the system's controls, or of a window within it: the system's object
/// with the name and the role of its record. Zero where the system has none.
LRESULT NativeForReaders(WindowsWindow& window, NativePeer& peer, HWND native, WPARAM flags);

}  // namespace tarnvale
