// Writing a container: the number of records, then one record after the other.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "codec/byte_buffer.h"
#include "platform/open_files.h"

namespace tarnvale {

/// Collects small records and writes them in large pieces. Raises what
/// OpenFiles::Write raises.
class ContainerWriter {
 public:
  /// Writes to an open number, from its position on.
  ContainerWriter(OpenFiles& open_files, int number);
  ContainerWriter(const ContainerWriter&) = delete;
  ContainerWriter& operator=(const ContainerWriter&) = delete;
  /// Writes what was collected, when Finish wasn't called, as far as that goes:
  /// what was put into a container before a failure is in its file.
  ~ContainerWriter();

  void WriteCount(std::int32_t records);
  /// Raises 6 for a name of more than 32,767 bytes.
  void WriteName(std::string_view name);
  /// Writes the length and the bytes of a file of less than 2 GiB.
  void WriteContent(std::span<const std::uint8_t> content);
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
