#include "tensor/station_tensor.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "core/number_text.h"
#include "database/sites.h"
#include "tensor/element_origins.h"
#include "tensor/station_axes.h"

namespace Module_tensor {

using Module_database::Curve;
using Module_database::StoredReading;
using numerics::impedance::Element;
using numerics::impedance::element_count;

namespace {

bool is_diagonal(CurveType type) { return type == CurveType::ExHx || type == CurveType::EyHy; }

bool is_there(const SourceValue& value) {
  return std::isfinite(value.value) && !is_absent(double{value.value});
}

std::optional<std::size_t> point_at(const Curve& curve, float frequency) {
  const auto found = std::ranges::lower_bound(curve.frequencies, frequency);
  return found != curve.frequencies.end() && *found == frequency
             ? std::optional(static_cast<std::size_t>(found - curve.frequencies.begin()))
             : std::nullopt;
}

/// An element that has both.
std::optional<ElementPoint> whole_point(const StationCurves& curves, std::size_t element, std::size_t at) {
  const ElementPoint point = element_point(curves, static_cast<CurveType>(element), at);
  const auto& [resistivity, phase] = point.values;
  return is_there(resistivity) && is_there(phase) && resistivity.value > 0.0F ? std::optional(point)
                                                                              : std::nullopt;
}

double error_or_unknown(float error) {
  return error > 0.0F && std::isfinite(error) ? double{error} : numerics::impedance::not_known;
}

bool add_element(const StationCurves& curves, std::size_t element, float frequency, TensorPoint& point) {
  const StoredReading& merged = curves.merged[element];
  const auto at = point_at(merged.curve, frequency);
  const auto known = at ? whole_point(curves, element, *at) : std::nullopt;
  if (!known) {
    return false;
  }
  const auto& [resistivity, phase] = known->values;
  const double static_factor{merged.ResOffset};
  const double rho = double{resistivity.value} * static_factor;
  const auto z = numerics::impedance::impedance_of(rho, phase.value, point.frequency);
  point.tensor.z[element] = z;
  point.tensor.covariance[element] = numerics::impedance::covariance_of(
      z, rho, error_or_unknown(resistivity.error) * static_factor, error_or_unknown(phase.error));
  if (known->is_masked) {
    ++point.masked_diagonals;
  }
  return true;
}

void add_points(const StationCurves& curves, StationTensor& station) {
  for (const float frequency : curves.of(CurveType::ExHy).curve.frequencies) {
    const bool is_repeated = !station.points.empty() && station.points.back().frequency == double{frequency};
    if (!(frequency > 0.0F) || is_repeated) {
      continue;
    }
    TensorPoint point;
    point.frequency = frequency;
    bool whole = true;
    for (std::size_t element = 0; whole && element < element_count; ++element) {
      whole = add_element(curves, element, frequency, point);
    }
    if (whole) {
      station.points.push_back(point);
      station.masked_diagonals += point.masked_diagonals;
    }
  }
}

/// What a user has switched off, or no reading has; empty if all elements are there.
std::string missing_elements(const StationCurves& curves) {
  std::string missing;
  std::string off;
  for (std::size_t element = 0; element < element_count; ++element) {
    const StoredReading& merged = curves.merged[element];
    const bool is_on = merged.UseReading && merged.UseResistivity && merged.UsePhase;
    if (merged.ID == 0 || !is_on) {
      std::string& list = merged.ID == 0 ? missing : off;
      list += (list.empty() ? "" : ", ") + std::string(curve_types[element]);
    }
  }
  return !missing.empty() ? "there is no " + missing : !off.empty() ? off + " is switched off" : "";
}

/// Whether a diagonal element has a value at any frequency, masked or not.
bool has_values(const StationCurves& curves, Element element) {
  const auto index = static_cast<std::size_t>(element);
  const std::size_t count = curves.merged[index].curve.count();
  for (std::size_t at = 0; at < count; ++at) {
    if (whole_point(curves, index, at)) {
      return true;
    }
  }
  return false;
}

/// Of diagonal elements that are there and have no value anywhere; empty if both have some.
std::string diagonals_without_values(const StationCurves& curves) {
  const bool has_xx = has_values(curves, Element::xx);
  const bool has_yy = has_values(curves, Element::yy);
  if (has_xx && has_yy) {
    return "";
  }
  return has_xx ? "EyHy has no values" : has_yy ? "ExHx has no values" : "ExHx and EyHy have no values";
}

bool all_say_turned(const StationCurves& curves) {
  return curves.of(CurveType::EyHx).axes.EyTurned == Module_database::ey_turned &&
         curves.of(CurveType::EyHy).axes.EyTurned == Module_database::ey_turned;
}

bool all_say_as_measured(const StationCurves& curves) {
  return curves.of(CurveType::EyHx).axes.EyTurned == Module_database::ey_as_measured &&
         curves.of(CurveType::EyHy).axes.EyTurned == Module_database::ey_as_measured;
}

/// Zxy and Zyx of a true tensor point in opposite directions.
bool turned_by_rule(const std::vector<TensorPoint>& points) {
  const auto same_way = std::ranges::count_if(points, [](const TensorPoint& point) {
    return (point.tensor[Element::xy] * std::conj(point.tensor[Element::yx])).real() > 0.0;
  });
  return 2 * static_cast<std::size_t>(same_way) > points.size();
}

void find_ey_sign(const StationCurves& curves, std::int32_t ey_sign, StationTensor& station) {
  if (ey_sign != Module_database::ey_sign_by_rule) {
    station.ey_turned = ey_sign == Module_database::ey_sign_turned;
    station.ey_reason = EyReason::user;
    return;
  }
  if (all_say_turned(curves)) {
    station.ey_turned = true;
    station.ey_reason = EyReason::facts;
    return;
  }
  station.ey_turned = turned_by_rule(station.points);
  station.ey_reason = EyReason::rule;
}

void turn_ey_back(StationTensor& station) {
  for (TensorPoint& point : station.points) {
    for (const Element element : {Element::yx, Element::yy}) {
      point.tensor[element] = -point.tensor[element];
    }
  }
}

/// "Station 1250 (ET001): "
std::string beginning(const StationCurves& curves) {
  return "Station " + station_text(curves.station, curves.name) + ": ";
}

std::string why_no_points(const StationCurves& curves) {
  const Curve& curve = curves.of(CurveType::EyHx).curve;
  bool any_phase = false;
  for (std::size_t at = 0; at < curve.count(); ++at) {
    any_phase = any_phase || curve.point_counts(Module_database::field_phase, at);
  }
  if (std::string without = diagonals_without_values(curves); any_phase && !without.empty()) {
    return without;
  }
  return any_phase
             ? "at no frequency do ExHy and EyHx count and all four elements have values"
             : "no phase of EyHx counts; those of files need the sign of Ey turned at the import, which "
               "masks phases at or below 0";
}

void add_sign_remark(const StationCurves& curves, StationTensor& station) {
  if (station.ey_reason != EyReason::rule || (all_say_as_measured(curves) && !station.ey_turned)) {
    return;
  }
  const std::string outcome = station.ey_turned ? "Ey counts as turned" : "Ey counts as measured";
  // Field programs turn it, too, to have the phases of both modes in one quadrant.
  const std::string readings = all_say_as_measured(curves)
                                   ? ": its files have it so, as the import didn't turn it"
                                   : ", as its readings don't all say it";
  station.remarks.push_back(beginning(curves) + outcome + " by the directions of Zxy and Zyx" + readings);
}

void add_origin_remark(const StationCurves& curves, StationTensor& station) {
  const auto mixed = mixed_origins(curves);
  if (!mixed) {
    return;
  }
  const char* const diagonals = "ExHx and EyHy";
  const char* const others = "ExHy and EyHx";
  station.remarks.push_back(beginning(curves) + (mixed->diagonals_from_impedances ? diagonals : others) +
                            " came from impedances, " +
                            (mixed->diagonals_from_impedances ? others : diagonals) +
                            " from resistivities that the file has beside them; their |Z| differ by " +
                            format_number(100.0 * mixed->difference, "0.00") + " percent in the median");
}

void add_axes_remark(const StationCurves& curves, const StationAxes& axes, StationTensor& station) {
  if (!axes.is_known) {
    station.remarks.push_back(beginning(curves) +
                              "the azimuth of Hx isn't known; x of its readings counts as north");
  } else if (axes.is_partial) {
    station.remarks.push_back(beginning(curves) +
                              "not all readings say the azimuth of Hx; that of the others, " +
                              format_number(axes.azimuth, "0.0") + " degrees, counts for all");
  }
}

/// Why there is no tensor, before any point is looked at; empty if there may be one.
std::string refusal_of(const StationCurves& curves, const StationAxes& axes) {
  if (axes.difference > 0.0) {
    return "the azimuths of Hx of its readings differ by " + format_number(axes.difference, "0.0") +
           " degrees, so they make no tensor";
  }
  return missing_elements(curves);
}

/// Of phases of EyHx, degrees: whether more than half are nearer to -135 than to 45.
bool most_point_away(const std::vector<double>& phases) {
  constexpr double uniform_earth = 45.0;  // with Ey turned
  const auto away = std::ranges::count_if(
      phases, [](double phase) { return std::abs(std::remainder(phase - uniform_earth, 360.0)) > 90.0; });
  return 2 * static_cast<std::size_t>(away) > phases.size();
}

/// Those of readings whatever masks they have.
std::vector<double> all_phases(const CurveSource& source) {
  std::vector<double> phases;
  for (const auto& [resistivity, phase] : source.regardless_of_masks) {
    if (is_there(phase) && is_there(resistivity) && resistivity.value > 0.0F) {
      phases.push_back(phase.value);
    }
  }
  return phases;
}

/// Whether there is no such element: an import stores 0 for one that its file doesn't have.
bool is_zero(const ElementPoint& point, const CurveSource& source, std::size_t at) {
  const SourceValue& all =
      source.regardless_of_masks.empty() ? point.values[0] : source.regardless_of_masks[at][0];
  return all.value == 0.0F || point.values[0].value == 0.0F;
}

}  // namespace

ElementPoint element_point(const StationCurves& curves, CurveType type, std::size_t at) {
  const StoredReading& merged = curves.of(type);
  const CurveSource& source = curves.source(type);
  ElementPoint point;
  for (std::size_t quantity = 0; quantity < quantity_count; ++quantity) {
    const int field = static_cast<int>(quantity) + 1;
    const bool counts = merged.curve.point_counts(field, at);
    const bool some_masked = !source.some_masked.empty() && source.some_masked[at][quantity];
    if (is_diagonal(type) && (!counts || some_masked) && !source.regardless_of_masks.empty()) {
      point.values[quantity] = source.regardless_of_masks[at][quantity];
      point.is_masked = true;
    } else if (counts) {
      point.values[quantity] = {merged.curve.value(field, at), curve_error(merged, source, quantity, at)};
    }
  }
  return is_zero(point, source, at) ? ElementPoint() : point;
}

ElementPoint unmasked_element_point(const StationCurves& curves, CurveType type, std::size_t at) {
  ElementPoint point = element_point(curves, type, at);
  if (!is_diagonal(type)) {
    return point;
  }
  const Curve& curve = curves.of(type).curve;
  if (!curve.point_counts(Module_database::field_resistivity, at)) {
    return {};
  }
  if (!curve.point_counts(Module_database::field_phase, at) && point.values[1].value > 0.0F) {
    point.values[1] = {};
  }
  return point;
}

double phase_of_turned_ey(double phase) {
  return std::remainder(phase > 0.0 ? phase - 180.0 : phase + 180.0, 360.0);
}

StationTensor station_tensor(const StationCurves& curves, std::int32_t ey_sign) {
  StationTensor result;
  result.StationID = curves.StationID;
  result.station = curves.station;
  result.name = curves.name;
  const StationAxes axes = station_axes(curves);
  result.axes = axes.azimuth;
  result.axes_known = axes.is_known;
  std::string refusal = refusal_of(curves, axes);
  if (axes.difference == 0.0) {
    result.tipper = station_tipper(curves);
  }
  if (refusal.empty()) {
    add_points(curves, result);
    refusal = result.points.empty() ? why_no_points(curves) : std::string();
  }
  find_ey_sign(curves, ey_sign, result);
  if (!refusal.empty()) {
    result.refusal = beginning(curves) + refusal;
    return result;
  }
  if (result.ey_turned) {
    turn_ey_back(result);
  }
  add_axes_remark(curves, axes, result);
  add_sign_remark(curves, result);
  add_origin_remark(curves, result);
  return result;
}

StationTensor turned_to(const StationTensor& station, double azimuth) {
  StationTensor turned = station;
  const double degrees = azimuth - station.axes;
  for (TensorPoint& point : turned.points) {
    point.tensor = numerics::impedance::rotated(point.tensor, degrees);
  }
  for (TipperPoint& point : turned.tipper) {
    point.tipper = numerics::impedance::rotated(point.tipper, degrees);
  }
  turned.axes = azimuth;
  return turned;
}

void leave_out_disabled(const Frequencies& frequencies, StationTensor& station) {
  const auto is_off = [&frequencies](const auto& point) {
    const std::int32_t at = frequencies.position(static_cast<float>(point.frequency));
    return at >= 0 && !frequencies.is_enabled(at);
  };
  std::erase_if(station.points, is_off);
  std::erase_if(station.tipper, is_off);
  station.masked_diagonals = 0;
  for (const TensorPoint& point : station.points) {
    station.masked_diagonals += point.masked_diagonals;
  }
}

bool yx_points_away(const StationCurves& curves, const StationTensor& station) {
  if (station.ey_reason != EyReason::rule || !station.points.empty()) {
    return !station.ey_turned;
  }
  const StoredReading& merged = curves.of(CurveType::EyHx);
  std::vector<double> in_use;
  for (std::size_t at = 0; at < merged.curve.count(); ++at) {
    if (merged.curve.point_counts(Module_database::field_phase, at)) {
      in_use.push_back(merged.curve.value(Module_database::field_phase, at));
    }
  }
  if (!in_use.empty()) {
    return most_point_away(in_use);
  }
  return merged.axes.EyTurned == Module_database::ey_not_known
             ? most_point_away(all_phases(curves.source(CurveType::EyHx)))
             : merged.axes.EyTurned == Module_database::ey_as_measured;
}

std::string station_text(double station, const std::string& name) {
  const std::string number = plain_text(station);
  return name.empty() || name == number ? number : number + " (" + name + ")";
}

}  // namespace Module_tensor
