#include "hosts/linux/instance_lock.h"

#include <fcntl.h>

#include <cerrno>
#include <utility>

namespace tarnvale {
namespace {

// Byte 0 is held while a number is being taken.
constexpr long kDoorByte = 0;

struct flock LockOf(short kind, long first, long count) {
  struct flock lock {};
  lock.l_type = kind;
  lock.l_whence = SEEK_SET;
  lock.l_start = first;
  lock.l_len = count;
  return lock;
}

bool Lock(int file, short kind, long byte, int command) {
  struct flock lock = LockOf(kind, byte, 1);
  int result = 0;
  do {
    result = ::fcntl(file, command, &lock);
  } while (result != 0 && errno == EINTR);
  return result == 0;
}

// A byte that somebody else has locked, from `first` on, `count` bytes or, for
// 0, all; 0 when there is none.
long LockedByOthers(int file, long first, long count) {
  struct flock lock = LockOf(F_WRLCK, first, count);
  if (::fcntl(file, F_OFD_GETLK, &lock) != 0 || lock.l_type == F_UNLCK) return 0;
  // Neighbouring locks of one instance can't be, but of a range the end counts.
  return lock.l_start + (lock.l_len > 0 ? lock.l_len - 1 : 0);
}

}  // namespace

void InstanceLock::TakeNumber() {
  locks_ = Descriptor(::open(file_.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600));
  if (!locks_ || !Lock(locks_.Get(), F_WRLCK, kDoorByte, F_OFD_SETLKW)) return;
  long highest = 0;
  while (const long locked = LockedByOthers(locks_.Get(), highest + 1, 0)) highest = locked;
  if (Lock(locks_.Get(), F_WRLCK, highest + 1, F_OFD_SETLK)) number_ = highest + 1;
  Lock(locks_.Get(), F_UNLCK, kDoorByte, F_OFD_SETLK);
}

bool InstanceLock::HasPredecessor() {
  if (number_ == 0) TakeNumber();
  return number_ > 1 && LockedByOthers(locks_.Get(), 1, number_ - 1) != 0;
}

}  // namespace tarnvale
