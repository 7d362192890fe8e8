#include "tensor/site_map.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <map>
#include <utility>

#include "core/median.h"
#include "core/number_text.h"

namespace Module_tensor {

using Module_projections::PlaceSource;
using Module_projections::SurveyPlace;
using numerics::impedance::Arrow;
using numerics::impedance::ArrowConvention;
using numerics::impedance::Estimate;
using numerics::impedance::PhaseTensor;

namespace {

constexpr double same_frequency = 0.01;  // in frequency

/// The point nearest in the logarithm of frequency, if it is near enough.
template <class Point>
const Point* nearest(const std::vector<Point>& points, double frequency) {
  if (points.empty()) {
    return nullptr;
  }
  const auto above = std::ranges::lower_bound(points, frequency, {}, &Point::frequency);
  const auto distance = [frequency](const Point& point) {
    return std::abs(std::log(point.frequency / frequency));
  };
  const Point* found = above == points.end() ? &points.back() : &*above;
  if (above != points.begin() && distance(*(above - 1)) < distance(*found)) {
    found = &*(above - 1);
  }
  return distance(*found) <= std::log1p(frequency_tolerance) ? found : nullptr;
}

double rounded(double value, int digits) {
  if (value == 0.0 || !std::isfinite(value)) {
    return value;
  }
  const double unit = std::pow(10.0, std::floor(std::log10(std::abs(value))) - (digits - 1));
  return unit >= 1.0 ? std::round(value / unit) * unit : std::round(value / unit) / std::round(1.0 / unit);
}

std::string short_number(double value) {
  constexpr int digits = 4;
  return plain_text(rounded(value, digits));
}

/// "9.6 ± 2.9 degrees"; without an error that is known, it says so.
std::string estimate_text(const Estimate& estimate, std::string_view picture, const std::string& unit) {
  if (!estimate.has_value()) {
    return "none";
  }
  const std::string value = format_number(estimate.value, picture);
  return estimate.has_error() ? value + " ± " + format_number(estimate.error, picture) + unit
                              : value + unit + " (error unknown)";
}

constexpr std::string_view tenths = "0.0";
constexpr std::string_view hundredths = "0.00";

std::string azimuth_text(const PhaseTensor& tensor) {
  const bool determined = tensor.ellipticity.value >= numerics::impedance::least_ellipticity &&
                          !(tensor.azimuth.error > numerics::impedance::largest_azimuth_error);
  return determined ? estimate_text(tensor.azimuth, tenths, "° from north") : std::string("undetermined");
}

std::string arrow_text(const Arrow& arrow) {
  const bool has_direction = arrow.length.value >= numerics::impedance::least_arrow;
  return "length " + estimate_text(arrow.length, hundredths, "") + ", azimuth " +
         (has_direction ? estimate_text(arrow.azimuth, tenths, "°") : std::string("undetermined"));
}

std::string at_other_frequency(double own, double shown) {
  return std::abs(own - shown) > same_frequency * shown ? " at " + short_number(own) + " Hz" : std::string();
}

std::string texts_of_places(PlaceSource source, const std::string& system) {
  switch (source) {
    case PlaceSource::sites:
      return "sites, in " + system;
    case PlaceSource::map:
      return "map coordinates of the stations";
    case PlaceSource::local:
      break;
  }
  return "local coordinates, which follow from line and station numbers; their up needn't be north";
}

double extent(std::span<const MapSite> sites, double MapSite::*coordinate) {
  const auto [least, most] = std::ranges::minmax_element(sites, {}, coordinate);
  return (*most).*coordinate - (*least).*coordinate;
}

/// How far it is to the nearest other place, infinite without one.
/// @param places  ascending in their first coordinate, so that only neighbours are looked at
double nearest_distance(const std::vector<std::array<double, 2>>& places, std::size_t index) {
  double nearest = std::numeric_limits<double>::infinity();
  /// @return whether places farther on may still be nearer
  const auto look = [&](const std::array<double, 2>& other) {
    const double along = std::abs(other[0] - places[index][0]);
    const double distance = std::hypot(along, other[1] - places[index][1]);
    nearest = distance > 0.0 ? std::min(nearest, distance) : nearest;
    return along < nearest;
  };
  for (std::size_t after = index + 1; after < places.size() && look(places[after]);) {
    ++after;
  }
  for (std::size_t before = index; before > 0 && look(places[before - 1]);) {
    --before;
  }
  return nearest;
}

/// How far apart sites are: the median of the distances to the nearest other place; 0 where there are no two.
double typical_spacing(std::span<const MapSite> sites) {
  if (sites.empty()) {
    return 0.0;
  }
  const bool upright = extent(sites, &MapSite::north) > extent(sites, &MapSite::east);
  std::vector<std::array<double, 2>> places;
  for (const MapSite& site : sites) {
    places.push_back(upright ? std::array{site.north, site.east} : std::array{site.east, site.north});
  }
  std::ranges::sort(places);
  std::vector<double> nearest;
  for (std::size_t i = 0; i < places.size(); ++i) {
    if (const double distance = nearest_distance(places, i); std::isfinite(distance)) {
      nearest.push_back(distance);
    }
  }
  return median(std::move(nearest), 0.0);
}

}  // namespace

SiteMap site_map(std::span<const LineStations> lines, const Module_projections::SurveyPlaces& places) {
  std::map<std::int32_t, const SurveyPlace*> by_station;
  for (const SurveyPlace& place : places.stations) {
    by_station[place.StationID] = &place;
  }
  SiteMap map;
  map.source = places.source;
  map.system = places.system;
  map.parameters = places.parameters;
  for (const LineStations& line : lines) {
    for (const StationTensor& station : line.stations) {
      const auto found = by_station.find(station.StationID);
      if (found == by_station.end() || !found->second->place) {
        map.without_place.push_back(station_text(station.station, station.name));
        continue;
      }
      const SurveyPlace& place = *found->second;
      map.sites.push_back(
          {line.line, place.place->easting, place.place->northing, place.true_north, station});
    }
  }
  map.spacing = typical_spacing(map.sites);
  return map;
}

std::string places_text(const SiteMap& map) { return texts_of_places(map.source, map.system); }

std::vector<double> map_frequencies(std::span<const MapSite> sites) {
  std::map<double, int, std::greater<>> counts;
  for (const MapSite& site : sites) {
    for (const TensorPoint& point : site.station.points) {
      ++counts[point.frequency];
    }
    for (const TipperPoint& point : site.station.tipper) {
      ++counts[point.frequency];
    }
  }
  std::vector<double> frequencies;
  double first = 0.0;  // of those that count as one; the one that most sites have stands for them
  int most = 0;
  for (const auto& [frequency, count] : counts) {
    const bool is_new = frequencies.empty() || frequency < first / (1.0 + same_frequency);
    if (is_new) {
      frequencies.push_back(frequency);
      first = frequency;
      most = count;
    } else if (count > most) {
      frequencies.back() = frequency;
      most = count;
    }
  }
  return frequencies;
}

SiteValues values_at(const StationTensor& station, double frequency, const ArrowChoice& arrows) {
  SiteValues values;
  if (const TensorPoint* const point = nearest(station.points, frequency)) {
    values.tensor_frequency = point->frequency;
    values.phase_tensor = numerics::impedance::phase_tensor(point->tensor);
  }
  if (const TipperPoint* const point = nearest(station.tipper, frequency)) {
    values.tipper_frequency = point->frequency;
    values.real_arrow = real_arrow(point->tipper, arrows.convention);
    values.imaginary_arrow = imaginary_arrow(point->tipper, arrows.reverse_imaginary);
  }
  return values;
}

std::string_view unit_of(EllipseFill fill) { return fill == EllipseFill::ellipticity ? "" : "degrees"; }

ColourScale usual_scale(EllipseFill fill) {
  switch (fill) {
    case EllipseFill::geometric_phase:
    case EllipseFill::minimum_phase:
      return usual_scale(ScaleQuantity::phase);
    case EllipseFill::skew:
      return usual_scale(ScaleQuantity::skew);
    case EllipseFill::ellipticity:
      break;
  }
  return usual_scale(ScaleQuantity::ellipticity);
}

Estimate fill_value(const PhaseTensor& tensor, EllipseFill fill) {
  switch (fill) {
    case EllipseFill::geometric_phase:
      return tensor.geometric_phase;
    case EllipseFill::minimum_phase:
      return tensor.phase_min;
    case EllipseFill::skew:
      return tensor.beta;
    case EllipseFill::ellipticity:
      break;
  }
  return tensor.ellipticity;
}

bool is_uncertain(const PhaseTensor& tensor) {
  constexpr numerics::impedance::DimensionalityLimits limits;
  return tensor.beta.error > limits.skew ||
         !(tensor.ellipticity.value >= numerics::impedance::least_ellipticity) ||
         tensor.azimuth.error > numerics::impedance::largest_azimuth_error;
}

std::string period_text(double frequency) {
  return "Period " + short_number(1.0 / frequency) + " s (" + short_number(frequency) + " Hz)";
}

std::string convention_text(const ArrowChoice& arrows) {
  const std::string real = arrows.convention == ArrowConvention::parkinson
                               ? "Real arrows point to conductors (Parkinson)"
                               : "Real arrows point away from conductors (Wiese)";
  return real + "; imaginary arrows " + (arrows.reverse_imaginary ? "reversed" : "as they are");
}

std::vector<std::string> value_texts(const SiteValues& values, double frequency) {
  std::vector<std::string> texts;
  if (const auto& tensor = values.phase_tensor) {
    texts.push_back("Phase tensor" + at_other_frequency(values.tensor_frequency, frequency) + ":");
    texts.push_back("  azimuth " + azimuth_text(*tensor));
    texts.push_back("  skew (beta) " + estimate_text(tensor->beta, tenths, "°"));
    texts.push_back("  principal phases " + estimate_text(tensor->phase_max, tenths, "°") + " and " +
                    estimate_text(tensor->phase_min, tenths, "°"));
    texts.push_back("  geometric mean phase " + estimate_text(tensor->geometric_phase, tenths, "°"));
    texts.push_back("  ellipticity " + estimate_text(tensor->ellipticity, hundredths, ""));
  }
  if (values.real_arrow) {
    texts.push_back("Induction arrows" + at_other_frequency(values.tipper_frequency, frequency) + ":");
    texts.push_back("  real: " + arrow_text(*values.real_arrow));
    texts.push_back("  imaginary: " + arrow_text(*values.imaginary_arrow));
  }
  if (texts.empty()) {
    texts.emplace_back("No values at this period");
  }
  return texts;
}

}  // namespace Module_tensor
