// allocated_memory.h: what the program has allocated.
#pragma once
#include <cstddef>

std::size_t allocated_bytes();

/// Where the memory in use was allocated, onto the standard error; nothing without the sanitizer.
void print_memory_profile();
