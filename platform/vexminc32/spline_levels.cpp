#include "platform/vexminc32/spline_levels.h"

#include <algorithm>
#include <cmath>

namespace vexminc {

namespace {

constexpr std::size_t coarsest = 8;  // nodes of the longer side
// Bending energy of a tensor B-spline with nodes 1 apart: 2 (8/3)(151/315) + 2 (2/3)^2.
constexpr double spline_bending = 2.0 * (8.0 / 3.0) * (151.0 / 315.0) + 2.0 * (4.0 / 9.0);
// Of a fixed node, which has no pull of its own: the plate's stiffness there.
constexpr double fixed_weight = 20.0;

// Values of the four B-splines about a position, t behind the second of them.
std::array<double, 4> spline_values(double t) {
  const double s = 1.0 - t;
  return {s * s * s / 6.0, 2.0 / 3.0 - t * t + 0.5 * t * t * t, 2.0 / 3.0 - s * s + 0.5 * s * s * s,
          t * t * t / 6.0};
}

// D of a level whose nodes are `spacing` cells apart and whose node k lies at (k - shift) * spacing.
std::vector<double> level_diagonal(const Plate& plate, PlateSize size, double spacing, double shift) {
  std::vector<double> diagonal(size.nodes(), spline_bending / (spacing * spacing));
  const auto add = [&](const CellPoint& point, double weight) {
    const double x = point.x / spacing + shift;
    const double y = point.y / spacing + shift;
    const std::array<double, 4> along = spline_values(x - std::floor(x));
    const std::array<double, 4> up = spline_values(y - std::floor(y));
    const auto column = static_cast<std::size_t>(x) - 1;
    const auto row = static_cast<std::size_t>(y) - 1;
    for (std::size_t j = 0; j < 4 && row + j < size.rows; ++j) {
      for (std::size_t i = 0; i < 4 && column + i < size.columns; ++i) {
        diagonal[(row + j) * size.columns + column + i] += weight * std::pow(along[i] * up[j], 2);
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
  // In x first, on the few rows; then in y.
  std::vector<double> wide(fine_size.columns * size.rows);
  for (std::size_t row = 0; row < size.rows; ++row) {
    const double* from = &coarse[row * size.columns];
    double* to = &wide[row * fine_size.columns];
    for (std::size_t m = 0; 2 * m < fine_size.columns; ++m) {
      to[2 * m] = 0.125 * (from[m] + from[m + 2]) + 0.75 * from[m + 1];
    }
    for (std::size_t m = 0; 2 * m + 1 < fine_size.columns; ++m) {
      to[2 * m + 1] = 0.5 * (from[m + 1] + from[m + 2]);
    }
  }
  for (std::size_t row = 0; row < fine_size.rows; ++row) {
    const double* first = &wide[row / 2 * fine_size.columns];
    const double* second = first + fine_size.columns;
    const double* third = second + fine_size.columns;
    double* to = &fine[row * fine_size.columns];
    if (row % 2 == 0) {
      for (std::size_t i = 0; i < fine_size.columns; ++i) {
        to[i] += 0.125 * (first[i] + third[i]) + 0.75 * second[i];
      }
    } else {
      for (std::size_t i = 0; i < fine_size.columns; ++i) {
        to[i] += 0.5 * (second[i] + third[i]);
      }
    }
  }
}

std::vector<double> gathered(std::span<const double> fine, PlateSize fine_size) {
  const PlateSize size = coarser(fine_size);
  std::vector<double> wide(fine_size.columns * size.rows);
  for (std::size_t row = 0; row < fine_size.rows; ++row) {
    const double* from = &fine[row * fine_size.columns];
    double* first = &wide[row / 2 * fine_size.columns];
    double* second = first + fine_size.columns;
    double* third = second + fine_size.columns;
    if (row % 2 == 0) {
      for (std::size_t i = 0; i < fine_size.columns; ++i) {
        first[i] += 0.125 * from[i];
        second[i] += 0.75 * from[i];
        third[i] += 0.125 * from[i];
      }
    } else {
      for (std::size_t i = 0; i < fine_size.columns; ++i) {
        second[i] += 0.5 * from[i];
        third[i] += 0.5 * from[i];
      }
    }
  }
  std::vector<double> coarse(size.nodes());
  for (std::size_t row = 0; row < size.rows; ++row) {
    const double* from = &wide[row * fine_size.columns];
    double* to = &coarse[row * size.columns];
    for (std::size_t m = 0; 2 * m < fine_size.columns; ++m) {
      to[m] += 0.125 * from[2 * m];
      to[m + 1] += 0.75 * from[2 * m];
      to[m + 2] += 0.125 * from[2 * m];
    }
    for (std::size_t m = 0; 2 * m + 1 < fine_size.columns; ++m) {
      to[m + 1] += 0.5 * from[2 * m + 1];
      to[m + 2] += 0.5 * from[2 * m + 1];
    }
  }
  return coarse;
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
  }
}

void SplineLevels::apply(std::span<const double> residual, std::span<double> result) const {
  std::vector<std::vector<double>> levels;
  std::span<const double> finer = residual;
  for (std::size_t level = 1; level < sizes_.size(); ++level) {
    levels.push_back(gathered(finer, sizes_[level - 1]));
    finer = levels.back();
  }
  for (std::size_t level = sizes_.size(); level-- > 1;) {
    std::vector<double>& values = levels[level - 1];
    const std::vector<double>& inverse = inverse_[level];
    for (std::size_t i = 0; i < values.size(); ++i) {
      values[i] *= inverse[i];
    }
    if (level + 1 < sizes_.size()) {
      add_refined(levels[level], sizes_[level], values);
    }
  }
  for (std::size_t i = 0; i < result.size(); ++i) {
    result[i] = residual[i] * inverse_[0][i];
  }
  if (sizes_.size() > 1) {
    add_refined(levels.front(), sizes_.front(), result);
  }
  plate_.clear_fixed(result);
}

}  // namespace vexminc
