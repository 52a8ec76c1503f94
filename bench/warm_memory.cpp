// Uses so many MiB of memory once, for the scripts: see warm_memory.h.
//
//   warm_memory MIB
#include "bench/warm_memory.h"

#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: warm_memory MIB\n");
    return 2;
  }
  tarnvale::WarmMemory(std::strtoul(argv[1], nullptr, 10));
  return 0;
}
