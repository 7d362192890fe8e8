// line_tensors.h: the tensors of a line's stations, as what is drawn and computed from them takes them.
#pragma once
#include <cstdint>
#include <vector>

#include "core/frequencies.h"
#include "tensor/line_curves.h"
#include "tensor/station_tensor.h"

namespace Module_tensor {

struct LineTensors {
  LineCurves curves;
  std::vector<StationTensor> stations;  // in the order of curves.stations, in the axes of the readings
};

/// @return 0, or -1 after a message; what was loaded by then stays
[[nodiscard]] int load_line_tensors(const LineChoice& choice, const Frequencies& frequencies,
                                    LineTensors& line);

/// Reads one station again, after an edit of its readings or of its EySign. Nothing is done for a station
/// that isn't there. @return 0, or -1 after a message
[[nodiscard]] int reload_station(double station, const Frequencies& frequencies, LineTensors& line);

}  // namespace Module_tensor
