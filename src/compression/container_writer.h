// Writing a container: the number of records, then one record after the other.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "compression/byte_buffer.h"
#include "platform/open_files.h"

namespace tarnvale {

/// Collects small records and writes them in large pieces. What was collected
/// is in the file only after Finish. Raises what OpenFiles::Write and ReadInto
/// raise.
class ContainerWriter {
 public:
  /// Writes to an open number, from its position on.
  ContainerWriter(OpenFiles& open_files, int number);

  void WriteCount(std::int32_t records);
  /// Raises 6 for a name of more than 32,767 bytes.
  void WriteName(std::string_view name);
  /// Writes the length and the bytes of an open file, whole in memory. Raises 6
  /// for one of 2 GiB or more. A file that gets shorter meanwhile is filled up
  /// with zeros.
  void WriteContent(int source_number);
  void Finish() { Flush(); }

 private:
  std::span<std::uint8_t> Reserve(std::size_t size_bytes);
  void WriteNumber(std::uint32_t value, std::size_t size_bytes);
  void Flush();

  OpenFiles& open_files_;
  int number_;
  ByteBuffer pending_;
  std::size_t used_ = 0;
};

}  // namespace tarnvale
