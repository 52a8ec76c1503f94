// Temporary names for copies in work, and getting rid of what a killed process
// left behind.
//
// A copy is written under a temporary name in the folder of its target and then
// renamed. While the process lives, a lock on its slot file in the state folder
// says so, and the slot names the temporary in work. A slot that nobody locks
// belongs to a process that has gone: its temporary is deleted at the next
// start. Where power failed, the slot may never have reached the medium; such
// leftovers are deleted when their folder is next read. A name carries a mark of
// this machine, user and state folder, so that nobody else's is ever touched.
#pragma once

#include <sys/types.h>

#include <string>
#include <string_view>

#include "hosts/linux/descriptor.h"

namespace tarnvale {

/// Makes a file for reading and writing, nothing else than a fresh one: a leftover of that
/// name is deleted first, a link not followed. `name` counts from the open
/// folder, or is a path and `folder_fd` AT_FDCWD. None when that fails, with
/// `errno` set.
Descriptor CreateFresh(int folder_fd, const char* name, mode_t mode);

class Temporaries {
 public:
  /// Deletes what processes that have gone left in work. `state_folder` is a
  /// native folder, made when it is first needed. Raises nothing.
  explicit Temporaries(const std::string& state_folder);
  Temporaries(const Temporaries&) = delete;
  Temporaries& operator=(const Temporaries&) = delete;
  ~Temporaries();

  /// Names the temporary of a copy into a native folder. Nothing has the name
  /// but what an earlier copy of ours may have left; CreateFresh replaces that.
  /// One copy is in work at a time; the name is ours until the next call.
  const std::string& Begin(std::string_view folder);

  /// True when `name` is a leftover of ours that no living process works on.
  bool IsStale(std::string_view name) const;

  /// Deletes a leftover in an open folder, if it is one.
  void Sweep(int folder_fd, const char* name) const;

 private:
  void OpenSlot();
  void CleanSlots();
  void CleanSlot(int folder_fd, const std::string& slot);
  bool SlotIsAlive(std::string_view slot) const;

  std::string slots_folder_;
  std::string mark_;  ///< 16 hexadecimal digits: machine, user, state folder
  std::string slot_;  ///< 16 hexadecimal digits, random: this object
  std::string name_;
  std::string path_;
  std::string folder_in_slot_;
  Descriptor slot_file_;
  bool slot_tried_ = false;
};

}  // namespace tarnvale
