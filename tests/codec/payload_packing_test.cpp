#include "codec/encoding.h"

#include <gtest/gtest.h>

#include <memory>
#include <numeric>

#include "tests/codec/generated_inputs.h"

namespace tarnvale::testing {
namespace {

// Codes as no small input has them: value v takes `lengths[v]` bits, the odd ones
// of which are set.
class PayloadPackingTest : public ::testing::Test {
 protected:
  void SetLengths(const std::vector<int>& lengths) {
    for (std::size_t value = 0; value < lengths.size(); ++value) {
      (*codes)[value].Count = static_cast<std::uint8_t>(lengths[value]);
      for (int bit = 0; bit < lengths[value]; ++bit) {
        (*codes)[value].Data[static_cast<std::size_t>(bit)] = (bit + static_cast<int>(value)) % 2;
      }
    }
  }

  Bytes PackedPlainly(const Bytes& input) const {
    Bytes field;
    std::size_t position = 0;
    for (const std::uint8_t byte : input) {
      for (std::size_t bit = 0; bit < (*codes)[byte].Count; ++bit, ++position) {
        if (position % 8 == 0) field.push_back(0);
        field.back() |= static_cast<std::uint8_t>((*codes)[byte].Data[bit] << (position % 8));
      }
    }
    return field;
  }

  // In pieces of `piece` bytes, as if the whole input had this size.
  Bytes Packed(const Bytes& input, const PayloadPacker::Size& size, std::size_t piece) const {
    const PackedCodes packed = PackCodes(*codes);
    Bytes field(input.size() * 7 + 16);
    PayloadPacker packer(packed, size, field.data());
    for (std::size_t at = 0; at < input.size(); at += piece) {
      packer.Add(std::span(input).subspan(at, std::min(piece, input.size() - at)));
    }
    field.resize(static_cast<std::size_t>(packer.Finish() - field.data()));
    return field;
  }

  void ExpectAgree(std::size_t symbols) {
    const Bytes input = [&] {
      Numbers numbers(symbols);
      Bytes bytes(3001);
      for (auto& byte : bytes) byte = static_cast<std::uint8_t>(numbers.Below(symbols));
      return bytes;
    }();
    const Bytes expected = PackedPlainly(input);
    // Symbols one by one, three pairs at a time, four.
    const PayloadPacker::Size few{3001, 3001 * 6};
    const PayloadPacker::Size many{1U << 20U, (1U << 20U) * 6};
    const PayloadPacker::Size many_short{1U << 20U, (1U << 20U) * 2};
    for (const auto& size : {few, many, many_short}) {
      for (const std::size_t piece : {1U, 5U, 6U, 7U, 8U, 100U, 3001U}) {
        EXPECT_TRUE(Packed(input, size, piece) == expected)
            << size.payload_bits << " bits in pieces of " << piece;
      }
    }
  }

  std::unique_ptr<CodeTable> codes = std::make_unique<CodeTable>();
};

TEST_F(PayloadPackingTest, ShortCodesAreMergedSixAtATime) {
  SetLengths({1, 2, 3, 4, 5, 9});
  ExpectAgree(6);
}

TEST_F(PayloadPackingTest, SixCodesOfMoreThan56BitsAreWrittenSingly) {
  SetLengths({9, 10, 1, 28, 29, 42});
  ExpectAgree(6);
}

TEST_F(PayloadPackingTest, CodesOfMoreThan42BitsAreWrittenSingly) {
  std::vector<int> lengths(44);
  std::iota(lengths.begin(), lengths.end(), 1);
  SetLengths(lengths);
  ExpectAgree(44);
}

TEST_F(PayloadPackingTest, CodesOfOneByteEachReplaceBytes) {
  SetLengths(std::vector<int>(256, 8));
  ExpectAgree(256);
}

}  // namespace
}  // namespace tarnvale::testing
