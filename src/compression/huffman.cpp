#include "compression/huffman.h"

#include "base/failure.h"
#include "base/numbers.h"
#include "compression/file_numbers.h"
#include "compression/huffman_decode.h"
#include "compression/huffman_encode.h"
#include "compression/percent_report.h"

namespace tarnvale {
namespace {

std::span<const std::uint8_t> FirstBytes(const ByteBuffer& buffer, std::int32_t length) {
  if (length < 0 || static_cast<std::size_t>(length) > buffer.Size()) {
    throw ProgramError(kSubscriptOutOfRange);
  }
  return buffer.View().first(static_cast<std::size_t>(length));
}

// Closes what it opened, whatever comes.
class OpenedFile {
 public:
  OpenedFile(OpenFiles& open_files, const Path& file)
      : open_files_(open_files), number_(FreeFileNumber(open_files)) {
    open_files_.OpenBinary(number_, file);
  }
  OpenedFile(const OpenedFile&) = delete;
  OpenedFile& operator=(const OpenedFile&) = delete;
  ~OpenedFile() {
    PassedOver pass;
    pass.Step([&] { open_files_.Close(number_); });
  }

  int Number() const { return number_; }

 private:
  OpenFiles& open_files_;
  int number_;
};

}  // namespace

bool clsHuffman::FileExist(const Path& path) {
  PassedOver pass;
  return pass.Step([&] { files_.Length(path); });
}

ByteBuffer clsHuffman::ReadWhole(const Path& file) {
  const OpenedFile opened(open_files_, file);
  const std::int32_t length = ToInt32(open_files_.Length(opened.Number()));
  // Required: an empty file can't be processed.
  if (length == 0) throw ProgramError(kSubscriptOutOfRange);
  ByteBuffer bytes(static_cast<std::size_t>(length));
  bytes.Shrink(open_files_.ReadInto(opened.Number(), bytes.Bytes()));
  return bytes;
}

void clsHuffman::Replace(const Path& file, const ByteBuffer& bytes) {
  if (FileExist(file)) files_.Delete(file);
  const OpenedFile opened(open_files_, file);
  WriteBytes(open_files_, opened.Number(), bytes.View());
  open_files_.Close(opened.Number());
}

void clsHuffman::EncodeFile(const Path& source, const Path& destination) {
  if (!FileExist(source)) {
    throw ProgramError(kProgramDefinedError, "Tarnvale Compressor", "Source Backup File Not Found");
  }
  ByteBuffer bytes = ReadWhole(source);
  EncodeByte(bytes, ToInt32(static_cast<std::int64_t>(bytes.Size())));
  Replace(destination, bytes);
}

void clsHuffman::DecodeFile(const Path& source, const Path& destination) {
  if (!FileExist(source)) {
    throw ProgramError(kProgramDefinedError, "clsHuffman.DecodeFile()",
                       "Source file does not exist");
  }
  ByteBuffer bytes = ReadWhole(source);
  DecodeByte(bytes, ToInt32(static_cast<std::int64_t>(bytes.Size())));
  Replace(destination, bytes);
}

void clsHuffman::EncodeByte(ByteBuffer& buffer, std::int32_t length) {
  PercentReport report([this](std::int16_t percent) { Progress.Emit(percent); });
  ByteBuffer stream;
  EncodeStream(FirstBytes(buffer, length), stream, report);
  buffer = std::move(stream);
}

void clsHuffman::DecodeByte(ByteBuffer& buffer, std::int32_t length) {
  PercentReport report([this](std::int16_t percent) { Progress.Emit(percent); });
  ByteBuffer result;
  DecodeStream(FirstBytes(buffer, length), result, report);
  buffer = std::move(result);
}

std::string clsHuffman::EncodeString(std::string_view text) {
  ByteBuffer bytes(text);
  EncodeByte(bytes, ToInt32(static_cast<std::int64_t>(text.size())));
  return bytes.Text();
}

std::string clsHuffman::DecodeString(std::string_view text) {
  ByteBuffer bytes(text);
  DecodeByte(bytes, ToInt32(static_cast<std::int64_t>(text.size())));
  return bytes.Text();
}

}  // namespace tarnvale
