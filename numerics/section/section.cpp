#include "numerics/section/section.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <stdexcept>
#include <string>
#include <string_view>

#include "core/number_text.h"

namespace numerics::section {

namespace {

constexpr double highest_resistivity = 1e8;  // ohm-m, where resistivities are cut
constexpr double lowest_resistivity = 1e-6;

[[noreturn]] void fail(const std::string& what) { throw std::invalid_argument(what); }

bool is_positive(double value) { return std::isfinite(value) && value > 0.0; }

void check_positive(std::string_view name, std::span<const double> values) {
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (!is_positive(values[i])) {
      fail("mesh " + std::string(name) + " " + std::to_string(i + 1) + " is " + plain_text(values[i]));
    }
  }
}

}  // namespace

void check_section(const Section& section) {
  if (section.column_widths.size() < 2 || section.row_heights.size() < 3) {
    fail("a mesh needs at least two columns and three rows of cells");
  }
  if (!std::isfinite(section.left_edge)) {
    fail("the position of the mesh is not a number");
  }
  check_positive("column", section.column_widths);
  check_positive("row", section.row_heights);
  const std::size_t columns = section.columns();
  const std::size_t count = 4 * columns * section.rows();
  if (section.resistivities.size() != count || section.codes.size() != count) {
    fail("the number of resistivities doesn't fit the mesh");
  }
  const auto bad = std::find_if_not(section.resistivities.begin(), section.resistivities.end(), is_positive);
  if (bad != section.resistivities.end()) {
    const auto cell = static_cast<std::size_t>(bad - section.resistivities.begin()) / 4;
    fail("the resistivity of row " + std::to_string(cell / columns + 1) + ", column " +
         std::to_string(cell % columns + 1) + " is " + plain_text(*bad));
  }
}

std::vector<double> triangle_resistivities(std::span<const Code> codes,
                                           std::span<const double> fixed_resistivities,
                                           std::span<const double> log10_parameters,
                                           ResistivityLimits limits) {
  std::vector<double> table(fixed_resistivities.begin(), fixed_resistivities.end());
  std::vector<double> free(log10_parameters.size());
  std::ranges::transform(log10_parameters, free.begin(), [](double p) { return std::pow(10.0, p); });
  table.insert(table.end(), free.begin(), free.end());
  if (limits == ResistivityLimits::cut && !free.empty()) {
    const auto [least, most] = std::ranges::minmax(free);
    for (double& resistivity : table) {
      resistivity = most > highest_resistivity ? std::min(resistivity, highest_resistivity) : resistivity;
      resistivity = least < lowest_resistivity ? std::max(resistivity, lowest_resistivity) : resistivity;
    }
  }
  const auto resistivity_of = [&](Code code) {
    if (code == air_code) {
      return air_resistivity;
    }
    if (code == sea_code) {
      return sea_resistivity;
    }
    if (code < 0 || static_cast<std::size_t>(code) > table.size()) {
      fail("the mesh names resistivity " + std::to_string(code) + " of a table of " +
           std::to_string(fixed_resistivities.size()) + " fixed and " +
           std::to_string(log10_parameters.size()) + " free ones");
    }
    return table[static_cast<std::size_t>(code) - 1];
  };
  std::vector<double> values(codes.size());
  std::ranges::transform(codes, values.begin(), resistivity_of);
  return values;
}

std::size_t nearest_node_column(const Section& section, double y) {
  const double width = std::accumulate(section.column_widths.begin(), section.column_widths.end(), 0.0);
  if (!(y >= section.left_edge && y <= section.left_edge + width)) {
    fail("position " + plain_text(y) + " m lies outside the mesh, which spans " +
         plain_text(section.left_edge) + " to " + plain_text(section.left_edge + width) + " m");
  }
  double node = section.left_edge;
  for (std::size_t column = 0; column < section.column_widths.size(); ++column) {
    const double next = node + section.column_widths[column];
    if (y < next) {
      return y - node < next - y ? column : column + 1;
    }
    node = next;
  }
  return section.column_widths.size();
}

}  // namespace numerics::section
