#include "codec/huffman.h"

#include "base/failure.h"
#include "base/numbers.h"
#include "codec/decoding.h"
#include "codec/encoding.h"
#include "codec/file_numbers.h"
#include "codec/percent_report.h"

namespace tarnvale {
namespace {

std::span<const std::uint8_t> FirstBytes(const ByteBuffer& buffer, std::int32_t length) {
  if (length < 0 || static_cast<std::size_t>(length) > buffer.Size()) {
    throw ProgramError(kSubscriptOutOfRange);
  }
  return buffer.View().first(static_cast<std::size_t>(length));
}

}  // namespace

bool clsHuffman::FileExist(const Path& path) {
  PassedOver pass;
  return pass.Step([&] { files_.Length(path); });
}

// Required: what is open when one of these two fails stays open.
ByteBuffer clsHuffman::ReadWhole(const Path& file) {
  const int number = OpenUnderFreeNumber(open_files_, file);
  // Required: an empty file can't be processed.
  if (open_files_.Length(number) == 0) throw ProgramError(kSubscriptOutOfRange);
  ByteBuffer bytes;
  ReadWholeAndClose(open_files_, number, bytes);
  return bytes;
}

void clsHuffman::Replace(const Path& file, const ByteBuffer& bytes) {
  if (FileExist(file)) files_.Delete(file);
  const int number = FreeFileNumber(open_files_);
  open_files_.OpenOwn(number, file);
  WriteBytes(open_files_, number, bytes.View());
  open_files_.Close(number);
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
  EncodeStream(FirstBytes(buffer, length), stream, report, workers_);
  buffer = std::move(stream);
}

void clsHuffman::DecodeByte(ByteBuffer& buffer, std::int32_t length) {
  PercentReport report([this](std::int16_t percent) { Progress.Emit(percent); });
  ByteBuffer result;
  DecodeStream(FirstBytes(buffer, length), result, report, workers_);
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
