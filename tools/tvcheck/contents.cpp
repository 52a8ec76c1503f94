#include "tvcheck/contents.h"

#include <cstring>
#include <utility>

namespace tarnvale {
namespace {

constexpr std::size_t kPiece = std::size_t{256} * 1024;

// What a comparison says, or the system of one that can't be made.
template <class Compare>
Equality EqualityBy(Compare&& compare) {
  try {
    return {compare()};
  } catch (const SystemError& error) {
    return {false, error.what()};
  }
}

}  // namespace

Contents::Contents(std::function<void(std::int64_t)> on_bytes)
    : on_bytes_(std::move(on_bytes)), first_(kPiece), second_(kPiece) {}

bool Contents::AreEqual(const FileReader& source, const FileReader& copy) {
  while (true) {
    const std::size_t ours = source.Read(first_);
    const std::size_t theirs = copy.Read(second_);
    on_bytes_(static_cast<std::int64_t>(ours));
    if (ours != theirs || std::memcmp(first_.data(), second_.data(), ours) != 0) return false;
    if (ours < first_.size()) return true;
  }
}

Equality Contents::Compare(const NativeEntry& source, const NativeEntry& copy) {
  return EqualityBy([&] {
    const auto ours = LinkOf(source);
    const auto theirs = LinkOf(copy);
    if (ours || theirs) return ours == theirs;
    return AreEqual(FileReader::Open(source), FileReader::Open(copy));
  });
}

Equality Contents::Compare(const std::string& source, const std::string& copy) {
  return EqualityBy([&] {
    const NativeEntry entry{nullptr, copy};
    return !LinkOf(entry) && AreEqual(FileReader::OpenBehindLinks(source), FileReader::Open(entry));
  });
}

Equality Contents::Compare(const std::string& source, std::span<const std::uint8_t> copy) {
  return EqualityBy([&] {
    const FileReader file = FileReader::OpenBehindLinks(source);
    while (true) {
      const std::size_t got = file.Read(first_);
      on_bytes_(static_cast<std::int64_t>(got));
      if (got > copy.size()) return false;
      // Of no bytes there may be no place either.
      if (got > 0 && std::memcmp(first_.data(), copy.data(), got) != 0) return false;
      copy = copy.subspan(got);
      if (got < first_.size()) return copy.empty();
    }
  });
}

}  // namespace tarnvale
