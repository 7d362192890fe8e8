#include "numerics/gridding/minimum_curvature.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <utility>
#include <vector>

#include "numerics/gridding/conjugate_gradients.h"
#include "numerics/gridding/point_plane.h"

namespace numerics::gridding {

namespace {

constexpr std::size_t min_nodes = 4;  // a side: the cubic interpolation at the points needs them
// Of the points' root mean square distance from their best line: a cell, but on tiny grids, which have no
// points much further apart, a share of the shorter side.
constexpr double min_width = 1.0;
constexpr double min_width_share = 0.2;
constexpr double rounding_noise = 1e-12;  // of the largest |z|: what is left of points that lie on a plane
constexpr int max_refits = 4;

using Surface = std::vector<double>;

[[noreturn]] void refuse(const char* why) { throw std::invalid_argument(why); }

void check_frame(const GridFrame& frame) {
  if (!std::isfinite(frame.first_x) || !std::isfinite(frame.first_y) ||
      !(std::isfinite(frame.cell) && frame.cell > 0.0)) {
    refuse("the position or the cell size of the grid is not a number above 0");
  }
  if (frame.columns < min_nodes || frame.rows < min_nodes) {
    refuse("the grid has fewer than four nodes on a side");
  }
}

std::vector<CellPoint> points_in_cells(std::span<const ScatteredPoint> points, const GridFrame& frame) {
  std::vector<CellPoint> inside;
  for (const ScatteredPoint& point : points) {
    if (!std::isfinite(point.x) || !std::isfinite(point.y) || !std::isfinite(point.z)) {
      refuse("a point to be gridded is not a number");
    }
    const double x = (point.x - frame.first_x) / frame.cell;
    const double y = (point.y - frame.first_y) / frame.cell;
    if (x >= 0.0 && x <= static_cast<double>(frame.columns - 1) && y >= 0.0 &&
        y <= static_cast<double>(frame.rows - 1)) {
      inside.push_back({x, y, point.z});
    }
  }
  if (inside.empty()) {
    refuse("no point to be gridded lies inside the grid");
  }
  return inside;
}

double range_of(std::span<const CellPoint> points) {
  const auto [low, high] = std::minmax_element(
      points.begin(), points.end(), [](const CellPoint& a, const CellPoint& b) { return a.z < b.z; });
  return high->z - low->z;
}

// Twice as many nodes a side: cubic interpolation halfway between those there are.
Surface doubled(const Surface& coarse, PlateSize coarse_size, PlateSize size) {
  const auto halfway = [](std::size_t i, std::size_t count) {
    struct Stencil {
      std::size_t first;
      std::array<double, 4> weights;
    };
    constexpr std::array<double, 4> inside = {-1.0 / 16, 9.0 / 16, 9.0 / 16, -1.0 / 16};
    constexpr std::array<double, 4> at_begin = {5.0 / 16, 15.0 / 16, -5.0 / 16, 1.0 / 16};
    constexpr std::array<double, 4> at_end = {1.0 / 16, -5.0 / 16, 15.0 / 16, 5.0 / 16};
    return i == 0           ? Stencil{0, at_begin}
           : i + 2 == count ? Stencil{count - 4, at_end}
                            : Stencil{i - 1, inside};
  };
  Surface wide(size.columns * coarse_size.rows);
  for (std::size_t row = 0; row < coarse_size.rows; ++row) {
    const double* from = &coarse[row * coarse_size.columns];
    for (std::size_t i = 0; i < size.columns; ++i) {
      double& value = wide[row * size.columns + i];
      if (i % 2 == 0) {
        value = from[i / 2];
        continue;
      }
      const auto [first, w] = halfway(i / 2, coarse_size.columns);
      value = w[0] * from[first] + w[1] * from[first + 1] + w[2] * from[first + 2] + w[3] * from[first + 3];
    }
  }
  Surface fine(size.nodes());
  for (std::size_t row = 0; row < size.rows; ++row) {
    double* to = &fine[row * size.columns];
    if (row % 2 == 0) {
      std::copy_n(&wide[row / 2 * size.columns], size.columns, to);
      continue;
    }
    const auto [first, w] = halfway(row / 2, coarse_size.rows);
    const double* from = &wide[first * size.columns];
    for (std::size_t i = 0; i < size.columns; ++i) {
      to[i] = w[0] * from[i] + w[1] * from[i + size.columns] + w[2] * from[i + 2 * size.columns] +
              w[3] * from[i + 3 * size.columns];
    }
  }
  return fine;
}

// One gridding: the options in the units of the data.
struct Gridding {
  double min_change = 0.0;
  double largest_misfit = 0.0;
  int iteration_limit = 0;
  std::function<bool(double)> progress;
  int iterations = 0;
  bool converged = true;
  bool stopped = false;
  double share_done = 0.0;
  double share_of_fit = 0.0;  // of the whole work

