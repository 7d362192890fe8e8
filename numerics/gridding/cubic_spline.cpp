#include "numerics/gridding/cubic_spline.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <stdexcept>

namespace numerics::gridding {

namespace {

void check_points(std::span<const double> x, std::span<const double> y) {
  const auto finite = [](double value) { return std::isfinite(value); };
  if (x.empty() || x.size() != y.size()) {
    throw std::invalid_argument("a curve needs at least one point");
  }
  if (!std::ranges::all_of(x, finite) || !std::ranges::all_of(y, finite)) {
    throw std::invalid_argument("a point of the curve is not a finite number");
  }
  if (std::ranges::adjacent_find(x, std::ranges::greater_equal()) != x.end()) {
    throw std::invalid_argument("the points of the curve are not in ascending order");
  }
}

/// Gauss elimination of the tridiagonal system; its diagonal dominates, so no pivot is needed.
std::vector<double> moments(std::span<const double> x, std::span<const double> y) {
  const std::size_t count = x.size();
  std::vector<double> moment(count, 0.0);
  std::vector<double> ratio(count, 0.0);  // of the eliminated upper diagonal
  for (std::size_t j = 1; j + 1 < count; ++j) {
    const double before = x[j] - x[j - 1];
    const double behind = x[j + 1] - x[j];
    const double bend = 6.0 * ((y[j + 1] - y[j]) / behind - (y[j] - y[j - 1]) / before);
    const double pivot = 2.0 * (before + behind) - before * ratio[j - 1];
    ratio[j] = behind / pivot;
    moment[j] = (bend - before * moment[j - 1]) / pivot;
  }
  for (std::size_t j = count - 1; j-- > 1;) {
    moment[j] -= ratio[j] * moment[j + 1];
  }
  return moment;
}

/// The curve between two points, as a polynomial from the left one on: level ground stays level to the last
/// digit.
struct Piece {
  double slope;
  double half_curvature;
  double cubic;

  [[nodiscard]] bool is_finite() const {
    return std::isfinite(slope) && std::isfinite(half_curvature) && std::isfinite(cubic);
  }
};

Piece piece_behind(const CubicSpline& spline, std::size_t left) {
  const double h = spline.x[left + 1] - spline.x[left];
  const double m_left = spline.second_derivative[left];
  const double m_right = spline.second_derivative[left + 1];
  return {(spline.y[left + 1] - spline.y[left]) / h - h * (2.0 * m_left + m_right) / 6.0, m_left / 2.0,
          (m_right - m_left) / (6.0 * h)};
}

}  // namespace

CubicSpline cubspl(std::span<const double> x, std::span<const double> y) {
  check_points(x, y);
  CubicSpline spline{{x.begin(), x.end()}, {y.begin(), y.end()}, moments(x, y)};
  for (std::size_t left = 0; left + 1 < x.size(); ++left) {
    if (!piece_behind(spline, left).is_finite()) {
      throw std::invalid_argument("the curve is too steep between its points");
    }
  }
  return spline;
}

double cubval(const CubicSpline& spline, double at) {
  if (std::isnan(at)) {
    return at;
  }
  if (at <= spline.x.front()) {
    return spline.y.front();
  }
  if (at >= spline.x.back()) {
    return spline.y.back();
  }
  const auto above = std::upper_bound(spline.x.begin() + 1, spline.x.end() - 1, at);
  const auto left = static_cast<std::size_t>(above - spline.x.begin()) - 1;
  const Piece piece = piece_behind(spline, left);
  const double t = at - spline.x[left];
  return spline.y[left] + t * (piece.slope + t * (piece.half_curvature + t * piece.cubic));
}

}  // namespace numerics::gridding
