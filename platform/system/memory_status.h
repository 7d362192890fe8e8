// memory_status.h: how much memory the machine has, how much of it is free, and how much this program uses.
#pragma once
#include <cstdint>

namespace UTIL {

/// Bytes; 0 where the system doesn't say.
struct MemoryStatus {
  std::uint64_t physical = 0;
  std::uint64_t free_physical = 0;  // what a program can get before the system begins to page
  std::uint64_t paging = 0;         // in paging files or swap space
  std::uint64_t free_paging = 0;
  std::uint64_t program = 0;       // of this program, in physical memory now
  std::uint64_t program_peak = 0;  // the maximum so far
};

/// The values at this moment.
MemoryStatus memory_status();

}  // namespace UTIL
