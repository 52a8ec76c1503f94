#include "tests/fuzz/fuzz_targets.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tarnvale::testing::FuzzDialogs({data, size});
  return 0;
}
