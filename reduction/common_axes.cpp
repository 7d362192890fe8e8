#include "reduction/common_axes.h"

#include <algorithm>
#include <cmath>

#include "core/absent_value.h"

namespace Module_averaged_data {

using Module_database::ReadingAxes;

namespace {

constexpr double full_turn = 360.0;       // degrees
constexpr double same_orientation = 1.0;  // degrees

float common_azimuth(std::span<const ReadingAxes> readings) {
  const double first{readings.front().HxAzimuth};
  double lowest = 0.0;  // differences from the first one, the short way round
  double highest = 0.0;
  double sum = 0.0;
  for (const ReadingAxes& axes : readings) {
    const double azimuth{axes.HxAzimuth};
    if (!(azimuth > present_above)) {
      return no_data;
    }
    const double difference = std::remainder(azimuth - first, full_turn);
    lowest = std::min(lowest, difference);
    highest = std::max(highest, difference);
    sum += difference;
  }
  if (highest - lowest > same_orientation) {
    return no_data;
  }
  const double mean = first + sum / static_cast<double>(readings.size());
  return static_cast<float>(mean < full_turn ? mean : mean - full_turn);
}

}  // namespace

ReadingAxes common_axes(std::span<const ReadingAxes> readings) {
  if (readings.empty()) {
    return {};
  }
  const std::int32_t EyTurned = readings.front().EyTurned;
  const bool same = std::ranges::all_of(readings.subspan(1),
                                        [&](const ReadingAxes& axes) { return axes.EyTurned == EyTurned; });
  return {same ? EyTurned : Module_database::ey_not_known, common_azimuth(readings)};
}

}  // namespace Module_averaged_data
