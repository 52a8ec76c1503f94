// What anybody on the same machine and at the same screen can see of a program.
#pragma once

#include <set>
#include <string>

namespace tarnvale::testing {

class Eavesdropper {
 public:
  /// Looks round once.
  void Look();

  /// Every command line that was seen, its arguments with blanks between them.
  const std::set<std::string>& CommandLines() const { return command_lines_; }
  /// Every title of a window that was seen, shown or not.
  const std::set<std::string>& WindowTitles() const { return window_titles_; }

 private:
  void ReadCommandLines();
  void ReadWindowTitles();

  std::set<std::string> command_lines_;
  std::set<std::string> window_titles_;
};

}  // namespace tarnvale::testing
