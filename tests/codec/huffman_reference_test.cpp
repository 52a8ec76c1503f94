// The codec against the plain coder: the same bytes, events and failures.
#include <gtest/gtest.h>

#include "tests/codec/codec_under_test.h"
#include "tests/codec/generated_inputs.h"

namespace tarnvale::testing {
namespace {

class HuffmanReferenceTest : public ::testing::Test {
 protected:
  // False after the first difference, so that one doesn't fill a screen.
  bool AgreesOn(const Bytes& input) {
    const Outcome expected = EncodePlainly(input);
    const Outcome encoded = codec.Encode(input);
    EXPECT_TRUE(encoded == expected);
    const Outcome decoded = codec.Decode(expected.bytes);
    EXPECT_TRUE(decoded == DecodePlainly(expected.bytes));
    if (!input.empty()) {
      EXPECT_TRUE(decoded.bytes == input);
    }
    return !HasFailure();
  }

  CodecUnderTest codec;
};

TEST_F(HuffmanReferenceTest, AgreesOnShortInputsOfEveryLength) {
  for (std::size_t length = 0; length <= 1500; ++length) {
    ASSERT_TRUE(AgreesOn(GenerateInput(length, length, 1 + length % 256))) << length;
  }
}

TEST_F(HuffmanReferenceTest, AgreesOnEveryNumberOfSymbols) {
  for (std::size_t symbols = 1; symbols <= 256; ++symbols) {
    ASSERT_TRUE(AgreesOn(GenerateInput(symbols, 2000 + 7 * symbols, symbols))) << symbols;
  }
}

TEST_F(HuffmanReferenceTest, AgreesOnLengthsUpTo70000) {
  Numbers numbers(42);
  for (int i = 0; i < 150; ++i) {
    const std::size_t length = numbers.Below(70001);
    const std::size_t symbols = 1 + numbers.Below(256);
    ASSERT_TRUE(AgreesOn(GenerateInput(numbers.Below(1U << 30U), length, symbols)))
        << i << ": " << length << " of " << symbols;
  }
}

TEST_F(HuffmanReferenceTest, AgreesOnFibonacciWeights) {
  for (std::size_t values = 2; values <= 25; ++values) {
    ASSERT_TRUE(AgreesOn(FibonacciInput(values))) << values;
  }
}

TEST_F(HuffmanReferenceTest, AgreesWhereAllWeightsTie) {
  for (std::size_t symbols = 1; symbols <= 256; ++symbols) {
    ASSERT_TRUE(AgreesOn(TiedInput(symbols, symbols, 1 + symbols % 5))) << symbols;
  }
}

TEST_F(HuffmanReferenceTest, AgreesWhereWeightsTieWithSumsOfOthers) {
  for (std::size_t symbols = 2; symbols <= 64; ++symbols) {
    Bytes input;
    for (std::size_t value = 0; value < symbols; ++value) {
      input.insert(input.end(), std::size_t{1} << (value % 8), static_cast<std::uint8_t>(value));
    }
    ASSERT_TRUE(AgreesOn(input)) << symbols;
  }
}

// From 192 KiB the encoder has a table of pairs, and from about 110 KiB of
// payload the decoder runs several cursors.
TEST_F(HuffmanReferenceTest, AgreesOnInputsThatTakeEveryFastPath) {
  for (const std::size_t length : {196607U, 196608U, 196613U, 700001U}) {
    for (const std::size_t symbols : {2U, 3U, 16U, 64U, 100U, 256U}) {
      ASSERT_TRUE(AgreesOn(GenerateInput(length + symbols, length, symbols)))
          << length << " of " << symbols;
    }
    ASSERT_TRUE(AgreesOn(ProseInput(length, length)));
  }
  ASSERT_TRUE(AgreesOn(FibonacciInput(29)));
  ASSERT_TRUE(AgreesOn(TiedInput(1, 256, 2000)));
  ASSERT_TRUE(AgreesOn(TiedInput(2, 64, 8000)));
}

// A cursor that is off by a bit takes a run of the code 01 for one of the code 10. The last
// code of 3 bits comes before the end by 3 to 8 times the shorter distance of two cursors.
TEST_F(HuffmanReferenceTest, AgreesWhereCursorsDoNotMeetBeforeTheEnd) {
  constexpr std::size_t kRun = 120000;
  for (const int last : {0, 1, 2}) {
    Bytes others;
    for (std::size_t i = 0; i < kRun; ++i) others.push_back(3 + i % 2);
    others.insert(others.end(), kRun, (last + 1) % 3);
    others.insert(others.end(), kRun, (last + 2) % 3);
    for (std::size_t behind = 45000; behind <= 105000; behind += 10000) {
      Bytes input = others;
      input.insert(input.end(), kRun - behind, last);
      input.push_back(3);
      input.insert(input.end(), behind, last);
      ASSERT_TRUE(AgreesOn(input)) << last << ", " << behind;
    }
  }
}

}  // namespace
}  // namespace tarnvale::testing
