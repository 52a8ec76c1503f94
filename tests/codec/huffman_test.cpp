#include "codec/huffman.h"

#include <gmock/gmock.h>

#include "tests/codec/codec_under_test.h"
#include "tests/codec/generated_inputs.h"
#include "tests/support/raised.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class HuffmanTest : public ::testing::Test {
 protected:
  CodecUnderTest codec;
  FakeMachine machine;
  NoWorkers nobody;
  clsHuffman huffman{machine.files, machine.open_files, nobody};
};

TEST_F(HuffmanTest, WritesEachFieldOfABracadabraWhereItBelongs) {
  const Bytes stream{
      0x48, 0x45, 0x33, 0x0D,  // "HE3" and a carriage return
      0x46,                    // all input bytes by exclusive or
      0x0B, 0x00, 0x00, 0x00,  // 11 bytes of input
      0x05, 0x00,              // 5 symbols
      0x41, 0x01,              // A: 1 bit
      0x42, 0x03,              // B: 3 bits
      0x43, 0x03,              // C
      0x44, 0x03,              // D
      0x52, 0x03,              // R
      0xBA, 0x07,              // codes 0 101 110 111 100, from bit 0 up
      0x1A, 0x73, 0x0D,        // 0 101 100 0 110 0 111 0 101 100 0
  };
  EXPECT_EQ(codec.Encode(BytesOf("ABRACADABRA")).bytes, stream);
  EXPECT_EQ(codec.Decode(stream).bytes, BytesOf("ABRACADABRA"));
}

TEST_F(HuffmanTest, TwoDifferentBytesGrowTo17AndDecodeToThemselves) {
  const Bytes stream{
      0x48, 0x45, 0x33, 0x0D,  // mark
      0x03,                    // checksum
      0x02, 0x00, 0x00, 0x00,  // 2 bytes of input
      0x02, 0x00,              // 2 symbols
      0x61, 0x01, 0x62, 0x01,  // 1 bit each
      0x02,                    // codes 0 and 1
      0x02,                    // payload 0 1
  };
  EXPECT_EQ(codec.Encode({0x61, 0x62}).bytes, stream);
  EXPECT_EQ(codec.Decode(stream).bytes, (Bytes{0x61, 0x62}));
}

TEST_F(HuffmanTest, OneByteIsStored) {
  const Bytes stream{0x48, 0x45, 0x30, 0x0D, 0x61};
  EXPECT_EQ(codec.Encode({0x61}).bytes, stream);
  EXPECT_EQ(codec.Decode(stream).bytes, Bytes{0x61});
}

TEST_F(HuffmanTest, ARunOfOneValueIsStored) {
  const Bytes stream{0x48, 0x45, 0x30, 0x0D, 0x61, 0x61, 0x61, 0x61};
  EXPECT_EQ(codec.Encode(BytesOf("aaaa")).bytes, stream);
  EXPECT_EQ(codec.Decode(stream).bytes, BytesOf("aaaa"));
  const Bytes run(70000, 0xFF);
  Bytes stored{0x48, 0x45, 0x30, 0x0D};
  stored.insert(stored.end(), run.begin(), run.end());
  EXPECT_EQ(codec.Encode(run).bytes, stored);
}

TEST_F(HuffmanTest, AnEmptyInputGivesTheMarkAlone) {
  const Outcome outcome = codec.Encode({});
  EXPECT_EQ(outcome.bytes, (Bytes{0x48, 0x45, 0x30, 0x0D}));
  EXPECT_THAT(outcome.progress, IsEmpty());
}

TEST_F(HuffmanTest, APayloadAsLongAsTheInputIsKept) {
  const Bytes input = TiedInput(1, 256, 3);
  const Bytes stream = codec.Encode(input).bytes;
  ASSERT_EQ(stream.size(), 1547U);
  EXPECT_EQ(stream[2], 0x33);
  EXPECT_EQ(stream[9], 0x00);
  EXPECT_EQ(stream[10], 0x01);
  EXPECT_EQ(codec.Decode(stream).bytes, input);
}

