#include "companions/u3_data/data_pointer.h"

#include <string_view>

#include "base/failure.h"
#include "platform/file_text.h"
#include "platform/input_item.h"

namespace tarnvale {
namespace {

constexpr int kPointerFileNumber = 1;

// What a reader of delimited items makes of a text.
std::string ItemOf(std::string_view text) {
  InputItemScanner scanner;
  for (const char byte : text) {
    if (!scanner.Feed(byte)) break;
  }
  return scanner.Item();
}

// The pointer file that is read back as `folder`: in quotes, which keep commas
// together, or without, for a folder whose own name holds a quote.
std::string PointerTo(const Path& folder) {
  for (const std::string& text : {"\"" + folder + "\"\r\n", folder + "\r\n"}) {
    if (ItemOf(text) == folder) return text;
  }
  throw ProgramError(kPathFileAccess);
}

// Empty when there is no pointer file, or nothing in it.
Path Named(OpenFiles& open_files, const Path& pointer_file) {
  try {
    open_files.OpenInput(kPointerFileNumber, pointer_file);
    Path named = open_files.InputItem(kPointerFileNumber);
    open_files.Close(kPointerFileNumber);
    return named;
  } catch (const ProgramError& error) {
    open_files.CloseAll();
    if (error.Number() != kFileNotFound && error.Number() != kInputPastEnd) throw;
    return {};
  }
}

void MakeFolder(FileSystem& files, const Path& folder) {
  if (files.FolderExists(folder)) return;
  try {
    files.CreateFolder(folder);
  } catch (const ProgramError&) {
    // Another one of us may have been faster.
    if (!files.FolderExists(folder)) throw;
  }
}

}  // namespace

void LeavePointer(const PointerPlace& place) {
  const Path pointer_file = place.program_folder + "\\Data.txt";
  const Path named = Named(place.open_files, pointer_file);
  const Path wanted = place.device_folder.value_or(named);
  if (!named.empty() && named == wanted && place.files.FolderExists(named)) return;
  const Path folder = place.device_folder.value_or(place.program_folder + "\\Data");
  MakeFolder(place.files, folder);
  place.replace(pointer_file, TextToFile(place.open_files, PointerTo(folder)));
}

}  // namespace tarnvale
