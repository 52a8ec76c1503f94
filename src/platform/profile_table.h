// Private profiles, for hosts: what is left to them is one file.
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/profile_files.h"
#include "platform/profile_text.h"

namespace tarnvale {

/// The file of a profile, there or not. Raises nothing.
class NativeProfile {
 public:
  virtual ~NativeProfile() = default;

  /// Looks anew what the path leads to. False when that can't be determined. The next
  /// four are about what was found.
  virtual bool Find() = 0;
  /// One text for one file, there or not, however the path spells it.
  virtual std::string Place() = 0;
  /// Whether it is what Read found.
  virtual bool IsAsRead() = 0;
  /// Its bytes, none of them when nothing is there. No result when it can't be read.
  virtual std::optional<std::string> Read() = 0;
  /// Whether it may be replaced, or made.
  virtual bool MayBeWritten() = 0;

  /// Before the first write is held back: false when the folder can't be written.
  virtual bool Begin() = 0;
  /// For a file that holds already what was to be written. False when it is to be replaced
  /// all the same.
  virtual bool Keep() { return true; }
  enum class Outcome { kDone, kAgain, kFailed };
  /// Puts `bytes` onto the medium, in one step. `looks_first`: not when it isn't as it was
  /// read any more. What this has replaced unread is put into `displaced`. After kAgain
  /// it is to be read and replaced once more.
  virtual Outcome Replace(const std::string& bytes, bool looks_first, std::string& displaced) = 0;
  /// After the last Replace: lets go of what Begin made.
  virtual void End() {}
};

/// Keeps the text of each profile and reads it anew when the file is another one or has
/// changed. Held-back writes belong to the path that they were made with, and to other
/// spellings that lead to the same file. They end with this object.
class ProfileTable : public ProfileFiles {
 public:
  std::string Read(const std::string& section, const std::string& key, const std::string& fallback,
                   std::size_t buffer_size, const Path& file) override;
  bool Write(const std::string& section, const std::string& key, const std::string& value,
             const Path& file) override;
  bool Flush(const Path& file) override;

 protected:
  virtual std::unique_ptr<NativeProfile> MakeNative(const Path& file) = 0;

 private:
  struct Edit {
    std::string section;
    std::string key;
    std::string value;
    /// Of what another instance has written: only over this, which we had put there.
    bool is_taken_in = false;
    std::optional<std::string> over;
  };
  struct Profile {
    std::unique_ptr<NativeProfile> native;
    bool is_known = false;  ///< the file could be read
    std::string bytes;      ///< of the file
    ProfileText text;       ///< those, with the edits
    std::vector<Edit> edits;
    /// Keys that couldn't be read when they were last wanted: what they hold is not known
    /// to whoever would write them.
    std::set<std::pair<std::string, std::string>> unread;
  };

  Profile& ProfileOf(const Path& file);
  static bool Refresh(Profile& profile);
  static bool Put(Profile& profile);
  static void TakeIn(Profile& profile, const std::string& displaced);

  std::map<Path, Profile> profiles_;
};

}  // namespace tarnvale
