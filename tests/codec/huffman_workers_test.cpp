// The codec on several processors against the plain coder: the same bytes, events and
// failures, whoever comes first.
#include <gtest/gtest.h>

#include <bit>
#include <thread>
#include <vector>

#include "codec/decoding.h"
#include "codec/percent_report.h"
#include "platform/workers.h"
#include "tests/codec/codec_under_test.h"
#include "tests/codec/generated_inputs.h"

namespace tarnvale::testing {
namespace {

// As many threads as are wanted, on whatever processors.
class ManyThreads final : public Workers {
 public:
  std::size_t Helpers() override { return 5; }
  void Run(std::size_t most_helpers, const std::function<void()>& work) override {
    std::vector<std::jthread> helpers;
    for (std::size_t i = 0; i < most_helpers; ++i) helpers.emplace_back(work);
    runs += 1;
    work();
  }
  void LetOthersRun() override { std::this_thread::yield(); }
  void ReadAhead(std::vector<Path>) override {}
  std::optional<std::span<const std::uint8_t>> TakeRead(const Path&) override { return {}; }

  int runs = 0;
};

Bytes SkewedInput(std::size_t length) {
  Bytes bytes(length);
  for (std::size_t i = 0; i < length; ++i) {
    bytes[i] = static_cast<std::uint8_t>(std::countr_zero(i + 1));
  }
  return bytes;
}

class HuffmanWorkersTest : public ::testing::Test {
 protected:
  void ExpectAgreesOn(const Bytes& input) {
    const Outcome expected = EncodePlainly(input);
    EXPECT_TRUE(codec.Encode(input) == expected);
    EXPECT_TRUE(codec.Decode(expected.bytes) == DecodePlainly(expected.bytes));
    EXPECT_GT(workers.runs, 0);
  }

  ManyThreads workers;
  CodecUnderTest codec{workers};
};

constexpr std::size_t kMiB = std::size_t{1} << 20U;

TEST_F(HuffmanWorkersTest, LongInputsGiveTheSameBytes) {
  for (const std::size_t length : {2 * kMiB, 2 * kMiB + 1, 3 * kMiB - 1, 5 * kMiB + 12345}) {
    ExpectAgreesOn(ProseInput(length, length));
    ExpectAgreesOn(SkewedInput(length));
  }
}

TEST_F(HuffmanWorkersTest, InputsOfSeveralRoundsGiveTheSameBytes) {
  ExpectAgreesOn(ProseInput(1, 17 * kMiB + 7));
}

TEST_F(HuffmanWorkersTest, CodesOfOneByteEachGiveTheSameBytes) {
  ExpectAgreesOn(TiedInput(1, 256, 10000));
}

// A run of the code 01 is, for a cursor that is off by a bit, one of the code 10: it
// doesn't meet the right one before the run ends.
TEST_F(HuffmanWorkersTest, CursorsThatNeverMeetGiveTheSameBytes) {
  constexpr std::size_t kRun = 1500000;
  Bytes input{3};
  for (const std::uint8_t value : {0, 1, 2}) input.insert(input.end(), kRun, value);
  for (std::size_t i = 0; i < kRun; ++i) input.push_back(3 + i % 2);
  ExpectAgreesOn(input);
}

TEST_F(HuffmanWorkersTest, CodesOfOneLengthGiveTheSameBytes) {
  ExpectAgreesOn(TiedInput(2, 64, 50000));
  ExpectAgreesOn(TiedInput(2, 32, 100000));
}

TEST_F(HuffmanWorkersTest, LongCodesGiveTheSameBytes) {
  ExpectAgreesOn(FibonacciInput(32));
}

// A block of 887040 bits, each of which is one byte of the result.
TEST_F(HuffmanWorkersTest, AResultThatEndsWithinABlockGetsNoneOfThoseBehindIt) {
  constexpr std::size_t kBlock = 887040;
  const Bytes input = TiedInput(3, 2, 6000000);
  const Bytes stream = codec.Encode(input).bytes;
  for (const std::size_t missing : {20U, 120U, 180U, 500U}) {
    const Bytes expected(input.begin(), input.begin() + 9 * kBlock - missing);
    EXPECT_TRUE(codec.Decode(EndedAfter(expected.size(), stream, input)).bytes == expected)
        << missing;
  }
}

// A round takes 128 blocks of 887040 bits.
TEST_F(HuffmanWorkersTest, DecodingReportsAfterEachRound) {
  const Bytes stream = codec.Encode(TiedInput(4, 128, 150000)).bytes;
  workers.runs = 0;
  std::vector<int> rounds;
  PercentReport report([&](std::int16_t) { rounds.push_back(workers.runs); });
  ByteBuffer result;
  DecodeStream(stream, result, report, workers);
  EXPECT_EQ(workers.runs, 2);
  EXPECT_EQ(rounds.front(), 1);
}

TEST_F(HuffmanWorkersTest, DamagedStreamsFailInTheSameWay) {
  const Bytes input = ProseInput(3, 4 * kMiB);
  const Bytes sound = EncodePlainly(input).bytes;
  Numbers numbers(7);
  for (int i = 0; i < 12; ++i) {
    Bytes damaged = sound;
    if (i % 3 == 0) {
      damaged.resize(numbers.Below(damaged.size()));
    } else if (i % 3 == 1) {
      damaged[numbers.Below(damaged.size())] ^= std::uint8_t{16};
    } else {
      // A length that the payload doesn't have, or not all of it.
      damaged[7] ^= static_cast<std::uint8_t>(1U << numbers.Below(7));
    }
    EXPECT_TRUE(codec.Decode(damaged) == DecodePlainly(damaged)) << i;
  }
}

}  // namespace
}  // namespace tarnvale::testing
