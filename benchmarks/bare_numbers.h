// bare_numbers.h: the numbers of a text file in a bare loop: what any reader and any writer has to do at
// least.
#pragma once
#include <array>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "benchmarks/beside_bound.h"

/// Reads the bytes and converts every number in them. A line's rest from a '?' on, which is a mesh's, has
/// none.
inline std::vector<double> numbers_of(const std::string& path) {
  const std::string bytes = bytes_of(path);
  std::vector<double> values;
  const char* place = bytes.data();
  const char* const file_end = place + bytes.size();
  while (place < file_end) {
    if (*place == '?') {
      const void* const line_end = std::memchr(place, '\n', static_cast<std::size_t>(file_end - place));
      place = line_end == nullptr ? file_end : static_cast<const char*>(line_end);
      continue;
    }
    if (*place != '-' && (*place < '0' || *place > '9')) {
      ++place;
      continue;
    }
    double value = 0.0;
    const auto [after, failure] = std::from_chars(place, file_end, value);
    if (failure == std::errc{}) {
      values.push_back(value);
      place = after;
    } else {
      ++place;
    }
  }
  return values;
}

/// Converts the numbers and writes so many bytes.
inline void write_numbers(const std::string& path, const std::vector<double>& numbers, std::size_t size) {
  std::string bytes;
  bytes.reserve(size);
  std::array<char, 32> text{};
  for (const double number : numbers) {
    bytes.append(text.data(), std::to_chars(text.data(), text.data() + text.size(), number).ptr);
  }
  bytes.resize(size, ' ');
  std::FILE* const file = std::fopen(path.c_str(), "wb");
  std::fwrite(bytes.data(), 1, bytes.size(), file);
  std::fclose(file);
}
