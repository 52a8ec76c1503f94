// An archive, decoded.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "codec/bytes.h"
#include "codec/container.h"
#include "tvz/progress.h"

namespace tarnvale {

/// The container of one archive, whole in memory. All raise CommandFailure: what
/// an archive says of its lengths is never believed, and takes no memory.
class ArchiveContents {
 public:
  /// `archive`: a native path. Reads and decodes.
  ArchiveContents(const std::string& archive, Progress& progress);

  using Visitor = std::function<void(const ContainerRecord&)>;
  /// Visits all records in order. Only after the last one was visited is it
  /// known that the container is whole.
  void ForEach(const Visitor& visit) const;

  /// What ForEach found over all.
  struct Sums {
    std::int32_t entries = 0;
    std::int64_t content_bytes = 0;
    /// Behind the last record; not an error.
    std::int64_t bytes_behind = 0;
  };
  /// The time of the file, in seconds since 1970-01-01 UTC.
  std::int64_t ModifiedSeconds() const { return modified_s_; }

  /// Visits all records with nobody looking, and raises when the stream doesn't
  /// end exactly where its payload ends.
  Sums CheckWhole() const;

 private:
  void Decode(const ByteBuffer& stream, Progress& progress);

  std::string archive_;
  ByteBuffer container_;
  std::int64_t modified_s_ = 0;
  std::int64_t surplus_ = 0;  // bytes of the stream behind its payload
};

}  // namespace tarnvale
