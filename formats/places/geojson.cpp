#include <nlohmann/json.hpp>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "formats/places/line_pieces.h"
#include "formats/places/site_marks.h"

namespace formats::places {

namespace {

using Json = nlohmann::ordered_json;

double rounded_degrees(double degrees) { return numeric_value(degrees_text(degrees)); }

double rounded_metres(double metres) { return numeric_value(format_number(metres, "0.000")); }

Json text_or_null(const std::string& text) {
  return text.empty() ? Json() : Json(text_from_field_file(text));
}

Json feature(Json geometry, Json properties) {
  return {{"type", "Feature"}, {"geometry", std::move(geometry)}, {"properties", std::move(properties)}};
}

Json site_feature(const std::string& line, const SiteMark& site) {
  Json position = Json::array({rounded_degrees(site.longitude), rounded_degrees(site.latitude)});
  Json elevation;
  if (site.elevation) {
    elevation = rounded_metres(*site.elevation);
    position.push_back(elevation);
  }
  // A property that is absent is null, so that the table of a map has the same columns for all.
  return feature({{"type", "Point"}, {"coordinates", position}}, {{"name", text_or_null(site.name)},
                                                                  {"line", text_or_null(line)},
                                                                  {"station", site.station},
                                                                  {"elevation_m", elevation},
                                                                  {"plot", text_or_null(site.plot)}});
}

Json positions(const std::vector<PathPoint>& piece) {
  Json points = Json::array();
  for (const PathPoint& point : piece) {
    points.push_back(Json::array({rounded_degrees(point.longitude), rounded_degrees(point.latitude)}));
  }
  return points;
}

Json line_feature(const LineMarks& line, const std::vector<std::vector<PathPoint>>& pieces) {
  Json geometry;
  if (pieces.size() == 1) {
    geometry = {{"type", "LineString"}, {"coordinates", positions(pieces.front())}};
  } else {
    Json parts = Json::array();
    for (const std::vector<PathPoint>& piece : pieces) {
      parts.push_back(positions(piece));
    }
    geometry = {{"type", "MultiLineString"}, {"coordinates", parts}};
  }
  return feature(std::move(geometry), {{"line", text_or_null(line.line)}, {"stations", line.sites.size()}});
}

}  // namespace

std::string geojson_text(const std::vector<LineMarks>& lines) {
  std::vector<Json> features;
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
    text += (i == 0 ? "\n" : ",\n") + features[i].dump();
  }
  return text + "\n]}\n";
}

}  // namespace formats::places