  std::vector<double> targets_of(const Plate& plate) const;
  void fit(const Plate& plate, SplineLevels& levels, std::span<const double> targets, Surface& surface);
  void refit(const Plate& plate, SplineLevels& levels, Surface& surface);
  Surface start(std::span<const CellPoint> points, PlateSize size);
};

std::vector<double> Gridding::targets_of(const Plate& plate) const {
  std::vector<double> targets;
  for (const CellPoint& point : plate.pulling_points()) {
    targets.push_back(point.z);
  }
  return targets;
}

void Gridding::fit(const Plate& plate, SplineLevels& levels, std::span<const double> targets,
                   Surface& surface) {
  IterationLimits limits{min_change, iteration_limit, {}};
  if (progress) {
    limits.progress = [this](double share) { return progress(share_done + share_of_fit * share); };
  }
  const IterationOutcome outcome = relax(plate, levels, targets, limits, surface);
  share_done += share_of_fit;
  iterations += outcome.iterations;
  converged = outcome.converged;
  stopped = outcome.stopped;
}

// The points pull with a finite weight; where that leaves a misfit, they pull from further away.
void Gridding::refit(const Plate& plate, SplineLevels& levels, Surface& surface) {
  constexpr double first_share = 0.7;
  share_of_fit = first_share;
  std::vector<double> targets = targets_of(plate);
  fit(plate, levels, targets, surface);
  double before = std::numeric_limits<double>::infinity();
  for (int round = 0; round < max_refits && !stopped; ++round) {
    double largest = 0.0;
    for (std::size_t k = 0; k < targets.size(); ++k) {
      const double misfit = plate.pulling_points()[k].z - plate.interpolated(surface, k);
      targets[k] += misfit;
      largest = std::max(largest, std::abs(misfit));
    }
    // Points that contradict each other can't all be met.
    if (largest <= largest_misfit || largest > 0.5 * before) {
      return;
    }
    before = largest;
    share_of_fit = 0.5 * (1.0 - share_done);
    fit(plate, levels, targets, surface);
  }
}

// A first surface from the grid with half the nodes a side, or a flat one; fixed nodes hold their values.
Surface Gridding::start(std::span<const CellPoint> points, PlateSize size) {
  constexpr std::size_t short_side = 8;
  constexpr std::size_t long_side = 16;
  if (std::max(size.columns, size.rows) <= long_side || std::min(size.columns, size.rows) <= short_side) {
    return Surface(size.nodes());
  }
  const PlateSize half = {size.columns / 2 + 1, size.rows / 2 + 1};
  std::vector<CellPoint> halved(points.begin(), points.end());
  for (CellPoint& point : halved) {
    point.x *= 0.5;
    point.y *= 0.5;
  }
  const std::vector<CellPoint> merged = merge_at_nodes(halved, half.columns, half.rows);
  Surface coarse = start(merged, half);
  if (stopped) {
    return coarse;
  }
  const Plate plate(half, merged);
  for (const Plate::FixedNode& fixed : plate.fixed_nodes()) {
    coarse[fixed.node] = fixed.point.z;
  }
  SplineLevels levels(plate);
  fit(plate, levels, targets_of(plate), coarse);
  return doubled(coarse, half, size);
}

}  // namespace

std::optional<GriddedSurface> minimum_curvature(std::span<const ScatteredPoint> points,
                                                const GridFrame& frame, const GriddingOptions& options) {
  check_frame(frame);
  const PlateSize size = {frame.columns, frame.rows};
  std::vector<CellPoint> merged = merge_at_nodes(points_in_cells(points, frame), frame.columns, frame.rows);
  const std::vector<CellPoint> data = merged;

  Plane plane = {.level = data.front().z};
  const double largest =
      std::abs(std::max_element(data.begin(), data.end(), [](const auto& a, const auto& b) {
                 return std::abs(a.z) < std::abs(b.z);
               })->z);
  double range = range_of(data);
  if (range > 0.0) {
    const auto shorter_side = static_cast<double>(std::min(size.columns, size.rows) - 1);
    if (distance_from_line(data) < std::min(min_width, min_width_share * shorter_side)) {
      refuse("the points to be gridded lie on one line");
    }
    plane = closest_plane(data);
    for (CellPoint& point : merged) {
      point.z -= plane.at(point.x, point.y);
    }
    range = range_of(merged);
  }

  GriddedSurface result;
  Surface surface(size.nodes());
  const Plate plate(size, merged);
  if (range > rounding_noise * largest) {
    Gridding gridding{.min_change = options.stop_change * range,
                      .largest_misfit = options.largest_misfit * range,
                      .iteration_limit = options.iteration_limit,
                      .progress = options.progress};
    surface = gridding.start(merged, size);
    if (!gridding.stopped) {
      for (const Plate::FixedNode& fixed : plate.fixed_nodes()) {
        surface[fixed.node] = fixed.point.z;
      }
      gridding.iterations = 0;
      SplineLevels levels(plate);
      gridding.refit(plate, levels, surface);
    }
    if (gridding.stopped) {
      return std::nullopt;
    }
    result.iterations = gridding.iterations;
    result.converged = gridding.converged;
  }

  for (std::size_t row = 0; row < size.rows; ++row) {
    for (std::size_t column = 0; column < size.columns; ++column) {
      surface[row * size.columns + column] += plane.at(static_cast<double>(column), static_cast<double>(row));
    }
  }
  const Plate of_data(size, data);
  for (const Plate::FixedNode& fixed : of_data.fixed_nodes()) {
    surface[fixed.node] = fixed.point.z;
  }
  result.grid = {frame, std::move(surface)};
  return result;
}

}  // namespace numerics::gridding
