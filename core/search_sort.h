// search_sort.h: binary searches. Every procedure counts from 0 and gives -1 when nothing is found; each ends
// for any input, also for one that isn't in order.
#pragma once
#include <span>
#include <string>
#include <string_view>

namespace basSearchSort {

/// The place of exactly this value in ascending values.
int search_sorted(std::span<const float> ascending, float value);

/// The place of the nearest frequency, if its distance is below `tolerance`. For frequencies as the user
/// types them, which lists rarely hold exactly.
/// @param ascending  Hz
/// @param tolerance  Hz
int find_nearest_frequency(std::span<const float> ascending, float value, float tolerance);

struct TextSearch {
  int first = -1;            // below 0: the first text
  int last = -1;             // below 0 or below `first`: the last text
  bool match_case = false;   // the texts' order must be one without regard to case unless it is set
  bool prefix_only = false;  // the first text that begins with the value
};

/// The place of a text in ascending texts.
int binary_search(std::span<const std::string> ascending, std::string_view value, TextSearch search = {});

}  // namespace basSearchSort
