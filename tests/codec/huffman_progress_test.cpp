// The moments at which the codec reports, and what.
#include <gmock/gmock.h>

#include <numeric>

#include "codec/percent_report.h"
#include "tests/codec/codec_under_test.h"
#include "tests/codec/generated_inputs.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class HuffmanProgressTest : public ::testing::Test {
 protected:
  std::vector<int> EncodingOf(const Bytes& input) { return codec.Encode(input).progress; }
  std::vector<int> DecodingOf(const Bytes& input) {
    return codec.Decode(codec.Encode(input).bytes).progress;
  }

  CodecUnderTest codec;
};

TEST_F(HuffmanProgressTest, AShortInputReports7And12And100) {
  EXPECT_THAT(EncodingOf(BytesOf("ab")), ElementsAre(7, 12, 100));
  EXPECT_THAT(EncodingOf(ProseInput(1, 999)), ElementsAre(7, 12, 100));
}

TEST_F(HuffmanProgressTest, AShortStreamReports89And100) {
  EXPECT_THAT(DecodingOf(BytesOf("ab")), ElementsAre(89, 100));
  EXPECT_THAT(DecodingOf(ProseInput(1, 9999)), ElementsAre(89, 100));
}

TEST_F(HuffmanProgressTest, AStoredShortInputReportsNothing) {
  EXPECT_THAT(EncodingOf(Bytes(999, 'a')), IsEmpty());
  EXPECT_THAT(DecodingOf(Bytes(999, 'a')), IsEmpty());
}

TEST_F(HuffmanProgressTest, AStoredLongInputReportsItsCountingAlone) {
  // At 1000, 2000, 3000 and 4000 of 5000: 1.4, 2.8, 4.2 and 5.6.
  EXPECT_THAT(EncodingOf(Bytes(5000, 'a')), ElementsAre(1, 3, 4, 6));
  EXPECT_THAT(DecodingOf(Bytes(5000, 'a')), IsEmpty());
}

TEST_F(HuffmanProgressTest, CountingLooksAtEvery1000thByteAndTheOthersAtEvery10000th) {
  // Counting 14000: 0.5 k at 1000 k, halves to even: 0.5 -> 0, 1, 1.5 -> 2, 2,
  // 2.5 -> 2, 3, 3.5 -> 4, 4, 4.5 -> 4, 5, 5.5 -> 6, 6, 6.5 -> 6.
  // Checksum at 0 and 10000: 7, 7 + 3.57. Packing: 12, 12 + 62.86.
  EXPECT_THAT(EncodingOf(ProseInput(2, 14000)), ElementsAre(1, 2, 3, 4, 5, 6, 7, 11, 12, 75, 100));
}

TEST_F(HuffmanProgressTest, HalvesGoToTheEvenNumber) {
  std::vector<int> reported;
  PercentReport report([&](std::int16_t percent) { reported.push_back(percent); });
  for (const double percent : {0.5, 1.5, 2.5, 3.5, 4.5, 88.5, 89.5}) report.Report(percent);
  EXPECT_THAT(reported, ElementsAre(2, 4, 88, 90));
}

TEST_F(HuffmanProgressTest, APercentThatStaysIsNotReportedAgain) {
  std::vector<int> reported;
  PercentReport report([&](std::int16_t percent) { reported.push_back(percent); });
  for (const double percent : {0.0, 0.2, 1.0, 1.2, 1.4, 2.0}) report.Report(percent);
  EXPECT_THAT(reported, ElementsAre(1, 2));
}

TEST_F(HuffmanProgressTest, DecodingReportsThe10000thBytesOfTheStreamAndOfTheResult) {
  // 1 bit for one value, 7 for each of 64 others.
  Bytes input = TiedInput(3, 64, 625);
  input.insert(input.end(), 40000, 0x01);
  const Bytes stream = codec.Encode(input).bytes;
  ASSERT_EQ(stream.size(), 11U + 65 * 2 + (64 * 7 + 1 + 7) / 8 + (40000 * 7 + 40000) / 8);
  // The stream has 40198 bytes: 22.1, 44.3, 66.4 and 88.6. The result has 80000:
  // 89 at its start is reported already, then 1.375 more each time.
  EXPECT_THAT(codec.Decode(stream).progress,
              ElementsAre(22, 44, 66, 89, 90, 92, 93, 94, 96, 97, 99, 100));
}

TEST_F(HuffmanProgressTest, LongInputsReportAsTheFormatSays) {
  for (const std::size_t length : {10000U, 10001U, 99999U, 300000U, 1234567U}) {
    const Bytes input = ProseInput(length, length);
    const Outcome encoded = EncodePlainly(input);
    EXPECT_EQ(EncodingOf(input), encoded.progress) << length;
    EXPECT_EQ(codec.Decode(encoded.bytes).progress, DecodePlainly(encoded.bytes).progress)
        << length;
  }
}

// The 10000th byte is looked at behind its last bit: not where the result ends before that.
TEST_F(HuffmanProgressTest, TheByteThatTheResultEndsInIsNotReported) {
  for (const std::size_t bits : {1U, 8U}) {
    const std::size_t symbols = std::size_t{1} << bits;
    const Bytes input = TiedInput(1, symbols, 100000 / symbols);
    const Bytes stream = EncodePlainly(input).bytes;
    const std::size_t before = (10000 * 8 - (stream.size() * 8 - input.size() * bits)) / bits;
    for (std::size_t length = before - 9; length <= before + 9; ++length) {
      const Bytes ended = EndedAfter(length, stream, input);
      ASSERT_TRUE(codec.Decode(ended) == DecodePlainly(ended)) << bits << ", " << length;
    }
    for (const std::size_t size : {9999U, 10000U, 10001U}) {
      const Bytes cut_off(stream.begin(), stream.begin() + size);
      ASSERT_TRUE(codec.Decode(cut_off) == DecodePlainly(cut_off)) << bits << ", " << size;
    }
  }
}

TEST_F(HuffmanProgressTest, ReportsBeforeAFailureAreMade) {
  Bytes stream = EncodePlainly(ProseInput(7, 100000)).bytes;
  stream[4] ^= 1;
  const Outcome outcome = codec.Decode(stream);
  EXPECT_EQ(outcome.error, kProgramDefinedError);
  EXPECT_EQ(outcome.progress, DecodePlainly(stream).progress);
  EXPECT_EQ(outcome.progress.back(), 99);
}

}  // namespace
}  // namespace tarnvale::testing
