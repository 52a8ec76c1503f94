// The place of an archive that is made, and of the folder that it is made of.
#pragma once

#include <memory>
#include <string>

namespace tarnvale {

/// The real native path of a folder. `given` is how the person wrote it. Raises
/// CommandFailure.
std::string RealFolder(const std::string& folder, const std::string& given);

/// Two real native paths of folders: one is the other or lies below it.
bool LiesIn(const std::string& folder, const std::string& outer);

/// Where an archive goes; a link to an old one is followed.
struct ArchivePlace {
  std::string folder;  ///< real
  std::string name;
};
/// Raises CommandFailure.
ArchivePlace PlaceOfArchive(const std::string& archive);

/// An archive that gets its name when it is whole. Until then it is in a folder of its own
/// beside, for this user alone, which goes away with this object, or when the command is
/// stopped. One at a time. All raise SystemError.
class NewArchive {
 public:
  explicit NewArchive(const ArchivePlace& place);
  NewArchive(const NewArchive&) = delete;
  NewArchive& operator=(const NewArchive&) = delete;
  ~NewArchive();

  /// The native path to write to.
  std::string InWork() const;
  /// Onto the medium and under its name.
  void PutInPlace();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace tarnvale
