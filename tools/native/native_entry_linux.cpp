#include "native/native_entry.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <string_view>
#include <utility>

#include "hosts/linux/own_links.h"
#include "platform/temporary_name.h"

namespace tarnvale {
namespace {

// Should a pipe have come into a file's place, opening it doesn't wait.
constexpr int kOpenFlags = O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

int FdOf(const NativeEntry& entry) {
  return entry.folder != nullptr ? entry.folder->Fd() : AT_FDCWD;
}

NativeState StateOf(const struct stat& info) {
  const bool is_plain = S_ISREG(info.st_mode);
  return {is_plain,     S_ISLNK(info.st_mode), is_plain && (info.st_mode & S_IWUSR) == 0,
          info.st_size, info.st_mtim.tv_sec,   info.st_mtim.tv_nsec};
}

bool IsSpecial(const dirent& entry) {
  return entry.d_type == DT_CHR || entry.d_type == DT_BLK || entry.d_type == DT_FIFO ||
         entry.d_type == DT_SOCK;
}

// Only the owner may leave the time of the last access as it is.
template <class Open>
Descriptor OpenKeepingTime(Open&& open) {
  Descriptor file = open(kOpenFlags | O_NOATIME);
  if (!file && errno == EPERM) file = open(kOpenFlags);
  if (!file) throw SystemError();
  return file;
}

}  // namespace

std::string NativeEntry::Path() const {
  if (folder == nullptr) return name;
  return name.empty() ? folder->Native() : folder->Native() + "/" + name;
}

std::optional<NativeState> StateOfEntry(const NativeEntry& entry) {
  struct stat info {};
  if (::fstatat(FdOf(entry), entry.name.c_str(), &info, AT_SYMLINK_NOFOLLOW) == 0) {
    return StateOf(info);
  }
  if (errno != ENOENT && errno != ENOTDIR) throw SystemError();
  return std::nullopt;
}

NativeState StateBehindLinks(const std::string& native) {
  struct stat info {};
  if (!StateByOwnLinks(AT_FDCWD, native, info)) throw SystemError();
  return StateOf(info);
}

// What a drive that went away has left of a copy is replaced.
bool StaysAsReadOnly(const NativeState& source, const NativeState& copy) {
  const bool is_cut_short = copy.size_bytes < source.size_bytes &&
                            copy.modified_s == source.modified_s &&
                            copy.modified_fraction_ns == source.modified_fraction_ns;
  return copy.is_read_only && !is_cut_short;
}

std::optional<std::string> LinkOf(const NativeEntry& entry) {
  std::array<char, PATH_MAX> text{};
  const ssize_t length = ::readlinkat(FdOf(entry), entry.name.c_str(), text.data(), text.size());
  if (length >= 0) return std::string(text.data(), static_cast<std::size_t>(length));
  if (errno != EINVAL) throw SystemError();
  return std::nullopt;
}

struct FileReader::State {
  Descriptor file;
};

FileReader::FileReader(std::unique_ptr<State> state) : state_(std::move(state)) {}
FileReader::FileReader(FileReader&& other) noexcept = default;
FileReader::~FileReader() = default;

FileReader FileReader::Open(const NativeEntry& entry) {
  return FileReader(std::make_unique<State>(State{OpenKeepingTime([&](int flags) {
    return Descriptor(::openat(FdOf(entry), entry.name.c_str(), flags | O_NOFOLLOW));
  })}));
}

FileReader FileReader::OpenBehindLinks(const std::string& native) {
  return FileReader(std::make_unique<State>(
      State{OpenKeepingTime([&](int flags) { return OpenByOwnLinks(AT_FDCWD, native, flags); })}));
}

std::size_t FileReader::Read(std::span<char> buffer) const {
  std::size_t done = 0;
  while (done < buffer.size()) {
    const ssize_t got = ::read(state_->file.Get(), buffer.data() + done, buffer.size() - done);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) throw SystemError();
    if (got == 0) break;
    done += static_cast<std::size_t>(got);
  }
  return done;
}

bool HasRoom(const NativeEntry& entry) {
  struct stat there {};
  return ::fstatat(FdOf(entry), entry.name.c_str(), &there, AT_SYMLINK_NOFOLLOW) != 0 ||
         entry.folder->HasExactly(entry.name, there);
}

std::vector<UnseenEntry> UnseenIn(const NativeEntry& folder, bool files_only) {
  std::vector<UnseenEntry> unseen;
  const std::string path = folder.Path();
  const char* const within = folder.folder != nullptr ? "." : path.c_str();
  Descriptor again(::openat(FdOf(folder), within, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!again) return unseen;
  const std::unique_ptr<DIR, int (*)(DIR*)> names(::fdopendir(again.Get()), &::closedir);
  if (!names) return unseen;
  again.Release();
  while (const dirent* entry = ::readdir(names.get())) {
    const std::string_view name = entry->d_name;
    if (name == "." || name == ".." || IsOwnName(name)) continue;
    if (files_only && entry->d_type == DT_DIR) continue;
    const auto add = [&](UnseenEntry::Reason reason) {
      unseen.push_back({path + "/" + entry->d_name, reason});
    };
    if (!CanBeNamed(name)) {
      add(UnseenEntry::Reason::kName);
    } else if (IsSpecial(*entry)) {
      add(UnseenEntry::Reason::kSpecial);
    } else if (files_only && name.front() == '.') {
      add(UnseenEntry::Reason::kHidden);
    }
  }
  return unseen;
}

std::string NativePathOf(NativeHost& host, const Path& path) {
  std::string there = host.NativeOf(path);
  if (there.empty()) there = DrivePaths("/").ToNative(path).value_or(path);
  while (there.size() > 1 && (there.ends_with('/') || there.ends_with("/."))) there.pop_back();
  return there;
}

std::string ComparedPath(const std::string& native) {
  return native;
}

NativeSurroundings SurroundingsThatKeepLeftovers() {
  // Nothing can lie there.
  return {.state_folder = "/dev/null/none", .locale_name = "C"};
}

}  // namespace tarnvale
