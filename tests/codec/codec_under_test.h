// The program's codec, called as the plain one is.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/failure.h"
#include "codec/huffman.h"
#include "tests/codec/plain_coder.h"
#include "tests/support/fake_machine.h"

namespace tarnvale::testing {

inline Bytes ToBytes(const ByteBuffer& buffer) {
  return {buffer.View().begin(), buffer.View().end()};
}

inline ByteBuffer ToBuffer(const Bytes& bytes) {
  ByteBuffer buffer(bytes.size());
  std::copy(bytes.begin(), bytes.end(), buffer.Data());
  return buffer;
}

inline Bytes BytesOf(std::string_view text) {
  return {text.begin(), text.end()};
}

/// The stream of `input` with a length field that ends it behind its first `length` bytes.
inline Bytes EndedAfter(std::size_t length, Bytes stream, const Bytes& input) {
  stream[4] = 0;  // the checksum
  for (std::size_t i = 0; i < length; ++i) stream[4] ^= input[i];
  for (unsigned i = 0; i < 4; ++i) stream[5 + i] = static_cast<std::uint8_t>(length >> (8 * i));
  return stream;
}

class CodecUnderTest {
 public:
  CodecUnderTest() : CodecUnderTest(nobody_) {}
  explicit CodecUnderTest(Workers& workers) : codec_(machine_.files, machine_.open_files, workers) {
    codec_.Progress.Listen([this](std::int16_t percent) { progress_.push_back(percent); });
  }

  Outcome Encode(const Bytes& input) { return Run(input, &clsHuffman::EncodeByte); }
  Outcome Decode(const Bytes& stream) { return Run(stream, &clsHuffman::DecodeByte); }

 private:
  Outcome Run(const Bytes& bytes, void (clsHuffman::*code)(ByteBuffer&, std::int32_t)) {
    progress_.clear();
    ByteBuffer buffer = ToBuffer(bytes);
    Outcome outcome;
    try {
      (codec_.*code)(buffer, static_cast<std::int32_t>(bytes.size()));
    } catch (const ProgramError& error) {
      outcome.error = error.Number();
      // The classic errors have no source of the codec's own.
      if (error.Number() == kProgramDefinedError) outcome.source = error.Source();
      outcome.description = error.Description();
    }
    outcome.bytes = ToBytes(buffer);
    outcome.progress = progress_;
    return outcome;
  }

  NoWorkers nobody_;
  FakeMachine machine_;
  clsHuffman codec_;
  std::vector<int> progress_;
};

}  // namespace tarnvale::testing
