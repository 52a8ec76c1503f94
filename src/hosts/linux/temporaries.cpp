#include "hosts/linux/temporaries.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/random.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <fstream>
#include <memory>
#include <utility>
#include <vector>

#include "base/stable_hash.h"
#include "hosts/linux/paths.h"
#include "hosts/linux/state_folder.h"
#include "platform/temporary_name.h"

namespace tarnvale {
namespace {

constexpr std::size_t kLongestRecord = 8192;

std::string MarkOf(const std::string& state_folder) {
  std::string machine;
  std::ifstream("/etc/machine-id") >> machine;
  return StableHash(machine + '\n' + std::to_string(::geteuid()) + '\n' + state_folder);
}

std::string RandomDigits() {
  std::uint64_t value = 0;
  if (::getrandom(&value, sizeof value, 0) != static_cast<ssize_t>(sizeof value)) {
    const auto now = std::chrono::system_clock::now().time_since_epoch().count();
    value = static_cast<std::uint64_t>(now) * 0x9e3779b97f4a7c15U +
            static_cast<std::uint64_t>(::getpid());
  }
  return Hexadecimal(value);
}

std::string ReadSlot(int fd) {
  std::string record(kLongestRecord, '\0');
  const ssize_t got = ::pread(fd, record.data(), record.size(), 0);
  record.resize(got < 0 ? 0 : static_cast<std::size_t>(got));
  record.resize(std::min(record.size(), record.find('\0')));
  return record;
}

}  // namespace

SlotBook::SlotBook(const std::string& state_folder)
    : folder_(state_folder + "/copies"), mark_(MarkOf(state_folder)) {}

void SlotBook::Add(const std::string& slot) {
  const std::lock_guard lock(mutex_);
  in_use_.insert(slot);
}

void SlotBook::Remove(const std::string& slot) {
  const std::lock_guard lock(mutex_);
  in_use_.erase(slot);
}

bool SlotBook::Has(const std::string& slot) const {
  const std::lock_guard lock(mutex_);
  return in_use_.contains(slot);
}

Temporaries::Temporaries(const std::string& state_folder)
    : book_(std::make_shared<SlotBook>(state_folder)) {
  CleanSlots();
}

bool Temporaries::IsStale(std::string_view name) const {
  return MarkOfTemporary(name) == book_->Mark() && !SlotIsAlive(std::string(SlotOfTemporary(name)));
}

void Temporaries::Sweep(int folder_fd, const char* name) const {
  if (IsStale(name)) ::unlinkat(folder_fd, name, 0);
}

void Temporaries::CleanSlots() {
  const std::unique_ptr<DIR, int (*)(DIR*)> folder(::opendir(book_->Folder().c_str()), &::closedir);
  if (!folder) return;
  std::vector<std::string> slots;
  while (const dirent* entry = ::readdir(folder.get())) {
    if (IsHexadecimal(entry->d_name)) slots.emplace_back(entry->d_name);
  }
  for (const std::string& slot : slots) CleanSlot(::dirfd(folder.get()), slot);
}

void Temporaries::CleanSlot(int folder_fd, const std::string& slot) {
  const Descriptor file(::openat(folder_fd, slot.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW));
  if (!file || ::flock(file.Get(), LOCK_EX | LOCK_NB) != 0) return;
  const std::string path = ReadSlot(file.Get());
  const std::string_view name = NativeNameOf(path);
  if (MarkOfTemporary(name) == book_->Mark() && SlotOfTemporary(name) == slot) {
    const bool gone = ::unlink(path.c_str()) == 0 || errno == ENOENT || errno == ENOTDIR;
    // A medium that is away for now: the slot stays until it is back.
    if (!gone) return;
  }
  ::unlinkat(folder_fd, slot.c_str(), 0);
}

bool Temporaries::SlotIsAlive(const std::string& slot) const {
  if (book_->Has(slot)) return true;
  const Descriptor file(
      ::open((book_->Folder() + "/" + slot).c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
  return file && ::flock(file.Get(), LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK;
}

TemporarySlot::TemporarySlot(const Temporaries& temporaries) : book_(temporaries.book_) {}

TemporarySlot::~TemporarySlot() {
  book_->Remove(slot_);
  if (file_) ::unlink((book_->Folder() + "/" + slot_).c_str());
}

void TemporarySlot::LeaveBehind() {
  book_->Remove(slot_);
  file_.Close();
  file_tried_ = false;
  path_.clear();
  slot_.clear();
}

const std::string& TemporarySlot::Begin(std::string_view folder) {
  if (slot_.empty()) book_->Add(slot_ = RandomDigits());
  if (!file_tried_) OpenFile();
  if (folder != folder_ || path_.empty()) {
    folder_ = folder;
    path_ = folder_ + "/" + TemporaryName(book_->Mark(), slot_);
    // Without a slot a leftover is still found when its folder is read.
    if (file_ && ::pwrite(file_.Get(), path_.c_str(), path_.size() + 1, 0) < 0) file_.Close();
  }
  return path_;
}

void TemporarySlot::OpenFile() {
  file_tried_ = true;
  if (!MakeStateFolder(book_->Folder())) return;
  const std::string path = book_->Folder() + "/" + slot_;
  // Another process may take the fresh slot for a left one before it is locked,
  // and delete it: then it is made anew.
  for (int attempt = 0; attempt < 100; ++attempt) {
    Descriptor file(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    if (!file || ::flock(file.Get(), LOCK_EX) != 0) return;
    struct stat info {};
    if (::fstat(file.Get(), &info) != 0) return;
    if (info.st_nlink == 0) continue;
    file_ = std::move(file);
    return;
  }
}

}  // namespace tarnvale
