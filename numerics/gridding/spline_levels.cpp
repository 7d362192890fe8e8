#include "numerics/gridding/spline_levels.h"

#include <algorithm>
#include <array>

namespace numerics::gridding {

namespace {

constexpr std::size_t coarsest = 8;  // nodes of the longer side
// Bending energy of a tensor B-spline with nodes 1 apart: 2 (8/3)(151/315) + 2 (2/3)^2.
constexpr double spline_bending = 2.0 * (8.0 / 3.0) * (151.0 / 315.0) + 2.0 * (4.0 / 9.0);
// Of a fixed node, which no point pulls: the plate's stiffness there.
constexpr double fixed_weight = 20.0;

// Values of the four B-splines about a position, t behind the second of them.
std::array<double, 4> spline_values(double t) {
  const double s = 1.0 - t;
  return {s * s * s / 6.0, 2.0 / 3.0 - t * t + 0.5 * t * t * t, 2.0 / 3.0 - s * s + 0.5 * s * s * s,
          t * t * t / 6.0};
}

std::array<double, 4> squares(const std::array<double, 4>& values) {
  return {values[0] * values[0], values[1] * values[1], values[2] * values[2], values[3] * values[3]};
}

// D of a level whose nodes are `spacing` cells apart and whose node k lies at (k - shift) * spacing.
std::vector<double> level_diagonal(const Plate& plate, PlateSize size, double spacing, double shift) {
  std::vector<double> diagonal(size.nodes(), spline_bending / (spacing * spacing));
  const auto add = [&](const CellPoint& point, double weight) {
    const double x = point.x / spacing + shift;  // at least 1
    const double y = point.y / spacing + shift;
    const auto column = static_cast<std::size_t>(x);
    const auto row = static_cast<std::size_t>(y);
    const std::array<double, 4> along = squares(spline_values(x - static_cast<double>(column)));
    const std::array<double, 4> up = squares(spline_values(y - static_cast<double>(row)));
    const std::size_t width = std::min<std::size_t>(4, size.columns + 1 - column);
    for (std::size_t j = 0; j < 4 && row - 1 + j < size.rows; ++j) {
      double* const to = &diagonal[(row - 1 + j) * size.columns + column - 1];
      for (std::size_t i = 0; i < width; ++i) {
        to[i] += weight * up[j] * along[i];
      }
    }
  };
  for (const CellPoint& point : plate.pulling_points()) {
    add(point, point_weight);
  }
  for (const Plate::FixedNode& fixed : plate.fixed_nodes()) {
    add(fixed.point, fixed_weight);
  }
  return diagonal;
}

std::vector<double> inverse_of(std::vector<double> values) {
  std::transform(values.begin(), values.end(), values.begin(), [](double value) { return 1.0 / value; });
  return values;
}

}  // namespace

PlateSize coarser(PlateSize fine) { return {fine.columns / 2 + 3, fine.rows / 2 + 3}; }

void add_refined(std::span<const double> coarse, PlateSize fine_size, std::span<double> fine) {
  const PlateSize size = coarser(fine_size);
  std::vector<double> between(size.columns);  // the coarse rows about a fine one, in y already
  for (std::size_t row = 0; row < fine_size.rows; ++row) {
    const double* const first = &coarse[row / 2 * size.columns];
    const double* const second = first + size.columns;
    const double* const third = second + size.columns;
    if (row % 2 == 0) {
      for (std::size_t m = 0; m < size.columns; ++m) {
        between[m] = 0.125 * (first[m] + third[m]) + 0.75 * second[m];
      }
    } else {
      for (std::size_t m = 0; m < size.columns; ++m) {
        between[m] = 0.5 * (second[m] + third[m]);
      }
    }
    const double* const from = between.data();
    double* const to = &fine[row * fine_size.columns];
    for (std::size_t m = 0; m < fine_size.columns / 2; ++m) {
      to[2 * m] += 0.125 * (from[m] + from[m + 2]) + 0.75 * from[m + 1];
      to[2 * m + 1] += 0.5 * (from[m + 1] + from[m + 2]);
    }
    if (fine_size.columns % 2 == 1) {
      const std::size_t m = fine_size.columns / 2;
      to[2 * m] += 0.125 * (from[m] + from[m + 2]) + 0.75 * from[m + 1];
    }
  }
}

void gather(std::span<const double> fine, PlateSize fine_size, std::span<double> coarse) {
  // What a coarse node takes from the five fine ones about it.
  constexpr std::array<double, 5> weights = {0.125, 0.5, 0.75, 0.5, 0.125};
  const PlateSize size = coarser(fine_size);
  std::vector<double> between(2 * size.columns +
                              4);  // gathered in y; zeros before and behind where there are none
  double* const sums = between.data() + 4;
  for (std::size_t row = 0; row < size.rows; ++row) {
    std::fill_n(sums, fine_size.columns, 0.0);
    for (std::size_t k = 0; k < weights.size(); ++k) {
      const std::size_t fine_row = 2 * row + k - 4;  // wraps below 0
      if (fine_row < fine_size.rows) {
        const double* const from = &fine[fine_row * fine_size.columns];
        for (std::size_t i = 0; i < fine_size.columns; ++i) {
          sums[i] += weights[k] * from[i];
        }
      }
    }
    double* const to = &coarse[row * size.columns];
    for (std::size_t m = 0; m < size.columns; ++m) {
      const double* const from = between.data() + 2 * m;
      to[m] = 0.125 * (from[0] + from[4]) + 0.5 * (from[1] + from[3]) + 0.75 * from[2];
    }
  }
}

SplineLevels::SplineLevels(const Plate& plate) : plate_(plate), sizes_{plate.size()} {
  inverse_.push_back(inverse_of(plate.diagonal()));
  double spacing = 1.0;
  double shift = 0.0;
  while (std::max(sizes_.back().columns, sizes_.back().rows) > coarsest) {
    spacing *= 2.0;
    shift = 0.5 * shift + 1.0;
    sizes_.push_back(coarser(sizes_.back()));
    inverse_.push_back(inverse_of(level_diagonal(plate, sizes_.back(), spacing, shift)));
    gathered_.emplace_back(sizes_.back().nodes());
  }
}

void SplineLevels::apply(std::span<const double> residual, std::span<double> result) {
  std::span<const double> finer = residual;
  for (std::size_t level = 1; level < sizes_.size(); ++level) {
    gather(finer, sizes_[level - 1], gathered_[level - 1]);
    finer = gathered_[level - 1];
  }
  for (std::size_t level = sizes_.size(); level-- > 1;) {
    std::vector<double>& values = gathered_[level - 1];
    const std::vector<double>& inverse = inverse_[level];
    for (std::size_t i = 0; i < values.size(); ++i) {
      values[i] *= inverse[i];
    }
    if (level + 1 < sizes_.size()) {
      add_refined(gathered_[level], sizes_[level], values);
    }
  }
  for (std::size_t i = 0; i < result.size(); ++i) {
    result[i] = residual[i] * inverse_[0][i];
  }
  if (sizes_.size() > 1) {
    add_refined(gathered_.front(), sizes_.front(), result);
  }
  plate_.clear_fixed(result);
}

}  // namespace numerics::gridding
