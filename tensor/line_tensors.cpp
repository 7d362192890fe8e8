#include "tensor/line_tensors.h"

#include <algorithm>
#include <map>

#include "core/trap_errors.h"
#include "database/sites.h"

namespace Module_tensor {

namespace {

constexpr std::string_view failed = "An error occurred while reading the tensors of the line: ";

std::map<double, std::int32_t> ey_signs(const std::string& line) {
  std::map<double, std::int32_t> signs;
  for (const Module_database::Site& site : Module_database::sites_of_line(line)) {
    signs[site.station] = site.EySign;
  }
  return signs;
}

std::int32_t sign_of(const std::map<double, std::int32_t>& signs, double station) {
  const auto found = signs.find(station);
  return found == signs.end() ? Module_database::ey_sign_by_rule : found->second;
}

}  // namespace

int load_line_tensors(const LineChoice& choice, const Frequencies& frequencies, LineTensors& line) {
  line = {};
  const int status = load_line_curves(choice, frequencies, line.curves);
  const int signs_status = trap_errors(failed, [&] {
    const auto signs = ey_signs(choice.line);
    for (const StationCurves& curves : line.curves.stations) {
      line.stations.push_back(station_tensor(curves, sign_of(signs, curves.station)));
    }
  });
  return status != 0 ? status : signs_status;
}

int reload_station(double station, const Frequencies& frequencies, LineTensors& line) {
  const auto found = std::ranges::find(line.curves.stations, station, &StationCurves::station);
  if (found == line.curves.stations.end()) {
    return 0;
  }
  if (reload_station_curves(line.curves.choice, frequencies, *found) != 0) {
    return -1;
  }
  return trap_errors(failed, [&] {
    const auto signs = ey_signs(line.curves.choice.line);
    const auto index = static_cast<std::size_t>(found - line.curves.stations.begin());
    line.stations[index] = station_tensor(*found, sign_of(signs, station));
  });
}

}  // namespace Module_tensor
