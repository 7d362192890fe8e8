#include "numerics/impedance/tipper.h"

#include "numerics/constants.h"
#include "numerics/impedance/angles.h"
#include "numerics/impedance/propagated.h"

namespace numerics::impedance {

namespace {

using Number = Propagated<4>;

std::array<ComplexOf<Number>, 2> components(const Tipper& tipper) {
  return measured(std::array{tipper.x, tipper.y});
}

Estimate known(const Number& number, const Tipper& tipper) {
  return estimate(number, std::array{tipper.covariance_x, tipper.covariance_y});
}

Arrow arrow(const Number& north, const Number& east, const Tipper& tipper) {
  Arrow arrow{north.value, east.value, known(hypot(north, east), tipper),
              known(degrees_per_radian * atan2(east, north), tipper)};
  arrow.azimuth.value = within_period(arrow.azimuth.value, 360.0);
  return arrow;
}

}  // namespace

Tipper rotated(const Tipper& tipper, double degrees) {
  const auto [c, s] = turn_by(degrees);
  const std::array known{tipper.covariance_x, tipper.covariance_y};
  return {c * tipper.x + s * tipper.y, -s * tipper.x + c * tipper.y,
          covariance_of_sum(known, std::array{c, s}), covariance_of_sum(known, std::array{-s, c})};
}

Arrow real_arrow(const Tipper& tipper, ArrowConvention convention) {
  const double sign = convention == ArrowConvention::parkinson ? -1.0 : 1.0;
  const auto [x, y] = components(tipper);
  return arrow(sign * x.real, sign * y.real, tipper);
}

Arrow imaginary_arrow(const Tipper& tipper, bool reversed) {
  const double sign = reversed ? -1.0 : 1.0;
  const auto [x, y] = components(tipper);
  return arrow(sign * x.imaginary, sign * y.imaginary, tipper);
}

Estimate tipper_magnitude(const Tipper& tipper) {
  const auto [x, y] = components(tipper);
  return known(sqrt(norm(x) + norm(y)), tipper);
}

Estimate tipper_strike(const Tipper& tipper) {
  const Arrow arrow = real_arrow(tipper, ArrowConvention::parkinson);
  if (!(arrow.length.value >= least_arrow)) {
    return {};
  }
  return {within_period(arrow.azimuth.value + 90.0, 180.0), arrow.azimuth.error};
}

}  // namespace numerics::impedance
