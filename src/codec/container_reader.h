// Reading a container record by record.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "codec/byte_buffer.h"
#include "platform/open_files.h"

namespace tarnvale {

struct ContainerRecord {
  std::string name;
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
  std::string TakeName();
  void PassBy(std::size_t count);
  void ReadBytes(std::span<std::uint8_t> to);

  OpenFiles& open_files_;
  int number_;
  std::int64_t left_;  // bytes of the file that nobody took yet
  ByteBuffer ahead_;
  std::size_t taken_ = 0;  // of `ahead_`
};

}  // namespace tarnvale
