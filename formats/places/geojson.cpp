#include <cstdint>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "formats/places/line_pieces.h"
#include "formats/places/site_marks.h"

namespace formats::places {

namespace {

using Json = nlohmann::json;

// Numbers are put down as text: what a library makes of a rounded double may have seventeen digits.

/// A rounded number without the zeros at its end.
std::string rounded_text(const std::string& decimals) { return plain_text(numeric_value(decimals)); }

std::string text_or_null(const std::string& text) {
  return text.empty() ? "null" : Json(text_from_field_file(text)).dump();
}

std::string position_text(double longitude, double latitude, const std::string& more = {}) {
  return "[" + rounded_text(degrees_text(longitude)) + "," + rounded_text(degrees_text(latitude)) + more +
         "]";
}

/// @param geometry, properties  the members of each
std::string feature(const std::string& geometry, const std::string& properties) {
  return R"({"type":"Feature","geometry":{)" + geometry + R"(},"properties":{)" + properties + "}}";
}

std::string site_feature(const std::string& line, const SiteMark& site) {
  const std::string elevation =
      site.elevation ? rounded_text(format_number(*site.elevation, "0.000")) : std::string();
  const std::string position =
      position_text(site.longitude, site.latitude, elevation.empty() ? "" : "," + elevation);
  // A property that is absent is null, so that the table of a map has the same columns for all.
  return feature(R"("type":"Point","coordinates":)" + position,
                 R"("name":)" + text_or_null(site.name) + R"(,"line":)" + text_or_null(line) +
                     R"(,"station":)" + plain_text(site.station) + R"(,"elevation_m":)" +
                     (elevation.empty() ? "null" : elevation) + R"(,"plot":)" + text_or_null(site.plot));
}

std::string positions(const std::vector<PathPoint>& piece) {
  std::string text;
  for (const PathPoint& point : piece) {
    text += (text.empty() ? "" : ",") + position_text(point.longitude, point.latitude);
  }
  return "[" + text + "]";
}

std::string line_feature(const LineMarks& line, const std::vector<std::vector<PathPoint>>& pieces) {
  std::string parts;
  for (const std::vector<PathPoint>& piece : pieces) {
    parts += (parts.empty() ? "" : ",") + positions(piece);
  }
  const bool is_whole = pieces.size() == 1;
  return feature((is_whole ? R"("type":"LineString","coordinates":)" + parts
                           : R"("type":"MultiLineString","coordinates":[)" + parts + "]"),
                 R"("line":)" + text_or_null(line.line) + R"(,"stations":)" +
                     plain_text(static_cast<std::int64_t>(line.sites.size())));
}

}  // namespace

std::string geojson_text(const std::vector<LineMarks>& lines) {
  std::vector<std::string> features;
  for (const LineMarks& line : lines) {
    for (const SiteMark& site : line.sites) {
      features.push_back(site_feature(line.line, site));
    }
    if (const auto pieces = line_pieces(line.sites); !pieces.empty()) {
      features.push_back(line_feature(line, pieces));
    }
  }
  // A feature in each line of the file: people look into it, and compare two.
  std::string text = "{\"type\":\"FeatureCollection\",\"features\":[";
  for (std::size_t i = 0; i < features.size(); ++i) {
    text += (i == 0 ? "\n" : ",\n") + features[i];
  }
  return text + "\n]}\n";
}

}  // namespace formats::places
