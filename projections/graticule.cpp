#include "projections/graticule.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <exception>
#include <limits>
#include <optional>

namespace Module_projections {

using numerics::geodesy::en2ll;
using numerics::geodesy::GeographicPlace;
using numerics::geodesy::ll2en;
using numerics::geodesy::MapPlace;
using numerics::geodesy::TransformParameters;

namespace {

constexpr double seconds_per_degree = 3600.0;

struct Range {
  double lower = std::numeric_limits<double>::infinity();
  double upper = -std::numeric_limits<double>::infinity();
  void include(double value) {
    lower = std::min(lower, value);
    upper = std::max(upper, value);
  }
  [[nodiscard]] double length() const { return upper - lower; }
};

struct Bounds {
  Range latitude;
  Range longitude;
};

/// What the places along the edges and in the middle of a part span. Throws where the system has no place.
Bounds bounds_of(const TransformParameters& system, const MapPart& part) {
  constexpr int steps = 4;  // along each edge
  Bounds bounds;
  for (int i = 0; i <= steps; ++i) {
    for (int j = 0; j <= steps; ++j) {
      const GeographicPlace place = en2ll(system, {part.west + (part.east - part.west) * i / steps,
                                                   part.south + (part.north - part.south) * j / steps, 0});
      bounds.latitude.include(place.latitude);
      bounds.longitude.include(place.longitude);
    }
  }
  return bounds;
}

/// Seconds between lines: the least round step with at most so many lines.
double round_step(double degrees, int most) {
  constexpr std::array<double, 18> steps{1,   2,   5,    10,   15,   30,    60,    120,   300,
                                         600, 900, 1800, 3600, 7200, 18000, 36000, 54000, 108000};
  const auto enough = std::ranges::find_if(
      steps, [&](double step) { return degrees * seconds_per_degree / step <= static_cast<double>(most); });
  return enough == steps.end() ? steps.back() : *enough;
}

std::optional<GraticuleLine> line_at(const TransformParameters& system, double degrees, bool meridian,
                                     const Range& along) {
  constexpr int pieces = 24;
  GraticuleLine line{meridian, graticule_label(degrees, meridian), {}};
  for (int i = 0; i <= pieces; ++i) {
    const double other = along.lower + along.length() * i / pieces;
    try {
      line.places.push_back(
          ll2en(system, meridian ? GeographicPlace{other, degrees} : GeographicPlace{degrees, other}));
    } catch (const std::exception&) {
      return {};  // beyond the system's reach
    }
  }
  return line;
}

void add_lines(const TransformParameters& system, const Range& across, const Range& along, bool meridian,
               int most, std::vector<GraticuleLine>& lines) {
  constexpr double farthest_latitude = 89.9;
  const double step = round_step(across.length(), most);
  const auto first = static_cast<std::int64_t>(std::ceil(across.lower * seconds_per_degree / step));
  const auto last = static_cast<std::int64_t>(std::floor(across.upper * seconds_per_degree / step));
  for (std::int64_t count = first; count <= last; ++count) {
    const double degrees = static_cast<double>(count) * step / seconds_per_degree;
    if (meridian || std::abs(degrees) <= farthest_latitude) {
      if (auto line = line_at(system, degrees, meridian, along)) {
        lines.push_back(std::move(*line));
      }
    }
  }
}

}  // namespace

std::vector<GraticuleLine> graticule(const TransformParameters& system, const MapPart& part, int most) {
  std::vector<GraticuleLine> lines;
  try {
    const Bounds bounds = bounds_of(system, part);
    constexpr double all_around = 180.0;  // a part across the date line has no span of longitudes
    if (bounds.longitude.length() < all_around) {
      add_lines(system, bounds.longitude, bounds.latitude, true, most, lines);
      add_lines(system, bounds.latitude, bounds.longitude, false, most, lines);
    }
  } catch (const std::exception&) {
    lines.clear();  // a part that the system doesn't show has no graticule
  }
  return lines;
}

std::string graticule_label(double degrees, bool meridian) {
  constexpr long per_minute = 60;
  constexpr long per_degree = 3600;
  const long seconds = std::lround(std::abs(degrees) * seconds_per_degree);
  std::string label = std::to_string(seconds / per_degree) + "\u00b0";
  const auto two_digits = [](long number) { return (number < 10 ? "0" : "") + std::to_string(number); };
  if (seconds % per_degree != 0) {
    label += two_digits(seconds % per_degree / per_minute) + "'";
  }
  if (seconds % per_minute != 0) {
    label += two_digits(seconds % per_minute) + "\"";
  }
  if (seconds == 0) {
    return label;
  }
  const char* const side = meridian ? (degrees < 0.0 ? "W" : "E") : (degrees < 0.0 ? "S" : "N");
  return label + side;
}

}  // namespace Module_projections
