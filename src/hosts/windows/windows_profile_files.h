// Private profiles on Windows.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "hosts/windows/file_state.h"
#include "hosts/windows/locator.h"
#include "hosts/windows/temporaries.h"
#include "hosts/windows/text_coding.h"
#include "platform/profile_files.h"
#include "platform/profile_text.h"

namespace tarnvale {

/// Reads and writes what the system's own calls do, which lose blank lines and write
/// each value on its own. Every write is held back until Flush.
class WindowsProfileFiles : public ProfileFiles {
 public:
  WindowsProfileFiles(const Locator& locator, Temporaries& temporaries, TextCoding coding);

  std::string Read(const std::string& section, const std::string& key, const std::string& fallback,
                   std::size_t buffer_size, const Path& file) override;
  bool Write(const std::string& section, const std::string& key, const std::string& value,
             const Path& file) override;
  /// What another instance wrote in the meantime stays where these writes don't name it.
  /// A text that the code page can't hold turns the file into UTF-8.
  bool Flush(const Path& file) override;

 private:
  struct Edit {
    std::string section;
    std::string key;
    std::string value;
  };
  /// What a file was like when it was last read.
  struct Version {
    FileState state;
    FileNumber number;
  };
  struct Profile {
    ProfileText text;  ///< what the file holds, with the edits
    bool is_known = false;
    std::optional<Version> version;  ///< none: the file isn't there
    std::vector<Edit> edits;
    /// Keys that couldn't be read at the last try.
    std::set<std::pair<std::string, std::string>> unread;
  };

  Profile& ProfileOf(const std::wstring& native);
  bool Refresh(Profile& profile, const std::wstring& native);
  bool Put(Profile& profile, const std::wstring& native);
  bool WriteBeside(const std::wstring& native, const std::string& bytes);
  static std::optional<Version> VersionOf(const std::wstring& native);
  static bool IsStill(const std::optional<Version>& version, const std::wstring& native);

  const Locator& locator_;
  TemporarySlot slot_;
  TextCoding coding_;
  std::map<std::wstring, Profile> profiles_;  // by native path, without regard to case
};

}  // namespace tarnvale
