// The splitter's routines on the test machine, with the fields of a window.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "splitter/split_join.h"
#include "tests/support/fake_machine.h"

namespace tarnvale::testing {

/// Bytes of which no short run repeats at the distances of the copy steps.
inline std::string GeneratedBytes(std::size_t size) {
  std::string bytes;
  std::uint32_t state = 2463534242U;
  for (std::size_t i = 0; i < size; ++i) {
    state ^= state << 13U;
    state ^= state >> 17U;
    state ^= state << 5U;
    bytes.push_back(static_cast<char>(state & 0xFFU));
  }
  return bytes;
}

/// Thrown by a test to leave a routine that never returns.
struct LeftByTest {};

class SplitJoinTest : public ::testing::Test {
 protected:
  SplitJoinTest() {
    machine.files.MakeFolder("C:\\out");
    machine.files.MakeFolder("C:\\in");
  }

  PartsCode Split(const Path& path, std::int32_t segment_bytes) {
    return hand.SplitFile(path, segment_bytes, count);
  }
  /// `named_part` is then what the routine left in its argument.
  PartsCode Join(const Path& path) {
    named_part = path;
    return hand.JoinFile(named_part, count);
  }
  /// Gives the source a content and splits it.
  PartsCode SplitBytes(const std::string& bytes, std::int32_t segment_bytes) {
    machine.files.Write(source, bytes);
    return Split(source, segment_bytes);
  }
  std::string Content(const Path& file) { return machine.files.Content(file); }
  std::vector<std::string> OutNames() { return machine.files.Names("C:\\out"); }

  FakeMachine machine;
  const Path source = "C:\\in\\backup.tvz";
  Property<std::string> target{"C:\\out"};
  Property<std::string> joined{"Text2"};
  std::vector<int> percents;
  std::function<void()> on_progress = [] {};
  modFHand hand{machine.files,
                machine.open_files,
                machine.loop,
                {target, joined, [this](std::int16_t percent) {
                   percents.push_back(percent);
                   on_progress();
                 }}};
  std::int16_t count = -1;
  Path named_part;
};

}  // namespace tarnvale::testing