TEST_F(HuffmanTest, EvenRandomBytesKeepTheCompressedFormThoughItIsLonger) {
  Bytes input = TiedInput(2, 256, 200);
  const Bytes stream = codec.Encode(input).bytes;
  EXPECT_EQ(stream[2], 0x33);
  EXPECT_GT(stream.size(), input.size());
  EXPECT_EQ(codec.Decode(stream).bytes, input);
}

TEST_F(HuffmanTest, TheSameInputAlwaysGivesTheSameBytes) {
  const Bytes input = ProseInput(5, 5000);
  const Bytes first = codec.Encode(input).bytes;
  for (int i = 0; i < 5; ++i) EXPECT_EQ(codec.Encode(input).bytes, first);
  EXPECT_EQ(CodecUnderTest().Encode(input).bytes, first);
}

TEST_F(HuffmanTest, AZeroLengthGivesTheStreamItself) {
  Bytes stream{0x48, 0x45, 0x33, 0x0D, 0x55, 0x00, 0x00, 0x00, 0x00};
  for (int extra = 0; extra < 4; ++extra) {
    const Outcome outcome = codec.Decode(stream);
    EXPECT_EQ(outcome.error, 0);
    EXPECT_EQ(outcome.bytes, stream);
    EXPECT_THAT(outcome.progress, IsEmpty());
    stream.push_back(0xFF);
  }
}

TEST_F(HuffmanTest, PaddingAndWhatFollowsThePayloadAreNotDecoded) {
  Bytes stream = codec.Encode(BytesOf("ABRACADABRA")).bytes;
  stream.back() |= 0x80;  // 23 bits are the payload's
  stream.push_back(0xFF);
  EXPECT_EQ(codec.Decode(stream).bytes, BytesOf("ABRACADABRA"));
}

TEST_F(HuffmanTest, OnlyTheGivenLengthOfABufferCounts) {
  ByteBuffer buffer{0x61, 0x62, 0x63, 0x64};
  huffman.EncodeByte(buffer, 2);
  EXPECT_EQ(ToBytes(buffer), codec.Encode({0x61, 0x62}).bytes);
  ByteBuffer longer = ToBuffer({0x48, 0x45, 0x30, 0x0D, 0x61, 0x62});
  huffman.DecodeByte(longer, 5);
  EXPECT_EQ(ToBytes(longer), Bytes{0x61});
}

TEST_F(HuffmanTest, ALengthThatTheBufferHasNotRaises9) {
  ByteBuffer buffer{0x61, 0x62};
  EXPECT_EQ(RaisedBy([&] { huffman.EncodeByte(buffer, 3); }), 9);
  EXPECT_EQ(RaisedBy([&] { huffman.EncodeByte(buffer, -1); }), 9);
  EXPECT_EQ(RaisedBy([&] { huffman.DecodeByte(buffer, 3); }), 9);
  EXPECT_EQ(RaisedBy([&] { huffman.DecodeByte(buffer, -1); }), 9);
  EXPECT_EQ(ToBytes(buffer), (Bytes{0x61, 0x62}));
}

TEST_F(HuffmanTest, TextsTravelAsTheBytesOfTheirCharacters) {
  std::string text;
  for (int i = 0; i < 256; ++i) text.append(static_cast<std::size_t>(i % 7 + 1), char(i));
  const std::string packed = huffman.EncodeString(text);
  EXPECT_EQ(BytesOf(packed), codec.Encode(BytesOf(text)).bytes);
  EXPECT_EQ(huffman.DecodeString(packed), text);
  EXPECT_EQ(huffman.EncodeString(""), "HE0\r");
}

TEST_F(HuffmanTest, ALengthThatIsAMultipleOf8BitsHasNoExtraByte) {
  // 16 symbols of 4 bits: 64 bits of codes, and 16 of them make a payload of 8.
  const Bytes input = TiedInput(4, 16, 1);
  const Bytes stream = codec.Encode(input).bytes;
  EXPECT_EQ(stream.size(), 11U + 32U + 8U + 8U);
  EXPECT_EQ(codec.Decode(stream).bytes, input);
}

}  // namespace
}  // namespace tarnvale::testing
