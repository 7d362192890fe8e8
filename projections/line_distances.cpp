#include "projections/line_distances.h"

#include <algorithm>
#include <cmath>

#include "core/number_text.h"
#include "numerics/geodesy/best_line.h"

namespace Module_projections {

namespace {

using numerics::geodesy::BestLine;
using numerics::geodesy::MapPlace;

/// "5 m", "930 m", "9.3 km", "21 km"
std::string length_text(double length) {
  constexpr double kilometre = 1000.0;
  if (length < kilometre) {
    return plain_text(length < 10.0 ? std::round(10.0 * length) / 10.0 : std::round(length)) + " m";
  }
  return format_number(length / kilometre, length < 10.0 * kilometre ? "0.0" : "0") + " km";
}

std::string sites_of(std::string_view line) { return "The sites of line " + std::string(line); }

/// "10, 15, 20 and 4 more"
std::string listed(const std::vector<double>& stations) {
  constexpr std::size_t most = 5;
  std::string text;
  for (std::size_t i = 0; i < std::min(stations.size(), most); ++i) {
    text += (i == 0 ? "" : ", ") + plain_text(stations[i]);
  }
  return stations.size() > most
             ? text + " and " + plain_text(static_cast<int>(stations.size() - most)) + " more"
             : text;
}

std::string missing_places(std::string_view line, const StationPlaces& places) {
  std::vector<double> missing;
  for (const PlacedStation& station : places.stations) {
    if (!station.place) {
      missing.push_back(station.station);
    }
  }
  return missing.size() == places.stations.size()
             ? sites_of(line) + " have no places, so there are no distances along it"
             : "Of line " + std::string(line) +
                   " these stations have no place, so there are no distances along it: " + listed(missing);
}

double mean_spacing(const std::vector<double>& positions) {
  const auto [lowest, highest] = std::ranges::minmax(positions);
  return (highest - lowest) / static_cast<double>(positions.size() - 1);
}

/// How far the numbers are from positions at most, with the best constant between the two.
double difference(const std::vector<double>& numbers, const std::vector<double>& positions) {
  std::vector<double> offsets(numbers.size());
  std::ranges::transform(numbers, positions, offsets.begin(), std::minus<>());
  const auto [lowest, highest] = std::ranges::minmax(offsets);
  return 0.5 * (highest - lowest);
}

bool numbers_are(const std::vector<double>& positions, const std::vector<double>& numbers) {
  constexpr double tolerance = 0.1;  // of the spacing
  return difference(numbers, positions) <= tolerance * mean_spacing(positions);
}

/// Along the line, growing with the station numbers, 0 at the first station.
std::vector<double> along(const BestLine& line, const std::vector<MapPlace>& places,
                          const std::vector<double>& stations) {
  std::vector<double> distances;
  double trend = 0.0;  // of the distances, whose mean is 0, with the numbers
  for (std::size_t i = 0; i < places.size(); ++i) {
    distances.push_back(line.along(places[i]));
    trend += distances[i] * (stations[i] - stations.front());
  }
  const double sign = trend < 0.0 ? -1.0 : 1.0;
  const double first = distances.front();
  for (double& distance : distances) {
    distance = sign * (distance - first);
  }
  return distances;
}

/// From station to station.
std::vector<double> along_the_way(const std::vector<MapPlace>& places) {
  std::vector<double> ways(1, 0.0);
  for (std::size_t i = 1; i < places.size(); ++i) {
    ways.push_back(ways.back() + std::hypot(places[i].easting - places[i - 1].easting,
                                            places[i].northing - places[i - 1].northing));
  }
  return ways;
}

std::string other_spacing(const LineDistances& of) {
  const double numbers = mean_spacing(of.stations);
  const double places = mean_spacing(of.distances);
  const std::string line = "The stations of line " + of.line + " are ";
  constexpr double alike = 0.1;
  return std::abs(numbers - places) > alike * places
             ? line + length_text(numbers) + " apart by their numbers, its sites " + length_text(places)
             : line + "up to " + length_text(difference(of.stations, of.distances)) +
                   " from where their numbers put them";
}

}  // namespace

std::optional<double> LineDistances::at(double station) const {
  const auto found = std::ranges::lower_bound(stations, station);
  return known() && found != stations.end() && *found == station
             ? std::optional(distances[static_cast<std::size_t>(found - stations.begin())])
             : std::nullopt;
}

LineDistances line_distances(std::string_view line, const StationPlaces& places) {
  LineDistances result;
  result.line = line;
  std::vector<MapPlace> map;
  for (const PlacedStation& station : places.stations) {
    result.stations.push_back(station.station);
    map.push_back(station.place.value_or(MapPlace{}));
  }
  if (places.stations.size() < 2 || !places.complete()) {
    result.refusal = places.complete()
                         ? "Line " + result.line + " has too few stations for distances along it"
                         : missing_places(line, places);
    return result;
  }
  const std::optional<BestLine> best = numerics::geodesy::best_line(map);
  if (!best) {
    result.refusal = sites_of(line) + " are all at one place, so there are no distances along it";
    return result;
  }
  if (!best->is_line()) {
    const std::string sites = sites_of(line) + " lie on no straight line (RMS " +
                              length_text(best->rms_distance) + " of " + length_text(best->length) + ")";
    result.refusal = sites + ", so distances along it mean nothing";
    if (places.of_sites && !numbers_are(along_the_way(map), result.stations)) {
      result.warning = sites + ", and its station numbers are no distances";
    }
    return result;
  }
  result.distances = along(*best, map, result.stations);
  if (!numbers_are(result.distances, result.stations)) {
    result.warning = other_spacing(result);
  }
  return result;
}

LineDistances line_distances(std::string_view line) { return line_distances(line, station_places(line)); }

}  // namespace Module_projections
