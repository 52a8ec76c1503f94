// Files and folders as a check looks at them: nothing is changed and nothing followed but
// where it says so.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "native/native_file.h"

namespace tarnvale {

/// What a folder has under a name; without a name that folder itself.
struct NativeEntry {
  NativeFolder* folder = nullptr;  ///< held; null for a native path
  std::string name;                ///< the path, then

  std::string Path() const;
};

struct NativeState {
  bool is_plain = false;  ///< a file, no link, folder or device
  bool is_link = false;
  bool is_read_only = false;  ///< of plain files only
  std::int64_t size_bytes = 0;
  std::int64_t modified_s = 0;
  std::int64_t modified_fraction_ns = 0;  ///< beyond the second
};

/// Of the entry itself; none where there is nothing. Raises SystemError.
std::optional<NativeState> StateOfEntry(const NativeEntry& entry);
/// Of what a native path leads to by links of the user's own. Raises SystemError.
NativeState StateBehindLinks(const std::string& native);
/// Whether no run replaces this copy because it is read-only.
bool StaysAsReadOnly(const NativeState& source, const NativeState& copy);

/// What a link leads to, as the system keeps it; none for what is no link. Raises
/// SystemError.
std::optional<std::string> LinkOf(const NativeEntry& entry);

/// A file that is read. The time of its last access stays, where the system allows.
class FileReader {
 public:
  /// Both raise SystemError. What LinkOf took for no link mustn't have become one.
  static FileReader Open(const NativeEntry& entry);
  static FileReader OpenBehindLinks(const std::string& native);
  FileReader(FileReader&& other) noexcept;
  ~FileReader();

  /// Fills the buffer as far as the file goes. Raises SystemError.
  std::size_t Read(std::span<char> buffer) const;

 private:
  struct State;
  explicit FileReader(std::unique_ptr<State> state);
  std::unique_ptr<State> state_;
};

/// Whether what the medium finds by the entry's name, if anything, has that very name.
bool HasRoom(const NativeEntry& entry);

/// What the program doesn't see in a folder, and why.
struct UnseenEntry {
  enum class Reason { kName, kSpecial, kHidden };
  std::string path;
  Reason reason;
};
/// Of a folder that can't be read, nothing. `files_only`: as files are listed, where hidden
/// ones aren't seen either.
std::vector<UnseenEntry> UnseenIn(const NativeEntry& folder, bool files_only);

/// The native path of what a path names, there or not, without a separator at its end.
std::string NativePathOf(NativeHost& host, const Path& path);
/// A form of it in which two are equal that the system takes for one.
std::string ComparedPath(const std::string& native);

/// Of a host that tidies up nothing: leftovers of copies would be deleted as soon as they
/// are seen.
NativeSurroundings SurroundingsThatKeepLeftovers();

}  // namespace tarnvale
