#include "tests/support/fake_profiles.h"

#include <optional>

#include "base/characters.h"
#include "base/failure.h"
#include "base/text.h"

namespace tarnvale::testing {

// The profile as it is on the medium now, with the held-back edits.
FakeProfiles::Profile& FakeProfiles::Current(const Path& file) {
  Profile& profile = profiles_[ToLower(file)];
  const auto node = files_.Find(file);
  const bool exists = node != nullptr && !node->is_folder;
  const std::uint64_t revision = exists ? node->revision : 0;
  if (exists == profile.exists && revision == profile.revision) return profile;
  profile.text = exists ? ProfileText(node->content) : ProfileText();
  profile.exists = exists;
  profile.revision = revision;
  for (const Edit& edit : profile.edits) profile.text.Set(edit.section, edit.key, edit.value);
  return profile;
}

std::string FakeProfiles::Read(const std::string& section, const std::string& key,
                               const std::string& fallback, std::size_t buffer_size,
                               const Path& file) {
  std::optional<std::string> value;
  if (EnterAndFails("Read", file)) {
    unread_[file].emplace(section, key);
  } else {
    unread_[file].erase({section, key});
    value = Current(file).text.Value(section, key);
  }
  return std::string(
      FirstCharacters(value.value_or(fallback), buffer_size == 0 ? 0 : buffer_size - 1));
}

bool FakeProfiles::CanWrite(const Path& file) {
  if (Fails("Read", file)) return false;
  const auto node = files_.Find(file);
  if (node != nullptr) return !node->is_folder && (node->flags & attribute::kReadOnly) == 0;
  PassedOver pass;
  return pass.Step([&] { files_.RequireFolderOf(file); });
}

bool FakeProfiles::Write(const std::string& section, const std::string& key,
                         const std::string& value, const Path& file) {
  if (EnterAndFails("Write", file)) return false;
  if (!unread_[file].empty() || !ProfileText::CanHold(section, key, value) || !CanWrite(file))
    return false;
  Profile& profile = Current(file);
  if (profile.text.Set(section, key, value)) profile.edits.push_back({section, key, value});
  return true;
}

bool FakeProfiles::Flush(const Path& file) {
  const bool fails = EnterAndFails("Flush", file);
  Profile& profile = Current(file);
  if (profile.edits.empty()) return true;
  if (!fails && CanWrite(file)) {
    const std::string bytes = profile.text.Bytes();
    const auto node = files_.FileForWriting(file);
    if (node->content != bytes) files_.SetContent(*node, bytes);
    profiles_.erase(ToLower(file));
    return true;
  }
  profiles_.erase(ToLower(file));
  return false;
}

}  // namespace tarnvale::testing
