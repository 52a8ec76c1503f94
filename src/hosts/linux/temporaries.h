// Temporary names for copies in work, and getting rid of what a killed process
// left behind.
//
// A copy is written under a temporary name in the folder of its target and then
// renamed. While that goes on, a lock on a slot file in the state folder
// says so, and the slot names the temporary in work. A slot that nobody locks
// belongs to a process that has gone: its temporary is deleted at the next
// start. Where power failed, the slot may never have reached the medium; such
// leftovers are deleted when their folder is next read. A name carries a mark of
// this machine, user and state folder, so that nobody else's is ever touched.
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_set>

#include "hosts/linux/descriptor.h"

namespace tarnvale {

/// The slots of one process. A machine that can't write its state folder has no files for
/// them.
class SlotBook {
 public:
  explicit SlotBook(const std::string& state_folder);

  const std::string& Folder() const { return folder_; }
  const std::string& Mark() const { return mark_; }

  // From any thread.
  void Add(const std::string& slot);
  void Remove(const std::string& slot);
  bool Has(const std::string& slot) const;

 private:
  const std::string folder_;
  const std::string mark_;  ///< 16 hexadecimal digits: machine, user, state folder
  mutable std::mutex mutex_;
  std::unordered_set<std::string> in_use_;
};

class Temporaries {
 public:
  /// Deletes what processes that have gone left in work. `state_folder` is a
  /// native folder, made when it is first needed. Raises nothing.
  explicit Temporaries(const std::string& state_folder);
  Temporaries(const Temporaries&) = delete;
  Temporaries& operator=(const Temporaries&) = delete;

  /// True when `name` is a leftover of ours that no living process works on.
  bool IsStale(std::string_view name) const;

  /// Deletes a leftover in an open folder, if it is one.
  void Sweep(int folder_fd, const char* name) const;

 private:
  friend class TemporarySlot;

  void CleanSlots();
  void CleanSlot(int folder_fd, const std::string& slot);
  bool SlotIsAlive(const std::string& slot) const;

  std::shared_ptr<SlotBook> book_;
};

/// One piece of work at a time that writes temporaries. May go on another thread, and
/// outlive what it was made of.
class TemporarySlot {
 public:
  explicit TemporarySlot(const Temporaries& temporaries);
  TemporarySlot(const TemporarySlot&) = delete;
  TemporarySlot& operator=(const TemporarySlot&) = delete;
  ~TemporarySlot();

  /// The native path of the temporary of a copy into a native folder. Nothing has it but
  /// what an earlier copy of this slot may have left. Good until the next call.
  const std::string& Begin(std::string_view folder);

  /// For a temporary that can't be deleted now: the next start does it, as after a process
  /// that was killed.
  void LeaveBehind();

 private:
  void OpenFile();

  const std::shared_ptr<SlotBook> book_;
  std::string slot_;  ///< 16 hexadecimal digits, random
  std::string path_;
  std::string folder_;
  Descriptor file_;
  bool file_tried_ = false;
};

}  // namespace tarnvale
