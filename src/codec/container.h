// A container: the number of records, then one record after the other, each a
// name and the bytes of a file.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "codec/bytes.h"
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
  /// As TextToFile writes it. Raises 6 for a name of more than 32,767 bytes there.
  void WriteName(std::string_view text);
  /// Writes the length and the bytes of a file of less than 2 GiB.
  void WriteContent(std::span<const std::uint8_t> content);
  void Finish() { Flush(); }

 private:
  void Collect(std::span<const std::uint8_t> bytes);
  void WriteNumber(std::uint32_t value, std::size_t size_bytes);
  void Flush();

  OpenFiles& open_files_;
  int number_;
  ByteBuffer pending_;
  std::size_t used_ = 0;
};

struct ContainerRecord {
  std::string name;
  std::size_t name_bytes = 0;  ///< in the container
  ByteBuffer content;
};

/// Reads ahead in large pieces. Raises 62 when the file ends within a number or
/// a record, 5 for a negative length, and takes no memory for a length that the
/// file doesn't have.
class ContainerReader {
 public:
  /// Reads an open number from its position, which must be 0.
  ContainerReader(OpenFiles& open_files, int number);

  std::int32_t ReadCount();
  /// Reads the next record whole into `record`.
  void ReadRecord(ContainerRecord& record);
  /// Reads the next record's name and passes its content by.
  std::string ReadName();

 private:
  std::uint32_t ReadNumber(std::size_t size_bytes);
  std::size_t CheckLength(std::int32_t length) const;
  std::string TakeName(std::size_t& name_bytes);
  void PassBy(std::size_t count);
  void ReadBytes(std::span<std::uint8_t> to);

  OpenFiles& open_files_;
  int number_;
  std::int64_t left_;  // bytes of the file that nobody took yet
  ByteBuffer ahead_;
  std::size_t taken_ = 0;  // of `ahead_`
};

}  // namespace tarnvale
