// station_axes.h: in which axes a station was measured.
#pragma once
#include "tensor/line_curves.h"

namespace Module_tensor {

struct StationAxes {
  double azimuth = 0.0;     // of Hx, degrees clockwise from north; 0 if nothing says it
  bool is_known = false;    // some readings say it, and they agree
  bool is_partial = false;  // others don't say it
  double difference = 0.0;  // degrees; above 0: readings differ, and there are no common axes
};

/// What the readings of all elements that are switched on and of the tipper say. Azimuths within 1 degree are
/// one, that of their mean.
StationAxes station_axes(const StationCurves& curves);

}  // namespace Module_tensor
