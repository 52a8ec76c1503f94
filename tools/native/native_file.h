// Files by native paths, and what the system says of them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "codec/bytes.h"
#include "native/native_host.h"
#include "native/system_error.h"

namespace tarnvale {

/// Between the names of a native path.
#ifdef _WIN32
inline constexpr char kSeparator = '\\';
#else
inline constexpr char kSeparator = '/';
#endif

/// One file or folder has one.
struct FileIdentity {
  std::uint64_t volume = 0;
  std::uint64_t number = 0;
  bool operator<(const FileIdentity& other) const {
    return volume != other.volume ? volume < other.volume : number < other.number;
  }
};

/// The path of the program's for a native one, as it was given. Raises CommandFailure.
Path PathOfNative(const NativeHost& host, const std::string& given);

/// The whole of a plain file and its time. Raises SystemError, also for what is no plain
/// file or longer than `most_bytes`.
struct WholeFile {
  ByteBuffer bytes;
  std::int64_t modified_s = 0;
};
WholeFile ReadWholeFile(const std::string& native, std::int64_t most_bytes);

}  // namespace tarnvale
