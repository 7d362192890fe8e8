#include "tests/soak/allocated_memory.h"

#include <malloc.h>

std::size_t allocated_bytes() {
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

void print_memory_profile() {}
