#include "tests/fuzz/fuzz_targets.h"

#include <cstdio>
#include <cstdlib>
#include <string>

#include "compression/archive.h"
#include "tests/compression/codec_under_test.h"
#include "tests/support/fake_machine.h"

namespace tarnvale::testing {
namespace {

void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "fuzzing: %s\n", what);
  std::abort();
}

// Mostly streams: bytes that begin with anything else get a right mark.
Bytes WithMark(std::span<const std::uint8_t> bytes) {
  Bytes stream(bytes.begin(), bytes.end());
  if (stream.size() > 4 && stream[0] % 8 != 0) {
    const Bytes mark{'H', 'E', '3', '\r'};
    std::copy(mark.begin(), mark.end(), stream.begin());
  }
  return stream;
}

}  // namespace

void FuzzDecoding(std::span<const std::uint8_t> bytes) {
  static CodecUnderTest codec;
  const Bytes stream = WithMark(bytes);
  Require(codec.Decode(stream) == DecodePlainly(stream), "decoded otherwise than plainly");
}

void FuzzRoundTrip(std::span<const std::uint8_t> bytes) {
  static CodecUnderTest codec;
  const Bytes input(bytes.begin(), bytes.end());
  const Outcome encoded = codec.Encode(input);
  Require(encoded == EncodePlainly(input), "encoded otherwise than plainly");
  if (input.empty()) return;
  Require(codec.Decode(encoded.bytes).bytes == input, "the round trip differs");
}

void FuzzContainer(std::span<const std::uint8_t> bytes) {
  FakeMachine machine;
  machine.files.Write("C:\\Store\\archive", std::string(bytes.begin(), bytes.end()));
  usercontrol11 archiver(machine.Interfaces());
  std::size_t told = 0;
  archiver.ReturnContents.Listen([&](const std::string& name, std::int32_t size) {
    told += name.size() + static_cast<std::size_t>(size);
  });
  PassedOver pass;
  pass.Step([&] { archiver.ReadFiles("C:\\Store\\archive", false); });
  Require(told <= bytes.size(), "more was told than the container holds");
  pass.Step([&] { archiver.ExtractFilesFromArchiv("C:\\Store\\archive", "C:\\Out", false); });
  Path out = "C:\\Single";
  pass.Step([&] { archiver.ExtractFile("C:\\Store\\archive", "a", out, false); });
}

}  // namespace tarnvale::testing
