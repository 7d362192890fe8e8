#include "tensor/station_tensor.h"

#include <algorithm>
#include <array>
#include <optional>

#include "core/number_text.h"
#include "database/sites.h"

namespace Module_tensor {

using Module_database::Curve;
using Module_database::StoredReading;
using numerics::impedance::Element;

namespace {

constexpr std::size_t impedance_types = 4;

std::optional<std::size_t> point_at(const Curve& curve, float frequency) {
  const auto found = std::ranges::lower_bound(curve.frequencies, frequency);
  return found != curve.frequencies.end() && *found == frequency
             ? std::optional(static_cast<std::size_t>(found - curve.frequencies.begin()))
             : std::nullopt;
}

bool all_counting(const StationCurves& curves, const std::array<std::size_t, impedance_types>& at) {
  for (const CurveType type : {CurveType::ExHy, CurveType::EyHx}) {
    const Curve& curve = curves.of(type).curve;
    const std::size_t point = at[static_cast<std::size_t>(type)];
    if (!curve.point_counts(Module_database::field_resistivity, point) ||
        !curve.point_counts(Module_database::field_phase, point)) {
      return false;
    }
  }
  return true;
}

/// The places of a frequency in the curves of the four elements.
std::optional<std::array<std::size_t, impedance_types>> places_of(const StationCurves& curves,
                                                                  float frequency) {
  std::array<std::size_t, impedance_types> at{};
  for (std::size_t type = 0; type < impedance_types; ++type) {
    const auto point = point_at(curves.merged[type].curve, frequency);
    if (!point) {
      return std::nullopt;
    }
    at[type] = *point;
  }
  return at;
}

bool add_element(const StoredReading& merged, std::size_t at, std::size_t element, TensorPoint& point) {
  const Curve& curve = merged.curve;
  if (!curve.is_present(Module_database::field_resistivity, at) ||
      !curve.is_present(Module_database::field_phase, at)) {
    return false;
  }
  const double resistivity = double{curve.value(Module_database::field_resistivity, at)} * merged.ResOffset;
  point.tensor.z[element] = numerics::impedance::impedance_of(
      resistivity, curve.value(Module_database::field_phase, at), point.frequency);
  return true;
}

}  // namespace

StationTensor station_tensor(const StationCurves& curves, std::int32_t /*ey_sign*/) {
  StationTensor result;
  result.StationID = curves.StationID;
  result.station = curves.station;
  result.name = curves.name;
  result.tipper = station_tipper(curves);
  for (const float frequency : curves.of(CurveType::ExHy).curve.frequencies) {
    const auto at = places_of(curves, frequency);
    TensorPoint point;
    point.frequency = frequency;
    bool whole = at && all_counting(curves, *at);
    for (std::size_t element = 0; whole && element < impedance_types; ++element) {
      whole = add_element(curves.merged[element], (*at)[element], element, point);
    }
    if (whole) {
      result.points.push_back(point);
    }
  }
  return result;
}

StationTensor turned_to(const StationTensor& station, double azimuth) {
  StationTensor turned = station;
  for (TensorPoint& point : turned.points) {
    point.tensor = numerics::impedance::rotated(point.tensor, azimuth - station.axes);
  }
  turned.axes = azimuth;
  return turned;
}

std::string station_text(double station, const std::string& name) {
  const std::string number = plain_text(station);
  return name.empty() || name == number ? number : number + " (" + name + ")";
}

}  // namespace Module_tensor
