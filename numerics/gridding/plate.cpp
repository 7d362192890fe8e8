#include "numerics/gridding/plate.h"

#include <algorithm>
#include <cmath>

namespace numerics::gridding {

namespace {

constexpr double on_node = 1e-6;  // cells; nearer than that a point is the node's

// Weights of nodes 0 to 3 at position t among them.
std::array<double, 4> lagrange(double t) {
  return {-(t - 1.0) * (t - 2.0) * (t - 3.0) / 6.0, t * (t - 2.0) * (t - 3.0) / 2.0,
          -t * (t - 1.0) * (t - 3.0) / 2.0, t * (t - 1.0) * (t - 2.0) / 6.0};
}

// First of the four nodes about a position; near an edge the last four there are.
std::size_t first_of_four(double position, std::size_t count) {
  const auto below = static_cast<std::size_t>(position);
  return std::min(below - std::min<std::size_t>(below, 1), count - 4);
}

Interpolation interpolation_at(const CellPoint& point, PlateSize size) {
  const std::size_t column = first_of_four(point.x, size.columns);
  const std::size_t row = first_of_four(point.y, size.rows);
  return {.first = row * size.columns + column,
          .x = lagrange(point.x - static_cast<double>(column)),
          .y = lagrange(point.y - static_cast<double>(row))};
}

// Each of these adds the transposed difference of the difference.

void bend_along_row(const double* u, double* result, std::size_t columns, std::vector<double>& work) {
  work.assign(columns + 2, 0.0);
  double* second = work.data() + 1;  // with a 0 before and behind
  for (std::size_t i = 1; i + 1 < columns; ++i) {
    second[i] = u[i - 1] - 2.0 * u[i] + u[i + 1];
  }
  for (std::size_t i = 0; i < columns; ++i) {
    result[i] += work[i] - 2.0 * work[i + 1] + work[i + 2];
  }
}

void bend_across_rows(const double* u, double* result, std::size_t columns) {
  for (std::size_t i = 0; i < columns; ++i) {
    const double second = u[i] - 2.0 * u[i + columns] + u[i + 2 * columns];
    result[i] += second;
    result[i + columns] -= 2.0 * second;
    result[i + 2 * columns] += second;
  }
}

void twist_between_rows(const double* u, double* result, std::size_t columns, std::vector<double>& work) {
  work.assign(columns + 1, 0.0);
  double* twist = work.data() + 1;  // with a 0 before; the last stays 0
  for (std::size_t i = 0; i + 1 < columns; ++i) {
    twist[i] = 2.0 * (u[i] - u[i + 1] - u[i + columns] + u[i + columns + 1]);
  }
  for (std::size_t i = 0; i < columns; ++i) {
    const double difference = work[i + 1] - work[i];
    result[i] += difference;
    result[i + columns] -= difference;
  }
}

}  // namespace

Plate::Plate(PlateSize size, std::span<const CellPoint> points) : size_(size) {
  for (const CellPoint& point : points) {
    const auto column = static_cast<std::size_t>(std::lround(point.x));
    const auto row = static_cast<std::size_t>(std::lround(point.y));
    const double right = point.x - static_cast<double>(column);
    const double above = point.y - static_cast<double>(row);
    if (right * right + above * above <= on_node * on_node) {
      fixed_.push_back({row * size.columns + column, point});
    } else {
      pulling_.push_back(point);
      interpolation_.push_back(interpolation_at(point, size));
    }
  }
}

double Plate::interpolated(std::span<const double> surface, std::size_t point) const {
  const Interpolation& at = interpolation_[point];
  double sum = 0.0;
  for (std::size_t j = 0; j < 4; ++j) {
    const double* row = &surface[at.first + j * size_.columns];
    sum += at.y[j] * (at.x[0] * row[0] + at.x[1] * row[1] + at.x[2] * row[2] + at.x[3] * row[3]);
  }
  return sum;
}

void Plate::add_pull(double amount, const Interpolation& at, std::span<double> result) const {
  for (std::size_t j = 0; j < 4; ++j) {
    double* row = &result[at.first + j * size_.columns];
    for (std::size_t i = 0; i < 4; ++i) {
      row[i] += amount * at.y[j] * at.x[i];
    }
  }
}

void Plate::apply(std::span<const double> surface, std::span<double> result) const {
  const std::size_t columns = size_.columns;
  std::fill(result.begin(), result.end(), 0.0);
  std::vector<double> work;
  for (std::size_t row = 0; row < size_.rows; ++row) {
    const double* u = &surface[row * columns];
    double* out = &result[row * columns];
    bend_along_row(u, out, columns, work);
    if (row + 1 < size_.rows) {
      twist_between_rows(u, out, columns, work);
    }
    if (row + 2 < size_.rows) {
      bend_across_rows(u, out, columns);
    }
  }
  for (std::size_t k = 0; k < interpolation_.size(); ++k) {
    add_pull(point_weight * interpolated(surface, k), interpolation_[k], result);
  }
  clear_fixed(result);
}

std::vector<double> Plate::right_side(std::span<const double> targets) const {
  std::vector<double> result(size_.nodes());
  for (std::size_t k = 0; k < targets.size(); ++k) {
    add_pull(point_weight * targets[k], interpolation_[k], result);
  }
  clear_fixed(result);
  return result;
}

std::vector<double> Plate::diagonal() const {
  // Along one direction of n nodes: squared coefficients of the second differences that a node takes part in,
  // and the number of first differences.
  const auto second = [](std::size_t i, std::size_t n) {
    return (i >= 2 ? 1.0 : 0.0) + (i >= 1 && i + 1 < n ? 4.0 : 0.0) + (i + 2 < n ? 1.0 : 0.0);
  };
  const auto first = [](std::size_t i, std::size_t n) { return i == 0 || i + 1 == n ? 1.0 : 2.0; };
  std::vector<double> result;
  result.reserve(size_.nodes());
  for (std::size_t row = 0; row < size_.rows; ++row) {
    for (std::size_t column = 0; column < size_.columns; ++column) {
      result.push_back(second(column, size_.columns) + second(row, size_.rows) +
                       2.0 * first(column, size_.columns) * first(row, size_.rows));
    }
  }
  for (const Interpolation& at : interpolation_) {
    for (std::size_t j = 0; j < 4; ++j) {
      for (std::size_t i = 0; i < 4; ++i) {
        const double weight = at.y[j] * at.x[i];
        result[at.first + j * size_.columns + i] += point_weight * weight * weight;
      }
    }
  }
  return result;
}

void Plate::clear_fixed(std::span<double> values) const {
  for (const FixedNode& fixed : fixed_) {
    values[fixed.node] = 0.0;
  }
}

}  // namespace numerics::gridding
