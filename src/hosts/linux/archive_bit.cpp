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
#include "hosts/linux/descriptor.h"
#include "hosts/linux/stable_hash.h"

namespace tarnvale {
namespace {

template <class Time>
std::int64_t Nanoseconds(const Time& time) {
  return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

ArchiveMark MarkOf(const std::string& native, const struct stat& info) {
  struct statx more {};
  const bool is_told = ::statx(AT_FDCWD, native.c_str(), 0, STATX_BTIME, &more) == 0 &&
                       (more.stx_mask & STATX_BTIME) != 0;
  return {info.st_size, Nanoseconds(info.st_mtim), info.st_ino,
          is_told ? Nanoseconds(more.stx_btime) : 0};
}

// Media with an archive bit number their files anew each time they are mounted.
ArchiveMark WithoutInode(ArchiveMark mark) {
  mark.inode = 0;
  return mark;
}

std::string AttributeText(const std::string& native, const ArchiveMark& mark) {
  return mark.ToText() + " " + StableHash(native);
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
  std::array<char, 160> text{};
  const ssize_t length = ::getxattr(native.c_str(), kArchivedAttribute, text.data(), text.size());
  if (length < 0 && HasNoExtendedAttributes(errno)) {
    if (const auto archive = MediumAttributes(native).Archive()) {
      return *archive || last == nullptr || *last != WithoutInode(mark);
    }
  }
  // What had this name last counts for more than what the file says of itself: an
  // older version can come back to its name, and one file can have two names.
  if (last != nullptr) return *last != mark;
  return length <= 0 || std::string_view(text.data(), static_cast<std::size_t>(length)) !=
                            AttributeText(native, mark);
}

void ArchiveBit::Clear(const std::string& native, const struct stat& info) {
  const ArchiveMark mark = MarkOf(native, info);
  index_.Set(native, mark);
  const std::string text = AttributeText(native, mark);
  if (::setxattr(native.c_str(), kArchivedAttribute, text.data(), text.size(), 0) == 0 ||
      !HasNoExtendedAttributes(errno)) {
    return;
  }
  MediumAttributes medium(native);
  if (medium.Archive() && medium.SetArchive(false)) index_.Set(native, WithoutInode(mark));
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
