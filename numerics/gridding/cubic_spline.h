// cubic_spline.h: a smooth curve through points.
#pragma once
#include <span>
#include <vector>

namespace numerics::gridding {

/// The natural cubic spline through points: two continuous derivatives, and no curvature at the ends. Of all
/// such curves it is the one of least mean square curvature.
struct CubicSpline {
  std::vector<double> x;  // of the points, ascending
  std::vector<double> y;
  std::vector<double> second_derivative;  // of the curve at the points, units of y / x^2
};

/// Fits the spline: its moments M_j, the second derivatives at the points, solve
///
///   h_j M_{j-1} + 2 (h_j + h_{j+1}) M_j + h_{j+1} M_{j+1} = 6 (d_{j+1} - d_j),   M_first = M_last = 0,
///
/// h_j = x_j - x_{j-1} and d_j the slope of the chord there: Ahlberg, Nilson & Walsh (1967), The Theory of
/// Splines and Their Applications, chapter II. One point gives a constant, two a straight line.
/// @param x  at least one, strictly ascending
/// @param y  as many
/// Throws std::invalid_argument for other points and for numbers that are not finite or so close or so large
/// that the curve isn't.
CubicSpline cubspl(std::span<const double> x, std::span<const double> y);

/// The curve's value. Beyond the ends it is that of the end point: a cubic soon runs off to any height there.
/// @param at  not a number gives not a number
double cubval(const CubicSpline& spline, double at);

}  // namespace numerics::gridding
