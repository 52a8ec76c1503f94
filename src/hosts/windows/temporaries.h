// Temporary names for copies in work, and seeing to what a killed process left behind: as
// on every host, a slot in the state folder names the one in work, and what keeps it open
// says that its process lives.
#pragma once

#include <string>
#include <string_view>
#include <unordered_set>

#include "hosts/windows/handle.h"

namespace tarnvale {

/// `Data\State` beside the program, where there is such a folder: a program that is carried
/// about on a drive leaves nothing on the computers that it visits. Otherwise `Tarnvale` in
/// the user's folder for what belongs to this machine; empty when there is none.
std::wstring DefaultStateFolder(const std::wstring& program_file);

/// Makes a native folder with those that it lies in; false when that fails.
bool MakeStateFolder(const std::wstring& folder);

/// Deletes a file or a link to a folder, there or not; false when something has the name
/// still. The code of the call before it stays.
bool DeleteTemporary(const std::wstring& native);

class Temporaries {
 public:
  /// Deletes what processes that have gone left in work. `state_folder` is a native
  /// folder, made when it is first needed, or empty. Raises nothing.
  explicit Temporaries(const std::wstring& state_folder);
  Temporaries(const Temporaries&) = delete;
  Temporaries& operator=(const Temporaries&) = delete;

  /// Sees to an entry of a folder if it is a leftover of ours that no process works on:
  /// it takes the place that its copy is missing from, or is deleted.
  void Sweep(const std::wstring& folder, std::wstring_view name) const;

  /// Sees to what is left over in a folder, before the first copy into it.
  void SweepOnce(const std::wstring& folder);

 private:
  friend class TemporarySlot;

  void CleanSlots() const;
  void CleanSlot(const std::wstring& slot) const;
  bool SlotIsAlive(const std::string& slot) const;

  std::wstring slots_folder_;  ///< empty when there is none
  std::string mark_;
  std::unordered_set<std::wstring> swept_;
};

/// One piece of work at a time that writes a temporary. May go on another thread, and
/// outlive what it was made of.
class TemporarySlot {
 public:
  explicit TemporarySlot(const Temporaries& temporaries);
  TemporarySlot(const TemporarySlot&) = delete;
  TemporarySlot& operator=(const TemporarySlot&) = delete;
  ~TemporarySlot();

  /// The native path of the temporary of a copy into a native folder. Nothing has it but
  /// what an earlier copy of this slot left, which is deleted; where that is refused, the
  /// slot takes another name.
  const std::wstring& Begin(const std::wstring& folder);
  const std::wstring& NativePath() const { return path_; }

  enum class Steps { kOfMedium, kAlways };
  /// Says before the temporary takes the place of `target` that it is whole. FAT replaces
  /// in two steps: if power fails between them, the next start does the second one.
  void WillReplace(const std::wstring& target, Steps steps = Steps::kOfMedium);

 private:
  void TakeAnother();
  void OpenFile();
  bool Record(const std::wstring& target);

  std::wstring slots_folder_;
  std::string mark_;
  std::string slot_;
  std::wstring path_;
  std::wstring folder_;
  bool replaces_in_steps_ = false;  ///< the medium of `folder_`
  Handle file_;
  bool file_tried_ = false;
};

}  // namespace tarnvale
