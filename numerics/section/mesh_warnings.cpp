#include "numerics/section/mesh_warnings.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "core/number_text.h"
#include "numerics/section/host.h"
#include "numerics/section/layered_field.h"
#include "numerics/section/response.h"

namespace numerics::section {

namespace {

constexpr double thickest_first_row = 0.2;  // skin depths
constexpr double min_margin = 3.0;          // skin depths: 0.05 % of the response

// sqrt(2 rho / (omega mu)), m: 503 sqrt(rho / f)
double skin_depth(double resistivity, const Frequency& frequency) {
  return std::sqrt(2.0 * resistivity / frequency.omega_mu());
}

// Skin depth of a column at its apparent resistivity, m.
double skin_depth(const LayeredColumn& column, const Frequency& frequency) {
  const LayeredField field(frequency, column.heights, column.conductivity);
  return skin_depth(std::norm(field.impedance()) / frequency.omega_mu(), frequency);
}

// The first row of a column that isn't all air; the number of rows if there is none.
std::size_t ground_row(const Section& section, std::size_t column) {
  const auto is_ground = [&](std::size_t row) {
    for (std::size_t t = 0; t < 4; ++t) {
      if (!section.is_air(column, row, t)) {
        return true;
      }
    }
    return false;
  };
  std::size_t row = 0;
  while (row < section.rows() && !is_ground(row)) {
    ++row;
  }
  return row;
}

// The row's height in skin depths, over the columns' surfaces the largest.
double first_row_in_skin_depths(const Section& section, const Frequency& frequency) {
  double largest = 0.0;
  for (std::size_t column = 0; column < section.columns(); ++column) {
    const std::size_t row = ground_row(section, column);
    for (std::size_t t = 0; row < section.rows() && t < 4; ++t) {
      if (!section.is_air(column, row, t)) {
        largest = std::max(
            largest, section.row_heights[row] / skin_depth(section.resistivity(column, row, t), frequency));
      }
    }
  }
  return largest;
}

bool same_columns(const Section& section, std::size_t a, std::size_t b) {
  for (std::size_t row = 0; row < section.row_heights.size(); ++row) {
    for (std::size_t t = 0; t < 4; ++t) {
      if (section.resistivity(a, row, t) != section.resistivity(b, row, t)) {
        return false;
      }
    }
  }
  return true;
}

// Width of the columns like the first one (or the last), m.
double uniform_width(const Section& section, bool from_left) {
  const std::size_t columns = section.column_widths.size();
  double width = 0.0;
  for (std::size_t i = 0; i < columns; ++i) {
    const std::size_t column = from_left ? i : columns - 1 - i;
    if (!same_columns(section, from_left ? 0 : columns - 1, column)) {
      break;
    }
    width += section.column_widths[column];
  }
  return width;
}

std::string margin_warning(const char* place, double found, double skin) {
  return std::string("The mesh ends ") + format_number(found / skin, "0.0") + " skin depths " + place +
         " at the lowest frequency; 3 are needed";
}

}  // namespace

std::vector<std::string> mesh_warnings(const Section& section, std::span<const double> site_positions,
                                       std::span<const double> frequencies) {
  const CheckedInput input = check_input(section, site_positions, frequencies);
  std::vector<std::string> warnings;
  if (frequencies.empty()) {
    return warnings;
  }
  const auto [lowest, highest] = std::minmax_element(frequencies.begin(), frequencies.end());

  const double thickness = first_row_in_skin_depths(section, Frequency(*highest));
  if (thickness > thickest_first_row) {
    warnings.push_back("The first row of the mesh is " + format_number(thickness, "0.00") +
                       " skin depths thick at " + plain_text(*highest) +
                       " Hz; above 0.2 phases are off by some degrees");
  }
  const double left_skin = skin_depth(end_column(section, End::left), Frequency(*lowest));
  const double right_skin = skin_depth(end_column(section, End::right), Frequency(*lowest));
  if (const double width = uniform_width(section, true); width < min_margin * left_skin) {
    warnings.push_back(margin_warning("left of the first change along the line", width, left_skin));
  }
  if (const double width = uniform_width(section, false); width < min_margin * right_skin) {
    warnings.push_back(margin_warning("right of the last change along the line", width, right_skin));
  }
  const std::vector<double>& rows = input.host.heights;
  const double depth = std::accumulate(rows.begin(), rows.end(), 0.0);
  const double skin = skin_depth(input.host, Frequency(*lowest));
  if (depth < min_margin * skin) {
    warnings.push_back(margin_warning("below the ground", depth, skin));
  }
  for (std::size_t s = 0; s < input.sites.size(); ++s) {
    if (input.sites[s].on_a_wall) {
      warnings.push_back("Site " + std::to_string(s + 1) +
                         " stands at the rim of a vertical step, where TM has no meaningful value");
    }
  }
  return warnings;
}

}  // namespace numerics::section
