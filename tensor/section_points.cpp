#include "tensor/section_points.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "numerics/impedance/bostick.h"
#include "numerics/impedance/effective_impedance.h"

namespace Module_tensor {

using Module_averaged_data::OutlierField;
using Module_database::Curve;
using Module_database::StoredReading;
using numerics::impedance::ApparentEarth;
using numerics::impedance::Estimate;

namespace {

constexpr double half_turn = 180.0;
constexpr double full_turn = 360.0;

/// What was measured at a frequency of one curve, and whether it counts.
struct CurvePoint {
  float frequency = 0.0F;  // Hz
  ApparentEarth earth;     // phase in the first quadrant as far as Ey's sign decides on it
  bool resistivity_counts = false;
  bool phase_counts = false;

  [[nodiscard]] bool counts(OutlierField component) const {
    return (component == OutlierField::phase || resistivity_counts) &&
           (component == OutlierField::resistivity || phase_counts);
  }
};

Estimate estimate_at(const Curve& curve, int field, std::size_t point, double factor) {
  Estimate result;
  if (curve.is_present(field, point)) {
    result.value = factor * double{curve.value(field, point)};
    if (const float error = curve.error(field, point); std::isfinite(error) && error > 0.0F) {
      result.error = factor * double{error};
    }
  }
  return result;
}

double within_half_turn(double degrees) {
  return degrees - full_turn * std::ceil((degrees - half_turn) / full_turn);
}

std::vector<CurvePoint> points_of(const StoredReading& merged, double turn, const Frequencies& frequencies) {
  std::vector<CurvePoint> points;
  const Curve& curve = merged.curve;
  for (std::size_t i = 0; i < curve.count(); ++i) {
    if (!(curve.frequencies[i] > 0.0F) || frequencies.enabled_position(curve.frequencies[i]) < 0) {
      continue;
    }
    CurvePoint point;
    point.frequency = curve.frequencies[i];
    point.earth.resistivity = estimate_at(curve, Module_database::field_resistivity, i, merged.ResOffset);
    point.earth.phase = estimate_at(curve, Module_database::field_phase, i, 1.0);
    if (turn != 0.0) {
      point.earth.phase.value = within_half_turn(point.earth.phase.value + turn);
    }
    point.resistivity_counts = merged.UseReading && merged.UseResistivity &&
                               curve.point_counts(Module_database::field_resistivity, i);
    point.phase_counts =
        merged.UseReading && merged.UsePhase && curve.point_counts(Module_database::field_phase, i);
    points.push_back(point);
  }
  return points;
}

/// What brings the phases of EyHx to the first quadrant.
double turn_of_yx(const SectionSource& source, std::size_t station) {
  const LineTensors& line = *source.line;
  return yx_points_away(line.curves.stations[station], line.stations[station]) ? half_turn : 0.0;
}

std::vector<CurvePoint> curve_points(const SectionSource& source, std::size_t station, CurveType type) {
  const double turn = type == CurveType::EyHx ? turn_of_yx(source, station) : 0.0;
  return points_of(source.line->curves.stations[station].of(type), turn, *source.frequencies);
}

void take_resistivity(const Estimate& resistivity, SectionPoint& point) {
  if (resistivity.value > 0.0) {
    point.value = std::log10(resistivity.value);
    point.error = resistivity.error;
  }
}

void take_angle(const Estimate& angle, SectionPoint& point) {
  point.value = angle.value;
  point.error = angle.error;
}

/// Resistivity, phase, or resistivity at a depth.
void take_earth(const ApparentEarth& earth, const QuantityFacts& facts, SectionPoint& point) {
  if (facts.axis == SectionAxis::depth) {
    const auto at_depth = numerics::impedance::bostick_point(earth, point.frequency);
    point.depth = at_depth.depth.value;
    if (point.depth > 0.0) {
      take_resistivity(at_depth.resistivity, point);
    }
  } else if (facts.is_logarithmic()) {
    take_resistivity(earth.resistivity, point);
  } else {
    take_angle(earth.phase, point);
  }
}

using Points = std::vector<SectionPoint>;

Points of_curve(const SectionSource& source, std::size_t station, const QuantityFacts& facts) {
  Points points;
  for (const CurvePoint& measured : curve_points(source, station, *facts.curves[0])) {
    SectionPoint point;
    point.frequency = measured.frequency;
    take_earth(measured.earth, facts, point);
    point.counts = measured.counts(facts.component) && point.has_value();
    if (point.has_value()) {
      points.push_back(point);
    }
  }
  return points;
}

/// What a residual is of; masked points and those that weren't fitted have none.
Points of_misfit(const SectionSource& source, std::size_t station, const QuantityFacts& facts) {
  Points points;
  const std::size_t mode = facts.curves[0] == CurveType::ExHy ? 0 : 1;
  static const std::vector<CurveResidual> nothing;
  const auto& residuals = station < source.residuals.size() ? source.residuals[station][mode] : nothing;
  for (const CurvePoint& measured : curve_points(source, station, *facts.curves[0])) {
    SectionPoint point;
    point.frequency = measured.frequency;
    const auto found = std::ranges::find(residuals, measured.frequency, &CurveResidual::frequency);
    if (found != residuals.end()) {
      point.value = facts.component == OutlierField::resistivity ? found->resistivity : found->phase;
    }
    point.counts = measured.counts(facts.component) && point.has_value();
    if (point.counts || !measured.counts(facts.component)) {
      points.push_back(point);
    }
  }
  return points;
}

/// What a phase tensor has to say, and from which member.
const Estimate* member_of(const numerics::impedance::PhaseTensor& tensor, SectionQuantity quantity) {
  switch (quantity) {
    case SectionQuantity::phase_max:
      return &tensor.phase_max;
    case SectionQuantity::phase_min:
    case SectionQuantity::ellipses_by_phase_min:
      return &tensor.phase_min;
    case SectionQuantity::ellipses_by_skew:
      return &tensor.beta;
    case SectionQuantity::ellipses_by_ellipticity:
      return &tensor.ellipticity;
    default:
      return nullptr;
  }
}

bool is_enabled(const SectionSource& source, double frequency) {
  return source.frequencies->enabled_position(static_cast<float>(frequency)) >= 0;
}

Points of_tensors(const SectionSource& source, std::size_t station, const QuantityFacts& facts) {
  Points points;
  const StationTensor& tensors = source.line->stations[station];
  for (std::size_t i = 0; i < tensors.points.size(); ++i) {
    SectionPoint point;
    point.frequency = tensors.points[i].frequency;
    point.counts = true;
    const auto* const known = station < source.phase_tensors.size() &&
                                      i < source.phase_tensors[station].size() &&
                                      source.phase_tensors[station][i]
                                  ? &*source.phase_tensors[station][i]
                                  : nullptr;
    const bool from_tensor = facts.quantity == SectionQuantity::rho_det ||
                             facts.quantity == SectionQuantity::phase_det ||
                             facts.quantity == SectionQuantity::bostick_det;
    if (from_tensor) {
      take_earth(numerics::impedance::determinant_earth(tensors.points[i].tensor, point.frequency), facts,
                 point);
    } else if (known != nullptr) {
      take_angle(*member_of(*known, facts.quantity), point);
      point.tensor = facts.ellipses ? known : nullptr;
    }
    if (is_enabled(source, point.frequency) && std::isfinite(point.value)) {
      points.push_back(point);
    }
  }
  return points;
}

Points of_tipper(const SectionSource& source, std::size_t station) {
  Points points;
  for (const TipperPoint& measured : source.line->stations[station].tipper) {
    SectionPoint point;
    point.frequency = measured.frequency;
    take_angle(numerics::impedance::tipper_magnitude(measured.tipper), point);
    point.counts = true;
    if (is_enabled(source, point.frequency) && std::isfinite(point.value)) {
      points.push_back(point);
    }
  }
  return points;
}

/// Where a depth section has a point without a tensor: at the depth that the off-diagonals as measured have.
double measured_depth(const std::array<std::vector<CurvePoint>, 2>& curves, float frequency) {
  double logarithms = 0.0;
  int count = 0;
  for (const std::vector<CurvePoint>& curve : curves) {
    const auto found = std::ranges::find(curve, frequency, &CurvePoint::frequency);
    if (found != curve.end() && found->earth.resistivity.value > 0.0) {
      logarithms += std::log(found->earth.resistivity.value);
      ++count;
    }
  }
  if (count == 0) {
    return SectionPoint::none;
  }
  ApparentEarth earth;
  earth.resistivity.value = std::exp(logarithms / count);
  return numerics::impedance::bostick_point(earth, double{frequency}).depth.value;
}

/// Adds the frequencies at which a mask of one of the curves leaves no tensor.
void add_masked(const SectionSource& source, std::size_t station, const QuantityFacts& facts,
                Points& points) {
  std::vector<float> present;
  for (const SectionPoint& point : points) {
    present.push_back(static_cast<float>(point.frequency));
  }
  std::ranges::sort(present);
  const std::array curves{curve_points(source, station, *facts.curves[0]),
                          curve_points(source, station, *facts.curves[1])};
  const bool is_tipper = facts.quantity == SectionQuantity::tipper_magnitude;
  for (const std::vector<CurvePoint>& curve : curves) {
    for (const CurvePoint& measured : curve) {
      if (is_tipper && !(measured.earth.resistivity.has_value() && measured.earth.phase.has_value())) {
        continue;  // its masks say no more than that; files have no tipper at many frequencies
      }
      const auto place = std::ranges::lower_bound(present, measured.frequency);
      if (!measured.counts(OutlierField::both) && (place == present.end() || *place != measured.frequency)) {
        present.insert(place, measured.frequency);
        SectionPoint point;
        point.frequency = measured.frequency;
        if (facts.axis == SectionAxis::depth) {
          point.depth = measured_depth(curves, measured.frequency);
        }
        points.push_back(point);
      }
    }
  }
}

}  // namespace

std::vector<StationPhaseTensors> phase_tensors_of(const LineTensors& line) {
  std::vector<StationPhaseTensors> result;
  result.reserve(line.stations.size());
  for (const StationTensor& station : line.stations) {
    StationPhaseTensors tensors;
    tensors.reserve(station.points.size());
    for (const TensorPoint& point : turned_to(station, 0.0).points) {
      tensors.push_back(numerics::impedance::phase_tensor(point.tensor));
    }
    result.push_back(std::move(tensors));
  }
  return result;
}

std::vector<SectionPoint> section_points(const SectionSource& source, std::size_t station,
                                         SectionQuantity quantity) {
  const QuantityFacts& facts = facts_of(quantity);
  Points points;
  if (facts.is_misfit()) {
    points = of_misfit(source, station, facts);
  } else if (!facts.curves[1]) {
    points = of_curve(source, station, facts);
  } else {
    points = quantity == SectionQuantity::tipper_magnitude ? of_tipper(source, station)
                                                           : of_tensors(source, station, facts);
    add_masked(source, station, facts, points);
  }
  std::ranges::stable_sort(points, std::ranges::greater(), &SectionPoint::frequency);
  for (SectionPoint& point : points) {
    point.period_height = -std::log10(point.frequency);
    point.height = facts.axis == SectionAxis::depth ? std::log10(point.depth) : point.period_height;
  }
  return points;
}

}  // namespace Module_tensor
