// Dragging by the system's own means (OLE): over a window, and away from it.
#pragma once

#include "hosts/windows/system_headers.h"

#include <shellapi.h>

#include <functional>
#include <string>
#include <vector>

#include "platform/files.h"
#include "ui/owner_drawn.h"

namespace tarnvale {

/// A native path in the program's path language; empty when no path can name it.
using ProgramPath = std::function<Path(const std::wstring& native)>;

/// The files of a drop; what no path can name is left out. The drop stays the caller's.
std::vector<Path> DroppedPaths(HDROP drop, const ProgramPath& program_path);

/// What the part of the system that drags needs for as long as it is used, in this thread.
class Ole {
 public:
  Ole();
  Ole(const Ole&) = delete;
  Ole& operator=(const Ole&) = delete;
  ~Ole();

 private:
  bool is_begun_;
};

/// Has what is dragged over a window reported, until its end.
class DropArea {
 public:
  /// A step at a point of the screen, or the drop itself. Returns the effect; 0 refuses it.
  using Answer =
      std::function<int(const DragStep& step, POINT screen, int allowed_effects, bool is_drop)>;

  DropArea(HWND window, const ProgramPath& program_path, Answer answer);
  DropArea(const DropArea&) = delete;
  DropArea& operator=(const DropArea&) = delete;
  ~DropArea();

 private:
  class Target;

  const Ole ole_;
  HWND window_;
  Target* target_;
};

/// Drags a text away until it is dropped or given up. Returns the effect. `feedback` gets
/// each change of what a drop would do. Yields.
int DragTextAway(const std::string& text, std::function<void(int effect)> feedback);

}  // namespace tarnvale
