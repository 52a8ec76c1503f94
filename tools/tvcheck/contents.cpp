#include "tvcheck/contents.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstring>
#include <optional>
#include <utility>

#include "hosts/linux/own_links.h"
#include "native/system_error.h"

namespace tarnvale {
namespace {

constexpr std::size_t kPiece = std::size_t{256} * 1024;
// Should a pipe have come into a file's place, opening it doesn't wait.
constexpr int kOpenFlags = O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

Equality Failed() {
  return {false, SystemError().what()};
}

// Not even the time of the last access changes, where the system lets us choose.
Descriptor OpenFile(int folder, const std::string& name, int flags) {
  Descriptor file(::openat(folder, name.c_str(), kOpenFlags | flags | O_NOATIME));
  if (!file && errno == EPERM)
    file = Descriptor(::openat(folder, name.c_str(), kOpenFlags | flags));
  return file;
}

Descriptor OpenSource(const std::string& native) {
  Descriptor file = OpenByOwnLinks(AT_FDCWD, native, kOpenFlags | O_NOATIME);
  if (!file && errno == EPERM) file = OpenByOwnLinks(AT_FDCWD, native, kOpenFlags);
  return file;
}

// Fills the buffer as far as the file goes. None when reading fails.
std::optional<std::size_t> Read(int file, std::vector<char>& buffer) {
  std::size_t done = 0;
  while (done < buffer.size()) {
    const ssize_t got = ::read(file, buffer.data() + done, buffer.size() - done);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return std::nullopt;
    if (got == 0) break;
    done += static_cast<std::size_t>(got);
  }
  return done;
}

std::optional<std::string> LinkText(const NativeEntry& entry) {
  std::array<char, PATH_MAX> text{};
  const ssize_t length =
      ::readlinkat(entry.folder_fd, entry.name.c_str(), text.data(), text.size());
  if (length < 0) return std::nullopt;
  return std::string(text.data(), static_cast<std::size_t>(length));
}

}  // namespace

Contents::Contents(std::function<void(std::int64_t)> on_bytes)
    : on_bytes_(std::move(on_bytes)), first_(kPiece), second_(kPiece) {}

Equality Contents::CompareOpen(const Descriptor& source, const Descriptor& copy) {
  while (true) {
    const auto ours = Read(source.Get(), first_);
    const auto theirs = ours ? Read(copy.Get(), second_) : std::nullopt;
    if (!ours || !theirs) return Failed();
    on_bytes_(static_cast<std::int64_t>(*ours));
    if (*ours != *theirs || std::memcmp(first_.data(), second_.data(), *ours) != 0) return {};
    if (*ours < first_.size()) return {true};
  }
}

Equality Contents::Compare(const NativeEntry& source, const NativeEntry& copy) {
  const Descriptor ours = OpenFile(source.folder_fd, source.name, O_NOFOLLOW);
  if (!ours && errno == ELOOP) {
    const auto text = LinkText(source);
    return {text && text == LinkText(copy)};
  }
  if (!ours) return Failed();
  const Descriptor theirs = OpenFile(copy.folder_fd, copy.name, O_NOFOLLOW);
  if (!theirs && errno == ELOOP) return {};
  return theirs ? CompareOpen(ours, theirs) : Failed();
}

Equality Contents::Compare(const std::string& source, const std::string& copy) {
  const Descriptor ours = OpenSource(source);
  if (!ours) return Failed();
  const Descriptor theirs = OpenFile(AT_FDCWD, copy, O_NOFOLLOW);
  if (!theirs && errno == ELOOP) return {};
  return theirs ? CompareOpen(ours, theirs) : Failed();
}

Equality Contents::Compare(const std::string& source, std::span<const std::uint8_t> copy) {
  const Descriptor file = OpenSource(source);
  if (!file) return Failed();
  while (true) {
    const auto got = Read(file.Get(), first_);
    if (!got) return Failed();
    on_bytes_(static_cast<std::int64_t>(*got));
    if (*got > copy.size()) return {};
    // Of no bytes there may be no place either.
    if (*got > 0 && std::memcmp(first_.data(), copy.data(), *got) != 0) return {};
    copy = copy.subspan(*got);
    if (*got < first_.size()) return {copy.empty()};
  }
}

}  // namespace tarnvale
