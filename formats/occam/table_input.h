// table_input.h: what data and response files have in common: a header with sites and frequencies,
// then rows of numbers.
#pragma once
#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "formats/occam/text_input.h"

namespace Module_occam {

inline constexpr std::string_view data_marker = "OCCAM2MTDATA_1.0";

/// How the lines with counts are written.
enum class Labels { with_colon, without_colon };

struct TableHeader {
  std::vector<std::string> site_names;
  std::vector<double> site_offsets;  // m along the line
  std::vector<double> frequencies;   // Hz
  int row_count = 0;
};

/// Reads from after the marker up to the first row. Throws Refusal, EmptyLine or std::runtime_error.
TableHeader read_header(TextInput& input, Labels labels);

/// The items of one row.
template <std::size_t items>
using Row = std::array<double, items>;

/// @param read_list  read_value_list, or read_number_list where each item has to be a number
/// @return false at the end of the file
template <std::size_t items>
bool read_row(TextInput& input, Row<items>& row,
              int (*read_list)(TextInput&, std::int64_t, std::vector<double>&) = read_value_list) {
  std::vector<double> values;
  values.reserve(items);
  if (read_list(input, items, values) != 0) {
    return false;
  }
  std::ranges::copy(values, row.begin());
  return true;
}

}  // namespace Module_occam
