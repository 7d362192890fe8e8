// Any text as the elevations along a line: the first four bytes are the layout.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <stdexcept>

#include "fuzz/input_file.h"
#include "occam/ground/topo_points.h"

namespace {

/// The curve passes through its points, and has a value wherever the points have sensible heights.
bool is_sound(const numerics::gridding::CubicSpline& curve) {
  constexpr double sensible = 1e6;
  const auto is_sensible = [](double value) { return std::abs(value) < sensible; };
  for (std::size_t point = 0; point < curve.x.size(); ++point) {
    if (numerics::gridding::cubval(curve, curve.x[point]) != curve.y[point]) {
      return false;
    }
  }
  return !std::ranges::all_of(curve.second_derivative, is_sensible) ||
         !std::ranges::all_of(curve.x, is_sensible) || !std::ranges::all_of(curve.y, is_sensible) ||
         std::isfinite(numerics::gridding::cubval(curve, (curve.x.front() + curve.x.back()) / 2.0));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace Module_occam;
  std::array<int, 4> numbers{1, 1, 1, 2};
  const std::size_t layout_size = std::min(size, numbers.size());
  std::transform(data, data + layout_size, numbers.begin(), [](std::uint8_t byte) { return 1 + byte % 8; });
  const std::string path = write_input_file(data + layout_size, size - layout_size, "line.dat");
  LocationsRead read;
  if (read_locations_file(path, {numbers[0], numbers[1], numbers[2], numbers[3]}, read) != 0) {
    return 0;
  }
  const auto finite = [](double value) { return std::isfinite(value); };
  if (read.points.station.size() != read.points.elevation.size() ||
      !std::ranges::all_of(read.points.station, finite) ||
      !std::ranges::all_of(read.points.elevation, finite)) {
    std::abort();
  }
  try {
    if (!is_sound(ground_curve(read.points))) {
      std::abort();
    }
  } catch (const std::invalid_argument&) {  // points that make no curve
  }
  return 0;
}
