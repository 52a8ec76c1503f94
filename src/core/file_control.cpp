#include "core/file_control.h"

namespace tarnvale {

bool FileControl::FileExists(const Path& path) {
  try {
    return machine_.files.Length(path) > 0;
  } catch (const ProgramError&) {
    return false;
  }
}

bool FileControl::MayReplace(const Path& destination, bool overwrite) {
  if (overwrite || !FileExists(destination)) return true;
  return machine_.boxes.Show({.text = "Destination already exists. Do you want replace?",
                              .icon = BoxIcon::kQuestion,
                              .buttons = BoxButtons::kOkCancel}) == BoxAnswer::kOk;
}

bool FileControl::CopyFolderTo(const Path& source, const Path& destination, CopyOptions options) {
  try {
    if (!MayReplace(destination, options.overwrite)) return true;
    if (options.move) {
      machine_.files.MoveTree(source, destination);
    } else {
      machine_.files.CopyTree(
          source, destination, [this] { machine_.loop.Yield(); }, options.rights);
    }
    return true;
  } catch (const ProgramError&) {
    return false;
  }
}

}  // namespace tarnvale
