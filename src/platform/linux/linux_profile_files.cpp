#include "platform/linux/linux_profile_files.h"

#include <fcntl.h>
#include <sys/file.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <string_view>
#include <utility>

#include "base/failure.h"
#include "base/text.h"
#include "platform/linux/folder_scan.h"
#include "platform/linux/own_links.h"
#include "platform/linux/paths.h"

namespace tarnvale {
namespace {

// Chosen: a settings file holds passwords, so a new one is its owner's alone.
constexpr mode_t kNewFileMode = 0600;

bool SameTime(const timespec& a, const timespec& b) {
  return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

bool SameFile(const struct stat& a, const struct stat& b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino && a.st_size == b.st_size &&
         SameTime(a.st_mtim, b.st_mtim) && SameTime(a.st_ctim, b.st_ctim);
}

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

bool MayBeReplaced(const struct stat& info, const std::string& native) {
  // The owner's write bit is asked for too: it stops nobody who is root.
  return S_ISREG(info.st_mode) && (info.st_mode & S_IWUSR) != 0 &&
         ::faccessat(AT_FDCWD, native.c_str(), W_OK, AT_EACCESS) == 0;
}

// Keeps other instances from replacing a file of this folder between our
// reading it and replacing it. Somebody who keeps the folder locked for longer,
// or a medium without locks, doesn't stop us.
class FolderLock {
 public:
  explicit FolderLock(const std::string& folder)
      : folder_(::open((folder + "/.").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    constexpr int kMostTries = 100;
    constexpr timespec kPause{0, 10'000'000};
    for (int i = 0; i < kMostTries && folder_; ++i) {
      if (::flock(folder_.Get(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK) return;
      ::nanosleep(&kPause, nullptr);
    }
  }

  // Some media can't flush folders; the file itself is safe all the same.
  void Flush() const {
    if (folder_) ::fsync(folder_.Get());
  }

 private:
  Descriptor folder_;
};

// What processes left in the folder that were killed between write and flush.
void SweepFolder(const std::string& folder, const Temporaries& temporaries) {
  try {
    FolderScan scan(OpenNativeFolder(folder + "/.", true), temporaries);
    while (scan.Next() != nullptr) {
    }
  } catch (const ProgramError&) {
    // A folder that can be written but not read keeps its leftovers.
  }
}

}  // namespace

LinuxProfileFiles::LinuxProfileFiles(Locator& locator, std::string state_folder)
    : locator_(locator), state_folder_(std::move(state_folder)) {}

LinuxProfileFiles::~LinuxProfileFiles() {
  for (auto& [native, profile] : profiles_) LetGo(profile);
}

// False when no file could lie there.
bool LinuxProfileFiles::Find(const Path& file, Place& place) {
  const Located located = locator_.Locate(file);
  if (!located.folder_found || located.error != 0 || !CanBeNamed(located.name)) return false;
  place.folder = located.folder;
  place.name = located.name;
  place.exists = located.found;
  place.info = located.info;
  if (!place.exists || !S_ISLNK(place.info.st_mode)) return true;
  std::string native = place.Native();
  place.exists = GoByOwnLinks(AT_FDCWD, native, place.info);
  if (!place.exists && errno != ENOENT) return false;
  place.folder = NativeFolderOf(native);
  place.name = NativeNameOf(native);
  return true;
}

// A profile that doesn't exist yet goes by any spelling of its name.
LinuxProfileFiles::Profile& LinuxProfileFiles::ProfileAt(const Place& place) {
  const std::string missing = place.folder + "/" + ToLower(place.name) + "/missing";
  if (!place.exists) return profiles_[missing];
  const std::string native = place.Native();
  if (auto made_meanwhile = profiles_.extract(missing); made_meanwhile) {
    if (!made_meanwhile.mapped().edits.empty()) {
      made_meanwhile.key() = native;
      if (const auto old = profiles_.find(native); old != profiles_.end()) {
        LetGo(old->second);
        profiles_.erase(old);
      }
      profiles_.insert(std::move(made_meanwhile));
    }
  }
  return profiles_[native];
}

// Brings the text up to what the medium holds, with the held-back edits. A file
// that can't be read counts as empty.
void LinuxProfileFiles::Refresh(Profile& profile, const Place& place) {
  const bool same = profile.known && profile.existed == place.exists &&
                    (!place.exists || SameFile(profile.state, place.info));
  if (same) return;
  std::string bytes;
  profile.known = true;
  profile.existed = place.exists;
  if (place.exists) {
    profile.state = place.info;
    if (!ReadFile(place.Native(), profile.state, bytes)) bytes.clear();
  }
  profile.text = ProfileText(bytes);
  for (const Edit& edit : profile.edits) profile.text.Set(edit.section, edit.key, edit.value);
}

std::string LinuxProfileFiles::Read(const std::string& section, const std::string& key,
                                    const std::string& fallback, std::size_t buffer_size,
                                    const Path& file) {
  std::string value = fallback;
  Place place;
  if (Find(file, place)) {
    Profile& profile = ProfileAt(place);
    Refresh(profile, place);
    if (auto found = profile.text.Value(section, key)) value = std::move(*found);
  }
  value.resize(std::min(value.size(), buffer_size == 0 ? 0 : buffer_size - 1));
  return value;
}

bool LinuxProfileFiles::Write(const std::string& section, const std::string& key,
                              const std::string& value, const Path& file) {
  Place place;
  if (!ProfileText::CanHold(section, key, value) || !Find(file, place)) return false;
  if (place.exists && !MayBeReplaced(place.info, place.Native())) return false;
  Profile& profile = ProfileAt(place);
  Refresh(profile, place);
  if (profile.text.Holds(section, key, value)) return true;
  if (profile.temporary_path.empty() && !Hold(profile, place)) return false;
  profile.text.Set(section, key, value);
  profile.edits.push_back({section, key, value});
  return true;
}

bool LinuxProfileFiles::Hold(Profile& profile, const Place& place) {
  if (!profile.temporaries) profile.temporaries = std::make_unique<Temporaries>(state_folder_);
  const std::string& path = profile.temporaries->Begin(place.folder);
  profile.temporary = CreateFresh(AT_FDCWD, path.c_str(), kNewFileMode);
  if (!profile.temporary) return false;
  profile.temporary_path = path;
  return true;
}

void LinuxProfileFiles::LetGo(Profile& profile) {
  if (!profile.temporary_path.empty()) ::unlink(profile.temporary_path.c_str());
  profile.temporary_path.clear();
  profile.temporary.Close();
  if (!profile.edits.empty()) profile.known = false;
  profile.edits.clear();
}

bool LinuxProfileFiles::Flush(const Path& file) {
  Place place;
  if (!Find(file, place)) return false;
  Profile& profile = ProfileAt(place);
  if (profile.edits.empty()) return true;
  const bool done = Put(profile, place);
  const auto temporaries = std::move(profile.temporaries);
  LetGo(profile);
  if (done) SweepFolder(place.folder, *temporaries);
  return done;
}

// The state of the file is asked for again under the lock.
bool LinuxProfileFiles::Put(Profile& profile, const Place& place) {
  const FolderLock lock(place.folder);
  Place now = place;
  now.exists = ::lstat(now.Native().c_str(), &now.info) == 0;
  if (now.exists && !MayBeReplaced(now.info, now.Native())) return false;
  Refresh(profile, now);
  const std::string bytes = profile.text.Bytes();
  std::string old;
  if (now.exists && ReadFile(now.Native(), now.info, old) && old == bytes) return true;
  if (!WriteAndReplace(profile, now, bytes)) return false;
  lock.Flush();
  return true;
}

bool LinuxProfileFiles::WriteAndReplace(Profile& profile, const Place& place,
                                        const std::string& bytes) {
  const int file = profile.temporary.Get();
  if (place.exists) {
    // Ownership is kept where that is allowed; it clears some mode bits, so it
    // comes first.
    if (::fchown(file, place.info.st_uid, place.info.st_gid) != 0) errno = 0;
    if (::fchmod(file, place.info.st_mode & 07777) != 0) errno = 0;
  }
  if (!WriteAll(file, bytes) || ::fsync(file) != 0) return false;
  if (!profile.temporary.Close()) return false;
  if (::rename(profile.temporary_path.c_str(), place.Native().c_str()) != 0) return false;
  profile.temporary_path.clear();
  return true;
}

}  // namespace tarnvale
