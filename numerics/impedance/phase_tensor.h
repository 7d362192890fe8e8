// phase_tensor.h: the phase tensor, which galvanic distortion of the electric field leaves alone.
//
// Caldwell, Bibby & Brown (2004), GJI 158, 457-469; Bibby, Caldwell & Brown (2005), GJI 163, 915-930.
// Conventions as in tensor.h.
#pragma once
#include <optional>

#include "numerics/impedance/tensor.h"

namespace numerics::impedance {

/// P = X^-1 Y of Z = X + iY, and what is made of it. Errors follow to first order from those of the elements.
struct PhaseTensor {
  Estimate xx, xy, yx, yy;
  Estimate alpha;        // degrees, -90 < alpha <= 90
  Estimate beta;         // degrees, the skew
  Estimate azimuth;      // degrees, of the major axis: alpha - beta, -90 < azimuth <= 90
  Estimate phi_max;      // p2 + p1; its arc tangent is a principal phase
  Estimate phi_min;      // p2 - p1, negative where det P is
  Estimate phase_max;    // degrees, atan phi_max
  Estimate phase_min;    // degrees, atan phi_min
  Estimate ellipticity;  // p1 / p2
  Estimate determinant;
  Estimate geometric_phase;  // degrees, atan sqrt(|det P|) with the sign of det P
};

/// Nothing where the real part of the tensor can't be inverted, or an element isn't a finite number.
std::optional<PhaseTensor> phase_tensor(const Tensor& tensor);

/// Below this ellipticity an azimuth means nothing.
inline constexpr double least_ellipticity = 0.1;
/// An azimuth with a larger error, degrees, is undetermined.
inline constexpr double largest_azimuth_error = 20.0;

enum class Dimensionality : std::uint8_t { one, two, three };

struct DimensionalityLimits {
  double skew = 3.0;         // degrees
  double ellipticity = 0.1;  // least one of a two-dimensional tensor
  bool use_errors = false;   // three-dimensional only where the skew exceeds its limit by its error
};

/// The class by skew and ellipticity (Caldwell et al. 2004). A skew without an error has the error 0 here.
Dimensionality dimensionality(const PhaseTensor& tensor, const DimensionalityLimits& limits = {});

}  // namespace numerics::impedance
