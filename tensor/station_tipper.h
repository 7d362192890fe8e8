// station_tipper.h: the tipper of a station at each frequency, from its merged curves.
//
// In the axes of the readings; z down, exp(+i omega t). The sign of Ey has no say in it. Errors are those of
// the repeats' spread, else of the files.
#pragma once
#include <vector>

#include "numerics/impedance/tipper.h"
#include "tensor/line_curves.h"

namespace Module_tensor {

struct TipperPoint {
  double frequency = 0.0;  // Hz
  numerics::impedance::Tipper tipper;
};

/// The frequencies at which both parts of both elements count, ascending; of two equal ones the first. None
/// where a curve or a part of it is switched off.
std::vector<TipperPoint> station_tipper(const StationCurves& curves);

}  // namespace Module_tensor
