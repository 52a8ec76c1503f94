#include "platform/profile_table.h"

#include <algorithm>
#include <string_view>

#include "base/characters.h"
#include "base/text.h"

namespace tarnvale {

ProfileTable::Profile& ProfileTable::ProfileOf(const Path& file) {
  Profile& profile = profiles_[file];
  if (!profile.native) profile.native = MakeNative(file);
  if (!profile.edits.empty()) return profile;
  const auto is_one = [&](const auto& entry) {
    const auto& [path, other] = entry;
    return !other.edits.empty() && EqualIgnoringCase(path, file) && other.native->Find() &&
           profile.native->Find() && other.native->Place() == profile.native->Place();
  };
  const auto other = std::find_if(profiles_.begin(), profiles_.end(), is_one);
  return other == profiles_.end() ? profile : other->second;
}

// Brings the text up to what the medium holds, with the held-back edits. False when the
// file is there but can't be read: its text then counts as empty.
bool ProfileTable::Refresh(Profile& profile) {
  const bool is_found = profile.native->Find();
  if (is_found && profile.is_known && profile.native->IsAsRead()) return true;
  const auto bytes = is_found ? profile.native->Read() : std::nullopt;
  profile.is_known = bytes.has_value();
  profile.bytes = bytes.value_or(std::string());
  profile.text = ProfileText(profile.bytes);
  for (const Edit& edit : profile.edits) {
    const bool has_changed =
        edit.is_taken_in && profile.text.Value(edit.section, edit.key) != edit.over;
    if (!has_changed) profile.text.Set(edit.section, edit.key, edit.value);
  }
  return profile.is_known;
}

std::string ProfileTable::Read(const std::string& section, const std::string& key,
                               const std::string& fallback, std::size_t buffer_size,
                               const Path& file) {
  Profile& profile = ProfileOf(file);
  // Until it has been read: whatever ends this before then leaves it unknown.
  const auto unread = profile.unread.emplace(section, key).first;
  if (Refresh(profile)) profile.unread.erase(unread);
  const std::string value = profile.text.Value(section, key).value_or(fallback);
  return std::string(FirstCharacters(value, buffer_size == 0 ? 0 : buffer_size - 1));
}

bool ProfileTable::Write(const std::string& section, const std::string& key,
                         const std::string& value, const Path& file) {
  Profile& profile = ProfileOf(file);
  if (!profile.unread.empty() || !ProfileText::CanHold(section, key, value) || !Refresh(profile) ||
      !profile.native->MayBeWritten()) {
    return false;
  }
  if (profile.text.Holds(section, key, value)) return true;
  if (profile.edits.empty() && !profile.native->Begin()) return false;
  profile.text.Set(section, key, value);
  profile.edits.push_back({section, key, value, false, std::nullopt});
  return true;
}

bool ProfileTable::Flush(const Path& file) {
  Profile& profile = ProfileOf(file);
  if (profile.edits.empty()) return true;
  const bool is_done = Put(profile);
  profile.native->End();
  profile.edits.clear();
  profile.text = ProfileText(profile.bytes);
  return is_done;
}

// Chosen: the medium may take its time, so nothing is locked meanwhile. What another
// instance has written by then is taken in.
bool ProfileTable::Put(Profile& profile) {
  constexpr int kMostLooks = 20;
  constexpr int kMostTries = 1000;
  for (int tries = 1;; ++tries) {
    if (!Refresh(profile) || !profile.native->MayBeWritten()) return false;
    const std::string bytes = profile.text.Bytes();
    if (bytes == profile.bytes && profile.native->Keep()) return true;
    std::string displaced;
    const auto outcome = profile.native->Replace(bytes, tries < kMostLooks, displaced);
    if (outcome == NativeProfile::Outcome::kFailed) return false;
    if (outcome == NativeProfile::Outcome::kDone || tries == kMostTries) {
      profile.bytes = bytes;
      return true;
    }
    TakeIn(profile, displaced);
  }
}

// What the file that was displaced holds and the one that was read doesn't. Ours holds
// where both have written.
void ProfileTable::TakeIn(Profile& profile, const std::string& displaced) {
  ProfileText(displaced).ForEachChange(
      ProfileText(profile.bytes),
      [&](std::string_view section, std::string_view key, std::string_view value) {
        const auto is_ours = [&](const Edit& edit) {
          return !edit.is_taken_in && EqualIgnoringCase(edit.section, section) &&
                 EqualIgnoringCase(edit.key, key);
        };
        if (std::any_of(profile.edits.begin(), profile.edits.end(), is_ours)) return;
        profile.edits.push_back({std::string(section), std::string(key), std::string(value), true,
                                 profile.text.Value(section, key)});
      });
}

}  // namespace tarnvale
