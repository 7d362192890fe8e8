// made_tensors.h: stations over ground of known strike, in the axes of their sensors.
#pragma once
#include <cmath>
#include <complex>
#include <string>
#include <vector>

#include "tensor/station_tensor.h"

namespace made {

/// Z = [[0, TE], [-TM, 0]] in axes along the strike, seen in axes whose x has an azimuth. Where the conductor
/// lies decides which of the two modes has the larger phase.
/// @param te_phase, tm_phase  degrees
inline numerics::impedance::Tensor two_dimensional(double strike, double te_phase, double tm_phase,
                                                   double axes) {
  numerics::impedance::Tensor tensor;
  tensor[numerics::impedance::Element::xy] = std::polar(12.0, te_phase * std::acos(-1.0) / 180.0);
  tensor[numerics::impedance::Element::yx] = -std::polar(7.0, tm_phase * std::acos(-1.0) / 180.0);
  return numerics::impedance::rotated(tensor, axes - strike);
}

struct TwoDimensional {
  double strike = 0.0;  // degrees from north
  double axes = 0.0;    // azimuth of x
  double te_phase = 60.0;
  double tm_phase = 30.0;
};

/// A station with these frequencies, all of them over the same ground.
inline Module_tensor::StationTensor station(double number, const std::vector<double>& frequencies,
                                            const TwoDimensional& ground) {
  Module_tensor::StationTensor made;
  made.station = number;
  made.axes = ground.axes;
  made.axes_known = true;
  for (const double frequency : frequencies) {
    made.points.push_back(
        {frequency, two_dimensional(ground.strike, ground.te_phase, ground.tm_phase, ground.axes), 0});
  }
  return made;
}

/// A real Parkinson arrow of this azimuth and length 0.3, in axes to the north.
inline numerics::impedance::Tipper arrow(double azimuth) {
  const double angle = azimuth * std::acos(-1.0) / 180.0;
  numerics::impedance::Tipper tipper;
  tipper.x = -0.3 * std::cos(angle);
  tipper.y = -0.3 * std::sin(angle);
  return tipper;
}

}  // namespace made
