// station_tipper.h: the tipper of a station at each frequency, from its merged curves.
//
// In the axes of the readings; z down, exp(+i omega t). The sign of Ey has no say in it.
#pragma once
#include <vector>

#include "tensor/station_tensor.h"

namespace Module_tensor {

/// The frequencies at which both parts of both elements count, ascending; of two equal ones the first.
std::vector<TipperPoint> station_tipper(const StationCurves& curves);

}  // namespace Module_tensor
