#include "tests/soak/allocated_memory.h"

extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
extern "C" void __sanitizer_print_memory_profile(std::size_t percent, std::size_t places);

std::size_t allocated_bytes() { return __sanitizer_get_current_allocated_bytes(); }

void print_memory_profile() {
  constexpr std::size_t percent = 90;
  constexpr std::size_t places = 40;
  __sanitizer_print_memory_profile(percent, places);
}
