// Waiting until a medium holds what was written to it.
#pragma once

#include "platform/files.h"
#include "ui/event_loop.h"

namespace tarnvale {

/// Returns when everything written so far to the medium that holds `folder` has
/// reached it, or when the program ends; false then. Yields by wait passes. Raises 76, 57.
inline bool FlushMedium(FileSystem& files, EventLoop& loop, const Path& folder) {
  const auto flush = files.BeginFlush(folder);
  while (!flush->IsDone()) {
    if (loop.IsEnding()) return false;
    loop.WaitPass();
  }
  return true;
}

}  // namespace tarnvale
