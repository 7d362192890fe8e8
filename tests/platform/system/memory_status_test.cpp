#include "platform/system/memory_status.h"

#include <vector>

#include <gtest/gtest.h>

TEST(Memory_status, Follows_what_the_program_takes) {
  const UTIL::MemoryStatus before = UTIL::memory_status();
  ASSERT_GT(before.physical, 0U);
  EXPECT_LT(before.free_physical, before.physical);
  EXPECT_LE(before.free_paging, before.paging);
  EXPECT_GT(before.program, 0U);
  constexpr std::size_t taken = std::size_t{64} << 20U;  // bytes
  const std::vector<char> memory(taken, 'x');
  const UTIL::MemoryStatus during = UTIL::memory_status();
  EXPECT_GT(during.program, before.program + taken * 9 / 10);
  EXPECT_LT(during.program, before.program + taken * 3 / 2);
  EXPECT_GE(during.program_peak, during.program);
  EXPECT_EQ(during.physical, before.physical);
}
