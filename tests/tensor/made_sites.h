// made_sites.h: stations with tensors and tippers that are known by hand.
#pragma once
#include <cmath>
#include <complex>
#include <numbers>
#include <vector>

#include "tensor/site_map.h"

namespace made {

/// A station over two-dimensional ground: the phase tensor's long axis and the strike have this azimuth,
/// principal phases are 60 and 30 degrees; the real Parkinson arrow has length 0.3 across, to azimuth + 90,
/// the imaginary one as it is length 0.1 along the same way.
inline Module_tensor::StationTensor station(std::int32_t StationID, double azimuth,
                                            const std::vector<double>& frequencies) {
  using namespace std::complex_literals;
  constexpr double degree = std::numbers::pi / 180.0;
  Module_tensor::StationTensor station;
  station.StationID = StationID;
  station.station = 100.0 * StationID;
  station.axes_known = true;
  // P = X^-1 Y: with x along the strike, the phase of Zyx is that of Pxx.
  numerics::impedance::Tensor along;
  along[numerics::impedance::Element::xy] = std::polar(1.0, 30.0 * degree);
  along[numerics::impedance::Element::yx] = -std::polar(2.0, 60.0 * degree);
  const double across = (azimuth + 90.0) * degree;
  numerics::impedance::Tipper tipper;
  tipper.x = std::cos(across) * (-0.3 + 0.1i);
  tipper.y = std::sin(across) * (-0.3 + 0.1i);
  for (const double frequency : frequencies) {
    station.points.push_back({frequency, numerics::impedance::rotated(along, -azimuth)});
    station.tipper.push_back({frequency, tipper});
  }
  return station;
}

/// Sites without places in a survey, as for pictures.
inline Module_tensor::MapSite site(Module_tensor::StationTensor station, double east, double north) {
  return {"1E", east, north, 0.0, std::move(station)};
}

}  // namespace made
