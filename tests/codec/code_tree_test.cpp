#include "codec/code_tree.h"

#include <gmock/gmock.h>

#include <memory>

#include "codec/encoding.h"
#include "tests/support/raised.h"

namespace tarnvale::testing {
namespace {

using ::testing::ElementsAre;

class CodeTreeTest : public ::testing::Test {
 protected:
  void Build(std::initializer_list<std::int32_t> weights) {
    std::size_t value = 0;
    for (const std::int32_t weight : weights) counts[value++] = weight;
    made = BuildTree(counts, nodes);
    CreateBitSequences(nodes, made - 1, {}, *codes);
  }
  std::string CodeOf(std::size_t value) const {
    std::string code;
    for (std::size_t bit = 0; bit < (*codes)[value].Count; ++bit) {
      code += (*codes)[value].Data[bit] != 0 ? '1' : '0';
    }
    return code;
  }

  SymbolCounts counts{};
  NodeTable nodes{};
  int made = 0;
  std::unique_ptr<CodeTable> codes = std::make_unique<CodeTable>();
};

TEST_F(CodeTreeTest, TheLeftChildIsTheFirstSlotNotTheLighterOne) {
  // 5 and 3 are the only two: the first slot keeps 5.
  Build({5, 3});
  EXPECT_EQ(CodeOf(0), "0");
  EXPECT_EQ(CodeOf(1), "1");
}

TEST_F(CodeTreeTest, TheHeavierCandidateIsDisplaced) {
  // 2, 9, then 1: 9 goes though it is in the second slot.
  Build({2, 9, 1});
  EXPECT_EQ(nodes[3].LeftNode, 0);
  EXPECT_EQ(nodes[3].RightNode, 2);
  // 9, 2, then 1: 9 goes from the first slot.
  counts = {};
  Build({9, 2, 1});
  EXPECT_EQ(nodes[3].LeftNode, 2);
  EXPECT_EQ(nodes[3].RightNode, 1);
}

TEST_F(CodeTreeTest, OfTwoEqualCandidatesTheFirstIsDisplaced) {
  Build({4, 4, 1});
  EXPECT_EQ(nodes[3].LeftNode, 2);
  EXPECT_EQ(nodes[3].RightNode, 1);
}

TEST_F(CodeTreeTest, AnEqualWeightDisplacesNothing) {
  Build({1, 1, 1});
  EXPECT_EQ(nodes[3].LeftNode, 0);
  EXPECT_EQ(nodes[3].RightNode, 1);
  EXPECT_EQ(nodes[3].Weight, 2);
  EXPECT_EQ(nodes[4].LeftNode, 2);
  EXPECT_EQ(nodes[4].RightNode, 3);
  EXPECT_EQ(nodes[4].ParentNode, -1);
  EXPECT_EQ(nodes[3].ParentNode, 4);
}

TEST_F(CodeTreeTest, OneValueHasAnEmptyCode) {
  Build({0, 7});
  EXPECT_EQ(made, 1);
  EXPECT_EQ(CodeOf(1), "");
  EXPECT_EQ(PayloadBits(counts, *codes), 0);
}

TEST_F(CodeTreeTest, All256ValuesMake511Nodes) {
  counts.fill(3);
  EXPECT_EQ(BuildTree(counts, nodes), 511);
}

TEST_F(CodeTreeTest, APayloadOf2To31BitsRaises6) {
  for (std::size_t value = 0; value < 4; ++value) {
    counts[value] = 268435456;
    (*codes)[value].Count = 2;
  }
  EXPECT_EQ(RaisedBy([&] { PayloadBits(counts, *codes); }), 6);
  --counts[3];
  EXPECT_EQ(PayloadBits(counts, *codes), 2147483646);
}

TEST_F(CodeTreeTest, AProductThatDoesNotFitRaises6) {
  counts[0] = 1073741824;
  (*codes)[0].Count = 2;
  EXPECT_EQ(RaisedBy([&] { PayloadBits(counts, *codes); }), 6);
}

TEST_F(CodeTreeTest, APairOfMoreThan56BitsIsMarkedByItsLength) {
  // The longest codes that any input can have, and short ones.
  (*codes)[0].Count = 44;
  (*codes)[1].Count = 12;
  (*codes)[1].Data[11] = 1;
  (*codes)[2].Count = 13;
  const PackedCodes packed = PackCodes(*codes);
  EXPECT_EQ(packed.longest, 44U);
  const PairTable pairs(packed);
  EXPECT_EQ(pairs.Words()[0x0001], (CodeWord{56} << 56U) | (CodeWord{1} << 11U));
  EXPECT_EQ(pairs.Words()[0x0100], (CodeWord{56} << 56U) | (CodeWord{1} << 55U));
  EXPECT_EQ(pairs.Words()[0x0200], CodeWord{57} << 56U);
  EXPECT_EQ(pairs.Words()[0x0000], CodeWord{57} << 56U);
}

}  // namespace
}  // namespace tarnvale::testing
