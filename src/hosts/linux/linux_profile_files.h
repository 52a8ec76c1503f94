// Private profiles on Linux.
#pragma once

#include <sys/stat.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "hosts/linux/locator.h"
#include "hosts/linux/replacement.h"
#include "platform/profile_files.h"
#include "platform/profile_text.h"

namespace tarnvale {

/// Keeps the parsed text of each profile and reads it anew when the file is
/// another one or has changed. Every write is held back until Flush. With the
/// first one a temporary is made beside the file, so that a folder that can't be
/// written is noticed at once. A settings file that is a symbolic link is
/// replaced where the link leads. Held-back writes end with this object.
class LinuxProfileFiles : public ProfileFiles {
 public:
  /// Both must outlive it.
  LinuxProfileFiles(Locator& locator, Temporaries& temporaries);

  std::string Read(const std::string& section, const std::string& key, const std::string& fallback,
                   std::size_t buffer_size, const Path& file) override;
  bool Write(const std::string& section, const std::string& key, const std::string& value,
             const Path& file) override;
  /// What another instance wrote in the meantime stays where these writes don't
  /// name it. The file is its owner's alone afterwards.
  bool Flush(const Path& file) override;

 private:
  struct Edit {
    std::string section;
    std::string key;
    std::string value;
    /// Of what another instance has written: only over this, which we had put there.
    bool is_taken_in = false;
    std::optional<std::string> over;
  };
  /// Where a profile lies, links followed.
  struct Place {
    std::string folder;  // without a slash at the end
    std::string name;
    bool exists = false;
    struct stat info {};

    std::string Native() const { return folder + "/" + name; }
  };
  struct Profile {
    Path file;         // as the last write named it
    ProfileText text;  // what the file holds, with the edits
    bool known = false;
    bool existed = false;
    struct stat state {};
    std::vector<Edit> edits;
    std::unique_ptr<TemporarySlot> slot;
    std::unique_ptr<Replacement> beside;  // none while no write is held back
  };

  enum class Finding { kPlace, kNowhere, kUnknown };
  Finding Find(const Path& file, Place& place);
  static Place AsItIs(Place place);
  static bool IsAsItWas(const Place& place);
  Profile& ProfileAt(const Path& file, const Place& place);
  bool Refresh(Profile& profile, const Place& place);
  bool BeginTemporary(Profile& profile, const Place& place);
  static void LetGo(Profile& profile);
  bool GiveUp(const Path& file);
  bool Put(Profile& profile, const Place& place);
  bool WriteBeside(Profile& profile, const Place& place, const std::string& bytes);
  enum class Outcome { kDone, kAgain, kFailed };
  static Outcome PutInPlace(Profile& profile, const Place& place, const std::string& old);
  static bool TakeIn(Profile& profile, const std::string& old);
  static void Apply(Profile& profile);

  Locator& locator_;
  Temporaries& temporaries_;
  std::unordered_map<std::string, Profile> profiles_;  // by native path
  // Keys that couldn't be read when they were last wanted, by file: what they hold is
  // not known to whoever would write them.
  std::unordered_map<Path, std::set<std::pair<std::string, std::string>>> unread_;
};

}  // namespace tarnvale
