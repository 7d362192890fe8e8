#include "tensor/rotated_readings.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "core/number_text.h"
#include "core/trap_errors.h"
#include "database/sites.h"
#include "numerics/impedance/apparent_resistivity.h"
#include "reduction/data_sets/point_error.h"

namespace Module_tensor {

using Module_database::Curve;
using Module_database::StoredReading;
using numerics::impedance::ApparentEarth;
using numerics::impedance::Element;
using numerics::impedance::element_count;
using numerics::impedance::Estimate;
using numerics::impedance::not_known;
using numerics::impedance::Tensor;

namespace {

/// How far the values of an element are known; NaN: not at all.
struct ElementErrors {
  double share = not_known;  // of the resistivity
  double phase = not_known;  // degrees
};
using PointErrors = std::array<ElementErrors, element_count>;

/// The deviations of the repeats, 0 where there are none, as outputs take them. A value that was absent
/// before it was taken in spite of its mask has those of all values present.
ElementErrors deviations(const StoredReading& merged, std::size_t at) {
  using namespace Module_database;
  if (!Module_averaged_data::has_deviations(merged, at)) {
    return {0.0, 0.0};
  }
  const Curve& curve = merged.curve;
  const auto deviation = [&](int field) {
    return curve.is_present(field, at) ? double{curve.value(field, at)} : 0.0;
  };
  const bool counted = curve.is_present(field_resistivity, at) && curve.is_present(field_phase, at);
  const double rho = curve.value(counted ? field_resistivity : field_all_resistivity, at);
  return {deviation(counted ? field_resistivity_deviation : field_all_resistivity_deviation) / std::abs(rho),
          deviation(counted ? field_phase_deviation : field_all_phase_deviation)};
}

/// The errors of the files; of a value that was taken in spite of its mask, what is known of it.
ElementErrors file_errors(const StoredReading& merged, const CurveSource& source, std::size_t at) {
  using namespace Module_database;
  const auto known = [&](int field) {
    const auto quantity = static_cast<std::size_t>(field) - 1;
    const SourceValue of_files =
        merged.curve.point_counts(field, at)
            ? SourceValue{merged.curve.value(field, at), merged.curve.error(field, at)}
        : source.regardless_of_masks.empty() ? SourceValue{}
                                             : source.regardless_of_masks[at][quantity];
    const double error = of_files.error;
    return Estimate{of_files.value, error > 0.0 && std::isfinite(error) ? error : not_known};
  };
  const Estimate resistivity = known(field_resistivity);
  return {resistivity.error / std::abs(resistivity.value), known(field_phase).error};
}

/// A diagonal element without an error gets that of the other element of its row.
void complete_errors(Tensor& tensor) {
  const auto take = [&tensor](Element diagonal, Element other) {
    const auto& known = tensor.known(other);
    if (!tensor.known(diagonal).is_known() && known.is_known()) {
      const double part = 0.5 * (known.real + known.imaginary);
      tensor.known(diagonal) = {part, part, 0.0};
    }
  };
  take(Element::xx, Element::xy);
  take(Element::yy, Element::yx);
}

/// A tensor with errors of its own.
struct KnownTensor {
  Tensor tensor;
  double frequency;  // Hz

  KnownTensor(const Tensor& values, const PointErrors& errors, double at_frequency)
      : tensor(values), frequency(at_frequency) {
    for (std::size_t element = 0; element < element_count; ++element) {
      const double rho = numerics::impedance::apparent_resistivity(tensor.z[element], frequency);
      tensor.covariance[element] = numerics::impedance::covariance_of(
          tensor.z[element], rho, errors[element].share * rho, errors[element].phase);
    }
    complete_errors(tensor);
  }

  [[nodiscard]] ApparentEarth turned(double degrees, Element element) const {
    const Tensor in_new_axes = numerics::impedance::rotated(tensor, degrees);
    return numerics::impedance::apparent_earth(in_new_axes[element], in_new_axes.known(element), frequency);
  }
};

/// The place of a frequency in a curve that has it.
std::size_t place_of(const Curve& curve, double frequency) {
  const auto found = std::ranges::lower_bound(curve.frequencies, static_cast<float>(frequency));
  return static_cast<std::size_t>(found - curve.frequencies.begin());
}

float single(double value) { return std::isnan(value) ? no_data : static_cast<float>(value); }

bool is_ey_turned(const StationTensor& tensor, const Rotation& rotation) {
  return rotation.ey == RotatedEy::first_quadrant || tensor.ey_turned;
}

/// How one element of a station is rotated.
struct Turn {
  const StationCurves& curves;
  const Rotation& rotation;
  Element element;
  double degrees;  // from the axes of the readings
  bool other_ey;   // phases are those of the other sign

