// Temporary names for copies in work, and getting rid of what a killed process left
// behind: as on every host, a slot in the state folder names the one in work, and what
// keeps it open says that its process lives.
#pragma once

#include <string>
#include <string_view>
#include <unordered_set>

#include "hosts/windows/handle.h"

namespace tarnvale {

/// `Tarnvale` in the user's folder for what belongs to this machine; empty when there is
/// none.
std::wstring DefaultStateFolder();

/// Makes a native folder with those that it lies in; false when that fails.
bool MakeStateFolder(const std::wstring& folder);

class Temporaries {
 public:
  /// Deletes what processes that have gone left in work. `state_folder` is a native
  /// folder, made when it is first needed. Raises nothing.
  explicit Temporaries(const std::wstring& state_folder);
  Temporaries(const Temporaries&) = delete;
  Temporaries& operator=(const Temporaries&) = delete;
  ~Temporaries();

  /// The native path of the temporary of a copy into a native folder. Nothing has it but
  /// what an earlier copy of ours left, which is deleted. One copy is in work at a time.
  const std::wstring& Begin(const std::wstring& folder);

  /// Deletes an entry of a folder if it is a leftover of ours that no process works on.
  void Sweep(const std::wstring& folder, std::wstring_view name) const;

  /// Deletes what is left over in a folder, before the first copy into it.
  void SweepOnce(const std::wstring& folder);

 private:
  void OpenSlot();
  void CleanSlots() const;
  void CleanSlot(const std::wstring& slot) const;
  bool SlotIsAlive(const std::string& slot) const;

  std::wstring slots_folder_;
  std::string mark_;
  std::string slot_;
  std::wstring path_;
  std::wstring folder_in_slot_;
  Handle slot_file_;
  bool slot_tried_ = false;
  std::unordered_set<std::wstring> swept_;
};

}  // namespace tarnvale
