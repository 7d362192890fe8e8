#include "exchange/site_documents.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <utility>

#include "core/absent_value.h"
#include "core/calendar.h"
#include "core/file_names.h"
#include "core/number_text.h"
#include "core/session_state.h"
#include "database/sites.h"
#include "exchange/site_history.h"
#include "numerics/impedance/apparent_resistivity.h"
#include "tensor/rotated_readings.h"
#include "tensor/station_axes.h"
#include "tensor/station_tensor.h"

namespace Module_exchange {

namespace {

using formats::transfer_function::Component;
using formats::transfer_function::not_given;
using formats::transfer_function::Point;
using formats::transfer_function::SiteDocument;
using formats::transfer_function::Value;
using Module_database::StoredReading;
using Module_tensor::CurveType;
using Module_tensor::EyReason;
using Module_tensor::SourceValue;
using Module_tensor::StationCurves;
using Module_tensor::StationTensor;
using numerics::impedance::PartCovariance;

// Components and curves have one order.
static_assert(Module_tensor::curve_types.size() == formats::transfer_function::component_count);

bool is_diagonal(CurveType type) { return type == CurveType::ExHx || type == CurveType::EyHy; }
bool is_of_ey(CurveType type) { return type == CurveType::EyHx || type == CurveType::EyHy; }
bool is_tipper(CurveType type) { return type == CurveType::HzHx || type == CurveType::HzHy; }

double value_or_nan(float value) {
  return std::isfinite(value) && !is_absent(double{value}) ? decimal_of_single(value) : not_given;
}
double error_or_nan(float error) { return error > 0.0F ? value_or_nan(error) : not_given; }

/// Variance of the complex value.
double variance_of(const PartCovariance& covariance) { return covariance.real + covariance.imaginary; }

/// A value that counts, with its error; absent if it doesn't.
SourceValue counting_value(const StationCurves& curves, CurveType type, std::size_t quantity,
                           std::size_t at) {
  const StoredReading& merged = curves.of(type);
  const int field = static_cast<int>(quantity) + 1;
  const bool is_on = merged.UseReading && (quantity == 0 ? merged.UseResistivity : merged.UsePhase);
  if (!is_on || !merged.curve.point_counts(field, at)) {
    return {};
  }
  return {merged.curve.value(field, at), curve_error(merged, curves.source(type), quantity, at)};
}

/// Resistivity and phase of an element without what is masked or switched off. Of a diagonal element whose
/// resistivity is off nothing is left.
Module_tensor::ElementPoint element_in_use(const StationCurves& curves, CurveType type, std::size_t at) {
  const StoredReading& merged = curves.of(type);
  if (!merged.UseReading || (is_diagonal(type) && !merged.UseResistivity)) {
    return {};
  }
  Module_tensor::ElementPoint point = unmasked_element_point(curves, type, at);
  if (!merged.UseResistivity) {
    point.values[0] = {};
  }
  if (!merged.UsePhase) {
    point.values[1] = {};
  }
  return point;
}

/// In the axes' own sign of Ey. Phases of Zyx lie in the third quadrant by habit; those of other elements
/// that an import has raised above 180 stay so, or the next one would mask them for their sign.
double phase_in_axes(CurveType type, bool ey_turned, double phase) {
  constexpr double highest_raised = 270.0;
  if (ey_turned && is_of_ey(type)) {
    return Module_tensor::phase_of_turned_ey(phase);
  }
  const bool is_raised = type != CurveType::EyHx && phase > 180.0 && phase <= highest_raised;
  return is_raised ? phase : std::remainder(phase, 360.0);
}

Value impedance_value(const StationCurves& curves, CurveType type, bool ey_turned, double frequency,
                      std::size_t at) {
  const auto [resistivity, phase] = element_in_use(curves, type, at).values;
  const double static_factor = decimal_of_single(curves.of(type).ResOffset);
  Value value;
  if (resistivity.value > 0.0F) {
    value.resistivity = value_or_nan(resistivity.value) * static_factor;
    value.resistivity_error = error_or_nan(resistivity.error) * static_factor;
  }
  value.phase = phase_in_axes(type, ey_turned, value_or_nan(phase.value));
  value.phase_error = error_or_nan(phase.error);
  if (value.has_curve()) {
    value.value = numerics::impedance::impedance_of(value.resistivity, value.phase, frequency);
    value.variance = variance_of(numerics::impedance::covariance_of(
        value.value, value.resistivity, value.resistivity_error, value.phase_error));
  }
  return value;
}

Value tipper_value(const StationCurves& curves, CurveType type, std::size_t at) {
  const SourceValue real = counting_value(curves, type, 0, at);
  const SourceValue imaginary = counting_value(curves, type, 1, at);
  Value value;
  value.value = {value_or_nan(real.value), value_or_nan(imaginary.value)};
  if (!value.has_value()) {
    return {};
  }
  const double real_error = error_or_nan(real.error);
  const double imaginary_error = error_or_nan(imaginary.error);
  value.variance = real_error * real_error + imaginary_error * imaginary_error;
  return value;
}

bool has_anything(const Value& value) {
  return value.has_value() || std::isfinite(value.resistivity) || std::isfinite(value.phase);
}

void add_point(const Point& point, std::vector<Point>& points) {
  if (std::ranges::any_of(point.values, has_anything)) {
    points.push_back(point);
  }
}

/// Of all curves, Hz, ascending, each once, those that are switched off left out.
std::vector<float> frequencies_of(const StationCurves& curves, const Frequencies& frequencies) {
  std::vector<float> all;
  for (const StoredReading& merged : curves.merged) {
    std::ranges::copy_if(merged.curve.frequencies, std::back_inserter(all), [&](float frequency) {
      const std::int32_t at = frequencies.position(frequency);
      return frequency > 0.0F && (at < 0 || frequencies.is_enabled(at));
    });
  }
  std::ranges::sort(all);
  all.erase(std::unique(all.begin(), all.end()), all.end());
  return all;
}

std::vector<Point> points_as_measured(const StationCurves& curves, const Frequencies& frequencies,
                                      bool ey_turned) {
  std::vector<Point> points;
  for (const float frequency : frequencies_of(curves, frequencies)) {
    Point point;
    point.frequency = decimal_of_single(frequency);
    for (std::size_t index = 0; index < point.values.size(); ++index) {
      const auto type = static_cast<CurveType>(index);
      const StoredReading& merged = curves.of(type);
      const auto found = std::ranges::lower_bound(merged.curve.frequencies, frequency);
      if (merged.ID == 0 || found == merged.curve.frequencies.end() || *found != frequency) {
        continue;
      }
      const auto at = static_cast<std::size_t>(found - merged.curve.frequencies.begin());
      point.values[index] = is_tipper(type) ? tipper_value(curves, type, at)
                                            : impedance_value(curves, type, ey_turned, point.frequency, at);
    }
    add_point(point, points);
  }
  return points;
}

constexpr double no_phase = 90.0;  // degrees: an error beyond it says no more

Value turned_value(const std::complex<double>& z, const PartCovariance& covariance, double frequency) {
  const auto earth = numerics::impedance::apparent_earth(z, covariance, frequency);
  Value value;
  value.value = z;
  value.variance = variance_of(covariance);
  value.resistivity = earth.resistivity.value;
  value.resistivity_error = earth.resistivity.error;
  value.phase = earth.phase.value;
  value.phase_error = std::min(earth.phase.error, no_phase);
  return value;
}

void add_tipper(const Module_tensor::TipperPoint& tipper, Point& point) {
  const numerics::impedance::Tipper& t = tipper.tipper;
  point.of(Component::tx).value = t.x;
  point.of(Component::tx).variance = variance_of(t.covariance_x);
  point.of(Component::ty).value = t.y;
  point.of(Component::ty).variance = variance_of(t.covariance_y);
}

std::vector<Point> points_turned(const StationTensor& turned) {
  std::vector<Point> points;
  for (const Module_tensor::TensorPoint& of_tensor : turned.points) {
    Point point;
    point.frequency = decimal_of_single(static_cast<float>(of_tensor.frequency));
    for (std::size_t element = 0; element < numerics::impedance::element_count; ++element) {
      point.values[element] =
          turned_value(of_tensor.tensor.z[element], of_tensor.tensor.covariance[element], point.frequency);
    }
    points.push_back(point);
  }
  for (const Module_tensor::TipperPoint& tipper : turned.tipper) {
    const double frequency = decimal_of_single(static_cast<float>(tipper.frequency));
    const auto place = std::ranges::lower_bound(points, frequency, {}, &Point::frequency);
    if (place != points.end() && place->frequency == frequency) {
      add_tipper(tipper, *place);
    } else {
      Point point;
      point.frequency = frequency;
      add_tipper(tipper, point);
      points.insert(place, point);
    }
  }
  return points;
}

/// "Station 1250 (ET001): "
std::string beginning(const StationCurves& curves) {
  return "Station " + Module_tensor::station_text(curves.station, curves.name) + ": ";
}

bool has_counting_phase(const StationCurves& curves, CurveType type) {
  const StoredReading& merged = curves.of(type);
  for (std::size_t at = 0; at < merged.curve.count(); ++at) {
    if (merged.curve.point_counts(Module_database::field_phase, at)) {
      return true;
    }
  }
  return false;
}

/// Whether most phases of Zyx lie where those of Zxy are expected.
bool yx_in_first_quadrant(const SiteDocument& document) {
  std::size_t first = 0;
  std::size_t all = 0;
  for (const Point& point : document.function.points) {
    const double phase = point.of(Component::zyx).phase;
    all += std::isfinite(phase) ? 1 : 0;
    first += phase > 0.0 && phase < 90.0 ? 1 : 0;
  }
  return 2 * first > all;
}

/// What keeps curves of Ey from being what a user expects of them.
void add_ey_remarks(const StationCurves& curves, const StationTensor& tensor, StationDocument& result) {
  const StoredReading& merged = curves.of(CurveType::EyHx);
  if (merged.ID == 0 || !merged.UseReading || !merged.UsePhase || merged.curve.count() == 0) {
    return;
  }
  if (!has_counting_phase(curves, CurveType::EyHx)) {
    result.remarks.push_back(
        beginning(curves) +
        "no phase of EyHx counts; those of files need the sign of Ey turned at the import, "
        "which masks phases at or below 0");
  } else if (tensor.points.empty() && tensor.ey_reason == EyReason::rule) {
    result.remarks.push_back(beginning(curves) + "Ey counts as " +
                             (yx_points_away(curves, tensor) ? "measured" : "turned") +
                             " by the quadrant of the phases of EyHx");
  }
}

/// Tells it in the file as well as to the user.
void tell(const StationCurves& curves, const std::string& sentence, StationDocument& result) {
  result.document.history.push_back(sentence);
  result.remarks.push_back(beginning(curves) + sentence);
}

/// What holds of what is written, as measured or rotated.
void add_remarks(const StationCurves& curves, const StationTensor& tensor, StationDocument& result) {
  if (tensor.ey_reason == EyReason::user && yx_in_first_quadrant(result.document)) {
    result.remarks.push_back(beginning(curves) +
                             "with the sign of Ey that was set for its site most phases of Zyx lie in the "
                             "first quadrant, which other packages take for a wrong sign");
  }
  if (const std::size_t several = frequencies_with_several_points(curves); several > 0) {
    tell(curves,
         "of several points that a curve has at " + counted(several, "frequency", "frequencies") +
             " the first one is written",
         result);
  }
}

void describe_site(const std::optional<Module_database::Site>& site, const StationCurves& curves,
                   SiteDocument& document) {
  formats::transfer_function::Site& described = document.function.site;
  described.name = curves.name;
  if (site) {
    described.name = site->name;
    described.latitude = site->latitude;
    if (site->longitude) {
      described.longitude = std::remainder(*site->longitude, 360.0);  // some files count to 360
    }
    described.elevation = site->elevation;
    described.datum = site->datum;
  }
}

std::string degrees_text(double azimuth) { return plain_text(azimuth) + " degrees"; }

void describe_axes(const Module_tensor::StationAxes& axes, std::optional<double> rotation,
                   SiteDocument& document) {
  const double azimuth = decimal_of_single(static_cast<float>(axes.azimuth));
  const std::string measured =
      axes.is_known ? "azimuth of Hx " + degrees_text(azimuth)
                    : std::string("the azimuth of Hx isn't known, x of the readings counts as north");
  if (axes.is_known) {
    document.sensor_azimuth = azimuth;
    document.function.site.x_azimuth = azimuth;
  }
  if (rotation) {
    document.function.site.x_azimuth = *rotation;
    document.history.push_back("Rotated to axes with x " + degrees_text(*rotation) +
                               " from north; measured: " + measured);
  } else {
    document.history.push_back("Axes as measured: " + measured);
  }
}

bool has_impedance(const Point& point) {
  return std::any_of(point.values.begin(), point.values.begin() + numerics::impedance::element_count,
                     has_anything);
}

/// How what is rotated differs from what is written as measured.
struct TurnedPoints {
  std::size_t not_whole = 0;       // frequencies without a whole tensor
  std::size_t masked_by_user = 0;  // diagonal elements that are there all the same
};

TurnedPoints compare(const std::vector<Point>& measured, const StationTensor& turned) {
  TurnedPoints found;
  for (const Point& point : measured) {
    const bool is_whole = std::ranges::any_of(turned.points, [&](const Module_tensor::TensorPoint& whole) {
      return decimal_of_single(static_cast<float>(whole.frequency)) == point.frequency;
    });
    if (!is_whole) {
      found.not_whole += has_impedance(point) ? 1 : 0;
      continue;
    }
    for (const Component diagonal : {Component::zxx, Component::zyy}) {
      found.masked_by_user += point.of(diagonal).has_value() ? 0 : 1;
    }
  }
  return found;
}

/// What rotation leaves out, and what it takes in spite of masks.
void tell_of_rotation(const StationCurves& curves, const TurnedPoints& found, const StationTensor& turned,
                      StationDocument& result) {
  if (found.not_whole > 0) {
    tell(curves, counted(found.not_whole, "frequency", "frequencies") + " without a whole tensor left out",
         result);
  }
  if (turned.masked_diagonals > 0) {
    result.document.history.push_back(counted(turned.masked_diagonals, "value", "values") +
                                      " of ExHx and EyHy rotated in spite of masks");
  }
  if (found.masked_by_user > 0) {
    result.remarks.push_back(beginning(curves) + counted(found.masked_by_user, "value", "values") +
                             " of ExHx and EyHy that somebody has masked had to be taken for the rotation");
  }
}

void take_turned(const StationCurves& curves, const StationTensor& tensor, double azimuth,
                 const Frequencies& frequencies, StationDocument& result) {
  StationTensor turned = rotated_tensor(tensor, azimuth);
  leave_out_disabled(frequencies, turned);
  result.document.function.points = points_turned(turned);
  if (tensor.refusal.empty()) {
    const auto measured = points_as_measured(curves, frequencies, tensor.ey_turned);
    tell_of_rotation(curves, compare(measured, turned), turned, result);
  } else if (result.document.function.points.empty()) {
    result.refusal = tensor.refusal;
  } else {
    result.remarks.push_back(tensor.refusal + "; of turned axes there is the tipper only");
  }
}

/// What isn't of the curves' values.
SiteDocument described(const Module_tensor::LineChoice& choice, const StationCurves& curves,
                       const Frequencies& frequencies) {
  SiteDocument document;
  document.survey = Module_util::file_stem(Module_util::file_name_only(session().database_file));
  document.line = choice.line;
  document.station = curves.station;
  document.dipole = decimal_of_single(choice.dipole);
  document.program = "Brenlox " BRENLOX_VERSION;
  document.date_written = day_count(today());
  StationPast past = station_past(choice, curves, frequencies);
  document.history = std::move(past.sentences);
  document.date_collected = past.date_collected;
  return document;
}

}  // namespace

StationDocument station_document(const Module_tensor::LineChoice& choice, const StationCurves& curves,
                                 const Frequencies& frequencies, std::optional<double> rotation) {
  const auto site = Module_database::find_site(choice.line, curves.station);
  const Module_tensor::StationAxes axes = station_axes(curves);
  const StationTensor tensor = station_tensor(curves, site ? site->EySign : Module_database::ey_sign_by_rule);
  const bool ey_turned = !yx_points_away(curves, tensor);
  StationDocument result{described(choice, curves, frequencies), "", tensor.remarks, ""};
  describe_site(site, curves, result.document);
  result.name = result.document.function.site.name;
  describe_axes(axes, rotation, result.document);
  if (axes.difference > 0.0) {
    result.refusal = tensor.refusal;
    return result;
  }
  if (rotation) {
    take_turned(curves, tensor, *rotation, frequencies, result);
  } else {
    result.document.function.points = points_as_measured(curves, frequencies, ey_turned);
    add_ey_remarks(curves, tensor, result);
  }
  add_remarks(curves, tensor, result);
  if (result.refusal.empty() && result.document.function.points.empty()) {
    result.refusal = beginning(curves) + "no value of its curves counts";
  }
  if (ey_turned && (result.document.has(Component::zyx) || result.document.has(Component::zyy))) {
    result.document.history.push_back(ey_sentence(curves, tensor));
  }
  return result;
}

}  // namespace Module_exchange
