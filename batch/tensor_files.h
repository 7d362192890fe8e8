// tensor_files.h: tensors of stations as JSON, as a table for spreadsheets and as one to read.
#pragma once
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "tensor/station_tensor.h"

namespace Batch {

/// A station and its line.
struct LineStation {
  std::string line;
  Module_tensor::StationTensor tensor;
};

/// [{"station", "line", "frequency", "values", "errors", ...}], with null for what isn't known.
/// @param rotation  azimuth of x, degrees from north, of axes in which elements are given as well
nlohmann::ordered_json stations_json(const std::vector<LineStation>& stations,
                                     std::optional<double> rotation);

/// A row for each station and frequency, behind one of names and units; what isn't known is empty.
std::string stations_csv(const std::vector<LineStation>& stations, std::optional<double> rotation);

/// For each station what its tensor was made from, and a row of the main quantities for each frequency: those
/// of the elements in the axes of the readings unless others are asked for.
void print_stations(std::ostream& out, const std::vector<LineStation>& stations,
                    std::optional<double> rotation);

}  // namespace Batch
