// Streams that are cut off, damaged, foreign or made to do harm.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <new>

#include "tests/codec/codec_under_test.h"
#include "tests/codec/generated_inputs.h"

namespace {

// The largest piece of memory that was allocated.
std::size_t largest_request = 0;

void* Allocate(std::size_t size) {
  largest_request = std::max(largest_request, size);
  while (true) {
    if (void* memory = std::malloc(size != 0 ? size : 1)) return memory;
    const std::new_handler handler = std::get_new_handler();
    if (handler == nullptr) throw std::bad_alloc();
    handler();
  }
}

}  // namespace

void* operator new(std::size_t size) {
  return Allocate(size);
}
void* operator new[](std::size_t size) {
  return Allocate(size);
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  std::free(memory);
}

namespace tarnvale::testing {
namespace {

constexpr const char* kForeign =
    "The data either was not compressed with HE3 or is corrupt (identification string not found)";
constexpr const char* kDamaged =
    "The data might be corrupted (checksum did not match expected value)";

class HuffmanDamageTest : public ::testing::Test {
 protected:
  // The failure, with the stream as it was.
  void ExpectFails(const Bytes& stream, int number, const char* source = "",
                   const char* description = "Subscript out of range") {
    const Outcome outcome = codec.Decode(stream);
    EXPECT_EQ(outcome.error, number);
    EXPECT_EQ(outcome.source, source);
    EXPECT_EQ(outcome.description, description);
    EXPECT_EQ(outcome.bytes, stream);
  }
  void ExpectDamaged(const Bytes& stream) {
    ExpectFails(stream, kProgramDefinedError, "clsHuffman.Decode()", kDamaged);
  }

  // Every stream that differs in one bit decodes as the plain coder says.
  void SweepBits(const Bytes& stream) {
    for (std::size_t bit = 0; bit < stream.size() * 8; ++bit) {
      Bytes damaged = stream;
      damaged[bit / 8] ^= static_cast<std::uint8_t>(1U << (bit % 8));
      ASSERT_TRUE(codec.Decode(damaged) == DecodePlainly(damaged)) << "bit " << bit;
    }
  }

