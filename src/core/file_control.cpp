#include "core/file_control.h"

namespace tarnvale {

bool FileControl::FileExists(const Path& path) {
  try {
    return files_.Length(path) > 0;
  } catch (const ProgramError&) {
    return false;
  }
}

bool FileControl::MayReplace(const Path& destination, bool overwrite) {
  if (overwrite || !FileExists(destination)) return true;
  return boxes_.Show({.text = "Destination already exists. Do you want replace?",
                      .icon = BoxIcon::kQuestion,
                      .buttons = BoxButtons::kOkCancel}) == BoxAnswer::kOk;
}

bool FileControl::CopyFolderTo(const Path& source, const Path& destination, CopyOptions options) {
  try {
    if (!MayReplace(destination, options.overwrite)) return true;
    if (options.move) {
      files_.MoveTree(source, destination);
    } else {
      files_.CopyTree(
          source, destination, [this] { loop_.Yield(); }, options.rights);
    }
    return true;
  } catch (const ProgramError&) {
    return false;
  }
}

}  // namespace tarnvale
