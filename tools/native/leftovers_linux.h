// Files in work that must not outlive the command.
#pragma once

#include <array>
#include <string>

namespace tarnvale {

/// Makes the signals that end a command (hang-up, interrupt, quit, termination)
/// delete what is in work first.
void CatchEndingSignals();

/// Up to three entries of one open folder, deleted in their order when this
/// object goes or a signal ends the command. Registered before they are made; what has
/// been renamed meanwhile is simply not there any more. One object at a time.
class Leftovers {
 public:
  struct Entry {
    std::string name;  ///< at most 47 bytes; may have a slash in it
    bool is_folder = false;
  };

  /// The folder must stay open. Entries with an empty name are left out.
  Leftovers(int folder_fd, const std::array<Entry, 3>& entries);
  Leftovers(const Leftovers&) = delete;
  Leftovers& operator=(const Leftovers&) = delete;
  ~Leftovers();
};

}  // namespace tarnvale
