#include "platform/linux/archive_bit.h"

#include <fcntl.h>
#include <linux/msdos_fs.h>
#include <sys/ioctl.h>
#include <sys/xattr.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <optional>

#include "base/failure.h"
#include "platform/linux/descriptor.h"

namespace tarnvale {
namespace {

constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;

ArchiveMark MarkOf(const struct stat& info) {
  return {info.st_size, info.st_mtim.tv_sec * kNanosecondsPerSecond + info.st_mtim.tv_nsec};
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
  std::array<char, 64> text{};
  const ssize_t length = ::getxattr(native.c_str(), kArchivedAttribute, text.data(), text.size());
  if (length > 0) {
    ArchiveMark mark;
    const std::string value(text.data(), static_cast<std::size_t>(length));
    if (ArchiveMark::FromText(value, mark) && mark == MarkOf(info)) return false;
  } else if (length < 0 && HasNoExtendedAttributes(errno)) {
    if (const auto archive = MediumAttributes(native).Archive()) return *archive;
  }
  const ArchiveMark* mark = index_.Find(native);
  return mark == nullptr || *mark != MarkOf(info);
}

void ArchiveBit::Clear(const std::string& native, const struct stat& info) {
  const ArchiveMark mark = MarkOf(info);
  const std::string text = mark.ToText();
  if (::setxattr(native.c_str(), kArchivedAttribute, text.data(), text.size(), 0) == 0) {
    index_.Remove(native);
    return;
  }
  if (HasNoExtendedAttributes(errno)) {
    MediumAttributes medium(native);
    if (medium.Archive() && medium.SetArchive(false)) return;
  }
  // Not one's own file, a read-only one, no room: the index serves them all.
  index_.Set(native, mark);
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
