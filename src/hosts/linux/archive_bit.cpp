#include "hosts/linux/archive_bit.h"

#include <fcntl.h>
#include <linux/msdos_fs.h>
#include <sys/ioctl.h>
#include <sys/xattr.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <optional>
#include <string_view>

#include "base/failure.h"
#include "base/stable_hash.h"
#include "hosts/linux/descriptor.h"

namespace tarnvale {
namespace {

template <class Time>
std::int64_t Nanoseconds(const Time& time) {
  return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

ArchiveMark MarkOf(const std::string& native, const struct stat& info) {
  ArchiveMark mark{info.st_size, Nanoseconds(info.st_mtim), info.st_ino, 0, 0};
  struct statx more {};
  if (::statx(AT_FDCWD, native.c_str(), 0, STATX_BTIME | STATX_CTIME, &more) != 0) return mark;
  if ((more.stx_mask & STATX_BTIME) != 0) mark.born_ns = Nanoseconds(more.stx_btime);
  mark.changed_ns = Nanoseconds(more.stx_ctime);
  return mark;
}

// Media with an archive bit number their files anew each time they are mounted.
ArchiveMark OnPassingNumbers(ArchiveMark mark) {
  mark.inode = 0;
  mark.changed_ns = 0;
  return mark;
}

// Without the time of the last change, as storing this changes the file.
std::string IdentityText(ArchiveMark mark) {
  mark.changed_ns = 0;
  return mark.ToText() + " ";
}

std::string StoredMark(const std::string& native) {
  std::array<char, 160> text{};
  const ssize_t length = ::getxattr(native.c_str(), kArchivedAttribute, text.data(), text.size());
  return {text.data(), length < 0 ? 0 : static_cast<std::size_t>(length)};
}

// The attribute byte that the medium itself keeps; none where it keeps none.
// Only for plain files: opening anything else could do something.
class MediumAttributes {
 public:
  explicit MediumAttributes(const std::string& native)
      : file_(::open(native.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC)) {}

  std::optional<bool> Archive() {
    if (!file_ || ::ioctl(file_.Get(), FAT_IOCTL_GET_ATTRIBUTES, &bits_) != 0) return std::nullopt;
    return (bits_ & ATTR_ARCH) != 0;
  }

  /// Call Archive first. False when refused.
  bool SetArchive(bool archive) {
    bits_ = archive ? bits_ | ATTR_ARCH : bits_ & ~std::uint32_t{ATTR_ARCH};
    return ::ioctl(file_.Get(), FAT_IOCTL_SET_ATTRIBUTES, &bits_) == 0;
  }

 private:
  Descriptor file_;
  std::uint32_t bits_ = 0;
};

bool HasNoExtendedAttributes(int error) {
  return error == EOPNOTSUPP || error == ENOSYS;
}

}  // namespace

bool ArchiveBit::IsSet(const std::string& native, const struct stat& info) {
  const ArchiveMark mark = MarkOf(native, info);
  const ArchiveMark* const last = index_.Find(native);
  errno = 0;
  const std::string stored = StoredMark(native);
  if (HasNoExtendedAttributes(errno)) {
    if (const auto archive = MediumAttributes(native).Archive()) {
      return *archive || last == nullptr || *last != OnPassingNumbers(mark);
    }
  }
  // What had this name last counts for more than what the file says of itself: an
  // older version can come back to its name, and one file can have two names.
  if (last != nullptr) return *last != mark;
  return stored != IdentityText(mark) + StableHash(native);
}

void ArchiveBit::Clear(const std::string& native, const struct stat& info) {
  const ArchiveMark before = MarkOf(native, info);
  // First, as the file is left alone when this fails.
  index_.Set(native, before);
  const std::string identity = IdentityText(before);
  // A file with two names keeps the mark of the first: a new one would change it.
  const std::string text = identity + StableHash(native);
  if (!StoredMark(native).starts_with(identity) &&
      ::setxattr(native.c_str(), kArchivedAttribute, text.data(), text.size(), 0) != 0 &&
      HasNoExtendedAttributes(errno)) {
    MediumAttributes medium(native);
    if (medium.Archive() && medium.SetArchive(false)) {
      index_.Set(native, OnPassingNumbers(MarkOf(native, info)));
      return;
    }
  }
  index_.Set(native, MarkOf(native, info));
}

void ArchiveBit::Set(const std::string& native) {
  index_.Remove(native);
  if (::removexattr(native.c_str(), kArchivedAttribute) == 0 || errno == ENODATA) return;
  if (HasNoExtendedAttributes(errno)) {
    MediumAttributes medium(native);
    if (medium.Archive() && !medium.SetArchive(true)) throw ProgramError(kPathFileAccess);
    return;
  }
  // Refused: harmless where there was nothing to remove.
  if (::getxattr(native.c_str(), kArchivedAttribute, nullptr, 0) >= 0) {
    throw ProgramError(kPathFileAccess);
  }
}

}  // namespace tarnvale
