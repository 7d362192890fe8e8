#include "import/proposals/line_places.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <utility>

#include "core/number_text.h"
#include "core/trap_errors.h"

namespace Module_data_file {

using Module_projections::CoordSystem;
using numerics::geodesy::GeographicPlace;
using numerics::geodesy::MapPlace;

namespace {

constexpr double degrees_per_zone = 6.0;
constexpr std::int32_t last_zone = 60;
constexpr std::int32_t wgs_84 = 4326;

// A line's outermost site is about twice as far from the middle as half of its sites are; one that is ten
// times as far has a wrong place.
constexpr double far_away = 10.0;
constexpr std::size_t fewest_to_tell = 5;

/// Of an even number the upper one of the two in the middle: a site's own, which lies in a zone.
double upper_median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::ranges::nth_element(values, middle);
  return *middle;
}

template <class Item, class Value>
double median_of(std::span<const Item> items, Value&& value) {
  std::vector<double> values;
  values.reserve(items.size());
  std::ranges::transform(items, std::back_inserter(values), std::forward<Value>(value));
  return upper_median(std::move(values));
}

double within_half_turn(double longitude) {
  const double wrapped = std::remainder(longitude, 360.0);
  return wrapped == 180.0 ? -180.0 : wrapped;
}

bool is_fixed_zone(const std::optional<CoordSystem>& system) {
  return system && system->zone_number != 0 &&
         (system->projection == numerics::geodesy::projection_utm ||
          system->projection == numerics::geodesy::projection_australian_map_grid);
}

double distance(const MapPlace& a, const MapPlace& b) {
  return std::hypot(a.easting - b.easting, a.northing - b.northing);
}

// Sections of one file share its place; a site that was measured twice doesn't pull the line.
std::vector<MapPlace> each_once(const std::vector<MapPlace>& places) {
  std::vector<MapPlace> once;
  const auto before = [](const MapPlace& a, const MapPlace& b) {
    return std::pair(a.easting, a.northing) < std::pair(b.easting, b.northing);
  };
  std::vector<MapPlace> sorted = places;
  std::ranges::sort(sorted, before);
  std::ranges::unique_copy(sorted, std::back_inserter(once), [](const MapPlace& a, const MapPlace& b) {
    return a.easting == b.easting && a.northing == b.northing;
  });
  return once;
}

// A place by its distances along a line and beside it, in either order.
struct Beside {
  double across = 0.0;
  double along = 0.0;
};

double extent(std::span<const Beside> places, double Beside::*coordinate) {
  const auto [least, most] = std::ranges::minmax(places, {}, coordinate);
  return most.*coordinate - least.*coordinate;
}

// The widest gap across, if both sides of it are lines that run beside one another.
std::optional<double> gap_of_lines(std::vector<Beside> places) {
  constexpr std::size_t fewest = 3;  // of a line
  std::ranges::sort(places, {}, &Beside::across);
  std::size_t first = 0;
  double widest = 0.0;
  for (std::size_t i = 1; i < places.size(); ++i) {
    if (const double gap = places[i].across - places[i - 1].across; gap > widest) {
      widest = gap;
      first = i;
    }
  }
  if (first < fewest || places.size() - first < fewest) {
    return std::nullopt;
  }
  const auto one = std::span(places).first(first);
  const auto other = std::span(places).subspan(first);
  constexpr double narrow = 3.0;
  constexpr double least = 50.0;  // m: places of one site differ by as much
  const double across = std::max(extent(one, &Beside::across), extent(other, &Beside::across));
  const double shorter = std::min(extent(one, &Beside::along), extent(other, &Beside::along));
  const double common =
      extent(one, &Beside::along) + extent(other, &Beside::along) - extent(places, &Beside::along);
  const bool are_lines = widest > least && widest > narrow * across && shorter > narrow * across;
  return are_lines && common > 0.5 * shorter ? std::optional(widest) : std::nullopt;
}

// The direction of all places together is that of the lines, or at a right angle to it where these are
// farther apart than long.
std::optional<double> distance_of_two_lines(const std::vector<MapPlace>& places,
                                            const numerics::geodesy::BestLine& line) {
  std::vector<Beside> by_line;
  std::vector<Beside> across_line;
  for (const MapPlace& place : places) {
    by_line.push_back({line.beside(place), line.along(place)});
    across_line.push_back({line.along(place), line.beside(place)});
  }
  const std::optional<double> gap = gap_of_lines(std::move(by_line));
  return gap ? gap : gap_of_lines(std::move(across_line));
}

}  // namespace

std::string parallel_lines_text(double apart) {
  return "two parallel lines, " + format_number(apart, "0") + " m apart";
}

CoordSystem utm_zone_of(std::span<const GeographicPlace> places) {
  const double longitude =
      median_of(places, [](const GeographicPlace& place) { return within_half_turn(place.longitude); });
  const double latitude = median_of(places, &GeographicPlace::latitude);
  const bool south = latitude < 0.0;
  CoordSystem system;
  system.projection = numerics::geodesy::projection_utm;
  system.datum = wgs_84;
  system.hemisphere = south ? numerics::geodesy::hemisphere_south : numerics::geodesy::hemisphere_north;
  system.zone_width = degrees_per_zone;
  system.zone_number = std::clamp(
      static_cast<std::int32_t>(std::floor((longitude + 180.0) / degrees_per_zone)) + 1, 1, last_zone);
  system.name = "UTM " + plain_text(system.zone_number) + (south ? "S" : "N") + " | WGS 84";
  system.transform_parameters = numerics::geodesy::crdprm(system.values());
  return system;
}

