#include "tensor/dimensions.h"

#include <algorithm>
#include <cmath>

namespace Module_tensor {

using numerics::impedance::DimensionalityLimits;

namespace {

constexpr double lone_spacing = 0.1;  // decades, of a station with one frequency
constexpr double widest_gap = 1.5;    // spacings

/// That which three of four spacings don't exceed: files change it from range to range.
double usual_spacing(const std::vector<DimensionCell>& cells) {
  std::vector<double> spacings;
  for (std::size_t i = 1; i < cells.size(); ++i) {
    spacings.push_back(std::log10(cells[i].frequency / cells[i - 1].frequency));
  }
  if (spacings.empty()) {
    return lone_spacing;
  }
  const auto quartile = spacings.begin() + static_cast<std::ptrdiff_t>((spacings.size() - 1) * 3 / 4);
  std::ranges::nth_element(spacings, quartile);
  return *quartile;
}

/// Half the way from one cell to the next, decades.
double half_way(const DimensionCell& cell, const DimensionCell& next, double spacing) {
  const double way = std::log10(next.frequency / cell.frequency);
  return (way <= widest_gap * spacing * (1.0 + 1e-9) ? way : spacing) / 2.0;
}

void set_periods(std::vector<DimensionCell>& cells) {
  const double spacing = usual_spacing(cells);
  for (std::size_t i = 0; i < cells.size(); ++i) {
    const double below = i > 0 ? half_way(cells[i - 1], cells[i], spacing) : spacing / 2.0;
    const double above = i + 1 < cells.size() ? half_way(cells[i], cells[i + 1], spacing) : spacing / 2.0;
    cells[i].longest_period = std::pow(10.0, below) / cells[i].frequency;
    cells[i].shortest_period = std::pow(10.0, -above) / cells[i].frequency;
  }
}

}  // namespace

std::vector<DimensionCell> dimension_cells(const StrikeStation& station, const DimensionalityLimits& limits) {
  std::vector<DimensionCell> cells;
  for (std::size_t i = 0; i < station.tensors.points.size(); ++i) {
    if (const auto& tensor = station.phase_tensors[i]) {
      DimensionCell& cell = cells.emplace_back();
      cell.frequency = station.tensors.points[i].frequency;
      cell.dimension = numerics::impedance::dimensionality(*tensor, limits);
      cell.skew = tensor->beta.value;
      cell.ellipticity = tensor->ellipticity.value;
    }
  }
  set_periods(cells);
  return cells;
}

std::array<std::size_t, 3> dimension_counts(const std::vector<std::vector<DimensionCell>>& cells,
                                            const FrequencyBand& band) {
  std::array<std::size_t, 3> counts{};
  for (const auto& station : cells) {
    for (const DimensionCell& cell : station) {
      if (band.contains(cell.frequency)) {
        ++counts[static_cast<std::size_t>(cell.dimension)];
      }
    }
  }
  return counts;
}

}  // namespace Module_tensor