  CodecUnderTest codec;
  // 61 62: mark, checksum, length, 2 symbols, table, codes, payload.
  const Bytes ab{0x48, 0x45, 0x33, 0x0D, 0x03, 0x02, 0x00, 0x00, 0x00,
                 0x02, 0x00, 0x61, 0x01, 0x62, 0x01, 0x02, 0x02};
};

TEST_F(HuffmanDamageTest, FewerThanFourBytesRaise9) {
  ExpectFails({}, 9);
  ExpectFails({0x48}, 9);
  ExpectFails({0x48, 0x45}, 9);
  ExpectFails({0x48, 0x45, 0x31}, 9);
}

TEST_F(HuffmanDamageTest, TheStoredFormOfAnEmptyInputRaises9) {
  ExpectFails({0x48, 0x45, 0x30, 0x0D}, 9);
}

TEST_F(HuffmanDamageTest, AWrongThirdByteIsRefusedByName) {
  Bytes stream = ab;
  for (const int third : {0x31, 0x32, 0x34, 0x00, 0xFF, 0x65}) {
    stream[2] = static_cast<std::uint8_t>(third);
    ExpectFails(stream, kProgramDefinedError, "HuffmanDecode()", kForeign);
  }
  ExpectFails({0x48, 0x45, 0x31, 0x0D}, kProgramDefinedError, "HuffmanDecode()", kForeign);
}

TEST_F(HuffmanDamageTest, AWrongFirstSecondOrFourthByteGoesOnAsACompressedStream) {
  for (const std::size_t offset : {0U, 1U, 3U}) {
    Bytes stream = ab;
    stream[offset] ^= 0x20;
    EXPECT_EQ(codec.Decode(stream).bytes, (Bytes{0x61, 0x62})) << offset;
    // Even a stored one, and one with a wrong third byte.
    stream[2] = 0x30;
    EXPECT_EQ(codec.Decode(stream).bytes, (Bytes{0x61, 0x62})) << offset;
  }
}

TEST_F(HuffmanDamageTest, ForeignTextEndsInASubscriptError) {
  ExpectFails(BytesOf("Nothing that a coder ever made, but long enough to look like a head."), 9);
}

TEST_F(HuffmanDamageTest, AForeignStreamCanEndInAChecksumFailure) {
  Bytes stream = ab;
  stream[0] = 0x00;
  stream[4] = 0x55;
  ExpectDamaged(stream);
}

TEST_F(HuffmanDamageTest, AStreamCutOffBeforeItsPayloadRaises9) {
  // Behind the codes of 61 62 comes no payload: nothing was decoded, and 03 is
  // not the checksum of nothing.
  for (std::size_t length = 4; length <= 15; ++length) {
    ExpectFails({ab.begin(), ab.begin() + static_cast<std::ptrdiff_t>(length)}, 9);
  }
  ExpectDamaged({ab.begin(), ab.begin() + 16});
}

TEST_F(HuffmanDamageTest, CodesThatEndOnAWholeByteNeedAByteBehindThem) {
  const Bytes stream = codec.Encode(TiedInput(1, 16, 1)).bytes;
  const std::size_t payload = 11 + 32 + 8;
  ExpectFails({stream.begin(), stream.begin() + payload}, 9);
  // With one byte of payload there are two symbols: a short result.
  EXPECT_NE(codec.Decode({stream.begin(), stream.begin() + payload + 1}).error, 9);
}

TEST_F(HuffmanDamageTest, AShortPayloadGivesAShortResultWhenTheChecksumFits) {
  // A B R A C A D A B R A without its last bytes; the checksum of ABRA is 0x12.
  Bytes stream = codec.Encode(BytesOf("ABRACADABRA")).bytes;
  stream.resize(stream.size() - 2);  // 0x1A: 0 101 100 0
  stream[4] = 'A' ^ 'B' ^ 'R' ^ 'A';
  const Outcome outcome = codec.Decode(stream);
  EXPECT_EQ(outcome.error, 0);
  EXPECT_EQ(outcome.bytes, BytesOf("ABRA"));
  stream[4] ^= 1;
  ExpectDamaged(stream);
}

TEST_F(HuffmanDamageTest, ALongPayloadThatIsCutOffGivesAShortResultToo) {
  const Bytes input = ProseInput(3, 400000);
  Bytes stream = EncodePlainly(input).bytes;
  stream.resize(stream.size() - 60000);
  // Makes the checksum fit.
  stream[4] = 0;
  for (int checksum = 0; checksum < 256; ++checksum) {
    stream[4] = static_cast<std::uint8_t>(checksum);
    if (codec.Decode(stream).error == 0) break;
  }
  const Outcome outcome = codec.Decode(stream);
  ASSERT_EQ(outcome.error, 0);
  EXPECT_LT(outcome.bytes.size(), input.size());
  EXPECT_TRUE(std::equal(outcome.bytes.begin(), outcome.bytes.end(), input.begin()));
  EXPECT_TRUE(outcome == DecodePlainly(stream));
}

TEST_F(HuffmanDamageTest, AResultOfNothingRaises9WhenItsChecksumFits) {
  Bytes stream(ab.begin(), ab.begin() + 16);
  stream[4] = 0;
  ExpectFails(stream, 9);
}

TEST_F(HuffmanDamageTest, AWrongChecksumIsRefusedAndTheStreamKept) {
  Bytes stream = ab;
  stream[4] = 0x02;
  ExpectDamaged(stream);
}

TEST_F(HuffmanDamageTest, ABitThatLeadsNowhereRaises9) {
  // Codes 00 and 01: nothing begins with 1.
  const Bytes stream{0x48, 0x45, 0x33, 0x0D, 0x03, 0x02, 0x00, 0x00, 0x00,
                     0x02, 0x00, 0x61, 0x02, 0x62, 0x02, 0x08, 0x01};
  ExpectFails(stream, 9);
}

TEST_F(HuffmanDamageTest, ANegativeLengthRaises9) {
  Bytes stream = ab;
  stream[8] = 0x80;
  ExpectFails(stream, 9);
}

TEST_F(HuffmanDamageTest, NoSymbolsOrANegativeNumberOfThemRaise9) {
  Bytes stream = ab;
  stream[9] = 0;
  ExpectFails(stream, 9);
  stream[9] = stream[10] = 0xFF;
  ExpectFails(stream, 9);
}

TEST_F(HuffmanDamageTest, ACodeOfNoBitsRaises9) {
  Bytes stream = ab;
  stream[12] = 0;
  ExpectFails(stream, 9);
}

TEST_F(HuffmanDamageTest, ASymbolThatStandsTwiceKeepsItsLastLength) {
  // a twice: 5 bits, then 1.
  const Bytes stream{0x48, 0x45, 0x33, 0x0D, 0x03, 0x02, 0x00, 0x00, 0x00, 0x03,
                     0x00, 0x61, 0x05, 0x61, 0x01, 0x62, 0x01, 0x02, 0x02};
  EXPECT_EQ(codec.Decode(stream).bytes, (Bytes{0x61, 0x62}));
}

TEST_F(HuffmanDamageTest, ACodeThatBeginsAnotherHidesIt) {
  // a = 0, b = 01: the walk stops at a; then a bit 1 leads to b's place nowhere.
  const Bytes stream{0x48, 0x45, 0x33, 0x0D, 0x00, 0x02, 0x00, 0x00, 0x00,
                     0x02, 0x00, 0x61, 0x01, 0x62, 0x02, 0x04, 0x00};
  EXPECT_EQ(codec.Decode(stream).bytes, (Bytes{0x61, 0x61}));
}

TEST_F(HuffmanDamageTest, OfTwoEqualCodesTheHigherValueWins) {
  const Bytes stream{0x48, 0x45, 0x33, 0x0D, 0x00, 0x02, 0x00, 0x00, 0x00,
                     0x02, 0x00, 0x61, 0x01, 0x62, 0x01, 0x00, 0x00};
  EXPECT_EQ(codec.Decode(stream).bytes, (Bytes{0x62, 0x62}));
}

TEST_F(HuffmanDamageTest, CodesOf255BitsAreWalked) {
  // a = 255 zeros, b = 1.
  Bytes stream{0x48, 0x45, 0x33, 0x0D, 0x03, 0x02, 0x00, 0x00,
               0x00, 0x02, 0x00, 0x61, 0xFF, 0x62, 0x01};
  stream.insert(stream.end(), 31, 0x00);
  stream.push_back(0x80);  // the 256th bit
  stream.insert(stream.end(), 31, 0x00);
  stream.push_back(0x80);  // a's last bit is the 255th, b the 256th
  const Outcome outcome = codec.Decode(stream);
  EXPECT_EQ(outcome.error, 0);
  EXPECT_EQ(outcome.bytes, (Bytes{0x61, 0x62}));
  EXPECT_TRUE(outcome == DecodePlainly(stream));
}

TEST_F(HuffmanDamageTest, MoreNodesThan512Raise9) {
  // Three codes of 255 bits that part after their second bit.
  Bytes stream{0x48, 0x45, 0x33, 0x0D, 0x00, 0x02, 0x00, 0x00, 0x00,
               0x03, 0x00, 0x61, 0xFF, 0x62, 0xFF, 0x63, 0xFF};
  Bytes codes(96 + 300, 0x00);
  codes[255 / 8] |= 1U << (255 % 8);    // b begins with 1
  codes[(511) / 8] |= 1U << (511 % 8);  // c with 01
  stream.insert(stream.end(), codes.begin(), codes.end());
  ExpectFails(stream, 9);
  EXPECT_TRUE(codec.Decode(stream) == DecodePlainly(stream));
}

TEST_F(HuffmanDamageTest, ALengthOf2GiBTakesNoMemoryThatTheStreamCannotFill) {
  Bytes stream{0x48, 0x45, 0x33, 0x0D, 0x03, 0xFF, 0xFF, 0xFF, 0x7F, 0x02,
               0x00, 0x61, 0x01, 0x62, 0x01, 0x02, 0x02, 0x02, 0x02, 0x02};
  ASSERT_EQ(stream.size(), 20U);
  largest_request = 0;
  // 32 bits, 4 of them set: a and b cancel out, and 0 is not 3.
  ExpectDamaged(stream);
  EXPECT_LT(largest_request, std::size_t{256} * 1024);
  stream[4] = 0;
  EXPECT_EQ(codec.Decode(stream).bytes.size(), 32U);
}

TEST_F(HuffmanDamageTest, ALengthOf2GiBBeforeALongPayloadTakesWhatItsBitsCanHold) {
  Bytes stream = EncodePlainly(ProseInput(3, 300000)).bytes;
  stream[5] = stream[6] = stream[7] = 0xFF;
  stream[8] = 0x7F;
  largest_request = 0;
  const Outcome outcome = codec.Decode(stream);
  EXPECT_LT(largest_request, stream.size() * 8);
  EXPECT_TRUE(outcome == DecodePlainly(stream));
}

// One bit is one byte of the result: it fills up in a step of 27720 bits or less.
TEST_F(HuffmanDamageTest, AResultThatEndsWithinAStepIsDecodedAsPlainly) {
  const Bytes input = TiedInput(1, 2, 20000);
  const Bytes stream = EncodePlainly(input).bytes;
  for (std::size_t length = 27500; length < 28000; length += 10) {
    const Bytes ended = EndedAfter(length, stream, input);
    ASSERT_TRUE(codec.Decode(ended) == DecodePlainly(ended)) << length;
  }
}

// The other cursors are off by a bit, and take a run of the code 01 for one of the code 10: the
// right one goes on alone behind some 15,900 codes of two bits, for 55,440 more. One of three
// bits among them makes its steps end behind that.
TEST_F(HuffmanDamageTest, AResultThatEndsWhereOneCursorGoesOnAloneIsDecodedAsPlainly) {
  for (const int last : {1, 2, 3}) {
    Bytes input;
    for (std::size_t i = 0; i < 75000; ++i) input.push_back(i % 20000 == 0 ? 4 : last);
    input.insert(input.end(), 75000, static_cast<std::uint8_t>(last % 3 + 1));
    input.insert(input.end(), 75000, static_cast<std::uint8_t>((last + 1) % 3 + 1));
    for (std::size_t i = 0; i < 75000; ++i) input.push_back(4 + i % 2);
    const Bytes stream = EncodePlainly(input).bytes;
    for (std::size_t length = 71300; length < 71600; length += 5) {
      const Bytes ended = EndedAfter(length, stream, input);
      ASSERT_TRUE(codec.Decode(ended) == DecodePlainly(ended)) << last << ", " << length;
    }
  }
}

TEST_F(HuffmanDamageTest, EveryBitOfASmallStreamCanBeWrong) {
  SweepBits(ab);
  SweepBits(codec.Encode(BytesOf("ABRACADABRA")).bytes);
  SweepBits(codec.Encode(Bytes(20, 'a')).bytes);
  SweepBits(codec.Encode(ProseInput(1, 300)).bytes);
  SweepBits(codec.Encode(FibonacciInput(12)).bytes);
}

TEST_F(HuffmanDamageTest, EveryBitOfAStreamThatTablesDecodeCanBeWrong) {
  SweepBits(codec.Encode(ProseInput(2, 2000)).bytes);
  SweepBits(codec.Encode(FibonacciInput(17)).bytes);
  SweepBits(codec.Encode(TiedInput(1, 256, 4)).bytes);
}

TEST_F(HuffmanDamageTest, DamageInALongPayloadIsDecodedAsPlainly) {
  const Bytes stream = EncodePlainly(ProseInput(9, 600000)).bytes;
  Numbers numbers(9);
  for (int i = 0; i < 20; ++i) {
    Bytes damaged = stream;
    for (int hit = 0; hit < 3; ++hit) {
      damaged[200 + numbers.Below(stream.size() - 200)] ^=
          static_cast<std::uint8_t>(1 + numbers.Below(255));
    }
    if (i % 3 == 0) damaged.resize(damaged.size() - numbers.Below(damaged.size() / 2));
    ASSERT_TRUE(codec.Decode(damaged) == DecodePlainly(damaged)) << i;
  }
}

TEST_F(HuffmanDamageTest, EveryLengthOfACutOffStreamIsDecodedAsPlainly) {
  const Bytes stream = codec.Encode(ProseInput(4, 3000)).bytes;
  for (std::size_t length = 0; length < stream.size(); ++length) {
    const Bytes cut(stream.begin(), stream.begin() + static_cast<std::ptrdiff_t>(length));
    ASSERT_TRUE(codec.Decode(cut) == DecodePlainly(cut)) << length;
  }
}

TEST_F(HuffmanDamageTest, RandomTablesAreDecodedAsPlainly) {
  Numbers numbers(77);
  for (int i = 0; i < 4000; ++i) {
    Bytes stream{0x48, 0x45, 0x33, 0x0D, static_cast<std::uint8_t>(numbers.Below(4))};
    const std::size_t length = numbers.Below(30);
    for (const std::size_t byte : {length, std::size_t{0}, std::size_t{0}, std::size_t{0}}) {
      stream.push_back(static_cast<std::uint8_t>(byte));
    }
    const std::size_t symbols = 1 + numbers.Below(6);
    const std::size_t longest = 1 + numbers.Below(i % 5 == 0 ? 255 : 4);
    stream.push_back(static_cast<std::uint8_t>(symbols));
    stream.push_back(0);
    for (std::size_t symbol = 0; symbol < symbols; ++symbol) {
      stream.push_back(static_cast<std::uint8_t>(numbers.Below(4)));
      stream.push_back(static_cast<std::uint8_t>(numbers.Below(longest + 1)));
    }
    for (std::size_t left = numbers.Below(1200); left > 0; --left) {
      stream.push_back(static_cast<std::uint8_t>(numbers.Below(256)));
    }
    ASSERT_TRUE(codec.Decode(stream) == DecodePlainly(stream)) << i;
  }
}

}  // namespace
}  // namespace tarnvale::testing
