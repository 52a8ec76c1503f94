// A folder that entries of an archive are written to.
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "native/native_file.h"

namespace tarnvale {

/// It is held open: whatever comes to stand at its path, it stays this one. All raise
/// SystemError.
class OutputFolder {
 public:
  OutputFolder(OutputFolder&& other) noexcept;
  OutputFolder& operator=(OutputFolder&& other) noexcept;
  ~OutputFolder();

  /// By a native path; none where there is none.
  static std::optional<OutputFolder> Open(const std::string& native);
  /// Likewise, after making it with all that it lies in.
  static OutputFolder Make(const std::string& native);
  /// Itself, held once more.
  OutputFolder Again() const;

  /// A folder in it; none where nothing has the name. Links are entered as well.
  struct Inner;
  std::optional<Inner> Enter(const std::string& name) const;
  /// One that is there already is no failure.
  void MakeInner(const std::string& name) const;
  /// Whether a folder that was entered by a link lies in `outer`. Where the system
  /// doesn't know, it doesn't.
  bool LiesIn(const OutputFolder& outer) const;

  /// What has a name in it; a link is itself.
  struct Entry {
    FileIdentity identity;
    bool is_plain_folder = false;
  };
  std::optional<Entry> Find(const std::string& name) const;

  /// Writes a file beside, flushes it and gives it its name, in place of an old file or of
  /// a link. Only those may read or write it who could the file that it replaces.
  /// stopped. One at a time.
  FileIdentity Write(const std::string& name, std::span<const std::uint8_t> bytes) const;

 private:
  struct State;
  explicit OutputFolder(std::unique_ptr<State> state);
  std::unique_ptr<State> state_;
};

struct OutputFolder::Inner {
  OutputFolder folder;
  bool by_link = false;
};

/// A name that begins at a root of the system, taken apart: the native root, and the rest.
/// None where there is no such root.
struct RootedName {
  std::string root;
  std::string rest;
};
std::optional<RootedName> TakeRoot(const std::string& name);

/// Why no file can have this name here; null when one can.
const char* WrongWithName(const std::string& name);

/// Longer names lead nowhere, in bytes.
std::size_t LongestPath();

}  // namespace tarnvale
