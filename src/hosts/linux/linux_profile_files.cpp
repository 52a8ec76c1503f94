#include "hosts/linux/linux_profile_files.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <string_view>
#include <utility>

#include "base/characters.h"
#include "base/failure.h"
#include "base/text.h"
#include "hosts/linux/file_state.h"
#include "hosts/linux/folder_scan.h"
#include "hosts/linux/name_case.h"
#include "hosts/linux/own_links.h"
#include "hosts/linux/paths.h"

namespace tarnvale {
namespace {

// Chosen: a settings file holds passwords, so it is its owner's alone.
constexpr mode_t kFileMode = 0600;

bool ReadWhole(int file, std::string& bytes) {
  std::array<char, 65536> buffer{};
  while (true) {
    const ssize_t got = ::read(file, buffer.data(), buffer.size());
    if (got == 0) return true;
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return false;
    bytes.append(buffer.data(), static_cast<std::size_t>(got));
  }
}

// Reads a plain file and its state. Should a pipe have taken its place, this
// doesn't wait for it.
bool ReadFile(const std::string& native, struct stat& state, std::string& bytes) {
  const Descriptor file(OpenByOwnLinks(AT_FDCWD, native, O_RDONLY | O_NONBLOCK | O_NOCTTY));
  return file && ::fstat(file.Get(), &state) == 0 && S_ISREG(state.st_mode) &&
         ReadWhole(file.Get(), bytes);
}

// Whether a file is the one that was read. Exchanging it changes its third time.
bool SameFile(const struct stat& a, const struct stat& b) {
  return AreOneFile(a, b) && a.st_size == b.st_size && AreOneTime(a.st_mtim, b.st_mtim);
}

bool MayBeReplaced(const struct stat& info, const std::string& native) {
  return S_ISREG(info.st_mode) && !IsReadOnly(info) &&
         ::faccessat(AT_FDCWD, native.c_str(), W_OK, AT_EACCESS) == 0;
}

}  // namespace

LinuxProfileFiles::LinuxProfileFiles(Locator& locator, Temporaries& temporaries)
    : locator_(locator), temporaries_(temporaries) {}

// kNowhere: no file could lie there. kUnknown: that can't be determined.
LinuxProfileFiles::Finding LinuxProfileFiles::Find(const Path& file, Place& place) {
  const Located located = locator_.Locate(file);
  if (located.error != 0) return Finding::kUnknown;
  if (!located.folder_found || !CanBeNamed(located.name)) return Finding::kNowhere;
  place.folder = located.folder;
  place.name = located.name;
  place.exists = located.found;
  place.info = located.info;
  if (!place.exists || !S_ISLNK(place.info.st_mode)) return Finding::kPlace;
  std::string native = place.Native();
  place.exists = GoByOwnLinks(AT_FDCWD, native, place.info);
  if (!place.exists && errno != ENOENT) return Finding::kUnknown;
  place.folder = NativeFolderOf(native);
  place.name = NativeNameOf(native);
  return Finding::kPlace;
}

LinuxProfileFiles::Place LinuxProfileFiles::AsItIs(Place place) {
  place.exists = ::lstat(place.Native().c_str(), &place.info) == 0;
  return place;
}

bool LinuxProfileFiles::IsAsItWas(const Place& place) {
  const Place now = AsItIs(place);
  return now.exists == place.exists && (!now.exists || SameState(now.info, place.info));
}

// The profile of a place. Held-back writes belong to the path that they were
// made with: the file may have come or gone in the meantime. One that isn't
// there goes by any spelling of its name.
LinuxProfileFiles::Profile& LinuxProfileFiles::ProfileAt(const Path& file, const Place& place) {
  const std::string missing = place.folder + "/" + FoldCase(place.name) + "/missing";
  const std::string key = place.exists ? place.Native() : missing;
  Profile& profile = profiles_[key];
  if (!profile.edits.empty()) return profile;
  const auto held = std::find_if(profiles_.begin(), profiles_.end(), [&](const auto& entry) {
    const auto& [native, other] = entry;
    return !other.edits.empty() && (native == missing || other.file == file);
  });
  if (held == profiles_.end()) return profile;
  profile = std::move(held->second);
  profiles_.erase(held);
  return profile;
}

// Brings the text up to what the medium holds, with the held-back edits. False
// when the file is there but can't be read: its text then counts as empty.
bool LinuxProfileFiles::Refresh(Profile& profile, const Place& place) {
  const bool same = profile.known && profile.existed == place.exists &&
                    (!place.exists || SameState(profile.state, place.info));
  if (same) return true;
  std::string bytes;
  profile.existed = place.exists;
  profile.state = place.info;
  profile.known = !place.exists || ReadFile(place.Native(), profile.state, bytes);
  profile.text = ProfileText(profile.known ? bytes : std::string());
  Apply(profile);
  return profile.known;
}

void LinuxProfileFiles::Apply(Profile& profile) {
  for (const Edit& edit : profile.edits) {
    const bool has_changed =
        edit.is_taken_in && profile.text.Value(edit.section, edit.key) != edit.over;
    if (!has_changed) profile.text.Set(edit.section, edit.key, edit.value);
  }
}

std::string LinuxProfileFiles::Read(const std::string& section, const std::string& key,
                                    const std::string& fallback, std::size_t buffer_size,
                                    const Path& file) {
  std::string value = fallback;
  Place place;
  // Until it has been read: whatever ends this before then leaves it unknown.
  const auto unread = unread_[file].emplace(section, key).first;
  const Finding finding = Find(file, place);
  bool is_read = finding == Finding::kNowhere;
  if (finding == Finding::kPlace) {
    Profile& profile = ProfileAt(file, place);
    is_read = Refresh(profile, place);
    if (auto found = profile.text.Value(section, key)) value = std::move(*found);
  }
  if (is_read) unread_[file].erase(unread);
  return std::string(FirstCharacters(value, buffer_size == 0 ? 0 : buffer_size - 1));
}

bool LinuxProfileFiles::Write(const std::string& section, const std::string& key,
                              const std::string& value, const Path& file) {
  Place place;
  if (!unread_[file].empty() || !ProfileText::CanHold(section, key, value) ||
      Find(file, place) != Finding::kPlace) {
    return false;
  }
  if (place.exists && !MayBeReplaced(place.info, place.Native())) return false;
  Profile& profile = ProfileAt(file, place);
  if (!Refresh(profile, place)) return false;
  if (profile.text.Holds(section, key, value)) return true;
  if (!profile.beside && !BeginTemporary(profile, place)) return false;
  profile.file = file;
  profile.text.Set(section, key, value);
  profile.edits.push_back({section, key, value, false, std::nullopt});
  return true;
}

// Makes the temporary beside the file, in place of one that it had.
bool LinuxProfileFiles::BeginTemporary(Profile& profile, const Place& place) {
  if (!profile.slot) profile.slot = std::make_unique<TemporarySlot>(temporaries_);
  profile.beside = std::make_unique<Replacement>(*profile.slot, place.folder);
  if (!profile.beside->Create(kFileMode)) profile.beside.reset();
  return profile.beside != nullptr;
}

void LinuxProfileFiles::LetGo(Profile& profile) {
  profile.beside.reset();
  profile.slot.reset();
  if (!profile.edits.empty()) profile.known = false;
  profile.edits.clear();
}

// Gives up what is held back for a path that leads nowhere any more. False when
// there was something.
bool LinuxProfileFiles::GiveUp(const Path& file) {
  bool nothing = true;
  for (auto& [native, profile] : profiles_) {
    if (profile.edits.empty() || !EqualIgnoringCase(profile.file, file)) continue;
    LetGo(profile);
    nothing = false;
  }
  return nothing;
}

bool LinuxProfileFiles::Flush(const Path& file) {
  Place place;
  if (Find(file, place) != Finding::kPlace) return GiveUp(file);
  Profile& profile = ProfileAt(file, place);
  if (profile.edits.empty()) return true;
  const bool done = Put(profile, place);
  LetGo(profile);
  // What processes left there that were killed between write and flush.
  if (done) SweepFolder(place.folder, temporaries_);
  return done;
}

// Chosen: no lock. The medium may take its time, so whether somebody else has replaced the
// file is looked at once more right before we do, and what they wrote is then taken in.
bool LinuxProfileFiles::Put(Profile& profile, const Place& place) {
  constexpr int kMostTries = 20;
  constexpr int kMostPuts = 1000;
  for (int tries = 1;; ++tries) {
    const Place now = AsItIs(place);
    if (now.exists && !MayBeReplaced(now.info, now.Native())) return false;
    if (!Refresh(profile, now)) return false;
    const std::string bytes = profile.text.Bytes();
    struct stat state {};
    std::string old;
    if (now.exists && ReadFile(now.Native(), state, old) && old == bytes) {
      if ((now.info.st_mode & 07777) == kFileMode ||
          ::fchmodat(AT_FDCWD, now.Native().c_str(), kFileMode, AT_SYMLINK_NOFOLLOW) == 0) {
        return true;
      }
    }
    // Another one than the text was read from.
    if (tries < kMostTries && now.exists && !SameFile(state, profile.state)) continue;
    if (!WriteBeside(profile, now, bytes)) return false;
    if (tries < kMostTries && !IsAsItWas(now)) continue;
    const Outcome outcome = PutInPlace(profile, now, old);
    if (outcome == Outcome::kAgain && tries < kMostPuts) continue;
    if (outcome == Outcome::kFailed) return false;
    profile.beside.reset();
    FlushFolder(AT_FDCWD, now.Native());
    return true;
  }
}

// Exchanges the two files and looks at what came out: were it another one than we read,
// somebody has written without our seeing it, and what that was is taken in with the next
// try. The named file is one whole version all the time.
LinuxProfileFiles::Outcome LinuxProfileFiles::PutInPlace(Profile& profile, const Place& place,
                                                         const std::string& old) {
  const char* const temporary = profile.beside->Path();
  const std::string native = place.Native();
  const unsigned flags = place.exists ? RENAME_EXCHANGE : RENAME_NOREPLACE;
  if (::renameat2(AT_FDCWD, temporary, AT_FDCWD, native.c_str(), flags) != 0) {
    // It has come or gone meanwhile.
    if (errno == (place.exists ? ENOENT : EEXIST)) return Outcome::kAgain;
    // A medium that knows only the plain way.
    if (errno != EINVAL && errno != ENOSYS) return Outcome::kFailed;
    return ::rename(temporary, native.c_str()) == 0 ? Outcome::kDone : Outcome::kFailed;
  }
  struct stat displaced {};
  if (!place.exists || ::lstat(temporary, &displaced) != 0 || SameFile(displaced, profile.state)) {
    return Outcome::kDone;
  }
  return TakeIn(profile, old) ? Outcome::kAgain : Outcome::kDone;
}

// What the file that was displaced holds and `old`, which we had read, doesn't. Ours
// holds where both have written. False when there is nothing to take in.
bool LinuxProfileFiles::TakeIn(Profile& profile, const std::string& old) {
  struct stat state {};
  std::string bytes;
  if (!ReadFile(profile.beside->Path(), state, bytes)) return false;
  const std::size_t before = profile.edits.size();
  ProfileText(bytes).ForEachChange(
      ProfileText(old),
      [&](std::string_view section, std::string_view key, std::string_view value) {
        const auto is_it = [&](const Edit& edit) {
          return !edit.is_taken_in && EqualIgnoringCase(edit.section, section) &&
                 EqualIgnoringCase(edit.key, key);
        };
        if (std::any_of(profile.edits.begin(), profile.edits.end(), is_it)) return;
        profile.edits.push_back({std::string(section), std::string(key), std::string(value), true,
                                 profile.text.Value(section, key)});
      });
  profile.known = false;
  return profile.edits.size() != before;
}

bool LinuxProfileFiles::WriteBeside(Profile& profile, const Place& place,
                                    const std::string& bytes) {
  if (!BeginTemporary(profile, place)) return false;
  const int file = profile.beside->Fd();
  // Ownership is kept where that is allowed.
  if (place.exists && ::fchown(file, place.info.st_uid, place.info.st_gid) != 0) errno = 0;
  return WriteAll(file, bytes) && profile.beside->Close(Flush::kYes);
}

}  // namespace tarnvale
