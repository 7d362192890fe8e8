#include "numerics/impedance/phase_tensor.h"

#include <algorithm>
#include <cmath>

#include "numerics/constants.h"
#include "numerics/impedance/angles.h"
#include "numerics/impedance/propagated.h"

namespace numerics::impedance {

namespace {

using Number = Propagated<2 * element_count>;

// A difference that is smaller than this share of what it is a difference of is their rounding.
constexpr double rounding = 1e-12;

struct Matrix {
  Number xx, xy, yx, yy;
};

Number determinant_of(const Matrix& m) { return m.xx * m.yy - m.xy * m.yx; }

bool is_invertible(const Matrix& m) {
  const double products = std::abs(m.xx.value * m.yy.value) + std::abs(m.xy.value * m.yx.value);
  return std::abs(determinant_of(m).value) > rounding * products;
}

/// P = X^-1 Y.
Matrix ratio(const Matrix& X, const Matrix& Y) {
  const Number det_X = determinant_of(X);
  return {(X.yy * Y.xx - X.xy * Y.yx) / det_X, (X.yy * Y.xy - X.xy * Y.yy) / det_X,
          (X.xx * Y.yx - X.yx * Y.xx) / det_X, (X.xx * Y.yy - X.yx * Y.xy) / det_X};
}

/// Half the angle of a vector whose length has a scale, degrees; no value where the vector is rounding.
Number half_angle(const Number& y, const Number& x, double scale) {
  const Number angle = 0.5 * degrees_per_radian * atan2(y, x);
  return std::hypot(x.value, y.value) > rounding * scale ? angle : angle.mapped(not_known, 0.0);
}

Estimate axial(Estimate angle) { return {within_period(angle.value, 180.0), angle.error}; }

/// Arc tangent of the root of the determinant, degrees, with its sign.
Number geometric_phase(const Number& determinant) {
  return std::copysign(degrees_per_radian, determinant.value) * atan(sqrt(abs(determinant)));
}

}  // namespace

std::optional<PhaseTensor> phase_tensor(const Tensor& tensor) {
  if (!std::all_of(tensor.z.begin(), tensor.z.end(),
                   [](const auto& z) { return std::isfinite(z.real()) && std::isfinite(z.imag()); })) {
    return std::nullopt;
  }
  const auto z = measured(tensor.z);
  const Matrix X{z[0].real, z[1].real, z[2].real, z[3].real};
  const Matrix Y{z[0].imaginary, z[1].imaginary, z[2].imaginary, z[3].imaginary};
  if (!is_invertible(X)) {
    return std::nullopt;
  }
  const Matrix P = ratio(X, Y);
  const Number trace = P.xx + P.yy;
  const Number difference = P.xx - P.yy;
  const Number symmetric = P.xy + P.yx;
  const Number antisymmetric = P.xy - P.yx;
  const Number p1 = 0.5 * hypot(difference, symmetric);
  const Number p2 = 0.5 * hypot(trace, antisymmetric);
  const double scale = p1.value + p2.value;
  const Number alpha = half_angle(symmetric, difference, scale);
  const Number beta = half_angle(antisymmetric, trace, scale);
  const Number phi_max = p2 + p1;
  const Number phi_min = p2 - p1;
  const Number determinant = determinant_of(P);
  const auto known = [&](const Number& number) { return estimate(number, tensor.covariance); };
  return PhaseTensor{.xx = known(P.xx),
                     .xy = known(P.xy),
                     .yx = known(P.yx),
                     .yy = known(P.yy),
                     .alpha = axial(known(alpha)),
                     .beta = axial(known(beta)),
                     .azimuth = axial(known(alpha - beta)),
                     .phi_max = known(phi_max),
                     .phi_min = known(phi_min),
                     .phase_max = known(degrees_per_radian * atan(phi_max)),
                     .phase_min = known(degrees_per_radian * atan(phi_min)),
                     .ellipticity = known(p1 / p2),
                     .determinant = known(determinant),
                     .geometric_phase = known(geometric_phase(determinant))};
}

Dimensionality dimensionality(const PhaseTensor& tensor, const DimensionalityLimits& limits) {
  const double margin = limits.use_errors && tensor.beta.has_error() ? tensor.beta.error : 0.0;
  if (!(std::abs(tensor.beta.value) - margin <= limits.skew)) {
    return Dimensionality::three;  // a tensor without a skew is far from layers and from a strike, too
  }
  return tensor.ellipticity.value < limits.ellipticity ? Dimensionality::one : Dimensionality::two;
}

}  // namespace numerics::impedance
