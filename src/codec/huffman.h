// The compressor: a static Huffman coder of bytes with a self-describing stream.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/signal.h"
#include "codec/bytes.h"
#include "platform/files.h"
#include "platform/open_files.h"
#include "platform/workers.h"

namespace tarnvale {

/// Three forms of one operation: file to file, buffer in place, text to text.
/// Keeps nothing from one call to the next. One call at a time: a handler of
/// `Progress` may not call the same object. Doesn't yield itself.
///
/// Raises, besides what the file system raises: 6 (payload of 256 MiB or more,
/// or an input of 2 GiB or more), 9 (a file of 0 bytes, a stream that is cut off
/// or impossible), and kProgramDefinedError with a source and a text for a
/// missing source file, a wrong mark or a wrong checksum. A file that is open when
/// reading or writing fails stays open.
class clsHuffman {
 public:
  /// All must outlive it.
  clsHuffman(FileSystem& files, OpenFiles& open_files, Workers& workers)
      : files_(files), open_files_(open_files), workers_(workers) {}
  clsHuffman(const clsHuffman&) = delete;
  clsHuffman& operator=(const clsHuffman&) = delete;

  /// Compresses a file into a file, which is replaced; it is as it was after
  /// any failure of the coding. Holds both whole in memory.
  void EncodeFile(const Path& source, const Path& destination);
  /// The reverse.
  void DecodeFile(const Path& source, const Path& destination);

  /// Replaces the first `length` bytes of the buffer by their stream. The
  /// buffer keeps what it holds when this raises. 9 for a length that the
  /// buffer doesn't have.
  void EncodeByte(ByteBuffer& buffer, std::int32_t length);
  /// Replaces the stream in the first `length` bytes by what it decodes to.
  void DecodeByte(ByteBuffer& buffer, std::int32_t length);

  /// One byte of a text is one character of the code page.
  std::string EncodeString(std::string_view text);
  std::string DecodeString(std::string_view text);

  /// Percent, 0 to 100; reported when it has changed. Encoding: up to 7 counting,
  /// up to 12 checksum, then packing. Decoding: up to 89, then checksum.
  Signal<std::int16_t> Progress;

 private:
  bool FileExist(const Path& path);
  ByteBuffer ReadWhole(const Path& file);
  void Replace(const Path& file, const ByteBuffer& bytes);

  FileSystem& files_;
  OpenFiles& open_files_;
  Workers& workers_;
};

}  // namespace tarnvale
