#include "tensor/station_axes.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "core/absent_value.h"
#include "reduction/common_axes.h"

namespace Module_tensor {

using Module_database::ReadingAxes;

namespace {

bool says_azimuth(const ReadingAxes& axes) { return !is_absent(double{axes.HxAzimuth}); }

/// The largest difference, degrees, of azimuths the short way round.
double largest_difference(const std::vector<ReadingAxes>& readings) {
  double lowest = 0.0;
  double highest = 0.0;
  for (const ReadingAxes& axes : readings) {
    const double difference =
        std::remainder(double{axes.HxAzimuth} - double{readings.front().HxAzimuth}, 360.0);
    lowest = std::min(lowest, difference);
    highest = std::max(highest, difference);
  }
  return std::min(highest - lowest, 180.0);
}

}  // namespace

StationAxes station_axes(const StationCurves& curves) {
  std::vector<ReadingAxes> known;
  StationAxes result;
  for (std::size_t type = 0; type < curve_types.size(); ++type) {
    const Module_database::StoredReading& merged = curves.merged[type];
    if (merged.ID == 0 || !merged.UseReading) {
      continue;
    }
    // A curve has no azimuth of its own both where its readings differ and where one of them says nothing.
    const std::vector<ReadingAxes> of_curve =
        says_azimuth(merged.axes) ? std::vector{merged.axes} : curves.sources[type].axes;
    std::ranges::copy_if(of_curve, std::back_inserter(known), says_azimuth);
    result.is_partial = result.is_partial || of_curve.empty() || !std::ranges::all_of(of_curve, says_azimuth);
  }
  if (known.empty()) {
    return result;
  }
  const ReadingAxes common = Module_averaged_data::common_axes(known);
  if (!says_azimuth(common)) {
    result.difference = largest_difference(known);
    return result;
  }
  result.azimuth = double{common.HxAzimuth};
  result.is_known = true;
  return result;
}

}  // namespace Module_tensor