  Turn(const StationCurves& of, const StationTensor& tensor, CurveType type, const Rotation& to)
      : curves(of),
        rotation(to),
        element(static_cast<Element>(type)),
        degrees(to.azimuth - tensor.axes),
        other_ey((type == CurveType::EyHx || type == CurveType::EyHy) && is_ey_turned(tensor, to)) {}
};

/// Writes a point of the tensor into its place in the rotated curve.
void write_point(const Turn& turn, const TensorPoint& point, std::size_t at, Curve& curve) {
  using namespace Module_database;
  Tensor tensor = point.tensor;
  PointErrors of_repeats;
  PointErrors of_files;
  for (std::size_t element = 0; element < element_count; ++element) {
    const StoredReading& merged = turn.curves.merged[element];
    const std::size_t place = place_of(merged.curve, point.frequency);
    of_repeats[element] = deviations(merged, place);
    of_files[element] = file_errors(merged, turn.curves.sources[element], place);
    if (!turn.rotation.apply_static) {
      tensor.z[element] /= std::sqrt(double{merged.ResOffset});
    }
  }
  const ApparentEarth earth =
      KnownTensor(tensor, of_repeats, point.frequency).turned(turn.degrees, turn.element);
  const double phase = turn.other_ey ? phase_of_turned_ey(earth.phase.value) : earth.phase.value;
  for (const int first : {field_resistivity, field_all_resistivity}) {
    curve.value(first, at) = single(earth.resistivity.value);
    curve.value(first + 1, at) = single(phase);
    curve.value(first + 2, at) = single(earth.resistivity.error);
    curve.value(first + 3, at) = single(earth.phase.error);
  }
  curve.counts_at(field_resistivity, at) = 1;
  curve.counts_at(field_phase, at) = 1;
  const ApparentEarth files =
      KnownTensor(tensor, of_files, point.frequency).turned(turn.degrees, turn.element);
  if (files.resistivity.has_error() || files.phase.has_error()) {
    curve.error_at(field_resistivity, at) = single(files.resistivity.error);
    curve.error_at(field_phase, at) = single(files.phase.error);
  }
}

/// A curve of these frequencies that has no values yet.
Curve empty_curve(const std::vector<float>& frequencies) {
  Curve curve;
  curve.assign(frequencies.size());
  curve.frequencies = frequencies;
  for (std::size_t at = 0; at < curve.count(); ++at) {
    for (int field = Module_database::field_resistivity; field <= Module_database::field_all_phase_deviation;
         ++field) {
      curve.value(field, at) = no_data;
    }
  }
  return curve;
}

}  // namespace

bool is_rotation_azimuth(double azimuth) { return azimuth >= least_azimuth && azimuth <= largest_azimuth; }

double azimuth_of(std::string_view text) { return is_numeric(text) ? numeric_value(text) : not_known; }

std::string rotation_text(double azimuth) {
  return "rotated to a strike of " + plain_text(azimuth) + " degrees from north";
}

std::optional<CurveType> impedance_type(std::string_view data_type) {
  const auto index = curve_type_index(data_type);
  return index && *index < element_count ? std::optional(static_cast<CurveType>(*index)) : std::nullopt;
}

int load_station(const LineChoice& choice, double station, const Frequencies& frequencies,
                 LoadedStation& loaded) {
  loaded = {};
  loaded.curves.station = station;
  if (reload_station_curves(choice, frequencies, loaded.curves) != 0) {
    return -1;
  }
  return trap_errors("An error occurred while reading the tensor of a station: ", [&] {
    const auto site = Module_database::find_site(choice.line, station);
    loaded.curves.name = site ? site->name : std::string();
    loaded.tensor = station_tensor(loaded.curves, site ? site->EySign : Module_database::ey_sign_by_rule);
  });
}

bool RotationReport::add(const LoadedStation& station) {
  const StationTensor& tensor = station.tensor;
  if (station.curves.of(CurveType::ExHy).ID == 0 && station.curves.of(CurveType::EyHx).ID == 0) {
    return false;
  }
  if (!tensor.refusal.empty()) {
    left_out.push_back(tensor.refusal);
    return false;
  }
  without_azimuth += tensor.axes_known ? 0 : 1;
  return true;
}

std::string left_out_text(const RotationReport& report) {
  constexpr std::size_t named = 5;
  std::string text;
  for (std::size_t index = 0; index < std::min(report.left_out.size(), named); ++index) {
    text += (index == 0 ? "Left out for want of a tensor: " : "; ") + report.left_out[index];
  }
  return report.left_out.size() <= named
             ? text
             : text + "; and " + plain_text(static_cast<std::int64_t>(report.left_out.size() - named)) +
                   " more";
}

std::string report_text(double azimuth, const RotationReport& report) {
  std::string text = rotation_text(azimuth);
  if (report.without_azimuth > 0) {
    text += ", x counting as north at " + plain_text(report.without_azimuth) +
            (report.without_azimuth == 1 ? " station" : " stations") + " without an azimuth of Hx";
  }
  const std::string left_out = left_out_text(report);
  return left_out.empty() ? text : text + ". " + left_out;
}

StationTensor rotated_tensor(const StationTensor& tensor, double azimuth) {
  StationTensor completed = tensor;
  for (TensorPoint& point : completed.points) {
    complete_errors(point.tensor);
  }
  return turned_to(completed, azimuth);
}

StoredReading rotated_reading(const StationCurves& curves, const StationTensor& tensor, CurveType type,
                              const Rotation& rotation) {
  const StoredReading& stored = curves.of(type);
  StoredReading rotated;
  if (tensor.points.empty()) {
    return rotated;
  }
  rotated.ID = stored.ID;
  rotated.FileID = Module_database::derived_file;
  rotated.curve = empty_curve(stored.curve.frequencies);
  const Turn turn(curves, tensor, type, rotation);
  for (const TensorPoint& point : tensor.points) {
    write_point(turn, point, place_of(rotated.curve, point.frequency), rotated.curve);
  }
  rotated.axes = {
      is_ey_turned(tensor, rotation) ? Module_database::ey_turned : Module_database::ey_as_measured,
      static_cast<float>(rotation.azimuth)};
  return rotated;
}

}  // namespace Module_tensor