PlaceMap::PlaceMap(std::span<const GeographicPlace> places, const std::optional<CoordSystem>& survey) {
  if (is_fixed_zone(survey)) {
    parameters_ = survey->transform_parameters;
  } else if (!places.empty()) {
    parameters_ = utm_zone_of(places).transform_parameters;
  }
}

std::optional<MapPlace> PlaceMap::on_map(const GeographicPlace& place) const {
  try {
    return numerics::geodesy::ll2en(parameters_, place);
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

LinePlaces::LinePlaces(const std::vector<MapPlace>& places, const std::vector<KnownSite>& known) {
  std::vector<MapPlace> of_survey;
  of_survey.reserve(known.size());
  for (const KnownSite& site : known) {
    of_survey.push_back(site.place);
  }
  has_known_ = !known.empty();
  std::vector<MapPlace> all = places;
  all.insert(all.end(), of_survey.begin(), of_survey.end());
  all = each_once(all);
  count_ = all.size();
  if (all.empty()) {
    return;
  }
  find_middle(all);
  constexpr std::size_t a_tenth = 10;
  many_far_away_ =
      a_tenth * std::erase_if(all, [&](const MapPlace& place) { return is_far_away(place); }) > count_;
  line_ = numerics::geodesy::best_line(all);
  if (!line_) {
    return;
  }
  parallel_lines_ = distance_of_two_lines(all, *line_);
  // A line of the survey goes on as it is: one that turned a little would give its own sites other stations.
  if (const auto earlier = numerics::geodesy::best_line(each_once(of_survey));
      earlier && line_->is_line() && earlier->is_line()) {
    line_->mean_easting = earlier->mean_easting;
    line_->mean_northing = earlier->mean_northing;
    line_->direction_east = earlier->direction_east;
    line_->direction_north = earlier->direction_north;
  }
  set_zero(places);
  if (has_known_) {
    set_zero_of_known(known);
  }
}

void LinePlaces::find_middle(std::span<const MapPlace> places) {
  middle_.easting = median_of(places, &MapPlace::easting);
  middle_.northing = median_of(places, &MapPlace::northing);
  if (places.size() >= fewest_to_tell) {
    far_ = far_away * median_of(places, [&](const MapPlace& place) { return distance(place, middle_); });
  }
}

bool LinePlaces::is_far_away(const MapPlace& place) const {
  return far_ > 0.0 && distance(place, middle_) > far_;
}

// Metres along the line from the end that is nearer the first place.
void LinePlaces::set_zero(const std::vector<MapPlace>& places) {
  std::vector<double> along;
  for (const MapPlace& place : places) {
    if (!is_far_away(place)) {
      along.push_back(line_->along(place));
    }
  }
  if (along.empty()) {
    return;
  }
  const auto [least, most] = std::ranges::minmax(along);
  const bool begins_at_least = along.front() - least <= most - along.front();
  direction_ = begins_at_least ? 1.0 : -1.0;
  zero_ = begins_at_least ? -least : most;
}

// The zero that gives the survey's sites the stations they have, up to the rounding to whole metres: halfway
// between those that the outermost of them ask for.
void LinePlaces::set_zero_of_known(const std::vector<KnownSite>& known) {
  double covariance = 0.0;
  double mean = 0.0;
  for (const KnownSite& site : known) {
    mean += site.station / static_cast<double>(known.size());
  }
  for (const KnownSite& site : known) {
    covariance += (site.station - mean) * line_->along(site.place);
  }
  if (covariance != 0.0) {
    direction_ = covariance > 0.0 ? 1.0 : -1.0;
  }
  std::vector<double> zeros;
  zeros.reserve(known.size());
  for (const KnownSite& site : known) {
    zeros.push_back(site.station - direction_ * line_->along(site.place));
  }
  const auto [least, most] = std::ranges::minmax(zeros);
  zero_ = 0.5 * (least + most);
  constexpr double tenth = 0.1;
  constexpr double rounding = 2.0;  // m
  const double spacing = known.size() > 1 ? line_->length / static_cast<double>(known.size() - 1) : 0.0;
  known_are_distances_ = most - least <= std::max(rounding, tenth * spacing);
}

double LinePlaces::station(const MapPlace& place) const {
  return line_ ? std::round(zero_ + direction_ * line_->along(place)) + 0.0 : 0.0;
}

bool LinePlaces::is_far_off(const MapPlace& place) const {
  constexpr double tenth = 0.1;
  constexpr double deviations = 3.0;
  if (is_far_away(place)) {
    return true;
  }
  const double beside = line_ ? std::abs(line_->beside(place)) : 0.0;
  return is_line() && beside > tenth * line_->length && beside > deviations * line_->rms_distance;
}

}  // namespace Module_data_file
