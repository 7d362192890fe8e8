// zonge_avg_columns.h: what stands in the tables of averaged soundings.
#pragma once
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "formats/transfer_function/transfer_function.h"

namespace formats::zonge {

/// What a column of a table holds.
enum class AvgColumn : std::uint8_t {
  other,
  skip,
  magnitude_weight,
  phase_weight,
  station,
  frequency,
  component,
  resistivity,
  phase,
  impedance,
  resistivity_percent,
  phase_error,
};

/// The items of a row: at commas where it has any, else at blanks.
std::vector<std::string_view> avg_items(std::string_view line);

/// The columns of a heading; empty if the line is none.
std::vector<AvgColumn> avg_heading(std::string_view line);

/// Whether a line is the heading of a set that this program writes: its tables name no component, which is
/// in the name of the file, and have phases in degrees.
bool is_avg_set_heading(std::string_view line);

/// The component of a name such as "ExHy", "Zxy" or, with a remote reference, "Zxyr".
std::optional<transfer_function::Component> avg_component(std::string_view name);

}  // namespace formats::zonge
